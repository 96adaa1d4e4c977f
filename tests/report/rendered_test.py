"""The pages and the pictures of examples, looked at in headless Chromium.

usage: rendered_test.py CITRANS_REPORT CITRANS CITRANS_BATCH SOURCE_ROOT

With build/axe (scripts/install-axe.sh), axe-core must find nothing either.
"""
import os
import pathlib
import subprocess
import sys
import tempfile

import render

REPORT, CITRANS, BATCH, ROOT = (os.path.abspath(path) for path in sys.argv[1:5])
TAB = os.path.join(ROOT, "tab")
AXE = pathlib.Path(ROOT, "build/axe/node_modules/axe-core/axe.min.js")


def changed(folder, name, change, remarks=()):
    """A table of the example with each row of shifts changed, or dropped for None."""
    lines = [f"REMARK {remark}\n" for remark in remarks]
    with open(os.path.join(ROOT, "examples/ybbr.tab")) as file:
        for line in file:
            words = line.split()
            if len(words) == 4 and words[0].isdigit():
                words = change(*words)
                if words is None:
                    continue
                line = "%4s %1s %4s  %8.3f\n" % (*words[:3], float(words[3]))
            lines.append(line)
    path = os.path.join(folder, name)
    with open(path, "w") as file:
        file.writelines(lines)
    return path


def tables(folder):
    """Inputs of every look: name, table, options of citrans and of citrans-report."""
    example = os.path.join(ROOT, "examples/ybbr.tab")
    reference = ["-ref", os.path.join(ROOT, "examples/ybbr_2kpu.pdb")]
    with open(os.path.join(folder, "map.tsv"), "w") as file:
        file.write("resid\tauthor\tresname\n")
        file.writelines(f"{i}\t{i + 1033}B\tX\n" for i in range(1, 97))
    long_name = "x" * 150 + "<script>throw 1</script>\u202e"
    off = changed(folder, "off.tab", lambda i, r, atom, x:
                  (i, r, atom, float(x) + (2.7 if atom[0] == "C" else 0)))
    bare = changed(folder, "bare.tab", lambda i, r, atom, x:
                   None if atom in ("CB", "CG") else (i, r, atom, x),
                   ["Chemical shifts of NMR-STAR 3 entry 9, from " + "y" * 90 + ".str",
                    "Warning: " + "w" * 200])
    odd = changed(folder, "odd.tab", lambda i, r, atom, x:
                  (i, r, atom, float(x) * (3 if atom == "CB" and r == "P" else 1)))
    return [("long", example, reference + ["-inTitle", long_name],
             ["--map", os.path.join(folder, "map.tsv")]),
            ("off", off, reference, []), ("offset", off, ["-offset"], []),
            ("bare", bare, [], []), ("odd", odd, ["-noclip"], ["--noclip"]),
            ("offset-reference", off, ["-offset", *reference], []),
            ("unpredicted", os.path.join(ROOT, "examples/plastocyanin.tab"), [], [])]


def make_pages(folder):
    pages = []
    for name, shifts, options, more in tables(folder):
        summary = os.path.join(folder, name + ".pred.tab")
        subprocess.run([CITRANS, "-in", shifts, "-sum", summary, "-tabDir", TAB, *options],
                       check=True, capture_output=True)
        pages.append(pathlib.Path(folder, name + ".html"))
        subprocess.run([REPORT, summary, "--tab", TAB, "-o", pages[-1], *more], check=True,
                       capture_output=True)
    return pages


def make_list(folder):
    """The list of many entries, one of which fails."""
    broken = os.path.join(folder, "not a table.tab")
    with open(broken, "w") as file:
        file.write("VARS A\nFORMAT %s\n")
    subprocess.run([BATCH, os.path.join(ROOT, "examples"), os.path.join(folder, "off.tab"),
                    os.path.join(folder, "bare.tab"), broken, "--report",
                    os.path.join(folder, "many"), "-o", os.path.join(folder, "many.tsv"),
                    "--quiet"],
                   check=True, capture_output=True, env={**os.environ, "CITRANS_DIR": ROOT})
    return pathlib.Path(folder, "many", "index.html")


