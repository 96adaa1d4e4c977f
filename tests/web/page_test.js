// The page as a user has it: opened from a file in headless Chromium.
//
//   node page_test.js PAGE SOURCE EXPECTED [PICTURES]
//
// EXPECTED holds a folder for each case of expected.py, with the outputs of the native programs.
// With PICTURES, what was seen is kept there. The modules are found in the working directory.

import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { createRequire } from "node:module";
import fs from "node:fs";
import os from "node:os";
import path from "node:path";
import zlib from "node:zlib";
import { pathToFileURL } from "node:url";

const require = createRequire(path.join(process.cwd(), "modules.js"));
const { chromium } = require("playwright-core");
const [pageFile, source, expected, pictures] = process.argv.slice(2).map((name) => path.resolve(name));
const example = (name) => path.join(source, "examples", name);
const deposition = path.join(source, "fuzz/corpus/deposition/16570-81-83.str");
const scratch = fs.mkdtempSync(path.join(os.tmpdir(), "citrans-page-"));

const browser = await chromium.launch({ executablePath: process.env.CHROMIUM || "/usr/bin/chromium", args: ["--no-sandbox"] });
const faults = [];

async function open(options = {}) {
  const context = await browser.newContext({ acceptDownloads: true, ...options });
  const page = await context.newPage();
  page.on("request", (request) => {
    if (!/^(blob|data):/.test(request.url()) && request.url().split("#")[0] !== pathToFileURL(pageFile).href) {
      faults.push(`asks for ${request.url()}`);
    }
  });
  page.on("console", (message) => { if (message.type() === "error") faults.push(`logs ${message.text()}`); });
  page.on("pageerror", (error) => faults.push(`throws ${error.message}`));
  await page.goto(pathToFileURL(pageFile).href);
  return page;
}

/** Drops files as the mouse does. */
async function drop(page, files) {
  const data = files.map((file) => [path.basename(file), fs.readFileSync(file).toString("base64")]);
  const transfer = await page.evaluateHandle((list) => {
    const made = new DataTransfer();
    for (const [name, text] of list) {
      made.items.add(new File([Uint8Array.from(atob(text), (c) => c.charCodeAt(0))], name));
    }
    return made;
  }, data);
  await page.dispatchEvent("#drop", "drop", { dataTransfer: transfer });
}

const choose = (page, files) => page.setInputFiles("#choose", files);
const said = (page, text) => page.waitForFunction((wanted) =>
  document.getElementById("status").textContent.includes(wanted), text, { timeout: 60000 });
const complained = async (page, text) => {
  await page.waitForFunction((wanted) => !document.getElementById("alert").hidden &&
    document.getElementById("alert").textContent.includes(wanted), text, { timeout: 90000 });
};

async function pressed(page, selector) {
  const [file] = await Promise.all([page.waitForEvent("download", { timeout: 120000 }), page.click(selector)]);
  return { name: file.suggestedFilename(), path: await file.path(), bytes: fs.readFileSync(await file.path()) };
}

async function download(page, kind) {
  await page.evaluate(() => { document.getElementById("more").open = true; });
  return pressed(page, `[data-kind=${kind}]`);
}

/** Unpacks an archive with another program, which looks at its checksums; the files by name. */
function unzipped(archive) {
  const folder = fs.mkdtempSync(path.join(scratch, "zip-"));
  execFileSync("/usr/bin/python3", ["-m", "zipfile", "-e", archive, folder]);
  const names = fs.readdirSync(folder, { recursive: true }).filter((name) => fs.statSync(path.join(folder, name)).isFile());
  return { folder, files: Object.fromEntries(names.map((name) => [name, fs.readFileSync(path.join(folder, name))])) };
}

