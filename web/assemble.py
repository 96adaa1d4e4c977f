#!/usr/bin/env python3
"""Puts the page together: one HTML file with style, script, worker, module and examples in it."""

import argparse
import base64
import gzip
import hashlib
import json
import pathlib
import sys

LARGEST = 600_000  # bytes: what a user waits for on a slow line

EXAMPLES = {"ybbr": ["ybbr.tab", "ybbr_2kpu.pdb"], "xcc2852": ["xcc2852.tab", "xcc2852_1ttz.pdb"]}


def packed(data: bytes) -> str:
    """Gzipped without a date, so that the same input gives the same page."""
    return base64.b64encode(gzip.compress(data, 9, mtime=0)).decode()


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--project", type=pathlib.Path, required=True)
    parser.add_argument("--version", required=True)
    parser.add_argument("--module", required=True, help="path of the module, without .js and .wasm")
    parser.add_argument("--scripts", type=pathlib.Path, nargs="+", required=True, help="in their order")
    parser.add_argument("--output", type=pathlib.Path, required=True)
    args = parser.parse_args()
    web = args.project / "web"
    styles = [args.project / "tools/report/page" / name
              for name in ("colours.css", "picture.css", "style.css")] + [web / "page.css"]
    # The list's own script, to be called when a list has come.
    index = (args.project / "tools/report/page/index.js").read_text()
    script = "".join(path.read_text() for path in args.scripts) + f"function startIndex() {{\n{index}}}\n"
    worker = pathlib.Path(args.module + ".js").read_text() + (web / "worker.js").read_text()
    examples = {key: [[name, (args.project / "examples" / name).read_text()] for name in names]
                for key, names in EXAMPLES.items()}
    for name, text in (("worker", worker), ("script", script)):
        if "</script" in text or "<!--" in text:
            sys.exit(f"assemble.py: the {name} holds what ends a script in HTML")
    notices = args.project / "NOTICES"
    parts = {
        "SCRIPT_HASH": "sha256-" + base64.b64encode(hashlib.sha256(script.encode()).digest()).decode(),
        "STYLE": "".join(path.read_text() for path in styles),
        "VERSION": args.version,
        "NOTICES": (notices.read_text() if notices.exists() else "")
                   .replace("&", "&amp;").replace("<", "&lt;"),
        "MODULE": packed(pathlib.Path(args.module + ".wasm").read_bytes()),
        "EXAMPLES": packed(json.dumps(examples).encode()),
        "WORKER": worker,
        "SCRIPT": script,
    }
    page = (web / "page.html").read_text()
    pieces = page.split("@")  # text, name, text, ..., name, text
    page = "".join(parts[piece] if at % 2 else piece for at, piece in enumerate(pieces))
    size = len(page.encode())
    if size > LARGEST:
        sys.exit(f"assemble.py: the page has {size} bytes, more than {LARGEST}")
    args.output.write_text(page)
    print(f"{args.output.name}: {size} bytes")
    return 0


if __name__ == "__main__":
    sys.exit(main())
