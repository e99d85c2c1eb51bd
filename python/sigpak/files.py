# SPDX-License-Identifier: MIT
"""Vector files: signals with their spacing, one after the other."""

from __future__ import annotations

import os
from collections.abc import Iterator
from contextlib import contextmanager
from typing import Any

import numpy as np

from ._arguments import PRECISIONS
from ._library import DOUBLE, Precision
from .enums import Write
from .errors import Error
from .vec import Operand, Vec, operand

__all__ = ["read", "write"]


@contextmanager
def _opened(c: Precision, path: str | os.PathLike[str], mode: str) -> Iterator[int]:
    """A stream of C; where there is none, Python tells why."""
    stream = c.dspf_fopen(os.fsencode(path), mode.encode())
    if not stream:
        open(path, "rb" if mode == "rb" else "ab").close()
        raise Error("open", "path", repr(path), "it cannot be opened")
    try:
        yield stream
    finally:
        closed = c.dspf_fclose(stream)
    if closed:
        raise OSError(f"{path}: not written to the end")


def read(path: str | os.PathLike[str], dtype: Any = np.float64) -> list[Vec]:
    """The signals of a vector file, binary or text.

    Parameters
    ----------
    path : path
        The file.
    dtype : dtype, optional
        float64 or float32: the precision to read into, whatever the file's.

    Returns
    -------
    list of Vec
        Each with `array` and `delta`.
    """
    c = PRECISIONS.get(np.dtype(dtype))
    if c is None:
        raise Error("read", "dtype", str(np.dtype(dtype)), "float32 or float64 is needed")
    found: list[Vec] = []
    with _opened(c, path, "rb") as stream:
        while True:
            v = Vec.empty(0, dtype=c.real)
            status = c.dspf_fread(v._at, stream)
            v._moved()
            if status < 0:
                raise Error("read", "path", repr(path), f"malformed or cut short behind {len(found)} signals")
            if status == 0:
                return found[: -_has_one_too_many(path, found) or None]
            found.append(v)


def _has_one_too_many(path: str | os.PathLike[str], found: list[Vec]) -> bool:
    """Whether the end behind the points of a text has been read as one more signal, of no points."""
    if not found or found[-1].points or os.fspath(path) == "-":
        return False
    with open(path, "rb") as file:
        return file.read(1) == b"#"


def write(path: str | os.PathLike[str], *signals: Any, delta: float = 1.0, text: bool = False) -> None:
    """Writes signals to a vector file, one after the other, each in its precision.

    Parameters
    ----------
    path : path
        The file, which is replaced.
    *signals : array_like or Vec
        A record goes with the spacing that it has.
    delta : float, optional
        The spacing of the others.
    text : bool, optional
        As lines of text, with 16 digits (7 in single precision), instead of the exact binary form.
    """
    form = int(Write.ASCII if text else Write.BINARY)
    records: list[Vec | Operand] = [signal if isinstance(signal, Vec) else operand(signal, delta) for signal in signals]
    with _opened(DOUBLE, path, "wb") as stream:
        for record in records:
            if record._c.dspf_fwrite2(record._at, stream, form):
                raise OSError(f"{path}: not written to the end")
