# SPDX-License-Identifier: MIT
"""The model of include/sigpak.h: sections, blocks of text, twin prototypes, enumerations, conventions."""

from __future__ import annotations

import re
from dataclasses import dataclass, field
from typing import Union


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
