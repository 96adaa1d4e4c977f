#!/usr/bin/python3
"""Print a page of docs/ with the output of its Python sessions as it is now.

    scripts/python-session.py PAGE

A block after the comment "run" is a session: lines that begin with ">>> " or "... " are run, one
session after the other in the same interpreter, and what follows them is what they print. An
exception is shown by its last line, after one with "Traceback". See scripts/tutorial.sh.
"""

import code
import contextlib
import io
import sys


class Session(code.InteractiveInterpreter):
    """Runs statements and collects what they print."""

    def showtraceback(self):
        error = sys.exc_info()[1]
        name = f"{type(error).__module__}.{type(error).__qualname__}".replace("builtins.", "")
        print(f"Traceback (most recent call last):\n  ...\n{name}: {error}")

    def output_of(self, lines):
        with contextlib.redirect_stdout(io.StringIO()) as output:
            if self.runsource("\n".join(lines) + "\n", "<session>", "single"):
                sys.exit(f"no whole statement: {lines}")
        return output.getvalue().splitlines()


def rendered(page):
    session = Session()
    run = inside = False
    statement = []
    for line in page:
        if inside and statement and not line.startswith("... "):
            yield from session.output_of(statement)
            statement = []
        if inside and line.startswith((">>> ", "... ")):
            statement.append(line[4:])
        fence = line.startswith("```")
        if not inside or fence or statement:
            yield line
        if line == "<!-- run -->":
            run = True
        elif fence:
            inside, run = run and not inside, run and not inside


with open(sys.argv[1], encoding="utf-8") as file:
    print("\n".join(rendered(file.read().splitlines())))
