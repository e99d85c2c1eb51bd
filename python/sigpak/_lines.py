# SPDX-License-Identifier: MIT
"""The lines of an averaged spectrum that noise and leakage do not explain."""

from __future__ import annotations

from typing import NamedTuple

import numpy as np

from ._arguments import Array
from ._noise import Noise

#: Leakage may be so much more than that of one line: where it meets that of its image, amplitudes add.
_MARGIN = 4.0
#: So many times less a spectrum is close to a line on both sides, as it is not on a resonance or the edge of a band.
_LEAST_FALL = 1.25
_PADDING = 8


class Line(NamedTuple):
    """A line: where it is, how strong, and by how much above the noise."""

    frequency: float
    value: float
    snr_db: float

    def __str__(self) -> str:
        return f"Line(frequency={self.frequency:.6}, value={self.value:.6}, snr_db={self.snr_db:.1f})"


def _leakage(window: Array) -> Array:
    """The most that a line leaves at a distance of 0, 1/8, 2/8, ... bins and beyond, relative to its top."""
    power = np.abs(np.fft.rfft(window, _PADDING * window.size)) ** 2
    envelope: Array = np.maximum.accumulate(power[::-1])[::-1] / power[0]
    return envelope


def find_lines(
    f: Array, power: Array, window: Array, hop: int, segments: int, average: str, padding: int
) -> list[Line]:
    """The lines of a power spectrum, the strongest first."""
    if power.size < 3:
        return []
    noise = Noise(power, window, hop, segments, average, padding, from_zero=f[0] == 0)
    threshold, fall = noise.threshold, min(noise.threshold, _LEAST_FALL)
    inner = power[1:-1]
    tops = 1 + np.flatnonzero((inner > power[:-2]) & (inner >= power[2:]) & (inner > threshold * noise.level[1:-1]))
    leakage, explained = _leakage(window), np.zeros(power.size)
    lobe = -(-int(np.argmax(leakage < 0.01)) * padding // _PADDING)
    lines = []
    for top in tops[np.argsort(-power[tops])].tolist():
        least = threshold * max(noise.level[top], noise.beside(top, lobe))
        if power[top] <= (least**0.5 + (_MARGIN * explained[top]) ** 0.5) ** 2:  # noise and leakage together
            continue
        if power[top] < fall * noise.foot(top, lobe + padding):
            continue
        line = _line(f, power, top, padding, float(noise.level[top]))
        lines.append(line)
        place = (line.frequency - f[0]) / (f[1] - f[0])
        distance = np.abs(np.arange(power.size) - place) * (_PADDING / padding)
        nearest = np.minimum(np.maximum(distance - 1, 0).astype(np.intp), leakage.size - 1)
        np.maximum(explained, line.value * leakage[nearest], out=explained)
    return lines


def _line(f: Array, power: Array, top: int, padding: int, noise: float) -> Line:
    """The place by points a whole bin apart, as closer ones on a flat top are all noise; the value by close ones."""
    _, value = _parabola(power[top - 1 : top + 2])
    apart = padding if padding <= top < power.size - padding else 1
    aside, _ = _parabola(power[[top - apart, top, top + apart]])
    frequency = float(f[top] + aside * apart * (f[1] - f[0]))
    return Line(frequency, value, float(10 * np.log10(value / noise)) if noise > 0 else float("inf"))


def _parabola(points: Array) -> tuple[float, float]:
    """Place and height of the top of the parabola through the logarithms of three points."""
    a, b, c = np.log(np.maximum(points, np.finfo(np.float64).tiny)).tolist()
    bend = a - 2 * b + c
    aside = min(max(0.5 * (a - c) / bend, -1.0), 1.0) if bend < 0 else 0.0
    return aside, float(np.exp(b - 0.25 * (a - c) * aside))
