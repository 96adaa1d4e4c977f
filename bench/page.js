// Times the page on one file, and a command in alternation.
//
//   node page.js MODULES PAGE FILE RUNS COMMAND [ARGUMENT]...

"use strict";
const { spawnSync } = require("node:child_process");
const fs = require("node:fs");
const { createRequire } = require("node:module");
const path = require("node:path");
const { pathToFileURL } = require("node:url");

const [modules, pageFile, file, runs, command, ...options] = process.argv.slice(2);
const { chromium } = createRequire(path.resolve(modules, "modules.js"))("playwright-core");

/** In the page: the time from the drop until all of the report has its place, ms. */
function dropped([name, base64]) {
  const shifts = new File([Uint8Array.from(atob(base64), (c) => c.charCodeAt(0))], name);
  const [drop, status, alert, result] = ["drop", "status", "alert", "result"].map((id) => document.getElementById(id));
  const transfer = new DataTransfer();
  transfer.items.add(shifts);
  return new Promise((resolve, reject) => {
    const start = performance.now();
    const observer = new MutationObserver(() => {
      if (!alert.hidden) reject(new Error(alert.textContent));
      if (!status.textContent.startsWith(`${name}: `)) return;
      observer.disconnect();
      result.getBoundingClientRect();
      resolve(performance.now() - start);
    });
    for (const each of [status, alert]) observer.observe(each, { childList: true });
    drop.dispatchEvent(new DragEvent("drop", { dataTransfer: transfer, bubbles: true }));
  });
}

/** The time of the command, ms. */
function run() {
  const start = performance.now();
  const { status, stderr, error } = spawnSync(command, options, { encoding: "utf8" });
  if (status !== 0) throw error || new Error(stderr.trim());
  return performance.now() - start;
}

const median = (times) => times.sort((a, b) => a - b)[times.length >> 1];

async function main() {
  const browser = await chromium.launch({ executablePath: process.env.CHROMIUM || "/usr/bin/chromium", args: ["--no-sandbox"] });
  try {
    const page = await browser.newPage();
    await page.goto(pathToFileURL(path.resolve(pageFile)).href);
    const bytes = fs.readFileSync(file);
    const times = { page: [], command: [] };
    const dropOnce = () => page.evaluate(dropped, [path.basename(file), bytes.toString("base64")]);
    const first = await dropOnce(); // which waits for the program to be loaded
    for (let i = 0; i < Number(runs); ++i) {
      times.page.push(await dropOnce());
      times.command.push(run());
    }
    const [ours, theirs] = [times.page, times.command].map(median);
    console.log(`${path.basename(file)}, ${(bytes.length / 1000).toFixed(0)} kB, median of ${runs}; the first ${first.toFixed(0)} ms`);
    console.log(`the page : ${path.basename(command)}   ${ours.toFixed(1)}   ${theirs.toFixed(1)} ms   ${(ours / theirs).toFixed(2)}`);
  } finally {
    await browser.close();
  }
}

main().catch((error) => { console.error(`page.js: ${error.message.split("\n")[0]}`); process.exitCode = 1; });
