# SPDX-License-Identifier: MIT
"""The noise of an averaged power spectrum: its level along the frequencies, and how far its maxima reach."""

from __future__ import annotations

from statistics import NormalDist

import numpy as np

from ._arguments import Array

#: One spectrum of noise in so many shows a line.
_FALSE_ALARMS = 1000
#: Resolutions beside a point whose median tells the noise there.
_BESIDE = 8
#: Few powers that fall as 1/f^2 show slopes up to this; steeper ones come from another line.
_STEEPEST = 3.0


def independent_segments(window: Array, hop: int, segments: int) -> float:
    """How many segments without overlap average noise as well (Welch 1967)."""
    energy = float(np.dot(window, window))
    terms = 0.0
    for j in range(1, min(segments, -(-window.size // hop))):
        shared = float(np.dot(window[: window.size - j * hop], window[j * hop :])) / energy
        terms += (1 - j / segments) * shared**2
    return segments / (1 + 2 * terms)


def _gamma_quantile(part: float, k: float) -> float:
    """The quantile of a mean of k exponential variables (Wilson, Hilferty 1931)."""
    return float((1 - 1 / (9 * k) + NormalDist().inv_cdf(part) / (3 * np.sqrt(k))) ** 3)


def median_of_noise(window: Array, hop: int, segments: int, average: str) -> float:
    """The median of the powers of noise over their mean in one segment; `average` is a word of `RunningSpectrum`."""
    if average == "maximum":  # of that many, each exponentially distributed
        return float(-np.log1p(-np.exp2(-1 / segments)))
    if average == "minimum":
        return float(np.log(2)) / segments
    r = 1 / independent_segments(window, hop, segments) if average == "mean" else 1.0
    # the median of a gamma distribution (Choi 1994)
    return 1 + r * (-1 / 3 + r * (8 / 405 + r * (184 / 25515 + r * (2248 / 3444525))))


class Noise:
    """The level of the noise under a spectrum: medians over the neighbourhood, which lines do not move.

    Parameters
    ----------
    power : ndarray
        Powers at equal steps.
    window, hop, segments, average
        How they were made; `average` is one of mean, maximum, minimum and last.
    padding : int
        Values to one resolution.
    from_zero : bool
        Whether the first value stands at the frequency 0, with nothing below it.
    """

    def __init__(
        self, power: Array, window: Array, hop: int, segments: int, average: str, padding: int, from_zero: bool
    ) -> None:
        self._power, self._padding, self._from_zero = power, padding, from_zero
        rare = 1 / (_FALSE_ALARMS * power.size)
        k = independent_segments(window, hop, segments) if average == "mean" else 1.0
        self._median = median_of_noise(window, hop, segments, average)
        self.threshold = _gamma_quantile(1 - (rare / segments if average == "maximum" else rare), k)
        if average == "minimum":
            self.threshold /= segments
        self.level = self._along(min(power.size, int(np.clip(2048 / k, 128, 2048)) * padding))

    def _along(self, width: int) -> Array:
        """The level at every point: medians of so many points, half of them shared, and straight lines between."""
        last = self._power.size - 1
        middles = np.linspace(0, last, 2 * -(-self._power.size // width) + 1)
        starts = np.clip(middles.astype(np.intp) - width // 2, 0, self._power.size - width)
        medians = [np.median(self._power[start : start + width]) for start in starts.tolist()]
        level: Array = np.interp(np.arange(self._power.size), middles, medians) / self._median
        return level

    def beside(self, at: int, apart: int) -> float:
        """The level close to a point, from so many points apart on: what rises slowly is no line."""
        reach = _BESIDE * self._padding
        left = self._power[max(0, at - apart - reach + 1) : max(0, at - apart + 1)]
        right = self._power[at + apart : at + apart + reach]
        near = np.concatenate((left, right))
        level = float(np.median(near)) if near.size else 0.0
        if self._from_zero and left.size < reach:
            level = max(level, self._towards_zero(at, apart))
        return level / self._median

    def _towards_zero(self, at: int, apart: int) -> float:
        """What noise that goes as 1/f^a, 0 <= a <= 2, as flicker and drift do, brings there from above."""
        begin, reach = at + apart, 2 * self._padding
        if begin + 3 * reach > self._power.size:
            return 0.0
        near = float(np.median(self._power[begin : begin + reach]))
        far = float(np.median(self._power[begin + reach : begin + 3 * reach]))
        if far <= 0 or near <= far:
            return 0.0
        middle = begin + reach / 2
        slope = float(np.log(near / far) / np.log((begin + 2 * reach) / middle))
        rise = float((middle / at) ** min(slope, 2.0))
        return 0.0 if slope > _STEEPEST else near * rise

    def foot(self, at: int, reach: int) -> float:
        """The least power so many points beside another, on the side where it is higher; 0 at the ends."""
        left = float(self._power[at - reach : at].min()) if at >= reach else 0.0
        right = float(self._power[at + 1 : at + 1 + reach].min()) if at + reach < self._power.size else 0.0
        return max(left, right)
