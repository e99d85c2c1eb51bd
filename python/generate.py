#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes the modules of the package that the C header determines: prototypes, enumerations, methods and functions.

    generate.py FOLDER

They are made anew by every build and kept nowhere, so that names, arguments and texts are those of the header.
"""

from __future__ import annotations

import re
import shutil
import sys
from pathlib import Path

TREE = Path(__file__).resolve().parent.parent
sys.path.append(str(TREE / "docs"))

import header  # noqa: E402
from generator import enums, functions, methods, prototypes  # noqa: E402


def version() -> str:
    """The version of the project, as CMake has it."""
    found = re.search(r"VERSION (\d+\.\d+\.\d+)", (TREE / "CMakeLists.txt").read_text(encoding="ascii"))
    assert found
    return found[1]


def modules(model: header.Header) -> dict[str, str]:
    """The text of every module by its name."""
    return {
        "_c.py": prototypes.module(model, version()),
        "enums.py": enums.module(model),
        "_methods.py": methods.module(model),
        "functions.py": functions.module(model),
    }


def write(folder: Path) -> None:
    folder.mkdir(parents=True, exist_ok=True)
    for name, text in modules(header.load()).items():
        (folder / name).write_text(text, encoding="ascii")


def assemble(folder: Path) -> None:
    """The whole package in a folder of its own, for programs that run in the tree."""
    shutil.copytree(TREE / "python" / "sigpak", folder, ignore=shutil.ignore_patterns("__pycache__"))
    write(folder)


if __name__ == "__main__":
    write(Path(sys.argv[1]))
