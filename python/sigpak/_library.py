# SPDX-License-Identifier: MIT
"""Finds the shared library and loads it, once for each precision."""

from __future__ import annotations

import os
from ctypes import CDLL, Structure, c_double, c_float, c_int32, c_uint32, c_void_p
from pathlib import Path
from typing import Any

import numpy as np

from ._c import VERSION, Calls

_SONAME = "libsigpak.so.2"


class DoubleRecord(Structure):
    """dsp_vec of the C header."""

    _fields_ = [
        ("delta", c_double),
        ("data", c_void_p),
        ("alloc", c_int32),
        ("points", c_uint32),
        ("complex", c_int32),
        ("reserved", c_uint32),
    ]


class SingleRecord(Structure):
    """dspf_vec of the C header."""

    _fields_ = [("delta", c_float), *DoubleRecord._fields_[1:]]


class Precision(Calls):
    """The functions of one precision and the types that they work on."""

    structure: Any
    scalar: Any

    def __init__(self, library: CDLL, twin: int) -> None:
        super().__init__(library, twin)
        self.structure = (DoubleRecord, SingleRecord)[twin]
        self.scalar = (c_double, c_float)[twin]
        self.real: np.dtype[Any] = np.dtype((np.float64, np.float32)[twin])
        self.complex: np.dtype[Any] = np.dtype((np.complex128, np.complex64)[twin])
        self.size = self.real.itemsize
        self.results: list[Any] = []  # records kept for the next of them
        self.trios: list[Any] = []

    def __reduce__(self) -> str:
        """There is one of each: a copy of what computes in it, in another process too, computes in that one."""
        return "SINGLE" if self.is_single else "DOUBLE"


def _candidates() -> list[str]:
    """Where the library may be. What the environment names stands alone, so that no other is taken in its place."""
    named = os.environ.get("SIGPAK_LIBRARY")
    if named:
        return [named]
    own = Path(__file__).with_name(_SONAME)
    return [str(own)] * own.exists() + [_SONAME]


def _loaded(path: str) -> CDLL:
    library = CDLL(path)
    version = int(library.dsp_version())
    if version // 100 != VERSION // 100 or version < VERSION:
        raise OSError(f"version {version} of the interface; {VERSION} is needed")
    return library


def _load() -> CDLL:
    tried = []
    for path in _candidates():
        try:
            return _loaded(path)
        except (OSError, AttributeError) as error:
            tried.append(f"{path}: {error}")
    raise ImportError("the library of sigpak was not found; tried " + "; ".join(tried))


LIBRARY = _load()
DOUBLE = Precision(LIBRARY, 0)
SINGLE = Precision(LIBRARY, 1)
