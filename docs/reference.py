#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""reference.py DIRECTORY: writes the pages of the reference, one for each section of sigpak.h.

The pages hold the signatures and say where in the header their texts are; sphinx_header.py sets those.
"""

from __future__ import annotations

import re
import sys
from pathlib import Path
from typing import Iterator

import header
from header import Function

INDEX = """\
Reference
=========

Every operation of the library, by family. The texts are those of ``sigpak.h``, which is the manual of the machine as
well. Here stands each operation with its twin: the one that begins with ``dsp`` takes records of double precision, the
one with ``dspf`` those of single precision.

.. toctree::
   :maxdepth: 1

   operations
"""

OPERATIONS = """\
All operations by name
======================

.. header-operations::
"""


def slug(title: str) -> str:
    """The name of a section's page: windows-application-and-names."""
    return "-".join(re.findall(r"[a-z0-9]+", title.lower()))


def heading(title: str) -> list[str]:
    return [title, "=" * len(title), ""]


def signature(function: Function) -> str:
    parameters = ", ".join(f"{p.type} {p.name}".replace("* ", "*") for p in function.parameters)
    return f"{function.returns} {function.name}({parameters or 'void'})".replace("* ", "*")


def block(part: header.Block) -> Iterator[str]:
    signatures = [signature(f) for twins in part.twins for f in (twins.double, twins.single)]
    yield f".. c:function:: {signatures[0]}"
    yield from (f"                {each}" for each in signatures[1:])
    yield from ("", f"   .. header-text:: {part.twins[0].double.name}", "")


def record(part: header.Record) -> Iterator[str]:
    yield from (f".. c:struct:: {part.name}", "")
    for field, text in part.fields:
        yield from (f"   .. c:member:: {field.type} {field.name}".replace("* ", "*"), "", f"      {text}", "")


def enumeration(part: header.Enumeration, place: str) -> Iterator[str]:
    yield from (f".. header-comment:: {place}", "", ".. container:: constants", "")
    shown = {member.value for member in part.members}
    is_hexadecimal = max(shown) >= 0x100 and not any("SPECTRUM" in member.name for member in part.members)
    for member in part.members:
        value = f"0x{member.value:03x}" if is_hexadecimal else str(member.value)
        remark = re.sub(r"\bdsp\w*_\w+", r":c:func:`\g<0>`", member.comment)
        yield from (f"   .. c:macro:: {member.name}", "", f"      {value}{remark and ': ' + remark}", "")


def callbacks(part: header.Callbacks, place: str) -> Iterator[str]:
    for function in part.types:
        parameters = ", ".join(f"{p.type} {p.name}".replace("* ", "*") for p in function.parameters)
        yield from (f".. c:type:: {function.returns} (*{function.name})({parameters})", "")
    yield from (f".. header-comment:: {place}", "")


def page(section: header.Section, number: int) -> str:
    lines = heading(section.title)
    for index, part in enumerate(section.parts):
        place = f"{number} {index}"
        if isinstance(part, header.Block):
            lines += block(part)
        elif isinstance(part, header.Record):
            lines += record(part)
        elif isinstance(part, header.Enumeration):
            lines += enumeration(part, place)
        elif isinstance(part, header.Callbacks):
            lines += callbacks(part, place)
        elif isinstance(part, header.Comment):
            lines += [f".. header-comment:: {place}", ""]
    return "\n".join(lines) + "\n"


def write(directory: Path) -> None:
    """The index, the list of operations, and a page for every section that has a title."""
    directory.mkdir(parents=True, exist_ok=True)
    sections = [(number, each) for number, each in enumerate(header.load().sections) if each.title]
    names = [slug(section.title) for _, section in sections]
    (directory / "index.rst").write_text(INDEX + "".join(f"   {name}\n" for name in names), encoding="utf-8")
    (directory / "operations.rst").write_text(OPERATIONS, encoding="utf-8")
    for (number, section), name in zip(sections, names):
        (directory / f"{name}.rst").write_text(page(section, number), encoding="utf-8")


if __name__ == "__main__":
    write(Path(sys.argv[1]))
