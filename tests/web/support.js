// What the tests of the page share: a browser with the page, and what a user does with it.
//
// The arguments are those of page_test.js. The modules are found in the working directory.

import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { createRequire } from "node:module";
import fs from "node:fs";
import os from "node:os";
import path from "node:path";
import { pathToFileURL } from "node:url";

export const require = createRequire(path.join(process.cwd(), "modules.js"));
const { chromium } = require("playwright-core");
const [pageFile, source, ...folders] = process.argv.slice(2).map((name) => path.resolve(name));
export const [expected, pictures] = folders;
export const example = (name) => path.join(source, "examples", name);
export const deposition = path.join(source, "fuzz/corpus/deposition/16570-81-83.str");
export const scratch = fs.mkdtempSync(path.join(os.tmpdir(), "citrans-page-"));

export const browser = await chromium.launch({ executablePath: process.env.CHROMIUM || "/usr/bin/chromium", args: ["--no-sandbox"] });
export const faults = [];

export async function open(options = {}) {
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
export async function drop(page, files) {
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

export const choose = (page, files) => page.setInputFiles("#choose", files);
export const said = (page, text, timeout = 120000) => page.waitForFunction((wanted) =>
  document.getElementById("status").textContent.includes(wanted), text, { timeout });
export const complained = async (page, text) => {
  await page.waitForFunction((wanted) => !document.getElementById("alert").hidden &&
    document.getElementById("alert").textContent.includes(wanted), text, { timeout: 90000 });
};

const saves = []; // when the last ones were asked for, ms

/** Presses what saves a file. Chromium refuses more than ten in a second. */
export async function pressed(page, selector) {
  const wait = saves.length < 9 ? 0 : saves.shift() + 1100 - Date.now();
  if (wait > 0) await new Promise((resolve) => { setTimeout(resolve, wait); });
  saves.push(Date.now());
  const [file] = await Promise.all([page.waitForEvent("download", { timeout: 120000 }), page.click(selector)]);
  return { name: file.suggestedFilename(), path: await file.path(), bytes: fs.readFileSync(await file.path()) };
}

export async function download(page, kind) {
  await page.evaluate(() => { document.getElementById("more").open = true; });
  return pressed(page, `[data-kind=${kind}]`);
}

/** A deposition with two shift lists. */
export function twoLists() {
  const text = fs.readFileSync(deposition, "utf8");
  const file = path.join(scratch, "two.str");
  const frame = text.slice(text.indexOf("save_l\n"));
  assert.ok(frame.length > 1000);
  // The rows name their list in the last column.
  const other = frame.replace("save_l", "save_other").replace("_shift_list.ID 1", "_shift_list.ID 2").replace(/ 16570 1$/gm, " 16570 2");
  fs.writeFileSync(file, text + "\n" + other);
  return file;
}

/** Unpacks an archive with another program, which looks at its checksums; the files by name. */
export function unzipped(archive) {
  const folder = fs.mkdtempSync(path.join(scratch, "zip-"));
  execFileSync("/usr/bin/python3", ["-m", "zipfile", "-e", archive, folder]);
  const names = fs.readdirSync(folder, { recursive: true }).filter((name) => fs.statSync(path.join(folder, name)).isFile());
  return { folder, files: Object.fromEntries(names.map((name) => [name, fs.readFileSync(path.join(folder, name))])) };
}
