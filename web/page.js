"use strict";
// What is shown of one file, and what the user does.

// --- what is shown ---------------------------------------------------------------------------

let current = null; // { shifts, structure }
let shown = null; // the shifts that were analysed last
let started = 0; // when files came, ms
let latest = 0; // of the requests to show; an older one that comes late is not shown

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

/** Forgets choices of an earlier file, or those that hang on one that changed. */
function forget(names) {
  for (const name of names) delete byId("controls")[name].dataset.chosen;
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
}

async function show() {
  const request = ++latest;
  try {
    const { info, outputs } = await run({ ...current, settings: settings(), outputs: ["html"] });
    if (request !== latest) return;
    shown = current.shifts;
    complain("");
    document.body.classList.add("shown");
    showControls(info);
    showDecisions(info);
    showDownloads(info);
    showReport(outputs.html);
    const against = current.structure ? ` and ${current.structure.name}` : "";
    say(`${current.shifts.name}${against}: ${info.prolines.length} prolines in ${info.residues} residues.`);
    // How long it took from the drop until all of it has its place, for whoever wants to know.
    byId("result").getBoundingClientRect();
    document.body.dataset.ms = String(performance.now() - started);
  } catch (error) {
    if (request !== latest) return;
    clearResult();
    say("");
    complain(error.message);
    if (current && current.shifts !== shown) current = null; // a structure has nothing to stand beside
  }
}

// --- files -----------------------------------------------------------------------------------

function isStructure(bytes) {
  const text = new TextDecoder("latin1").decode(bytes.subarray(0, 400000));
  return /^_atom_site\./m.test(text) || /^(HEADER|CRYST1|MODEL |ATOM {2}|HETATM)/m.test(text);
}

async function readFile(file) {
  if (file.size > largestFile) throw new Error(`${file.name}: larger than ${largestFile / 1e6} MB`);
  const bytes = await unpack(new Uint8Array(await file.arrayBuffer()), file.name);
  return { name: file.name, bytes };
}

/** Takes what was dropped or chosen: shifts, a structure beside them, or many files. */
async function take(files) {
  started = performance.now();
  complain("");
  abandon();
  if (files.length > 2) {
    await takeMany(files);
    return;
  }
  try {
    const read = await Promise.all(files.map(readFile));
    const structures = read.filter(({ bytes }) => isStructure(bytes));
    const shifts = read.filter((file) => !structures.includes(file));
    if (shifts.length > 1) {
      await takeMany(files);
    } else if (shifts.length === 0 && !current) {
      complain(`${read[0].name}: this is a structure; drop the shifts first, or both together`);
    } else if (structures.length > 1) {
      complain("one structure at a time");
    } else {
      takeOne(shifts[0] || current.shifts, structures[0] || null);
    }
  } catch (error) {
    complain(error.message);
  }
}

function takeOne(shifts, structure) {
  forget(shifts === (current && current.shifts) ? ["chain"] : ["entity", "list", "copy", "chain"]);
  current = { shifts, structure };
  byId("index").hidden = !shifts.fromIndex;
  document.body.classList.toggle("listed", Boolean(shifts.fromIndex));
  return show();
}

// --- events ----------------------------------------------------------------------------------

byId("choose").addEventListener("change", (event) => {
  take([...event.target.files]);
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
byId("stop").addEventListener("click", stop);
byId("controls").addEventListener("submit", (event) => event.preventDefault());
byId("controls").addEventListener("change", ({ target }) => {
  if (target.name === "entity") forget(["list", "copy", "chain"]);
  if (target.name === "list") forget(["copy"]);
  if (target.tagName === "SELECT") target.dataset.chosen = "yes";
  if (current) show();
});
for (const each of document.querySelectorAll("[data-example]")) {
  each.addEventListener("click", async () => {
    const files = JSON.parse(new TextDecoder().decode(await unpack(decoded("examples"), "examples")));
    take(files[each.dataset.example].map(([name, text]) => new File([text], name)));
  });
}
worker = startWorker();
worker.catch((error) => complain(`This browser cannot run the program: ${error.message}`));
