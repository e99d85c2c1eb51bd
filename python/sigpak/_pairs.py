# SPDX-License-Identifier: MIT
"""Two short arrays into a third, through records that are kept: making them anew would cost more than the work."""

from __future__ import annotations

from ctypes import addressof
from typing import Any

import numpy as np

from ._arguments import PRECISIONS, Array, is_plain
from ._library import Precision
from ._record import address
from .vec import Operand, operands

#: Samples of both arrays together; a result has no more points, and the memory of the records stays small.
_FEW = 4096


def _are_alike(a: Any, b: Any) -> bool:
    """Whether both are arrays of one type that the library can read where they are."""
    if not (is_plain(a) and is_plain(b) and a.dtype is b.dtype):
        return False
    flags, others = a.flags, b.flags
    return flags.c_contiguous and flags.aligned and others.c_contiguous and others.aligned


class Trio:
    """Records for two operands and the result, which one call has for itself."""

    __slots__ = ("_c", "_a", "_b", "_out", "_places", "_seen", "_reals", "_pairs")

    def __init__(self, c: Precision) -> None:
        self._c = c
        self._seen: tuple[int | None, int] = None, 0
        self._a, self._b, self._out = c.structure(1.0), c.structure(1.0), c.structure(1.0)
        self._places = addressof(self._a), addressof(self._b), addressof(self._out)

    def __del__(self) -> None:
        self._c.dsp_destroy(self._places[2])

    def combined(self, function: Any, a: Array, b: Array, is_complex: bool) -> Array | None:
        """The result as an array of its own; None where the library refuses, or where there is nothing."""
        first, second, out = self._a, self._b, self._out
        first.data, first.points, first.complex = address(a), a.size, is_complex
        second.data, second.points, second.complex = address(b), b.size, is_complex
        if function(*self._places) or out.alloc <= 0:
            return None
        if (out.data, out.alloc) != self._seen:
            self._look(out.data, out.alloc)
        return (self._pairs if out.complex else self._reals)[: out.points].copy()

    def _look(self, data: int, alloc: int) -> None:
        """Arrays over the memory of the result, for as long as it stays there and as large."""
        self._seen = data, alloc
        self._reals = np.frombuffer((self._c.scalar * alloc).from_address(data), self._c.real)
        self._pairs = self._reals[: alloc // 2 * 2].view(self._c.complex)


def _a_trio(c: Precision) -> Trio:
    try:
        trio: Trio = c.trios.pop()
        return trio
    except IndexError:
        return Trio(c)


def combined(name: str, symbol: str, a: Any, b: Any) -> Array:
    """What the method of one operand gives with the other, which is what the library's function of that symbol does."""
    if not _are_alike(a, b):
        first, second = operands(a, b)
    else:
        c = PRECISIONS[a.dtype]
        if a.size + b.size <= _FEW:
            trio = _a_trio(c)
            short = trio.combined(getattr(c, symbol), a, b, a.dtype.kind == "c")
            c.trios.append(trio)
            if short is not None:
                return short
        first, second = Operand(a), Operand(b)
    result: Array = getattr(first, name)(second)._taken()
    return result
