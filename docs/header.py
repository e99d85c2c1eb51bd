#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Reads include/sigpak.h into a model: sections, blocks of text, twin prototypes, enumerations, conventions.

Whatever is derived from the header, the reference pages and the bindings, is made from this model, so that it says what
the header says. Nothing is passed over: a line that is not understood, and an export that no block holds, is an error.
With a name as argument the block of that function is printed, without one the names of all exports.
"""

from __future__ import annotations

import re
import sys
from dataclasses import dataclass, field
from pathlib import Path
from typing import Iterator, Union

HEADER = Path(__file__).resolve().parent.parent / "include" / "sigpak.h"


@dataclass(frozen=True)
class Prose:
    """Sentences, to be filled to any width."""

    text: str


@dataclass(frozen=True)
class Verbatim:
    """Formulas, tables and code, whose columns count."""

    lines: tuple[str, ...]


@dataclass(frozen=True)
class Entry:
    """Names, such as those of arguments, and what is said of them."""

    names: tuple[str, ...]
    body: tuple[Piece, ...]


Piece = Union[Prose, Verbatim, Entry]


@dataclass(frozen=True)
class Parameter:
    type: str
    name: str


@dataclass(frozen=True)
class Function:
    name: str
    returns: str
    parameters: tuple[Parameter, ...]


@dataclass(frozen=True)
class Twins:
    """One operation: its prototype for dsp_vec, and the one for dspf_vec."""

    double: Function
    single: Function


@dataclass(frozen=True)
class Comment:
    """A comment of the header: its text as it stands, and the pieces that it consists of."""

    text: str = ""
    pieces: tuple[Piece, ...] = ()

    @property
    def summary(self) -> str:
        """The first sentence or formula; what is in parentheses ends none."""
        first = self.pieces[0] if self.pieces else Prose("")
        if isinstance(first, Prose):
            return re.split(r"(?<=[^.\s][.;])\s(?![^(]*\))", first.text)[0].rstrip(".;")
        return first.lines[0] if isinstance(first, Verbatim) else " ".join(first.names)


@dataclass(frozen=True)
class Block:
    """A comment and the operations that it documents."""

    comment: Comment
    twins: tuple[Twins, ...]


@dataclass(frozen=True)
class Enumerator:
    name: str
    value: int
    comment: str


@dataclass(frozen=True)
class Enumeration:
    comment: Comment
    members: tuple[Enumerator, ...]

    @property
    def prefix(self) -> str:
        """What the names share: DSP_PEAK of DSP_PEAK_SAMPLE and the rest."""
        words = [member.name.split("_")[:-1] for member in self.members]
        shared = 0
        while all(len(word) > shared and word[shared] == words[0][shared] for word in words):
            shared += 1
        return "_".join(words[0][:shared])


@dataclass(frozen=True)
class Record:
    """A structure: its fields, and what is said beside each."""

    name: str
    fields: tuple[tuple[Parameter, str], ...]


@dataclass(frozen=True)
class Callbacks:
    """Types of functions that the caller supplies."""

    comment: Comment
    types: tuple[Function, ...]


@dataclass(frozen=True)
class Definition:
    name: str
    value: str
    comment: Comment


Part = Union[Comment, Block, Enumeration, Record, Callbacks, Definition]


@dataclass
class Section:
    """A part of the header under one title; comments that belong to no declaration speak of all that follow."""

    title: str
    parts: list[Part] = field(default_factory=list)

    @property
    def blocks(self) -> list[Block]:
        return [part for part in self.parts if isinstance(part, Block)]

    @property
    def enumerations(self) -> list[Enumeration]:
        return [part for part in self.parts if isinstance(part, Enumeration)]


@dataclass(frozen=True)
class Header:
    overview: Comment
    conventions: tuple[Entry, ...]
    sections: tuple[Section, ...]

    @property
    def blocks(self) -> list[Block]:
        return [block for section in self.sections for block in section.blocks]

    @property
    def enumerations(self) -> list[Enumeration]:
        return [part for section in self.sections for part in section.enumerations]

    @property
    def twins(self) -> list[Twins]:
        return [twins for block in self.blocks for twins in block.twins]

    @property
    def functions(self) -> list[Function]:
        return [function for twins in self.twins for function in (twins.double, twins.single)]

    def block_of(self, name: str) -> Block:
        """The block that documents the function of that name, of either precision."""
        for block in self.blocks:
            if any(name in (twins.double.name, twins.single.name) for twins in block.twins):
                return block
        raise KeyError(name)


class NotUnderstood(ValueError):
    """The header holds what this reader does not know."""


# ---- Comments ---------------------------------------------------------------------------------------------------


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
    return Entry(tuple(found[1].split(", ")), _pieces(body)), end


def _is_aligned(line: str) -> bool:
    return line.startswith(" ") or re.search(r"\S {2,}\S", line) is not None


def _pieces(lines: list[str], names: frozenset[str] = frozenset()) -> tuple[Piece, ...]:
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


def _comment(source: str, names: frozenset[str] = frozenset()) -> Comment:
    """The comment between its marks, with the indentation of three that its further lines have taken off."""
    lines = source[2:-2].strip("\n").rstrip().split("\n")
    lines = [lines[0].strip()] + [line[3:].rstrip() if line[:3].isspace() else line.strip() for line in lines[1:]]
    return Comment("\n".join(lines), _pieces(lines, names))


# ---- Declarations -----------------------------------------------------------------------------------------------


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


# ---- The whole --------------------------------------------------------------------------------------------------

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
            self._add(Definition(token["macro"], token["value"], _comment(self._taken())))
        elif kind == "enum":
            self._add(_enumeration(token["members"], _comment(self._taken())))
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
            self._add(Block(_comment(self._taken(), names), _twins(functions)))
        elif kinds == {"type"}:
            names = frozenset(("alloc", "realloc", "free"))
            self._add(Callbacks(_comment(self._taken(), names), tuple(functions)))
        elif kinds:
            raise NotUnderstood(f"{functions[0].name}: types and prototypes in one block")
        elif self._comment is not None:
            self._add(_comment(self._taken(), frozenset(("a", "b", "out"))))
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
    return tuple(piece for piece in _pieces(lines[start:], names) if isinstance(piece, Entry))


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
