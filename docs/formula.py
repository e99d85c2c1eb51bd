# SPDX-License-Identifier: MIT
"""Finds the formulas in a text of the header.

A formula is what a programmer writes on one line: x[n] = sqrt(a^2 + b^2) / 2, sum over n of x[n] exp(-2 pi i n k / N).
What is not certainly a formula stays a word: names of more than one letter count only where the block declares them.
"""

from __future__ import annotations

import re
from dataclasses import dataclass
from typing import Callable, Iterator, Union

FUNCTIONS = frozenset(
    "sin cos tan asin acos atan atan2 sinh cosh tanh exp ln log log2 log10 sqrt sinc max min mean rms conj abs"
    " I0 J0 J1 Y0 Y1".split()
)
WORDS = frozenset(("points", "width", "slope", "scale", "window"))  # quantities beside an operation alone
SYMBOLS = {"pi": "\u03c0", "beta": "\u03b2", "sigma": "\u03c3", "inf": "\u221e"}
QUANTITIES = frozenset("fc mx my vx vy x0 y0 y1 s0 s1 eps ENBW Hz re im delta".split())
ARTICLES = frozenset(("a", "A", "I"))
OPERATIONS = frozenset(("=", "+", "-", "*", "/", "^", "<", ">", "<=", ">="))
RELATIONS = {"=": "=", "+=": "+=", "<": "<", ">": ">", "<=": "\u2264", ">=": "\u2265", "..": "\u2026"}

_TOKEN = re.compile(
    r"(?P<number>\d+(?:\.\d+)?(?:e[+-]?\d+)?(?![\w.]*[A-Za-z_]{2}))"
    r"|(?P<name>i(?=b\b)|[A-Za-z_]\w*(?:\.(?:im|re|points|delta))?(?:'(?!\w))?)"
    r"|(?P<mark>\.\.\.|\.\.|\+=|<=|>=|\|\||[-+*/^=<>()\[\]|,])"
)


@dataclass(frozen=True)
class Token:
    kind: str
    text: str
    start: int
    end: int
    spaced: bool  # a blank before it


@dataclass(frozen=True)
class Leaf:
    """A number, a name or a mark."""

    kind: str
    text: str


@dataclass(frozen=True)
class Node:
    """What an operation makes of its parts."""

    kind: str
    parts: tuple[Tree, ...]


Tree = Union[Leaf, Node]


def tokens(text: str, start: int) -> list[Token]:
    """The tokens from a place on, up to the first character that no formula holds."""
    found: list[Token] = []
    at = start
    while True:
        gap = re.compile(r"\s*").match(text, at)
        place = gap.end() if gap else at
        token = _TOKEN.match(text, place)
        if not token:
            return found
        found.append(Token(token.lastgroup or "", token[0], token.start(), token.end(), place > at))
        at = token.end()


