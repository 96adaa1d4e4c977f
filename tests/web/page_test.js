// The page as a user has it: opened from a file in headless Chromium.
//
//   node page_test.js PAGE SOURCE EXPECTED [PICTURES]
//
// EXPECTED holds a folder for each case of expected.py, with the outputs of the native programs.
// With PICTURES, what was seen is kept there. With ONLY in the environment, only tests with these
// words in their name are run.

import assert from "node:assert/strict";
import fs from "node:fs";
import path from "node:path";
import zlib from "node:zlib";
import { manyTests } from "./many_tests.js";
import { raceTests } from "./race_tests.js";
import {
  browser, choose, complained, deposition, download, drop, example, expected, faults, open, pictures, require, said,
  scratch, twoLists, unzipped,
} from "./support.js";

const tests = {
  async "every download has the bytes of the native programs"() {
    let compared = 0;
    for (const name of fs.readdirSync(expected).filter((entry) => /^\d/.test(entry))) {
      const folder = path.join(expected, name);
      const { settings, files } = JSON.parse(fs.readFileSync(path.join(folder, "case.json"), "utf8"));
      const page = await open();
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
      const { files: together } = unzipped((await download(page, "zip")).path);
      assert.deepEqual(Object.keys(together).sort(), Object.keys(single).sort(), `${name}: names in the archive`);
      for (const file of Object.keys(single)) assert.ok(together[file].equals(single[file]), `${name}: ${file} in the archive`);
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
    assert.ok(/reference structure has the other form/.test(await page.textContent("#result")));
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
    // A list has no controls of its own, and says what holds.
    await choose(page, ["ybbr.tab", "xcc2852.tab", "ubiquitin.tab"].map(example));
    await said(page, "All are taken as deuterated.");
  },

  async "two shift lists are a choice"() {
    const page = await open();
    await choose(page, [twoLists()]);
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
for (const [name, test] of Object.entries({ ...tests, ...raceTests, ...manyTests })) {
  if (!name.includes(process.env.ONLY || "")) continue;
  faults.length = 0;
  try {
    await test();
    assert.deepEqual(faults, [], "what the browser says");
    console.log(`ok ${name}`);
  } catch (error) {
    ++failed;
    console.log(`FAILED ${name}\n  ${error.message}`);
  }
  await Promise.all(browser.contexts().map((context) => context.close()));
}
await browser.close();
fs.rmSync(scratch, { recursive: true });
process.exit(failed ? 1 : 0);
