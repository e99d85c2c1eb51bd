#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Reads include/sigpak.h into the model of header_model.py.

Whatever is derived from the header, the reference pages and the bindings, is made from this model, so that it says what
the header says. Nothing is passed over: a line that is not understood, and an export that no block holds, is an error.
With a name as argument the block of that function is printed, without one the names of all exports.
"""

from __future__ import annotations

import re
import sys
from pathlib import Path
from typing import Iterator

from header_comments import comment, pieces_of
from header_model import (
    Block,
    Callbacks,
    Comment,
    Definition,
    Entry,
    Enumeration,
    Enumerator,
    Function,
    Header,
    NotUnderstood,
    Parameter,
    Part,
    Piece,
    Prose,
    Record,
    Section,
    Twins,
    Verbatim,
)

__all__ = [
    "Block",
    "Callbacks",
    "Comment",
    "Definition",
    "Entry",
    "Enumeration",
    "Enumerator",
    "Function",
    "Header",
    "NotUnderstood",
    "Parameter",
    "Part",
    "Piece",
    "Prose",
    "Record",
    "Section",
    "Twins",
    "Verbatim",
    "load",
    "parse",
]

HEADER = Path(__file__).resolve().parent.parent / "include" / "sigpak.h"


def _parameter(source: str) -> Parameter:
    found = re.fullmatch(r"(.*?)(\w+)", source.strip())
    if not found or not found[1].strip():
        raise NotUnderstood(f"parameter {source!r}")
    kind = re.sub(r"\s+", " ", found[1].replace("*", " * ")).strip()
    return Parameter(kind, found[2])


def _function(source: str) -> Function:
    """A prototype, or the type of one: 'int32_t name (parameters)'."""
    line = " ".join(source.split())
    found = re.fullmatch(r"(.*?)\(\*(\w+)\) ?\((.*)\)", line) or re.fullmatch(r"(.*?)(\w+) ?\((.*)\)", line)
    if not found:
        raise NotUnderstood(f"prototype {source!r}")
    returns, name, inside = found[1].strip(), found[2], found[3].strip()
    if returns.endswith("*"):
        returns = returns.rstrip("*").strip() + " *"
    parameters = () if inside == "void" else tuple(_parameter(part) for part in inside.split(","))
    return Function(name, returns, parameters)


def _enumeration(body: str, comment: Comment) -> Enumeration:
    members = [
        Enumerator(name, int(value, 0), (words or "").strip())
        for name, value, words in re.findall(r"(\w+) = (\w+),?(?:\s*/\*(.*?)\*/)?", body)
    ]
    if len(members) != body.count("="):
        raise NotUnderstood(f"enumeration {body!r}")
    return Enumeration(comment, tuple(members))


def _record(name: str, body: str) -> Record:
    fields = re.findall(r"([^;]+);\s*/\*(.*?)\*/", body)
    return Record(name, tuple((_parameter(declaration), words.strip()) for declaration, words in fields))


def _twins(functions: list[Function]) -> tuple[Twins, ...]:
    """Prototypes pair by pair, as they stand: the first is for dsp_vec, the second for dspf_vec."""
    pairs = tuple(Twins(*pair) for pair in zip(functions[::2], functions[1::2]))
    for pair in pairs:
        if [p.name for p in pair.double.parameters] != [p.name for p in pair.single.parameters]:
            raise NotUnderstood(f"{pair.double.name} and {pair.single.name} are no twins")
    if len(functions) % 2:
        raise NotUnderstood(f"{functions[-1].name} has no twin")
    return pairs


_TOKEN = re.compile(
    r"""(?P<title>/\*\ ----\ (?P<words>.*?)\ -+\ \*/)
      | (?P<comment>/\*.*?\*/)
      | (?P<definition>^\#define\ (?P<macro>DSP_\w+)\ (?P<value>\S+)$)
      | (?P<directive>^\#[^\n]*)
      | (?P<linkage>extern\ "C"\ \{|^\}[^\n]*)
      | (?P<enum>enum\ \{(?P<members>.*?)\};)
      | (?P<struct>typedef\ struct\ \w+\ \{(?P<fields>.*?)\}\ (?P<record>\w+);)
      | (?P<type>typedef\ (?P<callback>[^;]*?\([^;]*\));)
      | (?P<export>SIGPAK_API\ (?P<prototype>[^;]*);)
      | (?P<gap>\n[ ]*\n\s*)
      | (?P<space>\s+)""",
    re.VERBOSE | re.DOTALL | re.MULTILINE,
)


def _tokens(text: str) -> Iterator[re.Match[str]]:
    at = 0
    while at < len(text):
        token = _TOKEN.match(text, at)
        if not token:
            raise NotUnderstood(f"line {text.count(chr(10), 0, at) + 1}: {text[at : at + 60]!r}")
        yield token
        at = token.end()


class _Reader:
    """Gathers what stands together, up to the next blank line, and makes a part of the model of it."""

    def __init__(self) -> None:
        self.sections = [Section("")]
        self._comment: str | None = None
        self._declared: list[tuple[str, str]] = []

    def take(self, token: re.Match[str]) -> None:
        kind = token.lastgroup and next(k for k in _KINDS if token[k] is not None)
        if kind in ("gap", "title", "comment"):
            self.finish()
        if kind == "title":
            self.sections.append(Section(token["words"]))
        elif kind == "comment":
            self._comment = token[0]
        elif kind == "definition":
            self._add(Definition(token["macro"], token["value"], comment(self._taken())))
        elif kind == "enum":
            self._add(_enumeration(token["members"], comment(self._taken())))
        elif kind == "struct":
            self._add(_record(token["record"], token["fields"]))
        elif kind in ("type", "export"):
            self._declared.append((kind, token["callback"] or token["prototype"]))

    def finish(self) -> None:
        """Ends what stands together: prototypes with their comment, or a comment alone."""
        kinds = {kind for kind, _ in self._declared}
        functions = [_function(source) for _, source in self._declared]
        names = frozenset(p.name for function in functions for p in function.parameters)
        if kinds == {"export"}:
            self._add(Block(comment(self._taken(), names), _twins(functions)))
        elif kinds == {"type"}:
            names = frozenset(("alloc", "realloc", "free"))
            self._add(Callbacks(comment(self._taken(), names), tuple(functions)))
        elif kinds:
            raise NotUnderstood(f"{functions[0].name}: types and prototypes in one block")
        elif self._comment is not None:
            self._add(comment(self._taken(), frozenset(("a", "b", "out"))))
        self._declared = []

    def _taken(self) -> str:
        source, self._comment = self._comment or "/**/", None
        return source

    def _add(self, part: Part) -> None:
        self.sections[-1].parts.append(part)


_KINDS = ("title", "comment", "definition", "directive", "linkage", "enum", "struct", "type", "export", "gap", "space")


def _conventions(overview: Comment) -> tuple[Entry, ...]:
    lines = overview.text.split("\n")
    start = next(i for i, line in enumerate(lines) if line.startswith("Conventions,"))
    names = frozenset(line.split()[0] for line in lines[start:] if re.match(r"\w+ {2,}\S", line))
    return tuple(piece for piece in pieces_of(lines[start:], names) if isinstance(piece, Entry))


def parse(text: str) -> Header:
    """The model of a header's text."""
    reader = _Reader()
    for token in _tokens(text):
        reader.take(token)
    reader.finish()
    front = [part for part in reader.sections[0].parts if isinstance(part, Comment)]
    header = Header(front[0], _conventions(front[0]), tuple(reader.sections))
    exported = set(re.findall(r"\b(dsp[a-z]*_\w+)\s*\((?!\*)", re.sub(r"/\*.*?\*/", "", text, flags=re.DOTALL)))
    read = {function.name for function in header.functions}
    if exported != read or len(header.functions) != len(read):
        raise NotUnderstood(f"exports outside of every block: {sorted(exported ^ read)}")
    return header


def load(path: Path = HEADER) -> Header:
    """The model of the header of this tree."""
    return parse(path.read_text(encoding="ascii"))


def main() -> None:
    header = load()
    if len(sys.argv) > 1:
        print(header.block_of(sys.argv[1]).comment.text)
    else:
        print("\n".join(sorted(function.name for function in header.functions)))


if __name__ == "__main__":
    main()
