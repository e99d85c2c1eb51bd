#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""man.py DIRECTORY: writes the manual pages of section 3: one for each family of operations, sigpak-families.3 for
families, and for every function a page of its name that leads there.
"""

from __future__ import annotations

import sys
from pathlib import Path
from typing import Iterator, Sequence

import header
import reference
from header import Block, Comment, Entry, Function, Piece, Prose, Section

OVERVIEW = "sigpak"


def escaped(text: str) -> str:
    """A line of text, with minus signs and without what troff takes for a request."""
    text = text.replace("\\", "\\e").replace("-", "\\-").replace("`", "\\(ga").replace("'", "\\(aq")
    return "\\&" + text if text.startswith(".") else text


def pieces(found: Sequence[Piece], is_inside: bool = False) -> Iterator[str]:
    """Prose filled, columns as they stand, entries as tagged paragraphs."""
    for piece in found:
        if isinstance(piece, Entry):
            yield from (".TP", ".I " + escaped(", ".join(piece.names)))
            yield from pieces(piece.body, is_inside=True)
        elif isinstance(piece, Prose):
            yield from ([] if is_inside else [".PP"])
            yield escaped(piece.text)
        else:
            yield from (".nf", *map(escaped, piece.lines), ".fi")


def synopsis(function: Function) -> Iterator[str]:
    yield ".B " + escaped(reference.signature(function)) + ";"


def block(part: Block) -> Iterator[str]:
    yield ".SS " + escaped(", ".join(twins.double.name for twins in part.twins))
    yield ".nf"
    for twins in part.twins:
        yield from synopsis(twins.double)
        yield from synopsis(twins.single)
    yield from (".fi", ".PP")
    yield from pieces(part.comment.pieces)


def name(section: Section) -> str:
    return f"sigpak-{reference.slug(section.title)}"


def title(page: str, text: str, functions: Sequence[str]) -> list[str]:
    names = ", ".join([page, *functions])
    return [f'.TH {page.upper()} 3 "" "sigpak" "Library Functions Manual"', ".SH NAME", f"{escaped(names)} \\- {text}"]


def family(section: Section) -> str:
    """The page of a section: its remarks, names and operations."""
    functions = [f.name for b in section.blocks for twins in b.twins for f in (twins.double, twins.single)]
    lines = title(name(section), section.title, functions)
    lines += [".SH SYNOPSIS", ".B #include <sigpak.h>", ".PP", "Link with \\fI\\-lsigpak\\fP.", ".SH DESCRIPTION"]
    for part in section.parts:
        if isinstance(part, Block):
            lines += block(part)
        elif isinstance(part, Comment):
            lines += pieces(part.pieces)
        elif isinstance(part, header.Enumeration):
            lines += enumeration(part)
        elif isinstance(part, header.Callbacks):
            lines += pieces(part.comment.pieces)
    lines += [".SH SEE ALSO", f".BR {OVERVIEW} (3)"]
    return "\n".join(lines) + "\n"


def enumeration(part: header.Enumeration) -> Iterator[str]:
    yield from pieces(part.comment.pieces)
    yield ".nf"
    for member in part.members:
        yield escaped(f"{member.name:<32} {member.value:<5} {member.comment}".rstrip())
    yield ".fi"


def overview(model: header.Header) -> str:
    lines = title(OVERVIEW, "digital signal processing on sampled vectors", [])
    lines += [".SH SYNOPSIS", ".B #include <sigpak.h>", ".SH DESCRIPTION"]
    lines += pieces([piece for piece in model.overview.pieces if not isinstance(piece, Entry)][:1])
    lines += [".SH CONVENTIONS", *pieces(model.conventions), ".SH PAGES"]
    for section in (each for each in model.sections if each.blocks):
        lines += [".TP", f".BR {escaped(name(section))} (3)", escaped(section.title)]
    return "\n".join(lines) + "\n"


def write(directory: Path) -> None:
    directory.mkdir(parents=True, exist_ok=True)
    model = header.load()
    (directory / f"{OVERVIEW}.3").write_text(overview(model), encoding="ascii")
    for section in model.sections:
        if not section.blocks:
            continue
        (directory / f"{name(section)}.3").write_text(family(section), encoding="ascii")
        for twins in (twins for each in section.blocks for twins in each.twins):
            for function in (twins.double, twins.single):
                (directory / f"{function.name}.3").write_text(f".so man3/{name(section)}.3\n", encoding="ascii")


if __name__ == "__main__":
    write(Path(sys.argv[1]))
