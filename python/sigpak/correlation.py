# SPDX-License-Identifier: MIT
"""Correlation of whole signals and of streams."""

from __future__ import annotations

from typing import NamedTuple

import numpy as np

from ._arguments import Array, ArrayLike, alike
from ._library import Precision
from ._stream import Stream
from .enums import Corr
from .errors import Error
from .vec import Vec

__all__ = ["Correlation", "Correlator", "correlate"]

_SCALES = {"raw": Corr.RAW, "biased": Corr.BIASED, "unbiased": Corr.UNBIASED, "coefficient": Corr.COEFFICIENT}


class Correlation(NamedTuple):
    """Values by their lags: a peak at a positive lag says that the first signal follows the second."""

    lags: Array
    values: Array


def _scale(scale: str) -> int:
    if scale not in _SCALES:
        raise Error("correlate", "scale", repr(scale), f"one of {', '.join(_SCALES)} is needed")
    return int(_SCALES[scale])


def _with_lags(values: Array) -> Correlation:
    most = values.size // 2
    return Correlation(np.arange(values.size) - most, values)


def correlate(
    a: ArrayLike, b: ArrayLike, lags: int | None = None, *, scale: str = "raw", circular: bool = False
) -> Correlation:
    """The sum over n of a[n + l] conj(b[n]) for the lags l = -lags .. lags. See `Vec.corr`.

    Parameters
    ----------
    a, b : array_like
        Real or complex; the shorter one counts as padded with zeros. Take means out first.
    lags : int, optional
        The largest lag; otherwise all.
    scale : {"raw", "biased", "unbiased", "coefficient"}, optional
        Divided by nothing, by N, by N - |l|, or by the root of both energies.
    circular : bool, optional
        Indices modulo N, for periodic signals.

    Examples
    --------
    >>> correlate([0.0, 0.0, 1.0], [1.0, 0.0, 0.0], 2)
    Correlation(lags=array([-2, -1,  0,  1,  2]), values=array([0., 0., 0., 0., 1.]))
    """
    if lags is not None and lags < 0:
        raise Error("correlate", "lags", str(lags), "0 or more, or None for all, is needed")
    first, second = (Vec._lent(x, 1.0, False) for x in alike(a, b))
    flags = _scale(scale) | (Corr.CIRCULAR if circular else 0)
    return _with_lags(first.corr(second, -1 if lags is None else lags, flags)._taken())


class Correlator(Stream):
    """The correlation of a stream: `result` covers all its samples so far.

    Parameters
    ----------
    lags : int
        The largest lag.
    scale : str, optional
        As in `correlate`.

    Examples
    --------
    >>> c = Correlator(1, scale="biased")
    >>> c.add([1.0, 2.0], [1.0, 2.0])
    >>> c.add([3.0], [3.0])
    >>> c.result.values * 3
    array([ 8., 14.,  8.])
    """

    def __init__(self, lags: int, *, scale: str = "raw") -> None:
        self.lags, self._flags = lags, _scale(scale)

    def _begin(self, c: Precision) -> None:
        self._history = Vec.empty(0, dtype=c.real)
        self._is_complex = False

    def add(self, a: ArrayLike, b: ArrayLike) -> None:
        """Takes the next block of both signals, which has as many points of one as of the other."""
        first, second = alike(a, b)
        block = self._block(first)
        self._is_complex = self._is_complex or "c" in first.dtype.kind + second.dtype.kind
        self._update(block, Vec._lent(second, 1.0, False), None)

    @property
    def result(self) -> Correlation:
        """The correlation of all samples so far."""
        if self._c is None:
            raise Error("Correlator", "", "no samples", "add comes before result")
        nothing = Vec.empty(0, dtype=self._c.complex if self._is_complex else self._c.real)
        out = nothing._fresh()
        self._update(nothing, nothing, out)
        return _with_lags(out.array)

    def _update(self, a: Vec, b: Vec, out: Vec | None) -> None:
        place = None if out is None else out._at
        if a._c.dsph_corr(a._at, b._at, place, self._history._at, self.lags, self._flags):
            raise a._refused("Correlator", "dsph_corr", b=b, lags=self.lags)
        a._settle(self._history)
