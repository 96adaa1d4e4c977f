// What the user does while something else is under way. Files that the page reads and jobs of the
// program wait here until they are let go, so that each order of events is the same every time.

import assert from "node:assert/strict";
import fs from "node:fs";
import path from "node:path";
import { choose, complained, download, example, open, pressed, said, scratch, twoLists } from "./support.js";

/** A page where `hold` can make files and jobs wait. */
async function openHeld() {
  const page = await open();
  await page.evaluate(() => {
    globalThis.gates = {};
    const { arrayBuffer } = Blob.prototype;
    Blob.prototype.arrayBuffer = async function read() {
      const gate = gates[`reads ${this.name}`];
      gate?.reached();
      await gate?.opened;
      return arrayBuffer.call(this);
    };
    const { postMessage } = Worker.prototype;
    Worker.prototype.postMessage = async function post(job) {
      const gate = gates[`runs ${job.name}`];
      gate?.reached();
      await gate?.opened;
      postMessage.call(this, job);
    };
  });
  return page;
}

/** Waits until the page has done what the last event set off: time to read a file, then the program. */
const settled = (page) => page.evaluate(async () => {
  await new Promise((resolve) => { setTimeout(resolve, 300); });
  for (let before = null; before !== queue;) {
    before = queue;
    await queue;
    await new Promise((resolve) => { setTimeout(resolve); });
  }
});

/** Holds "reads NAME" or "runs NAME". Gives functions that wait until a job has come there, and that
    let it go and wait until the page has done what it does then. */
async function hold(page, what) {
  await page.evaluate((key) => {
    const gate = globalThis.gates[key] = {};
    gate.opened = new Promise((resolve) => { gate.open = resolve; });
    gate.waiting = new Promise((resolve) => { gate.reached = resolve; });
  }, what);
  return {
    reached: () => page.evaluate((key) => globalThis.gates[key].waiting, what),
    async letGo() {
      await page.evaluate((key) => {
        globalThis.gates[key].open();
        delete globalThis.gates[key];
      }, what);
      await settled(page);
    },
  };
}

const status = (page) => page.textContent("#status");
const threeFiles = ["ybbr.tab", "ubiquitin.tab", "xcc2852.tab"].map(example);

function damaged() {
  const file = path.join(scratch, "damaged.tab.gz");
  fs.writeFileSync(file, Buffer.from([0x1f, 0x8b, 8, 0, 0, 0]));
  return file;
}