class _Parser:
    """Recursive descent. A rule returns None, and the place is then unchanged, where it does not apply."""

    def __init__(self, found: list[Token], names: frozenset[str]) -> None:
        self.tokens, self.names = found, names
        self.at = self.depth = 0

    def peek(self, ahead: int = 0) -> Token | None:
        return self.tokens[self.at + ahead] if self.at + ahead < len(self.tokens) else None

    def is_next(self, *marks: str) -> bool:
        token = self.peek()
        return token is not None and token.kind == "mark" and token.text in marks

    def chain(self, part: Callable[[], Tree | None], marks: tuple[str, ...], kind: str) -> Tree | None:
        """part (mark part)*, as one node where there is more than one."""
        first = part()
        if first is None:
            return None
        parts = [first]
        while self.is_next(*marks):
            before, mark = self.at, self.tokens[self.at]
            self.at += 1
            after = part()
            if after is None or self.is_hyphen(mark):
                self.at = before
                break
            parts += [Leaf("mark", mark.text), after]
        return Node(kind, tuple(parts)) if len(parts) > 1 else first

    def is_hyphen(self, mark: Token) -> bool:
        """7-13 in a sentence is a range, and otherwise -1 holds a sign."""
        place = self.tokens.index(mark)
        before, after = self.tokens[place - 1], self.tokens[place + 1]
        if mark.text != "-" or self.depth > 0:
            return False
        return mark.spaced and not after.spaced or not mark.spaced and {before.kind, after.kind} == {"number"}

    def relation(self) -> Tree | None:
        return self.chain(self.sum, tuple(RELATIONS), "relation")

    def sum(self) -> Tree | None:
        if self.is_next("+", "-"):
            sign = self.tokens[self.at].text
            self.at += 1
            inner = self.chain(self.product, ("+", "-"), "sum")
            if inner is None:
                self.at -= 1
                return None
            return Node("signed", (Leaf("mark", sign), inner))
        return self.chain(self.product, ("+", "-"), "sum")

    def product(self) -> Tree | None:
        """Factors side by side, and * between them; / divides all that stands before it."""
        left = self.factor(juxtaposed=False)
        while left is not None:
            before = self.at
            if self.is_next("*", "/"):
                mark = self.tokens[self.at].text
                self.at += 1
                right = self.tight() if mark == "/" else self.factor(juxtaposed=False)
                if right is None:
                    self.at = before
                    return left
                left = Node("quotient" if mark == "/" else "times", (left, right))
                continue
            right = self.factor(juxtaposed=True) if self.has_room(left) else None
            if right is None:
                return left
            left = Node("beside", (left, right))
        return None

    def has_room(self, left: Tree) -> bool:
        """Whether what follows may be a factor: not behind 0, 1, a flag such as 256, or a word."""
        if not isinstance(left, Leaf):
            return not self.is_next("...") or left.kind != "power"
        if left.kind == "number":
            return self.depth > 0 or left.text not in ("0", "1") and (len(left.text) < 3 or "." in left.text)
        return self.depth > 0 or self.is_symbol(left.text)

    def is_symbol(self, name: str) -> bool:
        """A letter, with an index or without, or what stands for one."""
        indexed = name in self.names and re.fullmatch(r"[A-Za-z](?:\d|_\w)", name) is not None
        return len(name) == 1 or name in SYMBOLS or name in QUANTITIES or indexed

    def tight(self) -> Tree | None:
        """A divisor: one factor, and what is written to it without a blank, as in k / 2N."""
        left = self.factor(juxtaposed=False)
        following = self.peek()
        while left is not None and following and not following.spaced and following.kind != "mark":
            right = self.factor(juxtaposed=True)
            if right is None:
                break
            left, following = Node("beside", (left, right)), self.peek()
        return left

    def factor(self, juxtaposed: bool) -> Tree | None:
        base = self.base(juxtaposed)
        if base is None or not self.is_next("^"):
            return base
        before = self.at
        self.at += 1
        signed = self.is_next("-")
        self.at += signed
        power = self.base(False)
        if power is None:
            self.at = before
            return base
        return Node("power", (base, Node("signed", (Leaf("mark", "-"), power)) if signed else power))

    def base(self, juxtaposed: bool) -> Tree | None:
        token = self.peek()
        if token is None:
            return None
        if token.kind == "number":
            if juxtaposed and self.depth == 0 and not self.is_formula_behind():
                return None
            self.at += 1
            return Leaf("number", token.text)
        if token.kind == "name":
            return self.named(token, juxtaposed)
        if token.text == "...":
            self.at += 1
            return Leaf("mark", "\u2026")
        closing = {"(": ")", "[": "]", "|": "|", "||": "||"}.get(token.text)
        if closing is None or juxtaposed and token.text not in ("(", "|"):
            return None
        return self.enclosed(token.text, closing)

    def is_formula_behind(self) -> bool:
        """Whether the number that stands here is a factor: 3 d, and not the 1983 of (1983)."""
        following = self.peek(1)
        return following is not None and following.text in self.names | QUANTITIES | SYMBOLS.keys()

    def enclosed(self, opening: str, closing: str) -> Tree | None:
        before = self.at
        self.at += 1
        self.depth += 1
        inner = self.listed()
        self.depth -= 1
        if inner is None or not self.is_next(closing) or opening == "[" and inner.kind != "list":
            self.at = before
            return None
        self.at += 1
        return Node("fence", (Leaf("mark", opening), inner, Leaf("mark", closing)))

    def listed(self) -> Tree | None:
        return self.chain(self.relation, (",",), "list")

    def named(self, token: Token, juxtaposed: bool) -> Tree | None:
        if token.text == "sum":
            return self.summation()
        following = self.peek(1)
        opens = following is not None and not following.spaced and following.text in ("(", "[")
        if token.text in FUNCTIONS and following is not None:
            return self.applied(token, opens)
        if not self.is_known(token, juxtaposed, following, opens):
            return None
        self.at += 1
        leaf: Tree = Leaf("name", token.text)
        if opens and following is not None:
            inside = self.enclosed_index() if following.text == "[" else self.enclosed("(", ")")
            if inside is not None:
                return Node("applied", (leaf, inside))
            if following.text == "[":
                self.at -= 1
                return None
        return leaf

    def is_known(self, token: Token, juxtaposed: bool, following: Token | None, opens: bool) -> bool:
        name = token.text.rstrip("'").split(".")[0]
        if name in ARTICLES and not opens and self.depth == 0:
            before = self.tokens[self.at - 1].text if self.at > 0 else ""
            return before == "^" or following is not None and following.text in OPERATIONS
        if self.is_symbol(name):
            return True
        if "_" in name[1:-1] and name[0] != "_" or name in self.names | WORDS and not juxtaposed:
            return True
        ends = following is None or following.text in OPERATIONS or following.text == ")"
        return name in self.names | WORDS and ends and any(t.text in OPERATIONS for t in self.tokens[: self.at])

    def enclosed_index(self) -> Tree | None:
        before = self.at
        self.at += 1
        self.depth += 1
        inner = self.relation()
        self.depth -= 1
        if inner is None or not self.is_next("]"):
            self.at = before
            return None
        self.at += 1
        return Node("fence", (Leaf("mark", "["), inner, Leaf("mark", "]")))

    def applied(self, token: Token, opens: bool) -> Tree | None:
        before = self.at
        self.at += 1
        argument = self.enclosed("(", ")") if opens else self.factor(juxtaposed=True)
        if argument is None:
            self.at = before
            return None
        return Node("root" if token.text == "sqrt" and opens else "applied", (Leaf("name", token.text), argument))

    def summation(self) -> Tree | None:
        """sum over k = 1 .. N-1 of ..., sum |x|, sum(...)."""
        before = self.at
        self.at += 1
        over: Tree | None = None
        if (token := self.peek()) and token.text == "over":
            self.at += 1
            over = self.relation()
            if over is None or not (token := self.peek()) or token.text != "of":
                self.at = before
                return None
            self.at += 1
        term = self.product()
        if term is None and over is None and before > 0 and not ((token := self.peek()) and token.text == "of"):
            return Leaf("name", "sum")
        if term is None or over is None and isinstance(term, Leaf):
            self.at = before
            return None
        return Node("series", (term,) if over is None else (term, over))