# In the list: what its buttons and fields do. Gives faults.
USE = """(async () => {
  const faults = [], rows = () => [...document.querySelectorAll('#entries tbody tr')];
  const shown = () => rows().filter(row => row.getClientRects().length);
  const form = document.forms[0], all = rows().length;
  const choose = (kind) => { form.elements.kind.value = kind;
                             form.dispatchEvent(new Event('input', {bubbles: true})); };
  const expect = (holds, what) => { if (!holds) faults.push(what); };
  expect(shown().length === all && all > 4, 'all rows at first');
  for (const kind of ['cis', 'undecided', 'referencing', 'failed']) {
    choose(kind);
    const count = shown().length;
    expect(count > 0 && count < all, `${kind}: ${count} of ${all} rows`);
    expect(shown().every(row => row.dataset.kinds.split(' ').includes(kind)), kind);
    const label = form.querySelector(`[value=${kind}]`).parentElement.textContent;
    expect(label.trim().endsWith(` ${count}`), `the count of ${kind}`);
  }
  expect(shown().every(row => !row.querySelector('a')), 'a failed entry has no page');
  const cell = (row, name) => row.cells[[...document.querySelectorAll('th')]
      .findIndex(heading => heading.textContent === name)].textContent;
  const bean = rows().find(row => row.textContent.includes('plastocyanin.tab'));
  expect(cell(bean, 'Prolines') === '7' && cell(bean, 'No call') === '7', 'protons make no calls');
  choose('all');
  form.elements.words.value = 'TAB UBIQ';
  choose('all');
  expect(shown().length === 1, 'search');
  form.elements.words.value = '';
  choose('all');
  const heading = [...document.querySelectorAll('th')]
      .find(cell => cell.textContent.startsWith('Prolines'));
  const column = heading.cellIndex;
  for (const way of ['ascending', 'descending']) {
    heading.querySelector('button').click();
    const cells = rows().map(row => row.cells[column].textContent).filter(Boolean).map(Number);
    const wanted = [...cells].sort((a, b) => way === 'ascending' ? a - b : b - a);
    expect(heading.ariaSort === way && String(cells) === String(wanted), `${way}: ${cells}`);
  }
  return faults;
})()"""


# On paper: two prolines of an A4 page less its margins (see VIEWS), 273 mm high.
TALLEST = """[...document.querySelectorAll('.proline')].map(
  card => card.getBoundingClientRect()).filter(box => box.height > 273 / 25.4 * 96 / 2).length"""


def print_pages(pages):
    """Pages with a proline that takes more than half a sheet."""
    with tempfile.TemporaryDirectory(prefix="render-", ignore_cleanup_errors=True) as profile:
        browser = render.Browser(render.find_chromium(), profile)
        try:
            faults = []
            for page in pages:
                browser.show(page.as_uri(), **render.VIEWS["print"])
                tall = browser.evaluate(TALLEST)
                faults += [f"{page.name}: {tall} prolines take more than half a page"] if tall else []
            return faults
        finally:
            browser.close()


def use_list(page):
    with tempfile.TemporaryDirectory(prefix="render-", ignore_cleanup_errors=True) as profile:
        browser = render.Browser(render.find_chromium(), profile)
        try:
            browser.show(page.as_uri(), **render.VIEWS["wide"])
            return [f"{page.name}: {fault}" for fault in browser.evaluate(USE)]
        finally:
            browser.close()


def broken_page(folder):
    """What the check itself must find."""
    path = pathlib.Path(folder, "broken.html")
    path.write_text("<!DOCTYPE html><title>x</title><p style='width:3000px;font-size:6px'>small</p>"
                    "<script>nowhere()</script><img src='missing.png'>")
    return path


def main():
    axe = AXE.read_text() if AXE.exists() else None
    with tempfile.TemporaryDirectory() as folder:
        pages = make_pages(folder)
        pages.append(make_list(folder))
        faults = render.check_pages(pages, axe=axe)
        if faults is None:
            print("skipped: no Chromium (apt-get install chromium)")
            return 77
        faults += use_list(pages[-1])
        faults += print_pages(pages)
        found = " ".join(render.check_pages([broken_page(folder)], axe=axe))
        for sign in ("px wide", "text of 6.00 px", "script error", "asked for",
                     *(["axe: image-alt"] if axe else [])):
            if sign not in found:
                faults.append(f"the check itself misses: {sign}")
    if axe is None:
        print("without axe-core (scripts/install-axe.sh)")
    print("\n".join(faults) or "no faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
