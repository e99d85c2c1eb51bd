# SPDX-License-Identifier: MIT
"""Filters of finite impulse response: their design, and filtering of whole signals and of streams."""

from __future__ import annotations

from ._arguments import Array, ArrayLike, alike, choice, samples
from ._library import Precision
from ._stream import Stream
from .enums import FirKind
from .vec import Vec

__all__ = ["Fir", "fir", "fir_taps"]


def fir_taps(
    kind: FirKind | str, taps: int, param1: float, param2: float = 0.0, *, attenuation: float | None = None
) -> Array:
    """The taps of a linear-phase filter.

    Parameters
    ----------
    kind : FirKind or str
        "low_pass", "high_pass", "band_pass", "band_stop", "hilbert", "differentiator", ...
    taps : int
        How many.
    param1, param2 : float
        A cut-off in cycles per sample (0.5 is the Nyquist frequency), or the centre and the width of a band; what the
        other kinds take stands at `Vec.c_fir`.
    attenuation : float, optional
        Of the stop band in dB: tapers the taps by the Kaiser window that it needs, and scales a low-pass to the gain
        1. The taps for a transition of width w are 1 + (attenuation - 7.95) / (14.36 w).

    Examples
    --------
    >>> h = fir_taps("low_pass", 101, 0.1, attenuation=60)
    >>> round(float(h.sum()), 12)
    1.0
    """
    number = choice(FirKind, kind)
    v = Vec.empty(taps).c_fir(number, param1, param2)
    if attenuation is not None:
        v.window_fir(attenuation, int(number == FirKind.LOW_PASS))
    return v.array


def fir(x: ArrayLike, taps: ArrayLike) -> Array:
    """out[n] = sum over k of taps[k] * x[n - k], with zeros before the signal; as many points as x. See `Vec.fir`."""
    signal, filters = alike(x, taps)
    return Vec._lent(signal, 1.0, False).fir(Vec._lent(filters, 1.0, False))._taken()


class Fir(Stream):
    """A filter for a stream: called with block after block it gives what the whole would give.

    Parameters
    ----------
    taps : array_like
        Real or complex.

    Examples
    --------
    >>> smooth = Fir([0.5, 0.5])
    >>> smooth([2.0, 4.0]), smooth([6.0])
    (array([1., 3.]), array([5.]))
    """

    def __init__(self, taps: ArrayLike) -> None:
        self._given = samples(taps).copy()
        self.reset()

    def reset(self) -> None:
        """Begins another stream."""
        self._c = None

    def _begin(self, c: Precision) -> None:
        self._taps = self._constant(c, self._given)
        self._history = Vec.empty(0, dtype=c.real)

    def __call__(self, block: ArrayLike) -> Array:
        """The filtered block, of as many points."""
        signal = self._block(block)
        return signal.fir(self._taps, self._history)._taken()
