"""Show pages in headless Chromium and fail on what a reader would stumble over.

    render.py PAGE.html... [--pictures FOLDER] [--axe axe.min.js]

Every page is shown wide, narrow (320 and 390 px), dark and as on paper. A page fails when it is
wider than its window, when a table is wider than what it stands in, when a link leads nowhere,
when it holds text of less than 11 px as shown (7.5 pt on paper), when a text of a picture leaves
the picture, when it logs anything (errors of scripts, refused requests), or when it asks for
anything but itself. With --pictures, what was seen is kept as PNG files; with --axe, axe-core looks
at every page too, and a page fails when it finds anything.

Chromium is spoken to over a pipe (its DevTools protocol), with a profile of its own. Exit status:
0 fine, 1 a fault, 77 no Chromium here.
"""

import base64
import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

VIEWS = {
    "wide": {"width": 1280, "scheme": "light", "media": "screen"},
    "narrow": {"width": 320, "scheme": "light", "media": "screen"},
    "dark": {"width": 1280, "scheme": "dark", "media": "screen"},
    "narrow-dark": {"width": 390, "scheme": "dark", "media": "screen"},
    "print": {"width": 703, "scheme": "dark", "media": "print"},  # A4 less its margins
}

# Run inside the page: what is too wide, too small or outside its picture.
PROBE = """(() => {
  const faults = [];
  const smallest = matchMedia('print').matches ? 9.99 : 10.99; // 7.5 pt on paper
  const root = document.documentElement;
  if (root.scrollWidth > root.clientWidth)
    faults.push(`page is ${root.scrollWidth} px wide in a window of ${root.clientWidth}`);
  for (const table of document.querySelectorAll('table')) {
    const room = table.parentElement.clientWidth;
    if (!table.closest('.scroll') && table.offsetWidth > room + 1)
      faults.push(`table of ${table.offsetWidth} px in ${room}: ${table.textContent.slice(0, 40)}`);
  }
  for (const node of document.querySelectorAll('svg text, p, td, th, dt, dd, li, figcaption, a')) {
    if (!node.textContent.trim() || !node.getClientRects().length) continue;
    const svg = node.ownerSVGElement;
    const scale = svg ? svg.getBoundingClientRect().width / svg.viewBox.baseVal.width : 1;
    const size = parseFloat(getComputedStyle(node).fontSize) * scale;
    if (size < smallest) faults.push(`text of ${size.toFixed(2)} px: ${node.textContent}`);
    if (svg) {
      const inner = node.getBoundingClientRect(), outer = svg.getBoundingClientRect();
      if (inner.left < outer.left - 1 || inner.right > outer.right + 1 ||
          inner.top < outer.top - 2 || inner.bottom > outer.bottom + 2)
        faults.push(`text leaves its picture ${svg.querySelector('title').textContent}: ` +
                    node.textContent);
    }
  }
  const ids = [...document.querySelectorAll('[id]')].map(node => node.id);
  for (const id of ids.filter((id, i) => ids.indexOf(id) !== i)) faults.push(`id twice: ${id}`);
  for (const link of document.querySelectorAll('a[href^="#"]'))
    if (!document.getElementById(link.getAttribute('href').slice(1)))
      faults.push(`link to nowhere: ${link.getAttribute('href')}`);
  return faults;
})()"""


