"use strict";
// Many files: a list that sorts and opens.

let stopped = false;

async function takeMany(files) {
  const rows = [];
  ++latest; // what is under way would come into the way
  stopped = false;
  current = null;
  clearResult();
  forget(["entity", "list", "copy", "chain"]);
  byId("controls").hidden = true;
  byId("progress").hidden = false;
  const chosen = settings();
  for (const [at, file] of files.entries()) {
    if (stopped) break;
    byId("bar").value = at / files.length;
    say(`${at + 1} of ${files.length}: ${file.name}`);
    rows.push(await indexRow(file, chosen));
  }
  byId("progress").hidden = true;
  say(`${rows.length} of ${files.length} files, ${rows.filter((row) => row.error).length} cannot be used.`);
  showIndex(rows);
}

async function indexRow(file, chosen) {
  const row = { file: file.name, protein: "", prolines: 0, cis: 0, trans: 0, undecided: 0, error: "", source: file, found: [] };
  try {
    const shifts = await readFile(file);
    if (isStructure(shifts.bytes)) throw new Error("a structure: drop it with one file of shifts");
    const { info } = await run({ shifts, structure: null, settings: chosen });
    row.protein = info.protein;
    row.prolines = info.prolines.length;
    for (const call of ["cis", "trans", "undecided"]) {
      row[call] = info.prolines.filter((proline) => proline.call === call).length;
    }
    row.found = info.prolines;
  } catch (error) {
    row.error = error.message;
  }
  return row;
}

const columns = [["file", "File"], ["protein", "Protein"], ["prolines", "Prolines"], ["cis", "Cis"],
  ["trans", "Trans"], ["undecided", "Undecided"], ["error", "Message"]];

function showIndex(rows, by = "", down = false) {
  const order = [...rows];
  if (by) {
    order.sort((a, b) => (typeof a[by] === "number" ? a[by] - b[by] : a[by].localeCompare(b[by])) * (down ? -1 : 1));
  }
  const head = columns.map(([key, label]) => {
    const cell = element("th", { scope: "col" }, button(label, () => {
      showIndex(rows, key, by === key ? !down : typeof rows[0][key] === "number");
      byId("index").querySelector(`[data-column=${key}] button`).focus();
    }));
    cell.dataset.column = key;
    if (key === by) cell.setAttribute("aria-sort", down ? "descending" : "ascending");
    return cell;
  });
  const body = order.map((row) => element("tr", {}, ...columns.map(([key]) => {
    const open = key === "file" && !row.error;
    return element("td", {}, open ? button(row.file, () => openRow(row)) : String(row[key]));
  })));
  const table = element("table", {}, element("thead", {}, element("tr", {}, ...head)), element("tbody", {}, ...body));
  byId("index").replaceChildren(
    element("div", { class: "scroll", tabindex: "0", role: "group", "aria-label": "Table of all files" }, table),
    element("p", { class: "buttons" }, button("Save all prolines (TSV)", () => saveIndex(rows))));
  byId("index").hidden = false;
}

async function openRow(row) {
  const shifts = await readFile(row.source);
  shifts.fromIndex = true;
  await takeOne(shifts, null);
  byId("result").focus();
}

function saveIndex(rows) {
  const plain = (text) => String(text ?? "").replace(/\s+/g, " ");
  const lines = [["file", "proline", "call", "p_cis", "p_cis_norm", "message"]];
  for (const row of rows) {
    if (row.found.length === 0) lines.push([row.file, "", "", "", "", row.error]);
    for (const proline of row.found) {
      lines.push([row.file, proline.label, proline.call, proline.pCis, proline.pCisNorm, ""]);
    }
  }
  save("citrans.tsv", lines.map((line) => line.map(plain).join("\t") + "\n").join(""));
}
