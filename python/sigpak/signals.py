# SPDX-License-Identifier: MIT
"""Signals made by formula, and at random."""

from __future__ import annotations

from typing import Any

import numpy as np

from ._arguments import Array, choice
from .enums import Distribution
from .vec import Vec

__all__ = ["cosine", "line", "phasor", "random"]


def cosine(points: int, f: float, phase: float = 0.0, *, rate: float = 1.0, dtype: Any = np.float64) -> Array:
    """cos(2 pi f n / rate + phase), without the error of an angle that grows. See `Vec.c_cos`.

    Examples
    --------
    >>> cosine(4, 250.0, rate=1000.0).round(12) + 0.0
    array([ 1.,  0., -1.,  0.])
    """
    return Vec.empty(points, 1 / rate, dtype).c_cos(f, phase).array


def phasor(points: int, f: float, phase: float = 0.0, *, rate: float = 1.0, dtype: Any = np.complex128) -> Array:
    """exp(i (2 pi f n / rate + phase)). See `Vec.cexp`."""
    return Vec.empty(points, 1 / rate, dtype).cexp(f, phase).array


def line(points: int, slope: float, start: float = 0.0, *, dtype: Any = np.float64) -> Array:
    """start, start + slope, start + 2 slope, ..., by repeated addition. See `Vec.line`."""
    return Vec.empty(points, 1.0, dtype).line(slope, start).array


def random(points: int, distribution: Distribution | str = "normal", *, dtype: Any = np.float64) -> Array:
    """Random numbers of a distribution: uniform, normal, exponential or laplace. See `Vec.rand`.

    Their source is the C library's; numpy.random has better ones, with a state of their own.
    """
    return Vec.empty(points, 1.0, dtype).rand(choice(Distribution, distribution)).array
