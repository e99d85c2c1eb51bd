# SPDX-License-Identifier: MIT
"""How a wheel is made: the modules that the header determines, and the library that CMake builds.

SIGPAK_BUNDLE in the environment names a library that has been built already; with 0 none goes into the wheel, and the
package takes that of the system.
"""

from __future__ import annotations

import os
import shutil
import subprocess
import sys
from pathlib import Path

from setuptools.command.build_py import build_py

try:
    from setuptools.command.bdist_wheel import bdist_wheel
except ImportError:  # before setuptools 70
    from wheel.bdist_wheel import bdist_wheel

PYTHON = Path(__file__).resolve().parent
TREE = PYTHON.parent
_SONAME = "libsigpak.so.2"

sys.path.append(str(PYTHON))
import generate  # noqa: E402

VERSION = generate.version()


_BUNDLE = os.environ.get("SIGPAK_BUNDLE", "")


def _library() -> Path:
    """The library that was named, or else is built alone, in a folder that is kept for the next time."""
    if _BUNDLE:
        return Path(_BUNDLE)
    if shutil.which("cmake") is None:
        raise SystemExit(
            "sigpak: CMake 3.25 and a compiler for C++20 are needed to build the library; or name one that is built in"
            " SIGPAK_BUNDLE, or set it to 0 to take that of the system"
        )
    folder = TREE / "build" / "python"
    options = [f"-DSIGPAK_{part}=OFF" for part in ("TOOL", "TESTS", "BENCH", "INSTALL")]
    subprocess.check_call(["cmake", "-S", TREE, "-B", folder, "-DCMAKE_BUILD_TYPE=Release", *options])
    subprocess.check_call(["cmake", "--build", folder, "--target", "sigpak", "--parallel", str(os.cpu_count() or 1)])
    return folder / "src" / _SONAME


class BuildPackage(build_py):
    """Adds what is made to what is written; of an editable installation among the sources."""

    def run(self) -> None:
        super().run()
        package = PYTHON / "sigpak" if self.editable_mode else Path(self.build_lib) / "sigpak"
        generate.write(package)
        if _BUNDLE != "0":
            shutil.copy(_library(), package / _SONAME)


class BuildWheel(bdist_wheel):
    """A wheel for every Python of one platform, as nothing in it is compiled against Python."""

    def finalize_options(self) -> None:
        super().finalize_options()
        self.root_is_pure = _BUNDLE == "0"

    def get_tag(self) -> tuple[str, str, str]:
        return "py3", "none", super().get_tag()[2]
