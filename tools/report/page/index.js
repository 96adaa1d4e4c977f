"use strict";
// Sorts the entries by a click on a heading, and shows those of one kind whose text has the words.
(() => {
  const body = document.querySelector("#entries tbody");
  const rows = [...body.rows].map((row, place) => ({
    row, place,
    kinds: row.dataset.kinds.split(" "),
    text: row.textContent.toLowerCase(),
    cells: [...row.cells].map(cell => cell.textContent.trim()),
  }));
  const form = document.forms[0];
  const headings = [...document.querySelectorAll("#entries th")];

  function filter() {
    const words = form.elements.words.value.toLowerCase().split(/\s+/).filter(Boolean);
    const kind = form.elements.kind.value;
    let shown = 0;
    for (const entry of rows) {
      const fits = (kind === "all" || entry.kinds.includes(kind)) &&
          words.every(word => entry.text.includes(word));
      entry.row.hidden = !fits;
      shown += fits;
    }
    form.elements.shown.value = `${shown} of ${rows.length} shown`;
  }

  // Empty cells come last either way; numbers, with a typographic minus, before words.
  function compare(a, b, sign) {
    if (a === "" || b === "") return (a === "") - (b === "");
    const numbers = [a, b].map(text => Number(text.replace("\u2212", "-")));
    if (!numbers.some(Number.isNaN)) return sign * (numbers[0] - numbers[1]);
    return sign * a.localeCompare(b, "en", { numeric: true });
  }

  function sort(column) {
    const heading = headings[column];
    const sign = heading.getAttribute("aria-sort") === "ascending" ? -1 : 1;
    for (const other of headings) other.removeAttribute("aria-sort");
    heading.setAttribute("aria-sort", sign > 0 ? "ascending" : "descending");
    rows.sort((a, b) => compare(a.cells[column], b.cells[column], sign) || a.place - b.place);
    body.append(...rows.map(entry => entry.row));
  }

  headings.forEach((heading, column) =>
    heading.querySelector("button").addEventListener("click", () => sort(column)));
  form.addEventListener("input", filter);
  form.addEventListener("submit", event => event.preventDefault());
  filter();
})();
