# SPDX-License-Identifier: MIT
"""What callers give, as the library takes it."""

from __future__ import annotations

import difflib
from ctypes import addressof, byref, c_int32
from enum import IntEnum
from operator import index
from typing import TYPE_CHECKING, Any, TypeVar

import numpy as np
from numpy.typing import ArrayLike, NDArray

from ._library import DOUBLE, SINGLE, Precision
from .enums import Window
from .errors import Error

if TYPE_CHECKING:
    from typing_extensions import TypeGuard

    from .vec import Vec

__all__ = ["Array", "ArrayLike"]

Array = NDArray[Any]
Kind = TypeVar("Kind", bound=IntEnum)

#: The types that the library computes in, and what it computes them with.
PRECISIONS: dict[np.dtype[Any], Precision] = {
    dtype: precision for precision in (DOUBLE, SINGLE) for dtype in (precision.real, precision.complex)
}
_NATIVE = frozenset(id(dtype) for dtype in PRECISIONS)
_MOST_SCALARS = 2**31 - 1

# What other libraries call windows of the catalogue.
_ELSEWHERE = {"boxcar": "uniform", "hanning": "hann", "flat_top": "flattop"}


def is_plain(x: Any) -> TypeGuard[Array]:
    """Whether x is an array of the machine's own numbers in one dimension, with samples in any places."""
    return type(x) is np.ndarray and id(x.dtype) in _NATIVE and x.ndim == 1 and x.size <= _MOST_SCALARS // 2


def samples(x: ArrayLike) -> Array:
    """The samples of a signal side by side, as floating-point numbers of the machine.

    Parameters
    ----------
    x : array_like
        One dimension. Arrays of float32, float64, complex64 and complex128 whose samples lie side by side are taken
        as they are, everything else is copied: integers and booleans become float64.

    Returns
    -------
    ndarray
        x itself, or a copy.
    """
    if is_plain(x) and x.flags.c_contiguous and x.flags.aligned:
        return x
    array = np.asarray(x)
    _check_shape(array)
    if isinstance(x, np.ma.MaskedArray) and np.any(x.mask):
        raise Error("", "", "masked samples", "every sample is needed: x.filled(0), x.compressed()")
    return np.require(array, _dtype(array), ["C", "A"])


def _check_shape(array: Array) -> None:
    if array.ndim == 0:
        raise Error("", "", "a single number", "a signal has one dimension: [x]")
    if array.ndim > 1:
        raise Error("", "", f"{array.ndim} dimensions", "a signal has one: x[:, 0] is the first channel, x.ravel() all")
    if array.size * (1 + (array.dtype.kind == "c")) > _MOST_SCALARS:
        raise Error("", "", f"{array.size} points", "a record holds 2^31 - 1 numbers")


def _dtype(array: Array) -> np.dtype[Any]:
    native = array.dtype.newbyteorder("=")
    if native in PRECISIONS:
        return np.dtype(native.type)
    if array.dtype.kind in "iub" or array.size == 0 and array.dtype.kind == "O":
        return DOUBLE.real
    raise Error("", "", f"samples of type {array.dtype}", "float32, float64, complex64 or complex128 are needed")


def int32(number: Any) -> int:
    """A whole number that C holds in an int32_t: ctypes would cut others without a word."""
    whole = index(number)
    if not -(2**31) <= whole < 2**31:
        raise Error("", "", f"{whole}", "a whole number of 32 bits is needed")
    return whole


def unsigned(number: Any) -> int:
    whole = index(number)
    if not 0 <= whole < 2**32:
        raise Error("", "", f"{whole}", "a whole number from 0 to 2^32 - 1 is needed")
    return whole


def window_number(window: Window | int | str) -> int:
    """The number of a window, of the catalogue or by any of its names.

    Examples
    --------
    >>> window_number("Hann") == window_number("hanning") == Window.HANN
    True
    """
    if not isinstance(window, str):
        return int32(window)
    name = window.strip().lower().replace("-", "_").replace(" ", "_")
    number = c_int32()
    if DOUBLE.dsp_window_from_str(_ELSEWHERE.get(name, name).encode(), addressof(number)) == 0:
        return number.value
    near = difflib.get_close_matches(name.upper(), Window.__members__, 3)
    names = ", ".join(near or [member.name for member in Window]).lower()
    raise Error("window", "", repr(window), f"no such window; there are {names}")


def choice(kinds: type[Kind], given: Kind | int | str) -> Kind:
    """A member of an enumeration, by its number or by its name in any letters.

    Examples
    --------
    >>> choice(Window, "blackman-harris4")
    <Window.BLACKMAN_HARRIS4: 6>
    """
    if isinstance(given, str):
        name = given.upper().replace("-", "_").replace(" ", "_")
        if name in kinds.__members__:
            return kinds[name]
    elif given in tuple(kinds):
        return kinds(given)
    names = ", ".join(name.lower() for name in kinds.__members__)
    raise Error("", kinds.__name__, repr(given), f"one of {names} is needed")


def alike(*signals: ArrayLike) -> list[Array]:
    """The samples of several signals in one precision: single where all are, otherwise double."""
    taken = [samples(signal) for signal in signals]
    if len({PRECISIONS[array.dtype] for array in taken}) == 1:
        return taken
    return [in_precision(DOUBLE, array) for array in taken]


def in_precision(precision: Precision, x: ArrayLike) -> Array:
    """The samples of a signal in the precision of others that it goes together with."""
    taken = samples(x)
    if PRECISIONS[taken.dtype] is precision:
        return taken
    return taken.astype(precision.complex if taken.dtype.kind == "c" else precision.real)


def count_address(count: c_int32 | None) -> Any:
    if count is None:
        return None
    if not isinstance(count, c_int32):
        raise Error("", "count", f"of type {type(count).__name__}", "a ctypes.c_int32 is needed")
    return byref(count)


def double_address(at: Vec | None) -> int | None:
    """The address of a record that is of double precision whatever the others are."""
    if at is None:
        return None
    if not hasattr(at, "_c"):
        raise Error("", "at", f"of type {type(at).__name__}", "a Vec is needed")
    if at._c is not DOUBLE:
        raise Error("", "at", "single precision", "times are needed in double precision")
    return at._at
