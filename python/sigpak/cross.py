# SPDX-License-Identifier: MIT
"""Two signals together: cross spectrum, transfer function, coherence."""

from __future__ import annotations

from dataclasses import dataclass
from typing import Any

import numpy as np

from ._arguments import Array, ArrayLike, alike
from .enums import Average, SpectrumFlag
from .errors import Error
from .spectra import Averager, WindowLike

__all__ = ["CrossSpectrum", "RunningCrossSpectrum", "coherence", "cross_spectrum", "transfer"]


@dataclass(frozen=True)
class CrossSpectrum:
    """Averaged power densities of two signals and between them.

    Attributes
    ----------
    f : ndarray
        Frequencies.
    xx, yy : ndarray
        Power densities of both signals, in their units squared per Hz.
    xy : ndarray
        The cross density, conj(X) Y.
    segments : int
        How many segments were averaged.
    """

    f: Array
    xx: Array
    yy: Array
    xy: Array
    segments: int

    @property
    def transfer(self) -> Array:
        """The transfer function from x to y, which noise in y does not bias: xy / xx; 0 where x has no power."""
        return self._ratio(self.xy, self.xx)

    @property
    def coherence(self) -> Array:
        """What part of y follows from x, |xy|^2 / (xx yy), 0 to 1. Of one segment it is 1 everywhere."""
        return self._ratio(np.abs(self.xy) ** 2, self.xx * self.yy)

    @staticmethod
    def _ratio(above: Array, below: Array) -> Array:
        ratio: Array = np.zeros_like(above)
        np.divide(above, below, out=ratio, where=below > 0)
        return ratio


class RunningCrossSpectrum(Averager):
    """The averaged cross spectrum of two streams.

    Parameters
    ----------
    rate, window, segment, overlap, centre
        As in `RunningSpectrum`.
    """

    def __init__(
        self,
        rate: float = 1.0,
        window: WindowLike = "hann",
        segment: int = 8192,
        *,
        overlap: float = 0.5,
        centre: bool = True,
    ) -> None:
        flags = Average.MEAN | SpectrumFlag.SQUARE | SpectrumFlag.DENSITY
        super().__init__(rate, window, segment, overlap, centre, int(flags))

    def add(self, x: ArrayLike, y: ArrayLike) -> None:
        """Takes the next block of both signals, real, of the same points."""
        self._take(*alike(x, y))

    @property
    def result(self) -> CrossSpectrum:
        """The densities of all complete segments so far."""
        xx, yy, xy = self._bins().reshape(3, -1)
        f = np.arange(xx.size) * (self.rate / self._shape.size)
        return CrossSpectrum(f, xx.real.copy(), yy.real.copy(), xy.copy(), self.segments)


def cross_spectrum(
    x: ArrayLike, y: ArrayLike, rate: float = 1.0, window: WindowLike = "hann", segment: int = 8192, **options: Any
) -> CrossSpectrum:
    """Averaged power densities of two real signals and between them.

    Parameters
    ----------
    x, y : array_like
        Of the same points.
    rate, window, segment, **options
        As in `spectrum`: overlap, centre.

    Examples
    --------
    >>> x = np.random.default_rng(1).standard_normal(50000)
    >>> both = cross_spectrum(x, np.convolve(x, [0.5, 0.5])[:50000], segment=256)
    >>> np.abs(both.transfer[[1, 64]]).round(2)
    array([1.  , 0.71])
    """
    first, second = alike(x, y)
    if first.size != second.size:
        raise Error("cross_spectrum", "", f"{first.size} and {second.size} points", "as many are needed in both")
    running = RunningCrossSpectrum(rate, window, max(1, min(segment, first.size)), **options)
    running.add(first, second)
    return running.result


def transfer(x: ArrayLike, y: ArrayLike, *args: Any, **options: Any) -> tuple[Array, Array]:
    """Frequencies and the transfer function from x to y; arguments as in `cross_spectrum`."""
    both = cross_spectrum(x, y, *args, **options)
    return both.f, both.transfer


def coherence(x: ArrayLike, y: ArrayLike, *args: Any, **options: Any) -> tuple[Array, Array]:
    """Frequencies and the coherence of x and y; arguments as in `cross_spectrum`."""
    both = cross_spectrum(x, y, *args, **options)
    return both.f, both.coherence
