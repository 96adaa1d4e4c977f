"use strict";
// What can be saved of one file.

const kinds = [
  ["html", "Save the report", ".html"], ["summary", "Predictions", ".pred.tab"],
  ["table", "Shift table", ".tab"], ["map", "Author numbers", ".map"],
  ["secondary", "Secondary shifts", ".predAdjCS.tab"], ["tsv", "Contributions (TSV)", ".evidence.tsv"],
  ["json", "Everything as JSON", ".json"], ["svg", "Overview (SVG)", ".svg"],
  ["chimerax", "ChimeraX", ".cxc"], ["pymol", "PyMOL", ".pml"],
  ["structure", "Renumbered structure", ""]];

/** The outputs that there are: kind, label of the button, name of the file. */
function offered(info) {
  return kinds
    .map(([kind, label, ending]) => ({ kind, label, file: kind === "structure" ? info.structureName : info.name + ending }))
    .filter(({ kind, file }) => file && (kind !== "map" || info.imported));
}

/** Offers the outputs of a job with this outcome. */
function showDownloads(job, info) {
  const all = offered(info);
  const [first, ...others] = all.map(({ kind, label, file }) => {
    const pressed = button(label, () => saveOutputs(job, [{ kind, file }]));
    pressed.dataset.kind = kind;
    return pressed;
  });
  const wasOpen = byId("more") && byId("more").open;
  const more = element("details", { id: "more" }, element("summary", {}, "Save other files"),
                       element("p", { class: "buttons" }, ...others));
  more.open = wasOpen;
  const together = button("Save all (ZIP)", () => saveOutputs(job, all, info.name + ".zip"));
  together.dataset.kind = "zip";
  byId("downloads").replaceChildren(
    element("p", { class: "buttons" }, first, together, button("Print the report", () => print())), more);
  byId("downloads").hidden = false;
}

/** Saves one output of a job, or all that are named in an archive of this name. */
async function saveOutputs(job, wanted, archive = "") {
  complain("");
  try {
    const { outputs } = await run({ ...job, outputs: wanted.map(({ kind }) => kind) });
    if (!archive) {
      save(wanted[0].file, outputs[wanted[0].kind]);
      return;
    }
    const zip = new Zip();
    for (const { kind, file } of wanted) zip.add(file, outputs[kind]);
    save(archive, zip.blob());
  } catch (error) {
    complain(error.message);
  }
}
