# SPDX-License-Identifier: MIT
"""A Sphinx extension: the texts of sigpak.h as nodes, formulas as mathematics, names as links.

    .. header-text:: dspi_fft        what the header says of an operation
    .. header-comment:: 12 3         a comment by itself: the numbers of its heading and its place there
    .. header-operations::           every operation with its first sentence
    .. header-conventions::          the conventions
    .. formula::                     formulas, a line each; :formula:`x^2` is one within a line
"""

from __future__ import annotations

import re
from typing import Any, Iterator, Sequence

import formula
import header
import header_comments
import mathml
from docutils import nodes
from docutils.parsers.rst import Directive
from sphinx import addnodes
from sphinx.application import Sphinx

HEADER = header.load()
FUNCTIONS = {function.name for function in HEADER.functions}
CONSTANTS = {member.name for each in HEADER.enumerations for member in each.members}
NONE: frozenset[str] = frozenset()

_CODE = re.compile(r"dsp\w*_\w+(?:\([^()]*\))?|DSP_\w+\*?|(?<!\w)_[A-Z]\w+|`\w+`|\b[a-z]\w*\(\)")


# ---- Words ----------------------------------------------------------------------------------------------------------


def reference(text: str) -> nodes.Node:
    """A name of the interface, linked to where it is told of."""
    name = re.match(r"\w+", text.strip("`"))
    target = name[0] if name else ""
    literal = nodes.literal(text, text.strip("`"), classes=["xref", "c"])
    kind = "func" if target in FUNCTIONS else "macro" if target in CONSTANTS else ""
    if not kind:
        return nodes.literal(text, text.strip("`"))
    return addnodes.pending_xref("", literal, refdomain="c", reftype=kind, reftarget=target, refwarn=True)


def math(tree: formula.Tree, text: str, display: bool = False) -> nodes.Node:
    return nodes.raw(text, mathml.markup(tree, display), format="html")


def words(text: str, names: frozenset[str] = NONE) -> Iterator[nodes.Node]:
    """A text with its names as links and its formulas as mathematics."""
    text = re.sub(r"(?<!\S)\*(?=\w+ =)", "", text)  # *scale = ... stores through a pointer
    at = 0
    for code in _CODE.finditer(text):
        yield from _plain(text[at : code.start()], names)
        yield reference(code[0])
        at = code.end()
    yield from _plain(text[at:], names)


def _plain(text: str, names: frozenset[str]) -> Iterator[nodes.Node]:
    for run, tree in formula.spans(text, names):
        yield nodes.Text(run) if tree is None else math(tree, run)


def paragraph(text: str, names: frozenset[str] = NONE) -> nodes.paragraph:
    return nodes.paragraph(text, "", *words(text, names))


# ---- Columns --------------------------------------------------------------------------------------------------------


def gutters(lines: Sequence[str]) -> list[tuple[int, int]]:
    """The columns of a table: between them two blanks or more stand in every line."""
    width = max(map(len, lines))
    inked = [any(at < len(line) and line[at] != " " for line in lines) for at in range(width)]
    ends = [at for at in range(1, width) if inked[at - 1] and not any(inked[at : at + 2]) and any(inked[at:])]
    starts = [next(at for at in range(end, width) if inked[at]) for end in ends]
    return list(zip([0, *starts], [*starts, 10**6]))


def rows(lines: Sequence[str]) -> list[list[list[str]]]:
    """The lines of every cell. A line without a first cell goes on in those of the row above."""
    columns, found = gutters(lines), []
    for line in lines:
        cells = [line[start:end].rstrip() for start, end in columns]
        if cells[0].strip() or not found:
            found.append([[cell] for cell in cells])
        else:
            for cell, more in zip(found[-1], cells):
                cell.append(more)
    return found


def groups(lines: Sequence[str]) -> Iterator[list[str]]:
    """Lines that belong together: a smaller indentation than before begins another group."""
    group: list[str] = []
    depth = 0
    for line in lines:
        indent = len(line) - len(line.lstrip())
        if group and (not line.strip() or indent < depth and len(gutters(group)) == 1):
            yield group
            group = []
        if line.strip():
            depth = min(depth, indent) if group else indent
            group.append(line)
    if group:
        yield group


def table(lines: Sequence[str], names: frozenset[str]) -> nodes.table:
    content = rows(lines)
    group = nodes.tgroup("", cols=len(content[0]))
    group += [nodes.colspec("", colwidth=1) for _ in content[0]]
    body = nodes.tbody()
    for row in content:
        entries = [nodes.entry("", *cell(lines_of_cell, names)) for lines_of_cell in row]
        body += nodes.row("", *entries)
    group += body
    return nodes.table("", group, classes=["columns"])


def cell(lines: list[str], names: frozenset[str]) -> list[nodes.Node]:
    first = lines[0].strip()
    if any(line.strip() for line in lines[1:]):
        return list(pieces(header_comments.pieces_of([first, *lines[1:]]), names))
    text = re.sub(r"\s+", " ", first)
    found = formula.find(text, 0, names)
    if found and found[1] == len(text):
        return [nodes.paragraph(text, "", math(found[0], text, display=True))]
    return [paragraph(text, names)] if text else []


