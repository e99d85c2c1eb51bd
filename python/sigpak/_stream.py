# SPDX-License-Identifier: MIT
"""What the streams have in common: one precision, that of the first block."""

from __future__ import annotations

from ._arguments import PRECISIONS, ArrayLike, in_precision, samples
from ._library import Precision
from .errors import Error
from .vec import Vec


class Stream:
    """A stream of blocks in one precision.

    A block of another precision is refused, as its digits would be lost or made up without a word.
    """

    _c: Precision | None = None

    def _block(self, x: ArrayLike, delta: float = 1.0) -> Vec:
        """The next block as a record for reading."""
        taken = samples(x)
        precision = PRECISIONS[taken.dtype]
        if self._c is None:
            self._c = precision
            self._begin(precision)
        elif precision is not self._c:
            raise Error("", "block", str(taken.dtype), f"the stream is in {self._c.real}")
        return Vec._lent(taken, delta, False)

    def _begin(self, c: Precision) -> None:
        """Makes what is kept from block to block, in the precision of the first one."""

    @staticmethod
    def _constant(c: Precision, x: ArrayLike, delta: float = 1.0) -> Vec:
        """What stays the same for a whole stream, such as taps and windows, in the precision of the stream."""
        return Vec._lent(in_precision(c, x), delta, False)
