#!/usr/bin/env python3
"""Take the picture of the page that README.md shows: the YbbR example, in headless Chromium.

    scripts/page-picture.py PAGE.html PICTURE.png
"""

import base64
import pathlib
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tests/report"))
from render import Browser, find_chromium  # noqa: E402

WIDTH, HEIGHT = 860, 1096  # the top of the page, down to the cis proline

# Presses the example's button and waits, 30 s at most, until its report has its place.
OPEN_EXAMPLE = """new Promise((resolve, reject) => {
  setTimeout(() => reject(new Error('no report')), 30000);
  const status = document.getElementById('status');
  new MutationObserver(() => { if (status.textContent.startsWith('ybbr.tab')) resolve(true); })
    .observe(status, { childList: true });
  document.querySelector('[data-example=ybbr]').click();
})"""


def main():
    if len(sys.argv) != 3:
        sys.exit("usage: page-picture.py PAGE.html PICTURE.png")
    program = find_chromium()
    if program is None:
        sys.exit("page-picture.py: Chromium is not installed")
    with tempfile.TemporaryDirectory(prefix="picture-", ignore_cleanup_errors=True) as profile:
        browser = Browser(program, profile)
        try:
            browser.show(pathlib.Path(sys.argv[1]).resolve().as_uri(), WIDTH, "light", "screen")
            browser.evaluate(OPEN_EXAMPLE)
            clip = {"x": 0, "y": 0, "width": WIDTH, "height": HEIGHT, "scale": 1}
            shot = browser.send("Page.captureScreenshot", format="png", clip=clip,
                                captureBeyondViewport=True)
        finally:
            browser.close()
    pathlib.Path(sys.argv[2]).write_bytes(base64.b64decode(shot["data"]))


main()
