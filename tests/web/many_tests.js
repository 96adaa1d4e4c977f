// Many files at once.

import assert from "node:assert/strict";
import fs from "node:fs";
import path from "node:path";
import { browser, choose, download, drop, example, expected, open, pressed, said, scratch, unzipped } from "./support.js";

export const manyTests = {
  async "a thousand files make a list that sorts, filters and opens, and the page never stalls"() {
    const page = await open();
    const files = [];
    for (let i = 0; i < 1000; ++i) {
      const file = path.join(scratch, `many-${String(i).padStart(3, "0")}.tab`);
      fs.copyFileSync(example(i % 2 ? "ybbr.tab" : "ubiquitin.tab"), file);
      files.push(file);
    }
    fs.writeFileSync(files[7], "nothing");
    await page.evaluate(() => {
      globalThis.longest = 0;
      let before = performance.now();
      setInterval(() => {
        const now = performance.now();
        globalThis.longest = Math.max(globalThis.longest, now - before);
        before = now;
      });
    });
    const start = Date.now();
    await choose(page, files);
    await said(page, "1000 of 1000 files, 1 cannot be used.", 600000);
    const whole = Date.now() - start;
    const longest = await page.evaluate(() => globalThis.longest);
    console.log(`  1000 files in ${whole} ms, the longest pause ${longest.toFixed(0)} ms`);
    assert.ok(longest < whole / 10, `a pause of ${longest} of ${whole} ms`);

    const shown = () => page.$$eval("#index tbody tr:not([hidden])", (rows) => rows.map((row) => row.cells[0].textContent));
    await page.click("#index th:nth-child(3) button");
    const counts = (await page.locator("#index tbody td:nth-child(3)").allTextContents()).filter(Boolean).map(Number);
    assert.equal(counts.length, 999);
    assert.deepEqual(counts, [...counts].sort((a, b) => a - b));
    assert.equal(await page.getAttribute("#index th:nth-child(3)", "aria-sort"), "ascending");
    await page.check("#index [value=failed]");
    assert.deepEqual(await shown(), ["many-007.tab"]);
    await page.check("#index [value=cis]"); // of YbbR
    assert.equal((await shown()).length, 499);
    await page.fill("#index [name=words]", "many-09");
    assert.deepEqual(await shown(), ["many-091.tab", "many-093.tab", "many-095.tab", "many-097.tab", "many-099.tab"]);
    await page.locator("#index tbody tr:not([hidden]) a").first().focus();
    await page.keyboard.press("Enter");
    await said(page, "many-091.tab: 8 prolines");
    assert.ok(await page.locator("#result h2").count() > 3);
    assert.equal(await page.evaluate(() => document.activeElement.id), "result");
    assert.equal((await shown()).length, 5);

    const lines = (await pressed(page, "#index button:has-text('TSV')")).bytes.toString().trimEnd().split("\n");
    assert.equal(lines.length, 1 + 499 * 8 + 500 * 3 + 1);
    assert.ok(lines.some((line) => /^many-007.tab\t{5}\S/.test(line)));
  },

  async "the list is that of citrans-batch, and its archive holds the reports"() {
    const page = await open();
    const folder = path.join(expected, "many");
    await choose(page, fs.readdirSync(folder).filter((name) => name !== "pages").map((name) => path.join(folder, name)));
    await said(page, "cannot be used.");
    const rows = (list) => list.map((row) => [...row.cells].map((cell) => cell.textContent)).sort();
    const wanted = await browser.newPage();
    await wanted.setContent(fs.readFileSync(path.join(folder, "pages/index.html"), "utf8"));
    assert.deepEqual(await page.$$eval("#entries tbody tr", rows), await wanted.$$eval("#entries tbody tr", rows));

    const { folder: unpacked, files } = unzipped((await pressed(page, "#index button:has-text('ZIP')")).path);
    await wanted.setContent(files["index.html"].toString());
    const links = await wanted.$$eval("#entries a", (all) => all.map((link) => [link.textContent, link.getAttribute("href")]));
    assert.equal(links.length, Object.keys(files).length - 1);
    for (const [name, link] of links) {
      await drop(page, [path.join(folder, name)]);
      await said(page, `${name}: `);
      assert.ok((await download(page, "html")).bytes.equals(fs.readFileSync(path.join(unpacked, link))), `${name} in the archive`);
    }
  },
};