def aligned(lines: Sequence[str], names: frozenset[str]) -> Iterator[nodes.Node]:
    """What keeps its columns: code as it stands, a table, or formulas line by line."""
    if any(line.lstrip().startswith("#") or line.rstrip().endswith(");") for line in lines):
        language = "c" if lines[0].rstrip().endswith(";") else "text"
        yield nodes.literal_block("\n".join(lines), "\n".join(lines), language=language)
        return
    for group in groups(lines):
        if len(gutters(group)) > 1:
            yield table(group, names)
        else:
            for line in group:
                yield displayed(line.strip(), names)


def displayed(line: str, names: frozenset[str]) -> nodes.Node:
    """A line of its own, set as display mathematics as far as it is a formula."""
    parts: list[nodes.Node] = []
    for run, tree in formula.spans(line, names):
        parts += list(words(run, names)) if tree is None else [math(tree, run, display=False)]
    found = formula.find(line, 0, names)
    if found and found[1] == len(line):
        parts = [math(found[0], line, display=True)]
    return nodes.paragraph(line, "", *parts, classes=["formula"])


# ---- Pieces ---------------------------------------------------------------------------------------------------------


def pieces(found: Sequence[header.Piece], names: frozenset[str]) -> Iterator[nodes.Node]:
    entries: nodes.definition_list | None = None
    for piece in found:
        if isinstance(piece, header.Entry):
            if entries is None:
                entries = nodes.definition_list(classes=["arguments"])
                yield entries
            entries += entry(piece, names)
            continue
        entries = None
        if isinstance(piece, header.Prose):
            yield paragraph(piece.text, names)
        else:
            yield from aligned(piece.lines, names)


def entry(piece: header.Entry, names: frozenset[str]) -> nodes.definition_list_item:
    term = nodes.term("", "", nodes.literal("", ", ".join(piece.names)))
    return nodes.definition_list_item("", term, nodes.definition("", *pieces(piece.body, names)))


def text_of(block: header.Block) -> list[nodes.Node]:
    names = frozenset(parameter.name for twins in block.twins for parameter in twins.double.parameters)
    return list(pieces(block.comment.pieces, names))


def part(section: str, place: str) -> Any:
    return HEADER.sections[int(section)].parts[int(place)]


class HeaderText(Directive):
    required_arguments = 1

    def run(self) -> list[nodes.Node]:
        return text_of(HEADER.block_of(self.arguments[0]))


class HeaderComment(Directive):
    required_arguments = 2

    def run(self) -> list[nodes.Node]:
        found = part(*self.arguments)
        return list(pieces(getattr(found, "comment", found).pieces, NONE))


class HeaderOperations(Directive):
    """Every operation by the name that the families share, with what it does."""

    def run(self) -> list[nodes.Node]:
        found = {twins.double.name: block for block in HEADER.blocks for twins in block.twins}
        group = nodes.tgroup("", nodes.colspec("", colwidth=1), nodes.colspec("", colwidth=3), cols=2)
        body = nodes.tbody()
        for name in sorted(found, key=lambda name: name.split("_", 1)[1]):
            names = frozenset(p.name for twins in found[name].twins for p in twins.double.parameters)
            summary = paragraph(found[name].comment.summary, names)
            row = nodes.row("", nodes.entry("", nodes.paragraph("", "", reference(name))), nodes.entry("", summary))
            body += row
        group += body
        return [nodes.table("", group, classes=["operations"])]


class HeaderConventions(Directive):
    def run(self) -> list[nodes.Node]:
        return list(pieces(HEADER.conventions, frozenset(("points", "delta"))))


class Formula(Directive):
    has_content = True

    def run(self) -> list[nodes.Node]:
        return [displayed(line.strip(), names_in(line)) for line in self.content if line.strip()]


def names_in(text: str) -> frozenset[str]:
    """In a formula that is marked as one every word is a quantity."""
    return frozenset(re.findall(r"[A-Za-z]\w+", text)) - {"sum", "over", "of", "for", "and", "where", "with"}


def formula_role(role: str, source: str, text: str, line: int, inliner: Any, *rest: Any) -> Any:
    if re.fullmatch(r"[\w.]+", text):
        return [math(formula.Leaf("number" if text[0].isdigit() else "name", text), text)], []
    found = formula.find(text, 0, names_in(text))
    if found is None or found[1] != len(text):
        return [], [inliner.reporter.error(f"not understood as a formula: {text}", line=line)]
    return [math(found[0], text)], []


def setup(app: Sphinx) -> dict[str, Any]:
    app.add_directive("header-text", HeaderText)
    app.add_directive("header-comment", HeaderComment)
    app.add_directive("header-operations", HeaderOperations)
    app.add_directive("header-conventions", HeaderConventions)
    app.add_directive("formula", Formula)
    app.add_role("formula", formula_role)
    return {"parallel_read_safe": True, "parallel_write_safe": True}
