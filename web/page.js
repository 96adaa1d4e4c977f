"use strict";
// What is shown of one file, and what the user does.

// --- what is shown ---------------------------------------------------------------------------

const plainTitle = document.title;
let current = null; // { shifts, structure }
let shown = null; // the shifts that were analysed last
let asked = null; // owner of the job to show; the answer to an older one comes too late
let wishes = 0; // for files to see, so far
let granted = 0; // the number of the one that came true last

/** Begins a wish. It comes too late when a younger one has come true; one that is refused changes nothing. */
function newWish() {
  const mine = ++wishes;
  return { late: () => mine < granted, grant() { granted = mine; } };
}

function say(text) { byId("status").textContent = text; }

function complain(text) {
  byId("alert").textContent = text;
  byId("alert").hidden = !text;
}

function settings() {
  const form = byId("controls");
  const chosen = { rereference: form.rereference.checked, isotope: form.isotope.checked };
  for (const name of ["entity", "list", "copy", "chain"]) {
    if (form[name].dataset.chosen) chosen[name] = form[name].value;
  }
  return chosen;
}

/** Forgets choices of an earlier file, or those that hang on one that changed. Until the new ones are
    known there is nothing to choose from. */
function forget(names) {
  for (const name of names) {
    delete byId("controls")[name].dataset.chosen;
    byId("controls")[name].disabled = true;
  }
}

function showControls(info) {
  const offers = { entity: info.entities, list: info.lists, copy: info.copies, chain: info.chains };
  for (const [name, list] of Object.entries(offers)) {
    const select = byId("controls")[name];
    select.replaceChildren(...list.map(({ id, label, chosen }) => {
      const option = element("option", { value: id }, label);
      option.selected = chosen;
      return option;
    }));
    select.disabled = false;
    select.closest("label").hidden = list.length < 2;
  }
  byId("controls").hidden = false;
}

function showDecisions(info) {
  const { warnings, notes } = info;
  const count = (n, what) => `${n} ${what}${n === 1 ? "" : "s"}`;
  byId("decided").textContent = `${count(warnings.length, "warning")}, ${count(notes.length, "decision")}`;
  byId("notes").replaceChildren(
    ...warnings.map((text) => element("li", {}, element("strong", {}, "Warning: "), text)),
    ...notes.map((text) => element("li", {}, text)));
  byId("decisions").hidden = warnings.length + notes.length === 0;
}

/** Bytes of a page as a document of its own, whose scripts do not run. */
function parsed(html) {
  return new DOMParser().parseFromString(new TextDecoder().decode(html), "text/html");
}

function showReport(html) {
  const report = parsed(html);
  byId("result").replaceChildren(...report.querySelector("main").childNodes);
  document.title = report.title;
}

function clearResult() {
  byId("result").replaceChildren();
  for (const id of ["decisions", "downloads"]) byId(id).hidden = true;
  document.title = plainTitle;
}

/** Shows the report on the current files; false when there is none, or other ones came meanwhile. */
async function show() {
  if (asked) giveUp(asked);
  const mine = asked = { stopped: false };
  const job = { ...current, settings: settings() };
  const slow = setTimeout(() => mine.stopped || say("Working ..."), patience);
  try {
    const { info, outputs } = await run({ ...job, outputs: ["html"] }, mine);
    if (mine.stopped) return false;
    shown = job.shifts;
    document.body.classList.add("shown");
    showControls(info);
    showDecisions(info);
    showDownloads(job, info);
    showReport(outputs.html);
    const against = job.structure ? ` and ${job.structure.name}` : "";
    say(`${job.shifts.name}${against}: ${info.prolines.length} prolines in ${info.residues} residues.`);
    return true;
  } catch (error) {
    if (!mine.stopped) showNothing(error.message);
    return false;
  } finally {
    clearTimeout(slow);
  }
}

/** Instead of a report, why there is none. */
function showNothing(why) {
  clearResult();
  say("");
  complain(why);
  if (current.shifts === shown) return; // other choices may give one
  current = null; // a structure has nothing to stand beside
  byId("controls").hidden = true;
}

// --- files -----------------------------------------------------------------------------------

function isStructure(bytes) {
  const text = new TextDecoder("latin1").decode(bytes.subarray(0, 400000));
  return /^_atom_site\./m.test(text) || /^(HEADER|CRYST1|MODEL |ATOM {2}|HETATM)/m.test(text);
}

async function readFile(file) {
  if (file.size > largestFile) throw new Error(`${file.name}: larger than ${largestFile / 1e6} MB`);
  const packed = await file.arrayBuffer().catch(() => {
    throw new Error(`${file.name}: cannot be read; is it a folder, or gone?`);
  });
  return { name: file.name, bytes: await unpack(new Uint8Array(packed), file.name) };
}

async function exampleFiles(name) {
  const files = JSON.parse(new TextDecoder().decode(await unpack(decoded("examples"), "examples")));
  return files[name].map(([file, text]) => new File([text], file));
}

/** Takes what was dropped or chosen, or will be there soon: shifts, a structure beside them, or many files. */
async function take(coming) {
  const wish = newWish();
  complain("");
  try {
    const files = await coming;
    const read = files.length > 2 ? [] : await Promise.all(files.map(readFile));
    if (wish.late()) return;
    const structures = read.filter(({ bytes }) => isStructure(bytes));
    const shifts = read.filter((file) => !structures.includes(file));
    if (files.length > 2 || shifts.length > 1) {
      await takeMany(files, wish);
    } else if (shifts.length === 0 && !current) {
      complain(`${read[0].name}: this is a structure; drop the shifts first, or both together`);
    } else if (structures.length > 1) {
      complain("one structure at a time");
    } else {
      wish.grant();
      abandon();
      takeOne(shifts[0] || current.shifts, structures[0] || null);
    }
  } catch (error) {
    if (!wish.late()) complain(error.message);
  }
}

/** Shows shifts, and a structure beside them; the outcome of `show`. */
function takeOne(shifts, structure) {
  forget(shifts === (current && current.shifts) ? ["chain"] : ["entity", "list", "copy", "chain"]);
  current = { shifts, structure };
  byId("index").hidden = !shifts.fromIndex;
  document.body.classList.toggle("listed", Boolean(shifts.fromIndex));
  return show();
}

// --- events ----------------------------------------------------------------------------------

byId("choose").addEventListener("change", (event) => {
  if (event.target.files.length > 0) take([...event.target.files]);
  event.target.value = "";
});
addEventListener("dragover", (event) => { event.preventDefault(); byId("drop").classList.add("over"); });
addEventListener("dragleave", () => byId("drop").classList.remove("over"));
addEventListener("drop", (event) => {
  event.preventDefault();
  byId("drop").classList.remove("over");
  if (event.dataTransfer.files.length > 0) take([...event.dataTransfer.files]);
});
byId("use").addEventListener("click", () => take([new File([byId("text").value], "pasted.txt")]));
byId("stop").addEventListener("click", () => task && giveUp(task, 0));
byId("controls").addEventListener("submit", (event) => event.preventDefault());
byId("controls").addEventListener("change", ({ target }) => {
  if (target.name === "entity") forget(["list", "copy", "chain"]);
  if (target.name === "list") forget(["copy"]);
  if (target.tagName === "SELECT") target.dataset.chosen = "yes";
  complain("");
  if (current) show();
});
for (const each of document.querySelectorAll("[data-example]")) {
  each.addEventListener("click", () => take(exampleFiles(each.dataset.example)));
}
worker = startWorker();
worker.catch((error) => complain(error.message));
