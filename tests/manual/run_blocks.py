#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""run_blocks.py [--keep DIRECTORY] PAGE...: compiles and runs every block of code of the pages, and compares what it
prints.

A block of c, cpp, python or sh is run in a directory of its page, in the order of the page. What stands in a block
of text right behind it is what it prints; ... there stands for anything. A block without main is the inside of one.
Blocks whose program or package is not there are passed over by name. Of pages for man the examples are run, and the
prototypes must be those of the header. Recordings and tables that a page takes for granted are made for it. Pictures
are kept in DIRECTORY. SIGPAK_BUILD is the build tree, SIGPAK_PYTHON where the package for Python is.
"""

from __future__ import annotations

import functools
import os
import re
import shutil
import subprocess
import sys
import tempfile
from dataclasses import dataclass
from pathlib import Path

TREE = Path(__file__).resolve().parents[2]
BUILD = Path(os.environ.get("SIGPAK_BUILD", TREE / "build/release")).resolve()
COMMANDS = frozenset("spectrum plot stats info convert gen filter window merge apply".split())
TOOLS = ("jq", "parallel")  # what a shell may lack
LANGUAGES = ("c", "cpp", "python", "sh")
DATA_ALONE = ("text", "json", "csv")

_FENCE = re.compile(
    r"^```(?P<language>[\w{}-]*)[^\n]*\n(?P<code>.*?)^```$"
    r"(?:\n\n?```text\n(?P<prints>.*?)^```$)?",
    re.MULTILINE | re.DOTALL,
)

# The first draw of a process sets the time as the seed; pictures are to come again.
SEEDED = "{ dsp_vec u; dsp_init(&u); u.points = 1; dspc_rand(&u, DSP_RAND_UNIFORM); dsp_destroy(&u); srand(1); }\n"
C_BEFORE = "#include <math.h>\n#include <sigpak.h>\n#include <stdio.h>\n#include <stdlib.h>\n#include <string.h>\n"
CPP_BEFORE = "#include <cmath>\n#include <cstdio>\n#include <sigpak.hpp>\n#include <string>\n#include <vector>\n"


@dataclass
class Block:
    page: Path
    line: int
    language: str
    code: str
    prints: str | None

    @property
    def name(self) -> str:
        return f"{self.page.name}:{self.line}"


def blocks(page: Path) -> list[Block]:
    """The blocks of a page that are code."""
    text = page.read_text(encoding="utf-8")
    found = []
    for fence in _FENCE.finditer(text):
        language = fence["language"]
        if language.startswith("{") or language in DATA_ALONE:
            continue
        line = text.count("\n", 0, fence.start("language")) + 1
        if language not in LANGUAGES:
            raise SystemExit(f"{page.name}:{line}: a block of {language or 'no language'} is neither run nor data")
        found.append(Block(page, line, language, fence["code"], fence["prints"]))
    return found


def of_manual_page(page: Path) -> list[Block]:
    """The examples of a command, line by line, or the prototypes of a family of functions as a program."""
    text = page.read_text(encoding="utf-8")
    for mark, character in (("\\-", "-"), ("\\(aq", "'"), ("\\(ga", "`"), ("\\e", "\\"), ("\\|", ""), ("\\&", "")):
        text = text.replace(mark, character)
    if page.suffix == ".3":
        prototypes = re.findall(r"^\.B (.*;)$", text, re.MULTILINE)
        code = "\n".join(["#include <sigpak.h>", *prototypes, "int main(void) { return 0; }\n"])
        return [Block(page, 1, "c", code, None)]
    examples = re.search(r"^\.SH EXAMPLES\n(.*?)(?=^\.SH|\Z)", text, re.MULTILINE | re.DOTALL)
    lines = re.findall(r"^.*\bsigpak .*", examples[1], re.MULTILINE) if examples else []
    return [Block(page, number, "sh", line + "\n", None) for number, line in enumerate(lines, 1)]


def prepare(block: Block, scratch: Path) -> None:
    """Makes the recordings and tables that a block of the shell reads, and a recorder that needs no sound card."""
    recorder = scratch / "bin/arecord"
    recorder.parent.mkdir(exist_ok=True)
    if not recorder.exists():
        recorder.symlink_to(TREE / "tests/examples/write-recording")
    for name in re.findall(r"(?<![\w/.*-])((?:\w+/)?[\w*-]+\.(?:wav|csv|flac))\b", block.code):
        path = scratch / name.replace("*", "one")
        if path.exists() or name.endswith("*.csv") or re.search(rf"(?:>|-o) ?{re.escape(name)}", block.code):
            continue
        path.parent.mkdir(exist_ok=True)
        if path.suffix == ".csv":
            rows = (f"{n / 1000:.3f},{(n % 20 - 10) / 10:.1f},{n % 50}\n" for n in range(4096))
            path.write_text("time_s,voltage_V,ch2\n" + "".join(rows))
            continue
        recording = scratch / "bin/recording.wav"
        recording.write_bytes(subprocess.check_output([recorder]))
        if path.suffix == ".flac":
            subprocess.run([BUILD / "tools/sigpak", "convert", recording, "-o", path], check=True)
        else:
            shutil.copy(recording, path)


def program(block: Block) -> str:
    """The source of a whole program."""
    if re.search(r"^int main\(", block.code, re.MULTILINE):
        return block.code
    includes = "".join(line + "\n" for line in block.code.splitlines() if line.startswith("#include"))
    inside = "".join(line + "\n" for line in block.code.splitlines() if not line.startswith("#include"))
    before = C_BEFORE if block.language == "c" else CPP_BEFORE
    seeded = SEEDED if "c_rand(" in inside and block.language == "c" else ""
    return f"{before}{includes}int main(void) {{\n{seeded}{inside}return 0;\n}}\n"


def command(block: Block, scratch: Path) -> list[str]:
    """What runs a block; it is compiled first where it must be."""
    if block.language == "python":
        return [sys.executable, "-c", block.code]
    if block.language == "sh":
        return ["bash", "-euo", "pipefail", "-c", block.code]
    source = scratch / f"block{block.line}.{block.language}"
    source.write_text(program(block), encoding="utf-8")
    compiler = {
        "c": [os.environ.get("CC", "cc"), "-std=c99", "-D_DEFAULT_SOURCE"],
        "cpp": [os.environ.get("CXX", "c++"), "-std=c++17"],
    }[block.language]
    options = ["-Wall", "-Wextra", "-Werror", "-Wno-unused", f"-I{TREE / 'include'}"]
    libraries = [f"-L{BUILD / 'src'}", f"-Wl,-rpath,{BUILD / 'src'}", "-lsigpak", "-lm"]
    subprocess.run([*compiler, *options, str(source), "-o", str(source.with_suffix("")), *libraries], check=True)
    return [str(source.with_suffix(""))]


def environment(scratch: Path) -> dict[str, str]:
    own = {
        "PATH": f"{scratch / 'bin'}:{BUILD / 'tools'}:{os.environ['PATH']}",
        "PYTHONPATH": os.environ.get("SIGPAK_PYTHON", ""),
        "SIGPAK_LIBRARY": str(BUILD / "src/libsigpak.so"),
        "LC_ALL": "C.UTF-8",
    }
    return {**os.environ, **own}


def has_program() -> bool:
    """Whether this build has the program with all of its commands."""
    try:
        said = subprocess.run([BUILD / "tools/sigpak", "--help"], capture_output=True, text=True, check=False).stdout
    except FileNotFoundError:
        return False
    return set(re.findall(r"^ {2}(\w+) ", said, re.MULTILINE)) >= COMMANDS


@functools.cache
def can_import(module: str) -> bool:
    tried = subprocess.run([sys.executable, "-c", f"import {module}"], env=environment(TREE), capture_output=True)
    return tried.returncode == 0


def wanting(block: Block, can_draw: bool) -> str | None:
    """What a block needs and this system does not have."""
    if block.language == "sh" and "sigpak " in block.code and not can_draw:
        return "the program with its ten commands"
    tools = re.findall(rf"(?:^|[|] *)({'|'.join(TOOLS)}) ", block.code, re.MULTILINE) if block.language == "sh" else []
    modules = re.findall(r"^(?:import|from) (\w+)", block.code, re.MULTILINE) if block.language == "python" else []
    for module in modules:
        if not can_import(module):
            return f"Python's {module}"
    for path in re.findall(r"/usr/[\w./-]+", block.code):
        if not Path(path).exists():
            return path
    return next((f"the program {tool}" for tool in tools if shutil.which(tool) is None), None)


def matches(printed: str, expected: str) -> bool:
    """Whether the lines are those, with ... for any."""
    pattern = "\n".join(re.escape(line.rstrip()) for line in expected.strip().splitlines())
    pattern = pattern.replace(re.escape("..."), "(?:.|\n)*?")
    return re.fullmatch(pattern, "\n".join(line.rstrip() for line in printed.strip().splitlines())) is not None


def run(block: Block, scratch: Path) -> str | None:
    """Why a block is wrong."""
    if block.language == "sh":
        prepare(block, scratch)
    try:
        done = subprocess.run(
            command(block, scratch), cwd=scratch, env=environment(scratch), capture_output=True, text=True, timeout=120
        )
    except subprocess.CalledProcessError:
        return "does not compile"
    if done.returncode != 0:
        return f"ends with {done.returncode}\n{done.stdout}{done.stderr}"
    if block.prints is not None and not matches(done.stdout, block.prints):
        return f"prints\n{done.stdout}and not\n{block.prints}"
    return None


def keep(pictures: Path, folder: str) -> None:
    pictures.mkdir(parents=True, exist_ok=True)
    for picture in Path(folder).glob("*.svg"):
        shutil.copy(picture, pictures)


def main(arguments: list[str]) -> int:
    pictures = Path(arguments[1]) if arguments[0] == "--keep" else None
    pages = arguments[2:] if pictures else arguments
    can_draw, failed, ran = has_program(), 0, 0
    for page in map(Path, pages):
        with tempfile.TemporaryDirectory() as folder:
            for block in blocks(page) if page.suffix == ".md" else of_manual_page(page):
                missing = wanting(block, can_draw)
                if missing:
                    print(f"passed over  {block.name}: {missing} is not there")
                    continue
                ran += 1
                if reason := run(block, Path(folder)):
                    print(f"FAILED       {block.name} ({block.language}): {reason}")
                    failed += 1
            if pictures:
                keep(pictures, folder)
    print(f"{ran} blocks run, {failed} failed")
    return failed != 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
