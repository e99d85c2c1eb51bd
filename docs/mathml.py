# SPDX-License-Identifier: MIT
"""Sets the formulas that formula.py finds as MathML, which browsers draw without a script."""

from __future__ import annotations

import re
from html import escape

from formula import RELATIONS, SYMBOLS, Leaf, Node, Tree

INDEXED = frozenset("fc mx my vx vy".split())
FENCES = ("(", ")", "[", "]", "|", "||")


def _row(*parts: str) -> str:
    return "<mrow>" + "".join(parts) + "</mrow>"


def _number(text: str) -> str:
    power = re.fullmatch(r"([\d.]+)e([+-]?\d+)", text)
    if not power:
        return f"<mn>{text}</mn>"
    sign, digits = "<mo>&#8722;</mo>" * power[2].startswith("-"), power[2].lstrip("+-")
    ten = f"<msup><mn>10</mn>{_row(sign, f'<mn>{digits}</mn>')}</msup>"
    return ten if power[1] == "1" else _row(f"<mn>{power[1]}</mn>", "<mo>&#183;</mo>", ten)


def _name(text: str) -> str:
    """A name, with the index that stands behind its letter: x0, f_s, log10."""
    indexed = re.fullmatch(r"(log|[A-Za-z](?=_?\w$))_?(\w\d?)", text)
    if indexed and (text in INDEXED or not indexed[2].isalpha() or "_" in text):
        kind = "mn" if indexed[2].isdigit() else "mi"
        return f"<msub><mi>{indexed[1]}</mi><{kind}>{indexed[2]}</{kind}></msub>"
    return f"<mi>{SYMBOLS.get(text, escape(text)).replace(chr(39), '&#8242;')}</mi>"


def _leaf(leaf: Leaf) -> str:
    if leaf.kind == "number":
        return _number(leaf.text)
    if leaf.kind == "name":
        return _name(leaf.text)
    mark = escape({**RELATIONS, "-": "\u2212", "||": "\u2016"}.get(leaf.text, leaf.text))
    return f'<mo stretchy="false">{mark}</mo>' if leaf.text in FENCES else f"<mo>{mark}</mo>"


def _bare(tree: Tree) -> Tree:
    """Without the parentheses that a fraction or a root makes needless."""
    if isinstance(tree, Node) and tree.kind == "fence" and tree.parts[0] == Leaf("mark", "("):
        return tree.parts[1]
    return tree


def _set(tree: Tree, display: bool) -> str:
    if isinstance(tree, Leaf):
        return _leaf(tree)
    parts = [_set(part, display) for part in tree.parts]
    if tree.kind == "fence" and display and "<mfrac>" in parts[1]:
        return _row(*(part.replace(' stretchy="false"', "") if part.startswith("<mo") else part for part in parts))
    if tree.kind == "quotient" and display:
        above, below = (_row(_set(_bare(part), False)) for part in tree.parts)
        return f"<mfrac>{above}{below}</mfrac>"
    if tree.kind == "quotient":
        return _row(parts[0], "<mo>/</mo>", parts[1])
    if tree.kind == "times":
        return _row(parts[0], "<mo>&#183;</mo>", parts[1])
    if tree.kind == "beside":
        return _row(parts[0], '<mspace width="0.17em"/>', parts[1])
    if tree.kind == "power":
        return f"<msup>{_row(parts[0])}{_row(_set(_bare(tree.parts[1]), False))}</msup>"
    if tree.kind == "root":
        return f"<msqrt>{_set(_bare(tree.parts[1]), display)}</msqrt>"
    if tree.kind == "series":
        sigma = "<mo>&#8721;</mo>"
        if len(parts) > 1:
            sigma = f"<munder>{sigma}{_row(parts[1])}</munder>" if display else f"<msub>{sigma}{_row(parts[1])}</msub>"
        return _row(sigma, parts[0])
    if tree.kind == "applied" and tree.parts[0] == Leaf("name", "abs"):
        return _row("<mo>|</mo>", _set(_bare(tree.parts[1]), display), "<mo>|</mo>")
    if tree.kind == "applied" and not (isinstance(tree.parts[1], Node) and tree.parts[1].kind == "fence"):
        return _row(parts[0], '<mspace width="0.17em"/>', parts[1])
    return _row(*parts)


def markup(tree: Tree, display: bool = False) -> str:
    """A formula as MathML, with fractions and limits above and below the line where it is displayed."""
    mode = ' displaystyle="true"' if display else ""
    return f"<math{mode}>{_set(tree, display)}</math>"
