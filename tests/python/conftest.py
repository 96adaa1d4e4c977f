"""What all tests of the Python module share.

CITRANS_PROGRAMS is the build folder of the programs to compare with; the module is imported from
PYTHONPATH or from where it is installed.
"""

import os
import subprocess
from pathlib import Path

import pytest
from support import ROOT


@pytest.fixture(scope="session")
def examples():
    return ROOT / "examples"


@pytest.fixture
def program(tmp_path):
    """Runs a program of the build in the scratch folder of the test; returns what it did."""

    def run(name, *arguments):
        command = [Path(os.environ["CITRANS_PROGRAMS"]) / name, *map(str, arguments)]
        environment = {**os.environ, "CITRANS_DIR": str(ROOT)}
        return subprocess.run(command, cwd=tmp_path, env=environment, capture_output=True,
                              text=True, check=False)

    return run
