# SPDX-License-Identifier: MIT
"""Documentation in numpydoc's layout from the blocks of the header."""

from __future__ import annotations

import textwrap

import header

from .operations import Operation

_WIDTH = 108


def docstring(operation: Operation, arguments: list[tuple[str, str, str]], returns: str, indent: int) -> list[str]:
    """The lines of a docstring, quotes and all.

    Parameters
    ----------
    operation : Operation
        What is documented.
    arguments : list of (name, type, name in C)
        What the caller gives.
    returns : str
        What comes back: a type, and after a colon what it is.
    indent : int
        The column of the text.
    """
    width = _WIDTH - indent
    lines = textwrap.wrap(operation.block.comment.summary + ".", width - 3) + [""]
    lines += _arguments(operation, arguments, width)
    kind, meaning = returns.split(": ", 1)
    lines += ["Returns", "-------", kind, *_filled(meaning, width, 4), ""]
    twins = operation.twins
    lines += ["Notes", "-----", *_pieces(operation, arguments, width)]
    lines += _filled(f"In C {twins.double.name} and {twins.single.name}, whose -1 is an Error here.", width)
    quoted = "\n".join(lines)
    if "\\" in quoted or '"""' in quoted:
        raise header.NotUnderstood(f"{twins.double.name}: marks that a docstring cannot hold")
    return [(" " * indent + line).rstrip() for line in ['"""' + lines[0], *lines[1:], '"""']]


def _arguments(operation: Operation, arguments: list[tuple[str, str, str]], width: int) -> list[str]:
    if not arguments:
        return []
    lines = ["Parameters", "----------"]
    for name, kind, c_name in arguments:
        entry = operation.entries.get(c_name)
        lines.append(f"{name} : {kind}")
        lines += [" " * 4 + line if line else "" for line in _body(entry.body, width - 4)] if entry else []
    return lines + [""]


def _body(pieces: tuple[header.Piece, ...], width: int) -> list[str]:
    """Prose filled, and what keeps its columns as a literal block."""
    lines: list[str] = []
    for piece in pieces:
        if isinstance(piece, header.Prose):
            lines += _filled(piece.text, width)
        elif isinstance(piece, header.Verbatim):
            lines += ["::", ""] if not lines else ["", "::", ""]
            lines += textwrap.indent(textwrap.dedent("\n".join(piece.lines)), "    ").split("\n")
        lines.append("")
    return lines[:-1]


def _pieces(operation: Operation, arguments: list[tuple[str, str, str]], width: int) -> list[str]:
    """The text of the block without the lines of the arguments that the caller gives."""
    told = {c_name for _, _, c_name in arguments}
    lines: list[str] = []
    for piece in operation.block.comment.pieces:
        if isinstance(piece, header.Prose) and piece is operation.block.comment.pieces[0]:
            lines += [*_filled(_without_summary(piece.text, operation.block.comment.summary), width), ""]
        elif not isinstance(piece, header.Entry):
            lines += [*_body((piece,), width), ""]
        elif not told.issuperset(piece.names):
            lines += [", ".join(piece.names), *("    " + x if x else "" for x in _body(piece.body, width - 4)), ""]
    return lines[1:] if lines[:1] == [""] else lines


def _without_summary(text: str, summary: str) -> str:
    """What follows the first sentence, or the whole where that ends in the middle of one."""
    return text[len(summary) + 1 :].strip() if text.startswith(summary + ".") else text


def _filled(text: str, width: int, indent: int = 0) -> list[str]:
    blank = " " * indent
    return textwrap.wrap(text, width, initial_indent=blank, subsequent_indent=blank, break_on_hyphens=False)
