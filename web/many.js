"use strict";
// Many files: the list that the companion programs make, with entries that open here.

let task = null; // { stopped } of the files that are under way
let listed = null; // { rows, chosen }: the files of the list, and the settings that it was made with

/**
 * Does something with one file after the other, with progress and a way to stop.
 *
 * Gives what was made until the end or until it was stopped; null when other files came meanwhile.
 */
async function eachOf(items, action) {
  const mine = { stopped: false };
  const done = [];
  task = mine;
  byId("progress").hidden = false;
  for (const item of items) {
    byId("bar").value = done.length / items.length;
    byId("doing").textContent = `${done.length + 1} of ${items.length}: ${item.name}`;
    const made = await action(item);
    if (mine.stopped || task !== mine) break;
    done.push(made);
  }
  if (task !== mine) return null;
  abandon();
  return done;
}

function abandon() {
  task = null;
  byId("progress").hidden = true;
}

function stop() {
  if (task) task.stopped = true;
  if (stopWorker) stopWorker();
}

async function takeMany(files) {
  ++latest; // what is under way would come into the way
  current = null;
  clearResult();
  byId("index").hidden = true;
  byId("controls").hidden = true;
  forget(["entity", "list", "copy", "chain"]);
  const chosen = settings();
  say("");
  const rows = await eachOf(files, (file) => indexRow(file, chosen));
  if (!rows) return;
  listed = { rows, chosen };
  await showIndex();
  say(`${rows.length} of ${files.length} files, ${rows.filter((row) => row.error).length} cannot be used.`);
}

async function indexRow(source, chosen) {
  const row = { name: source.name, source };
  try {
    const shifts = await readFile(source);
    if (isStructure(shifts.bytes)) throw new Error("a structure: drop it with one file of shifts");
    const { info } = await run({ shifts, structure: null, settings: chosen });
    row.entry = info.entry;
    row.prolines = info.prolines;
  } catch (error) {
    row.error = error.message;
  }
  return row;
}

/** The list as a page, with a link for each file that has a report. */
async function indexPage(rows, linkOf) {
  const index = rows.map((row, at) => (row.error
    ? { name: row.name, message: row.error }
    : { name: row.name, page: linkOf(row, at), entry: row.entry }));
  return (await run({ name: "the list", index })).html;
}

async function showIndex() {
  try {
    const page = parsed(await indexPage(listed.rows, (row, at) => `#file-${at}`));
    byId("index").replaceChildren(
      ...page.querySelector("main").childNodes,
      element("p", { class: "buttons" }, button("Save all reports (ZIP)", saveReports),
              button("Save all prolines (TSV)", saveProlines)));
    startIndex();
    document.body.classList.add("shown", "listed");
    document.title = page.title;
    byId("index").hidden = false;
    focusListIfLost();
  } catch (error) {
    complain(error.message);
  }
}

/** For the keyboard, when the button to stop is gone. Browsers may let a hidden element keep the focus
    until they draw the next time. */
function focusListIfLost() {
  const holder = document.activeElement;
  if (holder === document.body || holder.closest("[hidden]")) byId("index").focus();
}

async function openRow(row) {
  try {
    const shifts = await readFile(row.source);
    shifts.fromIndex = true;
    await takeOne(shifts, null);
    byId("result").focus({ preventScroll: true }); // which would show its middle
    byId("result").scrollIntoView();
  } catch (error) {
    complain(error.message);
  }
}

byId("index").addEventListener("click", (event) => {
  const link = event.target.closest("tbody a");
  if (!link) return;
  event.preventDefault();
  openRow(listed.rows[Number(link.hash.slice("#file-".length))]);
});

/** The reports and the list in an archive; its links hold where it is unpacked. */
async function saveReports() {
  const { rows, chosen } = listed;
  const linkOf = (row, at) => `pages/${at + 1}-${row.name.slice(0, 60).replace(/[^\w.-]/g, "_")}.html`;
  const zip = new Zip();
  const reports = rows.map((row, at) => ({ ...row, page: linkOf(row, at) })).filter((row) => !row.error);
  try {
    const done = await eachOf(reports, async ({ source, page }) => {
      const { outputs } = await run({ shifts: await readFile(source), structure: null, settings: chosen, outputs: ["html"] });
      zip.add(page, outputs.html);
    });
    if (done) focusListIfLost();
    if (!done || done.length < reports.length) return;
    zip.add("index.html", await indexPage(rows, linkOf));
    save("citrans.zip", zip.blob());
  } catch (error) {
    abandon();
    complain(error.message);
  }
}

function saveProlines() {
  const plain = (text) => String(text ?? "").replace(/\s+/g, " ");
  const lines = [["file", "proline", "call", "p_cis", "p_cis_norm", "message"]];
  for (const { name, error, prolines } of listed.rows) {
    if (error || prolines.length === 0) lines.push([name, "", "", "", "", error]);
    else lines.push(...prolines.map((proline) => [name, proline.label, proline.call, proline.pCis, proline.pCisNorm, ""]));
  }
  save("citrans.tsv", lines.map((line) => line.map(plain).join("\t") + "\n").join(""));
}
