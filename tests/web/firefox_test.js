// The page in headless Firefox: it starts, and the examples give their reports.
//
//   node firefox_test.js PAGE

import assert from "node:assert/strict";
import { createRequire } from "node:module";
import path from "node:path";
import { pathToFileURL } from "node:url";

const require = createRequire(path.join(process.cwd(), "modules.js"));
const puppeteer = require("puppeteer-core");

/** The status, once it begins so. Asked for again and again: Firefox 140 lets the page's policy forbid
    the function that puppeteer would wait with. */
async function statusOf(page, start) {
  const until = Date.now() + 60000;
  for (;;) {
    const said = await page.$eval("#status", (node) => node.textContent);
    if (said.startsWith(start)) return said;
    assert.ok(Date.now() < until, `no report on ${start} after a minute: ${said}`);
    await new Promise((resolve) => { setTimeout(resolve, 50); });
  }
}

const browser = await puppeteer.launch({ browser: "firefox", headless: true, timeout: 60000,
  executablePath: process.env.FIREFOX || "/usr/bin/firefox-esr" });
try {
  const page = await browser.newPage();
  const faults = [];
  page.on("console", (message) => { if (message.type() === "error") faults.push(message.text()); });
  page.on("pageerror", (error) => faults.push(error.message));
  await page.goto(pathToFileURL(path.resolve(process.argv[2])).href);
  for (const [name, prolines] of [["xcc2852", "5 prolines"], ["ybbr", "8 prolines"]]) {
    await page.click(`[data-example=${name}]`);
    const said = await statusOf(page, `${name}.tab`);
    assert.ok(said.includes(prolines), said);
    assert.ok(await page.$eval("#result", (node) => node.querySelectorAll("svg").length > 10));
  }
  assert.deepEqual(faults, []);
  console.log(`ok ${await browser.version()}`);
} finally {
  await browser.close();
}
