# SPDX-License-Identifier: MIT
"""The package is put together for the tests: its sources, and the modules made from the header.

SIGPAK_LIBRARY names the library that is tested, otherwise it is the one of the release build.
"""

from __future__ import annotations

import os
import shutil
import sys
import tempfile
import warnings
from pathlib import Path
from typing import Any

import numpy as np
import pytest

PYTHON = Path(__file__).resolve().parent.parent
FOLDER = Path(tempfile.mkdtemp(prefix="sigpak-"))
os.environ.setdefault("SIGPAK_LIBRARY", str(PYTHON.parent / "build/release/src/libsigpak.so.2"))
sys.dont_write_bytecode = True
sys.path.insert(0, str(FOLDER))
sys.path.append(str(PYTHON))

import generate  # noqa: E402

generate.assemble(FOLDER / "sigpak")


def pytest_unconfigure() -> None:
    shutil.rmtree(FOLDER)


@pytest.fixture(scope="session")
def package() -> Path:
    """The folder that holds the package."""
    return FOLDER


@pytest.fixture(params=[np.float64, np.float32], ids=["double", "single"])
def real(request: Any) -> Any:
    """The type of the samples, of either precision."""
    return request.param


@pytest.fixture(scope="session")
def ecg() -> Any:
    """Five minutes of a heart, 360 samples a second, in mV (MIT-BIH record 208)."""
    from scipy import misc

    if not hasattr(misc, "electrocardiogram"):
        pytest.skip("this SciPy has no recording in it")
    with warnings.catch_warnings():
        warnings.simplefilter("ignore", DeprecationWarning)
        return misc.electrocardiogram()