export const raceTests = {
  async "files that came first do not replace those that came later"() {
    const page = await openHeld();
    const slow = await hold(page, "reads ybbr.tab");
    await choose(page, [example("ybbr.tab")]);
    await choose(page, [example("ubiquitin.tab")]);
    await said(page, "ubiquitin.tab: ");
    await slow.letGo();
    assert.match(await status(page), /^ubiquitin/);
    // Nor does their message.
    const refused = await hold(page, "reads damaged.tab.gz");
    await choose(page, [damaged()]);
    await choose(page, [example("xcc2852.tab")]);
    await said(page, "xcc2852.tab: ");
    await refused.letGo();
    assert.ok(await page.isHidden("#alert"));
    // An example takes its time to be unpacked.
    await page.evaluate(() => {
      document.querySelector("[data-example=ybbr]").click();
      document.getElementById("use").click();
    });
    await complained(page, "pasted.txt");
    await settled(page);
    await complained(page, "pasted.txt");
  },

  async "a list that is made does not come over a file that came later"() {
    const page = await openHeld();
    const list = await hold(page, "runs the list");
    await choose(page, threeFiles);
    await list.reached();
    await choose(page, [example("ubiquitin.tab")]);
    await list.letGo();
    await said(page, "ubiquitin.tab: ");
    assert.ok(await page.isHidden("#index"));
  },

  async "the row that was opened last is shown"() {
    const page = await openHeld();
    await choose(page, threeFiles);
    await said(page, "3 of 3 files");
    const slow = await hold(page, "reads ybbr.tab");
    await page.click("#index a:has-text('ybbr')");
    await page.click("#index a:has-text('xcc2852')");
    await said(page, "xcc2852.tab: ");
    await slow.letGo();
    assert.match(await status(page), /^xcc2852/);
  },

  async "what is saved is what is shown, also when another file is on its way"() {
    const page = await openHeld();
    await choose(page, [example("ybbr.tab")]);
    await said(page, "ybbr.tab: ");
    const before = await pressed(page, "[data-kind=html]");
    const other = await hold(page, "runs ubiquitin.tab");
    await choose(page, [example("ubiquitin.tab")]);
    await other.reached();
    const saved = page.waitForEvent("download");
    await page.evaluate(() => document.querySelector("[data-kind=html]").click());
    await other.letGo();
    const after = await saved;
    assert.equal(after.suggestedFilename(), before.name);
    assert.ok(fs.readFileSync(await after.path()).equals(before.bytes), "bytes of the other file");
  },

  async "choices are those of the file that is shown"() {
    const page = await openHeld();
    await choose(page, [twoLists()]);
    await said(page, "two.str: ");
    assert.ok(await page.isEnabled("[name=list]"));
    const other = await hold(page, "runs ybbr.tab");
    await choose(page, [example("ybbr.tab")]);
    await other.reached();
    assert.ok(await page.isDisabled("[name=list]"));
    await said(page, "Working");
    await other.letGo();
    await said(page, "ybbr.tab: ");
    await choose(page, [example("ubiquitin_1ubq.pdb")].concat(path.join(scratch, "two.str")));
    await complained(page, "ubiquitin_1ubq.pdb");
    assert.ok(await page.isHidden("#controls"), "choices of nothing");
  },

  async "what is refused changes nothing, and its message stays when what came earlier is shown"() {
    const page = await openHeld();
    for (const [what, files, words] of [
      ["reads ybbr.tab", [example("ybbr.tab")], "ybbr.tab: "],
      ["runs xcc2852.tab", [example("xcc2852.tab")], "xcc2852.tab: "],
      ["runs ubiquitin.tab", threeFiles, "3 of 3 files"],
    ]) {
      const slow = await hold(page, what);
      await choose(page, files);
      await slow.reached();
      await choose(page, [damaged()]);
      await complained(page, "damaged.tab.gz");
      await slow.letGo();
      await said(page, words);
      await complained(page, "damaged.tab.gz");
    }
    await page.click("#index a:has-text('ybbr')");
    await said(page, "ybbr.tab: ");
    assert.ok(await page.isHidden("#alert"));
  },

  async "stopping the archive ends what belongs to it, without a message, and the list gets the focus"() {
    const page = await openHeld();
    await choose(page, threeFiles);
    await said(page, "3 of 3 files");
    const first = await hold(page, "runs ybbr.tab");
    await page.click("#index button:has-text('ZIP')");
    await first.reached();
    await page.focus("#stop");
    await page.keyboard.press("Enter");
    await said(page, "Stopped");
    assert.ok(await page.isHidden("#alert"));
    assert.equal(await page.evaluate(() => document.activeElement.id), "index");
    await first.letGo();

    // A row that is being opened meanwhile does not belong to it.
    const second = await hold(page, "reads ubiquitin.tab");
    await page.click("#index button:has-text('ZIP')");
    await page.waitForFunction(() => document.getElementById("doing").textContent.startsWith("2 "));
    const row = await hold(page, "runs ybbr.tab");
    await page.click("#index a:has-text('ybbr')");
    await row.reached();
    await page.click("#stop");
    await row.letGo();
    await said(page, "ybbr.tab: ");
    assert.ok(await page.isHidden("#alert"));
    await second.letGo();
    assert.ok(await page.isHidden("#progress"));
  },

  async "what nobody waits for any more is ended"() {
    const page = await openHeld();
    for (const files of [[example("ybbr.tab")], threeFiles]) {
      const never = await hold(page, "runs ybbr.tab");
      await choose(page, files);
      await never.reached();
      await choose(page, [example("ubiquitin.tab")]);
      await said(page, "ubiquitin.tab: ", 30000); // half of what a job may take
      await settled(page);
      assert.ok(await page.isHidden("#index") && await page.isHidden("#progress"));
      assert.match(await status(page), /^ubiquitin/);
      await page.evaluate(() => { globalThis.gates = {}; });
    }
  },

  async "a list that is stopped holds what was done, and gets the focus"() {
    const page = await openHeld();
    const files = Array.from({ length: 9 }, (_, i) => path.join(scratch, `some-${i}.tab`));
    for (const file of files) fs.copyFileSync(example("ybbr.tab"), file);
    for (const [what, press] of [
      ["runs some-5.tab", () => page.keyboard.press("Enter")],
      // Between two jobs, when the list may come before the next picture.
      ["reads some-5.tab", () => page.evaluate(() => {
        document.getElementById("stop").click();
        globalThis.gates["reads some-5.tab"].open();
      })],
    ]) {
      const sixth = await hold(page, what);
      await choose(page, files);
      await sixth.reached();
      await page.focus("#stop");
      await press();
      await said(page, "5 of 9 files, 0 cannot be used.");
      assert.equal(await page.locator("#index tbody tr").count(), 5);
      assert.equal(await page.evaluate(() => document.activeElement.id), "index");
      await sixth.letGo();
    }
  },

  async "a program that does not start, and a file that is gone, get a line"() {
    const page = await openHeld();
    const files = threeFiles.map((file) => path.join(scratch, `gone-${path.basename(file)}`));
    files.forEach((file, i) => fs.copyFileSync(threeFiles[i], file));
    await choose(page, files);
    await said(page, "3 of 3 files");
    fs.rmSync(files[0]);
    await page.click("#index a:has-text('gone-ybbr')");
    await complained(page, "gone-ybbr.tab: cannot be read");
    await page.evaluate(() => { dropWorker(); module_ = new Uint8Array(9); });
    await page.click("#index a:has-text('gone-ubiquitin')");
    await complained(page, "cannot run the program");
    await page.evaluate(() => { module_ = null; });
    await page.click("#index a:has-text('gone-ubiquitin')");
    await said(page, "gone-ubiquitin.tab: ");
  },
};
