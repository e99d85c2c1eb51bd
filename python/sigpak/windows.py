# SPDX-License-Identifier: MIT
"""Windows as arrays, and what they do to noise."""

from __future__ import annotations

from ctypes import addressof, c_double, create_string_buffer
from typing import Any

import numpy as np

from ._arguments import Array, int32, window_number
from ._library import DOUBLE, SINGLE
from .enums import Window, WindowFlag
from .errors import Error
from .vec import Vec

__all__ = ["enbw", "gauss", "kaiser", "window", "window_name"]

_NORMS = {"peak": WindowFlag.PEAK, "mean": WindowFlag.MEAN, "rms": WindowFlag.RMS}


def _flags(norm: str, symmetric: bool) -> int:
    if norm not in _NORMS:
        raise Error("window", "norm", repr(norm), "peak, mean or rms is needed")
    return int(_NORMS[norm] | WindowFlag.NO_ROTATE | (WindowFlag.SYMMETRIC if symmetric else 0))


def _ones(points: int, dtype: Any) -> Vec:
    if np.dtype(dtype) not in (DOUBLE.real, SINGLE.real):
        raise Error("window", "dtype", str(np.dtype(dtype)), "float32 or float64 is needed")
    return Vec._lent(np.ones(points, dtype), 1.0, True)


def window(
    name: Window | int | str, points: int, *, norm: str = "peak", width: float | None = None, dtype: Any = np.float64
) -> Array:
    """A window of the catalogue, in its periodic form: an even number of points has its end on the left only, an odd
    number lies around the middle.

    Parameters
    ----------
    name : Window, int or str
        Any name of the catalogue, in capitals or not, such as "hann", "flattop", "kaiser90".
    points : int
        Its length.
    norm : {"peak", "mean", "rms"}, optional
        What is 1: the middle, the mean (amplitudes of lines stay), or the mean square (powers of noise stay).
    width : float, optional
        The width in points where it is not the length.
    dtype : dtype, optional
        float64 or float32.

    Examples
    --------
    >>> window("hann", 4)
    array([0. , 0.5, 1. , 0.5])
    """
    flags, number = _flags(norm, False), window_number(name)
    ones = _ones(points, dtype)
    if width is None:
        return ones.window(number, flags).array
    return ones.window2(number, flags | WindowFlag.WIDTH, width).array


def kaiser(points: int, beta: float, *, norm: str = "peak", symmetric: bool = False, dtype: Any = np.float64) -> Array:
    """A Kaiser window; symmetric for filters, otherwise periodic. See `Vec.window_kaiser`."""
    return _ones(points, dtype).window_kaiser(beta, _flags(norm, symmetric)).array


def gauss(points: int, a: float, *, norm: str = "peak", symmetric: bool = False, dtype: Any = np.float64) -> Array:
    """A Gaussian window whose standard deviation is a times its length. See `Vec.window_gauss`."""
    return _ones(points, dtype).window_gauss(a, _flags(norm, symmetric)).array


def enbw(name: Window | int | str, points: int) -> float:
    """The equivalent noise bandwidth of a window in bins, mean(w^2) / mean(w)^2.

    Examples
    --------
    >>> round(enbw("hann", 1024), 6)
    1.5
    """
    bins = c_double()
    if DOUBLE.dsp_window_enbw(addressof(bins), window_number(name), int32(points)):
        raise Error("enbw", "window", repr(name), "no such window")
    return bins.value


def window_name(number: Window | int) -> str:
    """The short name of a window of the catalogue.

    Examples
    --------
    >>> window_name(Window.HANN)
    'Hann'
    """
    text = create_string_buffer(64)
    if DOUBLE.dsp_window_to_str(int32(number), addressof(text), len(text)):
        raise Error("window_name", "number", repr(number), "no such window")
    return text.value.decode()
