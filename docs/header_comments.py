# SPDX-License-Identifier: MIT
"""Reads a comment of include/sigpak.h: prose, what keeps its columns, and entries that names begin."""

from __future__ import annotations

import re

from header_model import Comment, Entry, Piece, Prose, Verbatim


def _indent(line: str) -> int:
    return len(line) - len(line.lstrip())


def _entry_at(lines: list[str], start: int, names: frozenset[str], column: int | None) -> tuple[Entry, int] | None:
    """The entry that begins on a line: names of this block, a gap, and text whose further lines keep its column.

    The gap may be a single blank where the text stands in the column of the entry before.
    """
    found = re.match(r"(\w+(?:, \w+)*)( +)(?=\S)", lines[start])
    if not found or not set(found[1].split(", ")) <= names:
        return None
    if len(found[2]) < 2 and found.end() != column:
        return None
    end = start + 1
    while end < len(lines) and lines[end] and _indent(lines[end]) >= min(found.end(), 2 + len(found[1])):
        end += 1
    if end < len(lines) and 0 < _indent(lines[end]):
        return None
    body = [lines[start][found.end() :]] + [line[found.end() :] for line in lines[start + 1 : end]]
    if any(line[: found.end()].strip() for line in lines[start + 1 : end]):
        body = [body[0]] + [line.strip() for line in lines[start + 1 : end]]
    return Entry(tuple(found[1].split(", ")), pieces_of(body)), end


def _is_aligned(line: str) -> bool:
    return line.startswith(" ") or re.search(r"\S {2,}\S", line) is not None


def pieces_of(lines: list[str], names: frozenset[str] = frozenset()) -> tuple[Piece, ...]:
    """Cuts the lines of a comment into prose, what keeps its columns, and entries of the given names."""
    pieces: list[Piece] = []
    column: int | None = None
    at = 0
    while at < len(lines):
        if not lines[at].strip():
            at += 1
            continue
        entry = _entry_at(lines, at, names, column)
        if entry:
            column = re.match(r"\w+(?:, \w+)* +", lines[at]).end()  # type: ignore[union-attr]
            pieces.append(entry[0])
            at = entry[1]
            continue
        aligned, first = _is_aligned(lines[at]), at
        while at < len(lines) and (lines[at].strip() or aligned and _goes_on(lines, at)):
            if at > first and (_is_aligned(lines[at]) != aligned or _entry_at(lines, at, names, column)):
                if lines[at].strip():
                    break
            at += 1
        run = lines[first:at]
        pieces.append(Verbatim(tuple(run)) if aligned else Prose(" ".join(line.strip() for line in run)))
    return tuple(pieces)


def _goes_on(lines: list[str], blank: int) -> bool:
    """Whether what keeps its columns goes on behind a blank line."""
    return blank + 1 < len(lines) and lines[blank + 1].startswith(" ")


def comment(source: str, names: frozenset[str] = frozenset()) -> Comment:
    """The comment between its marks, with the indentation of three that its further lines have taken off."""
    lines = source[2:-2].strip("\n").rstrip().split("\n")
    lines = [lines[0].strip()] + [line[3:].rstrip() if line[:3].isspace() else line.strip() for line in lines[1:]]
    return Comment("\n".join(lines), pieces_of(lines, names))
