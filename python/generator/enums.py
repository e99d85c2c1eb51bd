# SPDX-License-Identifier: MIT
"""The module `enums`: the enumerations of the header as classes."""

from __future__ import annotations

import keyword

import header

_NAMES = {
    "DSP_WINDOW": "Window",
    "DSP_WINDOW_FLAG": "WindowFlag",
    "DSP_FIR": "FirKind",
    "DSP_RAND": "Distribution",
    "DSP_PAD": "Pad",
    "DSP_EDGE": "Edge",
    "DSP_PEAK": "Peak",
    "DSP_DCT": "Dct",
    "DSP_AVG": "Average",
    "DSP_WRITE": "Write",
    "DSP_SPLINE": "SplineEnds",
    "DSP_INTERP": "Interp",
    "DSP_SPECTRUM": "SpectrumFlag",
    "DSP_CORR": "Corr",
}

# Numbers that are not added to others.
_PLAIN = {"Window", "FirKind", "Distribution", "SplineEnds", "Dct"}


def class_name(prefix: str) -> str:
    return _NAMES.get(prefix) or "".join(word.capitalize() for word in prefix.split("_")[1:])


def _member(enumeration: header.Enumeration, member: header.Enumerator) -> str:
    name = member.name[len(enumeration.prefix) + 1 :]
    if keyword.iskeyword(name):
        raise header.NotUnderstood(f"{member.name} is a word of Python")
    line = f"    {name} = {member.value}"
    return f"{line}  # {member.comment}" if member.comment else line


def _class(enumeration: header.Enumeration) -> list[str]:
    name = class_name(enumeration.prefix)
    base = "IntEnum" if name in _PLAIN else "IntFlag"
    text = " ".join(enumeration.comment.text.split()) or f"The numbers {enumeration.prefix}_* of the C header."
    lines = ["", "", f"class {name}({base}):", f'    """{text}"""', ""]
    return lines + [_member(enumeration, member) for member in enumeration.members]


def module(model: header.Header) -> str:
    names = [class_name(enumeration.prefix) for enumeration in model.enumerations]
    lines = ['"""Kinds, modes and flags, by the names of the C header. Made from it."""', ""]
    lines += ["from enum import IntEnum, IntFlag", "", f"__all__ = {names!r}"]
    for enumeration in model.enumerations:
        lines += _class(enumeration)
    return "\n".join(lines) + "\n"