class Browser:
    """A Chromium and one page in it."""

    def __init__(self, program, profile):
        to_read, to_write = os.pipe()
        from_read, from_write = os.pipe()

        def connect():
            # The ends must not land on 3 and 4 before both are out of the way.
            a, b = os.dup(to_read), os.dup(from_write)
            high = [os.dup2(a, 30), os.dup2(b, 31)]
            os.dup2(high[0], 3)
            os.dup2(high[1], 4)

        self.process = subprocess.Popen(
            [program, "--headless", "--no-sandbox", "--disable-gpu", "--disable-quic",
             "--no-first-run", "--disable-background-networking", "--disable-component-update",
             "--disable-sync", "--disable-dev-shm-usage", "--hide-scrollbars",
             "--remote-debugging-pipe", f"--user-data-dir={profile}"],
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            preexec_fn=connect, close_fds=False)
        os.close(to_read)
        os.close(from_write)
        self.out = os.fdopen(to_write, "wb", buffering=0)
        self.inp = os.fdopen(from_read, "rb")
        self.count = 0
        self.events = []
        target = self.call("Target.createTarget", url="about:blank")["targetId"]
        self.session = self.call("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Log", "Network"):
            self.send(f"{domain}.enable")

    def receive(self):
        message = bytearray()
        while True:
            byte = self.inp.read(1)
            if not byte:
                raise RuntimeError("Chromium went away")
            if byte == b"\0":
                return json.loads(message)
            message += byte

    def call(self, method, session=None, **params):
        self.count += 1
        request = {"id": self.count, "method": method, "params": params}
        if session:
            request["sessionId"] = session
        self.out.write(json.dumps(request).encode() + b"\0")
        while True:
            message = self.receive()
            if message.get("id") == self.count:
                if "error" in message:
                    raise RuntimeError(f"{method}: {message['error']}")
                return message["result"]
            self.events.append(message)

    def send(self, method, **params):
        return self.call(method, self.session, **params)

    def wait_for(self, name):
        while not any(event.get("method") == name for event in self.events):
            self.events.append(self.receive())

    def show(self, url, width, scheme, media):
        self.events.clear()
        self.send("Emulation.setDeviceMetricsOverride", width=width, height=900,
                  deviceScaleFactor=1, mobile=False)
        self.send("Emulation.setEmulatedMedia", media=media,
                  features=[{"name": "prefers-color-scheme", "value": scheme}])
        self.send("Page.navigate", url=url)
        self.wait_for("Page.loadEventFired")

    def probe(self):
        return self.send("Runtime.evaluate", expression=PROBE, returnByValue=True)["result"]["value"]

    def evaluate(self, expression):
        """The value of an expression, waited for when it is a promise."""
        answer = self.send("Runtime.evaluate", expression=expression, awaitPromise=True,
                           returnByValue=True)
        if "exceptionDetails" in answer:
            raise RuntimeError(json.dumps(answer["exceptionDetails"]))
        return answer["result"].get("value")

    def picture(self):
        shot = self.send("Page.captureScreenshot", format="png", captureBeyondViewport=True)
        return base64.b64decode(shot["data"])

    def close(self):
        try:
            self.call("Browser.close")
        except (RuntimeError, OSError):
            pass
        self.process.wait(timeout=20)


def logged(events, url):
    """What the page said, and what it asked for beyond itself."""
    faults = []
    for event in events:
        method, params = event.get("method"), event.get("params", {})
        if method == "Log.entryAdded":
            faults.append("logged: " + params["entry"]["text"])
        elif method == "Runtime.exceptionThrown":
            faults.append("script error: " + params["exceptionDetails"]["text"])
        elif method == "Runtime.consoleAPICalled":
            faults.append("console: " + json.dumps(params["args"]))
        elif method == "Network.requestWillBeSent":
            asked = params["request"]["url"]
            if asked != url and not asked.startswith("data:"):
                faults.append("asked for " + asked)
    return faults


AXE = """axe.run(document, {resultTypes: ['violations']}).then(result => result.violations.map(
  found => `axe: ${found.id}: ${found.nodes[0].html.slice(0, 120)}`))"""


def check(browser, page, pictures, axe):
    faults = []
    url = page.resolve().as_uri()
    for name, view in VIEWS.items():
        browser.show(url, **view)
        found = browser.probe() + logged(browser.events, url)
        if axe and name in ("wide", "narrow", "dark"):
            browser.evaluate(axe)
            found += browser.evaluate(AXE)
        faults += [f"{page.name}, {name}: {fault}" for fault in found]
        if pictures:
            pictures.mkdir(parents=True, exist_ok=True)
            (pictures / f"{page.stem}-{name}.png").write_bytes(browser.picture())
    return faults


def find_chromium():
    for name in ("chromium", "chromium-browser", "google-chrome", "chrome"):
        if shutil.which(name):
            return shutil.which(name)
    return None


def check_pages(pages, pictures=None, axe=None):
    """Faults of all pages; None when there is no Chromium. `axe` is the source of axe-core."""
    program = find_chromium()
    if program is None:
        return None
    with tempfile.TemporaryDirectory(prefix="render-", ignore_cleanup_errors=True) as profile:
        browser = Browser(program, profile)
        try:
            return [fault for page in pages for fault in check(browser, page, pictures, axe)]
        finally:
            browser.close()


def taken(arguments, option):
    """The path after an option, which is taken out; None without it."""
    if option not in arguments:
        return None
    at = arguments.index(option)
    path = pathlib.Path(arguments[at + 1])
    del arguments[at:at + 2]
    return path


def main():
    arguments = sys.argv[1:]
    pictures, axe = taken(arguments, "--pictures"), taken(arguments, "--axe")
    faults = check_pages([pathlib.Path(name) for name in arguments], pictures,
                         axe and axe.read_text())
    if faults is None:
        print("skipped: no Chromium (apt-get install chromium)")
        return 77
    for fault in faults:
        print(fault)
    print(f"{len(arguments)} pages, {len(VIEWS)} views each, {len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
