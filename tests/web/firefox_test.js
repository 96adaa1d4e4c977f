// The page in headless Firefox: it starts, and the examples give their reports.
//
//   node firefox_test.js PAGE

import assert from "node:assert/strict";
import { createRequire } from "node:module";
import path from "node:path";
import { pathToFileURL } from "node:url";

const require = createRequire(path.join(process.cwd(), "modules.js"));
const puppeteer = require("puppeteer-core");

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
    await page.waitForFunction((start) => document.getElementById("status").textContent.startsWith(start),
      { timeout: 60000 }, `${name}.tab`);
    const said = await page.$eval("#status", (node) => node.textContent);
    assert.ok(said.includes(prolines), said);
    assert.ok(await page.$eval("#result", (node) => node.querySelectorAll("svg").length > 10));
  }
  assert.deepEqual(faults, []);
  console.log(`ok ${await browser.version()}`);
} finally {
  await browser.close();
}
