"use strict";
// Many files: the list that the companion programs make, with entries that open here.

let task = null; // owner of the jobs on the files that are under way
let listed = null; // { rows, chosen }: the files of the list, and the settings that it was made with

/**
 * Does something with one file after the other, with progress and a way to stop. The action gets the
 * file and the owner of its jobs.
 *
 * Gives what was made until the end or until it was stopped; null when other files came meanwhile.
 */
async function eachOf(items, action) {
  abandon();
  const mine = { stopped: false };
  const done = [];
  let replaced = false;
  task = mine;
  byId("progress").hidden = false;
  try {
    for (const item of items) {
      byId("bar").value = done.length / items.length;
      byId("doing").textContent = `${done.length + 1} of ${items.length}: ${item.name}`;
      const made = await action(item, mine);
      if (mine.stopped) break;
      done.push(made);
    }
  } catch (error) {
    if (!mine.stopped) throw error; // otherwise it is the end of the job
  } finally {
    replaced = task !== mine;
    if (!replaced) abandon();
  }
  return replaced ? null : done;
}

function abandon() {
  if (task) giveUp(task);
  task = null;
  byId("progress").hidden = true;
}

async function takeMany(files, wish) {
  wish.grant();
  if (asked) giveUp(asked);
  current = null;
  clearResult();
  for (const id of ["index", "controls"]) byId(id).hidden = true;
  forget(["entity", "list", "copy", "chain"]);
  const chosen = settings();
  say("");
  const rows = await eachOf(files, (file, owner) => indexRow(file, chosen, owner));
  if (!rows) return;
  const html = await indexPage(rows, (row, at) => `#file-${at}`);
  if (wish.late()) return;
  listed = { rows, chosen };
  showIndex(html);
  say(`${rows.length} of ${files.length} files, ${rows.filter((row) => row.error).length} cannot be used.` +
    (chosen.isotope ? " All are taken as deuterated." : "") +
    (chosen.rereference ? "" : " The referencing is left as it is."));
}

async function indexRow(source, chosen, owner) {
  const row = { name: source.name, source };
  try {
    const shifts = await readFile(source);
    if (isStructure(shifts.bytes)) throw new Error("a structure: drop it with one file of shifts");
    const { info } = await run({ shifts, structure: null, settings: chosen }, owner);
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

function showIndex(html) {
  const page = parsed(html);
  byId("index").replaceChildren(
    ...page.querySelector("main").childNodes,
    element("p", { class: "buttons" }, button("Save all reports (ZIP)", saveReports),
            button("Save all prolines (TSV)", saveProlines)));
  startIndex();
  document.body.classList.add("shown", "listed");
  document.title = page.title;
  byId("index").hidden = false;
  focusListIfLost();
}

/** For the keyboard, when the button to stop is gone. Browsers may let a hidden element keep the focus
    until they draw the next time. */
function focusListIfLost() {
  const holder = document.activeElement;
  if (holder === document.body || holder.closest("[hidden]")) byId("index").focus();
}

async function openRow(row) {
  const wish = newWish();
  complain("");
  try {
    const shifts = await readFile(row.source);
    if (wish.late()) return;
    wish.grant();
    shifts.fromIndex = true;
    if (!await takeOne(shifts, null)) return;
    byId("result").focus({ preventScroll: true }); // which would show its middle
    byId("result").scrollIntoView();
  } catch (error) {
    if (!wish.late()) complain(error.message);
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
  complain("");
  const { rows, chosen } = listed;
  const linkOf = (row, at) => `pages/${at + 1}-${row.name.slice(0, 60).replace(/[^\w.-]/g, "_")}.html`;
  const zip = new Zip();
  const reports = rows.map((row, at) => ({ ...row, page: linkOf(row, at) })).filter((row) => !row.error);
  try {
    const done = await eachOf(reports, async ({ source, page }, owner) => {
      const job = { shifts: await readFile(source), structure: null, settings: chosen, outputs: ["html"] };
      zip.add(page, (await run(job, owner)).outputs.html);
    });
    if (!done) return;
    if (done.length < reports.length) {
      say("Stopped: no archive is saved.");
      return;
    }
    zip.add("index.html", await indexPage(rows, linkOf));
    save("citrans.zip", zip.blob());
  } catch (error) {
    complain(error.message);
  } finally {
    focusListIfLost();
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
