#!/usr/bin/env python3
"""Print NOTICES: whose code the programs contain, from the copyright files of Debian's packages.

    scripts/notices.py > NOTICES.new      the file as the installed packages make it
    scripts/notices.py --check [BUILD]    compare NOTICES with that, and what it says of the programs
                                          with the symbols of those in BUILD

A library whose package is not installed keeps its section of NOTICES, so that the file can be made
and checked without emscripten or the Python headers. Revisions of Debian's packaging are left out.
"""

import re
import subprocess
import sys
import textwrap
from pathlib import Path

NOTICES = Path(__file__).resolve().parent.parent / "NOTICES"
READERS = "citrans-import, citrans-report, citrans-batch, the page, the Python module"
REPORTERS = "citrans-report, citrans-batch, the page, the Python module"

# Name, package, what holds its code, parts of it (files as the copyright file names them, of one
# paragraph) with the licence chosen where there is a choice. Those of emscripten are what its linker
# takes members of libraries from, by its option --trace.
LIBRARIES = [
    ("gemmi", "gemmi-dev", READERS, {"*": "MPL-2.0"}),
    ("PEGTL", "tao-pegtl-dev", READERS, {"*": "MIT"}),
    ("JSON for Modern C++", "nlohmann-json3-dev", REPORTERS,
     {"*": "Expat", "include/nlohmann/detail/conversions/to_chars.hpp": "Expat",
      "include/nlohmann/detail/output/serializer.hpp": "Expat"}),
    ("CLI11", "libcli11-dev", "citrans-import, citrans-report, citrans-batch", {"*": "BSD-3-clause"}),
    ("Mustache", "libkainjow-mustache-dev", REPORTERS, {"*": "BSL-1.0"}),
    ("pybind11", "pybind11-dev", "the Python module", {"*": "BSD-3-Clause+CLA"}),
    ("emscripten", "emscripten", "the page",
     {"*": "Expat", "system/lib/libc/musl/*": "Expat",
      "system/lib/libc/musl/src/math/atan.c atan2.c exp.c log.c log10.c pow.c": "FSFULLR~Sun",
      "system/lib/dlmalloc.c": "public-domain",
      "system/lib/libcxx/*": "Apache-2.0 with LLVM exception",
      "system/lib/libcxxabi/*": "Apache-2.0 with LLVM exception",
      "system/lib/compiler-rt/*": "Apache-2.0 with LLVM exception",
      "system/lib/libunwind/*": "Expat"}),
]
# What the names of a library's functions begin with.
NAMESPACES = {"gemmi": "gemmi::", "PEGTL": "tao::pegtl", "JSON for Modern C++": "nlohmann::",
              "CLI11": "CLI::", "Mustache": "kainjow::", "pybind11": "pybind11::"}
PROGRAMS = {"citrans": "citrans", "citrans-import": "citrans-import",
            "citrans-report": "citrans-report", "citrans-batch": "citrans-batch",
            "citrans-derive": "citrans-derive", "the Python module": "python/citrans/_core.*.so"}
GCC = ("GNU C++ library and run-time library of GCC", "libstdc++6",
       "citrans, where it is linked statically")
# Parts of it that its copyright file does not speak of: conversions of numbers from and to text.
GCC_PARTS = """\
libstdc++-v3/src/c++17/ryu
  Copyright 2018 Ulf Adams
  Licence: BSL-1.0 (see Mustache)

libstdc++-v3/src/c++17/fast_float
  Copyright 2021 The fast_float authors
  Licence: MIT (see PEGTL)
"""

# Where a licence stands that Debian's copyright files only point to.
ELSEWHERE = {"MPL-2.0": "\nOn others at <https://www.mozilla.org/MPL/2.0/>."}

HEAD = """\
Notices of CITRANS

CITRANS itself is under the MIT licence, see LICENSE. What is handed on as a binary contains code of
the libraries below, with the versions and the licences that Debian's packages state. Made by
scripts/notices.py.

Not contained, but found on the machine when a program starts: the GNU C library (LGPL-2.1+); for
the companion programs and the Python module the GNU C++ library (GPL-3+ with the exception below);
zlib (Zlib) and, for citrans-derive alone, NLopt (MIT, with parts under LGPL-2.1+). Programs that hold
the code of a library under the LGPL must come with that library's source. A program that is built
with CITRANS_STATIC_RUNTIME contains the GNU C library, and so is for the machine that built it; the
packages hold one that is linked with that library dynamically.
"""


def upstream_version(package):
    """The installed package's version as its authors count, or None."""
    found = subprocess.run(["dpkg-query", "-W", "-f", "${db:Status-Abbrev} ${Version}", package],
                           capture_output=True, text=True, check=False).stdout
    if not found.startswith("ii"):
        return None
    version = found.split()[-1].split(":")[-1].rpartition("-")[0]
    return re.sub(r"[+.~](ds|dfsg).*", "", version)