const tests = {
  async "every download has the bytes of the native programs"() {
    let compared = 0;
    for (const name of fs.readdirSync(expected).filter((entry) => /^\d/.test(entry))) {
      const folder = path.join(expected, name);
      const { settings, files } = JSON.parse(fs.readFileSync(path.join(folder, "case.json"), "utf8"));
      const page = await open();
      await page.uncheck("[name=rereference]", { force: true }).catch(() => {});
      await page.evaluate((wanted) => {
        for (const key of ["rereference", "isotope"]) document.getElementById("controls")[key].checked = !!wanted[key];
      }, settings);
      await drop(page, files);
      await said(page, "prolines in");
      const single = {};
      for (const shown of await page.$$("[data-kind]:not([data-kind=zip])")) {
        const kind = await shown.getAttribute("data-kind");
        const { name: file, bytes } = await download(page, kind);
        assert.ok(bytes.equals(fs.readFileSync(path.join(folder, kind))), `${name}: ${kind} differs`);
        single[file] = bytes;
        ++compared;
      }
      await page.waitForTimeout(1100); // Chromium refuses more than ten a second
      const { files: together } = unzipped((await download(page, "zip")).path);
      assert.deepEqual(Object.keys(together).sort(), Object.keys(single).sort(), `${name}: names in the archive`);
      for (const file of Object.keys(single)) assert.ok(together[file].equals(single[file]), `${name}: ${file} in the archive`);
      await page.context().close();
    }
    assert.ok(compared >= 40, `${compared} compared`);
    console.log(`  ${compared} downloads compared`);
  },

  async "choosing, gzip, and a structure that comes later"() {
    const page = await open();
    const packed = path.join(scratch, "ybbr.tab.gz");
    fs.writeFileSync(packed, zlib.gzipSync(fs.readFileSync(example("ybbr.tab"))));
    await choose(page, [packed]);
    await said(page, "ybbr.tab.gz: ");
    assert.equal(await page.locator("#result th", { hasText: "ω of the reference" }).count(), 0);
    await choose(page, [example("ybbr_2kpu.pdb")]);
    await said(page, "and ybbr_2kpu.pdb");
    assert.ok(await page.locator("#result th", { hasText: "ω of the reference" }).count() > 0);
    // The names that the programs give, or are given in the manual.
    const { name, path: archive } = await download(page, "zip");
    assert.equal(name, "ybbr.zip");
    assert.deepEqual(Object.keys(unzipped(archive).files).sort(), ["ybbr.cxc", "ybbr.evidence.tsv", "ybbr.html", "ybbr.json",
      "ybbr.pml", "ybbr.pred.tab", "ybbr.predAdjCS.tab", "ybbr.svg", "ybbr.tab", "ybbr_2kpu.ref.pdb"]);
  },

  async "pasting text, and the example buttons"() {
    const page = await open();
    await page.click("#paste summary");
    await page.fill("#text", fs.readFileSync(example("ubiquitin.tab"), "utf8"));
    await page.click("#use");
    await said(page, "pasted.txt: 3 prolines in 76 residues");
    await page.click("[data-example=xcc2852]");
    await said(page, "xcc2852_1ttz.pdb: ");
    assert.ok(/against the structure|disagree/i.test(await page.textContent("#result")));
    await page.click("[data-example=ybbr]");
    await said(page, "ybbr_2kpu.pdb");
  },

  async "a control gives a new result; those without a choice are not there"() {
    const page = await open();
    assert.ok(await page.isHidden("#controls"));
    await choose(page, [example("xcc2852.tab")]);
    await said(page, "xcc2852.tab: ");
    for (const name of ["entity", "list", "copy", "chain"]) assert.ok(!await page.isVisible(`[name=${name}]`), name);
    const before = (await download(page, "secondary")).bytes;
    await page.check("[name=isotope]");
    await page.waitForFunction(() => /Isotope/.test(document.getElementById("result").textContent));
    assert.ok(!(await download(page, "secondary")).bytes.equals(before));
  },

  async "two shift lists are a choice"() {
    const page = await open();
    const text = fs.readFileSync(deposition, "utf8");
    const file = path.join(scratch, "two.str");
    const frame = text.slice(text.indexOf("save_l\n"));
    assert.ok(frame.length > 1000);
    // The rows name their list in the last column.
    const other = frame.replace("save_l", "save_other").replace("_shift_list.ID 1", "_shift_list.ID 2").replace(/ 16570 1$/gm, " 16570 2");
    fs.writeFileSync(file, text + "\n" + other);
    await choose(page, [file]);
    await said(page, "two.str: ");
    assert.ok(await page.isVisible("[name=list]"));
    const lists = await page.locator("[name=list] option").count();
    assert.equal(lists, 2);
    await page.selectOption("[name=list]", { index: 1 });
    await page.waitForFunction(() => /shift list 2/.test(document.getElementById("notes").textContent));
  },

  async "what cannot be read gets a line, and the page goes on"() {
    const page = await open();
    const broken = {
      "empty.str": ["", "empty.str"],
      "noise.str": [Buffer.from(Array.from({ length: 5000 }, (_, i) => (i * 7919) % 251)), "noise.str"],
      "cut.str.gz": [zlib.gzipSync(fs.readFileSync(deposition)).subarray(0, 200), "damaged or cut short"],
      "huge.str.gz": [zlib.gzipSync(Buffer.alloc(120e6)), "larger than 100 MB"],
      "long.tab": ["DATA SEQUENCE " + "P".repeat(2e6) + "\nVARS RESID RESNAME ATOMNAME SHIFT\nFORMAT %4d %1s %4s %8.3f\n1 P CA 60.0\n",
        "too much"],
      "header.tab": ["VARS RESID RESNAME ATOMNAME SHIFT\nFORMAT %4d %1s %4s %8.3f\n", "sequence"],
      "markup.str": ["<img src=x onerror=alert(1)>", "markup.str"],
    };
    for (const [name, [content, line]] of Object.entries(broken)) {
      const file = path.join(scratch, name);
      fs.writeFileSync(file, content);
      await choose(page, [file]);
      await complained(page, line).catch(() => assert.fail(`${name}: no message with '${line}'`));
      assert.equal(await page.locator("#result > *").count(), 0);
    }
    await choose(page, [example("ubiquitin_1ubq.pdb")]);
    await complained(page, "structure");
    await choose(page, [example("ybbr.tab")]);
    await said(page, "ybbr.tab: ");
    assert.ok(await page.isHidden("#alert"));
  },

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
      new PerformanceObserver((list) => {
        for (const { duration } of list.getEntries()) globalThis.longest = Math.max(globalThis.longest, duration);
      }).observe({ type: "longtask" });
    });
    const start = Date.now();
    await choose(page, files);
    await said(page, "1000 of 1000 files, 1 cannot be used.");
    const longest = await page.evaluate(() => globalThis.longest);
    console.log(`  1000 files in ${Date.now() - start} ms, the longest pause ${longest} ms`);
    assert.ok(longest < 2000, `a pause of ${longest} ms`);

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

  async "many files can be stopped, and give way to one"() {
    const page = await open();
    const files = [];
    for (let i = 0; i < 300; ++i) {
      files.push(path.join(scratch, `some-${i}.tab`));
      fs.copyFileSync(example("ybbr.tab"), files[i]);
    }
    await choose(page, files);
    await page.waitForFunction(() => document.getElementById("bar").value > 0);
    await page.focus("#stop");
    await page.keyboard.press("Enter");
    await said(page, "of 300 files, 0 cannot be used.");
    const rows = await page.locator("#index tbody tr").count();
    assert.ok(rows > 0 && rows < 300, `${rows} rows`);
    assert.equal(await page.evaluate(() => document.activeElement.id), "index");

    await choose(page, files);
    await page.waitForFunction(() => document.getElementById("bar").value > 0);
    await choose(page, [example("ubiquitin.tab")]);
    await said(page, "ubiquitin.tab: 3 prolines");
    await page.waitForTimeout(500); // what was under way would have come by then
    assert.ok(await page.isHidden("#index") && await page.isHidden("#progress"));
    assert.match(await page.textContent("#status"), /^ubiquitin/);
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

  async "the report comes quickly"() {
    const page = await open();
    const times = [];
    for (let i = 0; i < 11; ++i) {
      await page.evaluate(() => { delete document.body.dataset.ms; });
      await choose(page, [process.env.TIMED || example("ybbr.tab")]);
      await page.waitForFunction(() => document.body.dataset.ms);
      times.push(Number(await page.evaluate(() => document.body.dataset.ms)));
    }
    const median = times.slice(1).sort((a, b) => a - b)[5];
    console.log(`  median ${median.toFixed(0)} ms, first ${times[0].toFixed(0)} ms`);
    assert.ok(median < 1000, `${median} ms`); // generous, for loaded machines
  },

  async "nothing for axe to find, light and dark, with and without a report; phones need no scrolling aside"() {
    const axe = fs.readFileSync(require.resolve("axe-core/axe.min.js"), "utf8");
    for (const [name, options] of Object.entries({
      wide: { viewport: { width: 1280, height: 900 } },
      dark: { viewport: { width: 1280, height: 900 }, colorScheme: "dark" },
      phone: { viewport: { width: 390, height: 844 } },
    })) {
      const page = await open({ ...options, bypassCSP: true });
      for (const state of ["empty", "list", "report"]) {
        if (state === "list") {
          await choose(page, ["ybbr.tab", "xcc2852.tab", "ubiquitin_1ubq.pdb"].map(example));
          await said(page, "1 cannot be used.");
        }
        if (state === "report") {
          await choose(page, [example("ybbr.tab"), example("ybbr_2kpu.pdb")]);
          await said(page, "ybbr_2kpu.pdb: ");
        }
        await page.evaluate(axe);
        const { violations } = await page.evaluate(() => globalThis.axe.run());
        assert.deepEqual(violations.map(({ id, nodes }) => `${id}: ${nodes[0].html}`), [], `${name}, ${state}`);
        assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= innerWidth), `${name}, ${state}: too wide`);
        if (pictures) await page.screenshot({ path: path.join(pictures, `${name}-${state}.png`), fullPage: state !== "report" });
      }
      await page.emulateMedia({ media: "print" });
      for (const id of ["open", "controls", "downloads"]) assert.ok(await page.isHidden(`#${id}`), `${id} on paper`);
      if (pictures && name === "wide") {
        await page.setViewportSize({ width: 703, height: 1000 });
        await page.screenshot({ path: path.join(pictures, "print.png") });
      }
      await page.context().close();
    }
  },

  async "the keyboard reaches everything"() {
    const page = await open();
    const reached = [];
    for (let i = 0; i < 8; ++i) {
      await page.keyboard.press("Tab");
      reached.push(await page.evaluate(() => document.activeElement.id || document.activeElement.dataset.example || document.activeElement.tagName));
    }
    for (const id of ["choose", "ybbr", "xcc2852", "SUMMARY"]) assert.ok(reached.includes(id), `${id} not among ${reached}`);
    await page.focus("[data-example=ybbr]");
    await page.keyboard.press("Enter");
    await said(page, "ybbr_2kpu.pdb");
  },
};

let failed = 0;
for (const [name, test] of Object.entries(tests)) {
  faults.length = 0;
  try {
    await test();
    assert.deepEqual(faults, [], "what the browser says");
    console.log(`ok ${name}`);
  } catch (error) {
    ++failed;
    console.log(`FAILED ${name}\n  ${error.message}`);
  }
}
await browser.close();
fs.rmSync(scratch, { recursive: true });
process.exit(failed ? 1 : 0);
