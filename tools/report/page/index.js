"use strict";
// Sorts the entries by a click on a heading, and shows those of one kind whose text has the words.
(() => {
  const table = document.querySelector("#entries");
  const body = table.tBodies[0];
  const rows = [...body.rows].map((row, place) => ({
    row, place,
    kinds: row.dataset.kinds.split(" "),
    text: row.textContent.toLowerCase(),
    cells: [...row.cells].map(cell => cell.textContent.trim()),
  }));
  const form = document.querySelector("form.filters");
  const headings = [...table.querySelectorAll("th")];
  const order = new Intl.Collator("en", { numeric: true });

  // Rows of a grid with fixed columns: those out of sight cost no layout, which for a thousand rows
  // of a table takes longer than one waits. Such rows are told what they are.
  function makeGrid() {
    const last = headings.length - 1;
    const widths = headings.map((heading, column) =>
      heading.classList.contains("number") ? [5, 1] :
          column === 0 ? [8, 3] : column === last ? [10, 3] : [7, 2]);
    const columns = widths.map(([least, share]) => `minmax(${least}em, ${share}fr)`);
    table.style.setProperty("--columns", columns.join(" "));
    table.style.setProperty("--least", widths.reduce((sum, [least]) => sum + least, 0) + "em");
    const roles = { THEAD: "rowgroup", TBODY: "rowgroup", TR: "row", TH: "columnheader", TD: "cell" };
    table.setAttribute("role", "table");
    for (const part of table.querySelectorAll("*")) {
      if (part.tagName in roles) part.setAttribute("role", roles[part.tagName]);
    }
    table.classList.add("grid");
  }

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

  // Numbers, with a typographic minus, before words.
  function compare(a, b) {
    const numbers = [a, b].map(text => Number(text.replace("\u2212", "-")));
    return numbers.some(Number.isNaN) ? order.compare(a, b) : numbers[0] - numbers[1];
  }

  // Empty cells come last either way.
  function sort(column) {
    const heading = headings[column];
    const sign = heading.getAttribute("aria-sort") === "ascending" ? -1 : 1;
    for (const other of headings) other.removeAttribute("aria-sort");
    heading.setAttribute("aria-sort", sign > 0 ? "ascending" : "descending");
    rows.sort((one, other) => {
      const a = one.cells[column], b = other.cells[column];
      const differ = a === "" || b === "" ? (a === "") - (b === "") : sign * compare(a, b);
      return differ || one.place - other.place;
    });
    body.append(...rows.map(entry => entry.row));
  }

  headings.forEach((heading, column) =>
    heading.querySelector("button").addEventListener("click", () => sort(column)));
  form.addEventListener("input", filter);
  form.addEventListener("submit", event => event.preventDefault());
  makeGrid();
  filter();
})();