def paragraphs(package):
    """The paragraphs of a copyright file, each as fields by name; the first wins."""
    text = Path(f"/usr/share/doc/{package}/copyright").read_text(encoding="utf-8")
    for paragraph in re.split(r"\n[ \t]*\n", text):
        fields = {}
        for match in re.finditer(r"^([\w-]+):((?:.*)(?:\n[ \t]+.*)*)", paragraph, re.M):
            fields.setdefault(match[1], match[2].strip("\n"))
        yield fields


def body(text):
    """Lines of a field as plain text: without the indent, a dot for an empty line."""
    lines = textwrap.dedent("\n".join(line.rstrip() for line in text.splitlines())).split("\n")
    return "\n".join("" if line.strip() == "." else line for line in lines).strip("\n")


def licence_text(fields, wanted):
    """The text under the name of a licence, "" when the paragraph holds none of it."""
    first, _, rest = fields.get("License", "").partition("\n")
    return body(rest) if first.strip() == wanted else ""


def indented(text, by="    "):
    return textwrap.indent(text, by)


def section(name, package, where, parts):
    """One library's notices, or None when its package is not installed."""
    version = upstream_version(package)
    if version is None:
        return None
    known = list(paragraphs(package))
    source = next(body(fields["Source"]).split()[0] for fields in known if "Source" in fields)
    lines = [f"{name} {version}", f"Contained in: {where}", f"Source: {source}", ""]
    texts = {}
    for part, licence in parts.items():
        fields = next(f for f in known if part.split()[0] in f.get("Files", "").split())
        alternatives = fields["License"].partition("\n")[0]
        if re.split(r"[ ~]", licence)[0] not in alternatives:
            sys.exit(f"notices.py: {package}: {part} is not under {licence}: {alternatives}")
        holders = [" ".join(line.split()) for line in body(fields["Copyright"]).splitlines()]
        lines += ["All of it" if part == "*" else part,
                  *(f"  Copyright {holder}" for holder in holders if licence != "public-domain"),
                  f"  Licence: {licence}", ""]
        found = [licence_text(candidate, licence) for candidate in [fields, *known]]
        texts[licence] = next((text for text in found if text), "")
    for licence, text in texts.items():
        if text:
            lines += [f"{licence}:", "", indented(text + ELSEWHERE.get(licence, "")), ""]
        elif licence != "public-domain" and " with " not in licence:
            sys.exit(f"notices.py: {package}: no text of {licence}")
    return "\n".join(lines)


def gcc_section():
    """GCC's copyright file is prose; the exception is what lets programs contain its libraries."""
    name, package, where = GCC
    version = upstream_version(package)
    if version is None:
        return None
    text = Path(f"/usr/share/doc/{package}/copyright").read_text(encoding="utf-8")
    exception = re.search(r"^GCC RUNTIME LIBRARY EXCEPTION\n.*?requirements of the license of GCC\.\n",
                          text, re.M | re.S)[0]
    return "\n".join([f"{name} {version}", f"Contained in: {where}", "Source: https://gcc.gnu.org/",
                      "", "  Copyright Free Software Foundation, Inc.",
                      "  Licence: GPL-3+ with the GCC Runtime Library Exception", "",
                      GCC_PARTS, indented(exception)])


def false_claims(build):
    """Programs of a build that hold a library's code, or do not, unlike what its section says."""
    for program, pattern in PROGRAMS.items():
        for file in build.glob(pattern):
            symbols = subprocess.run(["nm", "--demangle", file], capture_output=True, text=True,
                                     check=True).stdout
            for name, _, where, _ in LIBRARIES:
                if name in NAMESPACES and (NAMESPACES[name] in symbols) != (program in where.split(", ")):
                    yield f"{file.name}: NOTICES is wrong about {name}"


def main():
    check = sys.argv[1:2] == ["--check"]
    if len(sys.argv) > (3 if check else 1):
        sys.exit("usage: notices.py [--check [BUILD]]")
    rule = "-" * 100 + "\n"
    present = NOTICES.read_text(encoding="utf-8") if NOTICES.exists() else ""
    kept = {text.rpartition("\nContained in:")[0].rpartition(" ")[0]: text.rstrip("\n")
            for text in present.split(rule)[1:]}
    sections = []
    for library in [*LIBRARIES, GCC]:
        made = gcc_section() if library is GCC else section(*library)
        if made is None:
            print(f"notices.py: {library[1]} is not installed", file=sys.stderr)
            made = next((text for start, text in kept.items() if start == library[0]), None)
            if made is None:
                sys.exit(f"notices.py: NOTICES has no section of {library[0]} to keep")
        sections.append(made.rstrip("\n"))
    text = rule.join([HEAD + "\n", *(made + "\n\n" for made in sections)]).rstrip("\n") + "\n"
    if not check:
        print(text, end="")
        return
    if text != present:
        sys.exit("notices.py: NOTICES differs from what the packages say: "
                 "scripts/notices.py > NOTICES.new")
    claims = [claim for build in sys.argv[2:] for claim in false_claims(Path(build))]
    if claims:
        sys.exit("\n".join(claims))


main()
