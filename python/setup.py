"""Builds the native part with CMake, so that its sources and options are listed in one place.

    pip wheel --no-build-isolation ./python

With CITRANS_BUILD set to the whole path of a build folder of CMake, the module is taken from there,
and only what is out of date is compiled; otherwise everything is compiled anew in python/build.
Several builds of the same sources at a time wait for each other.
"""

import fcntl
import os
import re
import shutil
import subprocess
import sys
from pathlib import Path

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

HERE = Path(__file__).resolve().parent
ROOT = HERE.parent


# setuptools makes every wheel in the same folder and empties it afterwards. The lock ends with this
# process.
(HERE / "build").mkdir(exist_ok=True)
LOCK = open(HERE / "build" / "lock", "w", encoding="utf-8")
fcntl.flock(LOCK, fcntl.LOCK_EX)


def version() -> str:
    listing = (ROOT / "CMakeLists.txt").read_text(encoding="utf-8")
    return re.search(r"project\(citrans VERSION ([0-9.]+)", listing).group(1)


class CMakeBuild(build_ext):
    """Lets CMake make the package, and takes over all of its files."""

    def build_extension(self, extension):
        given = os.environ.get("CITRANS_BUILD")
        if given and not Path(given, "CMakeCache.txt").is_file():
            sys.exit(f"CITRANS_BUILD: {given} is no build folder of CMake (with its whole path)")
        build = Path(given or Path(self.build_temp, "cmake").resolve())
        settings = ["-DCITRANS_PYTHON=REQUIRED", f"-DPython_EXECUTABLE={sys.executable}"]
        if not given:
            settings += ["-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release"]
        subprocess.run(["cmake", "-S", ROOT, "-B", build, *settings], check=True)
        subprocess.run(["cmake", "--build", build, "--target", "citrans_python"], check=True)
        built = Path(self.get_ext_fullpath(extension.name))
        built.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(build / "python" / "citrans" / built.name, built)


# A wheel carries the licence files that stand beside this one.
for name in ("LICENSE", "NOTICES"):
    if (ROOT / name).is_file():
        shutil.copy(ROOT / name, HERE / name)

setup(
    version=version(),
    ext_modules=[Extension("citrans._core", sources=[])],
    cmdclass={"build_ext": CMakeBuild},
)