def _leaves(tree: Tree) -> Iterator[Leaf]:
    if isinstance(tree, Leaf):
        yield tree
    else:
        for part in tree.parts:
            yield from _leaves(part)


def _is_formula(tree: Tree) -> bool:
    """More than a name, a number or names in a row without an operation."""
    if isinstance(tree, Leaf):
        return False
    if tree.kind == "fence" and tree.parts[0] == Leaf("mark", "("):
        return isinstance(tree.parts[1], Node) and tree.parts[1].kind == "list" and any(
            leaf.kind == "name" for leaf in _leaves(tree))
    if tree.kind in ("signed", "list"):
        return any(_is_formula(part) for part in tree.parts) or tree.kind == "signed" and any(
            leaf.kind == "name" for leaf in _leaves(tree))
    if tree.kind == "beside":
        return sum(leaf.kind != "mark" for leaf in _leaves(tree)) > 1 and any(
            leaf.kind == "name" for leaf in _leaves(tree))
    return True


def find(text: str, start: int, names: frozenset[str]) -> tuple[Tree, int] | None:
    """The formula that begins at a place of a text, and where it ends."""
    parser = _Parser(tokens(text, start), names)
    if not parser.tokens or parser.tokens[0].start != start:
        return None
    tree = parser.relation()
    if tree is None or not _is_formula(tree):
        return None
    return tree, parser.tokens[parser.at - 1].end


def spans(text: str, names: frozenset[str]) -> Iterator[tuple[str, Tree | None]]:
    """A text as runs of words, and the formulas between them."""
    plain, at = 0, 0
    boundary = re.compile(r"(?<![\w.'])(?=[\w(|\[+-])")
    while (place := boundary.search(text, at)) is not None:
        at = place.end()
        found = find(text, at, names) if not re.match(r"(?:dsp|DSP_|_[A-Z])", text[at:]) else None
        if found is None:
            at = re.compile(r"\w+(?:[.']\w+)*\*?|.", re.DOTALL).match(text, at).end()  # type: ignore[union-attr]
            continue
        tree, end = found
        if plain < at:
            yield text[plain:at], None
        yield text[at:end], tree
        plain = at = end
    if plain < len(text):
        yield text[plain:], None
