# SPDX-License-Identifier: MIT
"""Records with the operations of the library as methods."""

from __future__ import annotations

from ctypes import addressof, memmove
from typing import TYPE_CHECKING, Any

import numpy as np

from ._arguments import PRECISIONS, Array, ArrayLike, in_precision, is_plain, samples
from ._library import DOUBLE, Precision
from ._methods import Methods
from ._record import Storage, address
from .errors import Error, OutOfMemory

if TYPE_CHECKING:
    from typing_extensions import Self

__all__ = ["Vec"]

_FEW = 2048


class Vec(Methods):
    """A signal that the library works on in place.

    Parameters
    ----------
    x : ndarray
        The samples: one dimension, side by side, writable, float32, float64, complex64 or complex128. They are lent,
        not copied: operations change x itself. `Vec.of` copies what x may not be.
    delta : float, optional
        The spacing of the samples.

    Notes
    -----
    Methods that change the record return it, so that they may follow each other; the others return a new record or a
    number. Results are written to x while they fit into its memory, whatever form they have: after ``mag`` of a
    complex x its first half holds the magnitudes. The first result that does not fit leaves x as it is, and from then
    on the record has memory of its own. `shares` tells which.

    Any number of threads may work at the same time, each on records of its own.

    Examples
    --------
    >>> x = np.array([1.0, 4.0, 9.0])
    >>> Vec(x).sqrt().array
    array([1., 2., 3.])
    >>> x
    array([1., 2., 3.])
    """

    __slots__ = ()

    def __init__(self, x: Array, delta: float = 1.0) -> None:
        if not isinstance(x, np.ndarray):
            raise Error("Vec", "x", f"of type {type(x).__name__}", "an array is needed to share; Vec.of copies")
        if samples(x) is not x or not x.flags.writeable:
            raise Error("Vec", "x", _seen(x), "native floats side by side, writable, are needed; Vec.of copies")
        if getattr(self, "_record", None) is not None:  # made anew
            self.__del__()
        self._lend(x, delta, True)

    def _lend(self, x: Array, delta: float, shared: bool) -> None:
        self._c = c = PRECISIONS[x.dtype]
        self._owner, self._shared, self._data = x, shared, address(x)
        self._record = record = c.structure(delta, self._data, 0, x.size, x.dtype.kind == "c")
        self._at = addressof(record)

    def __del__(self) -> None:
        try:
            if self._record.alloc > 0:
                self._c.dsp_destroy(self._at)
        except AttributeError:  # refused before there was a record
            pass

    @classmethod
    def of(cls, x: ArrayLike, delta: float = 1.0) -> Self:
        """A record with a copy of the samples.

        Parameters
        ----------
        x : array_like
            One dimension: lists, integers, strided and read-only arrays too. float32 and complex64 stay in single
            precision, integers become float64.
        delta : float, optional
            The spacing of the samples.
        """
        return cls._lent(_copied(x), delta, True)

    @classmethod
    def _lent(cls, x: Array, delta: float, shared: bool) -> Self:
        vec = cls.__new__(cls)
        vec._lend(x, delta, shared)
        return vec

    @classmethod
    def empty(cls, points: int = 0, delta: float = 1.0, dtype: Any = np.float64) -> Self:
        """A record of that many points in memory of the library's, whose values are not set.

        Parameters
        ----------
        points : int
            How many; a generator, such as `c_cos`, fills them.
        delta : float, optional
            Their spacing.
        dtype : dtype, optional
            float32, float64, complex64 or complex128.
        """
        kind = np.dtype(dtype)
        if kind not in PRECISIONS:
            raise Error("Vec.empty", "dtype", str(kind), "float32, float64, complex64 or complex128 is needed")
        if not 0 <= points * (1 + (kind.kind == "c")) < 2**31:
            raise Error("Vec.empty", "points", str(points), "0 to 2^31 - 1 numbers are needed")
        vec = cls.__new__(cls)
        vec._own(PRECISIONS[kind], points, delta, kind.kind == "c")
        return vec

    def _own(self, c: Precision, points: int, delta: float, is_complex: bool) -> None:
        self._record = record = c.structure(delta, None, 0, points, is_complex)
        self._at = addressof(record)
        self._c, self._owner, self._shared = c, None, False
        if points and c.dsp_alloc(self._at):
            raise OutOfMemory("Vec.empty", "points", str(points), "no memory for them")
        self._data = record.data

    def _fresh(self) -> Vec:
        return Vec._of(self._c)

    @classmethod
    def _of(cls, c: Precision) -> Vec:
        vec = cls.__new__(cls)
        vec._record = record = c.structure(1.0)
        vec._at = addressof(record)
        vec._c, vec._owner, vec._shared, vec._data = c, None, False, None
        return vec

    def _adopt(self) -> Array:
        """Gives memory of the library's into the hands of an array: the record lends it from then on."""
        record, c = self._record, self._c
        if self._data != record.data:
            self._data = record.data
        if record.alloc <= 0:
            return np.empty(0, c.real)
        self._owner = np.asarray(Storage(record, c))
        record.alloc = 0
        return self._owner

    @property
    def array(self) -> Array:
        """The samples as an array that shares the memory of the record, and keeps it alive."""
        record, owner = self._record, self._owner
        if owner is None:
            owner = self._adopt()
        self._shared = True
        is_complex = record.complex != 0
        if owner.size == record.points and is_complex == (owner.dtype.kind == "c"):
            return owner
        scalars = owner.view(self._c.real)[: self._scalars]
        return scalars.view(self._c.complex) if is_complex else scalars

    def _taken(self) -> Array:
        """The samples of a record that nobody needs any more. Few are copied, which costs less than sharing memory."""
        record, c = self._record, self._c
        if self._owner is not None or not 0 < record.alloc <= _FEW:
            return self.array
        array = np.empty(record.points, c.complex if record.complex else c.real)
        memmove(address(array) or 0, record.data, array.nbytes)
        return array

    @property
    def delta(self) -> float:
        """The spacing of the points: a time, or after a transform a frequency."""
        return float(self._record.delta)

    @delta.setter
    def delta(self, delta: float) -> None:
        self._record.delta = delta

    @property
    def dtype(self) -> np.dtype[Any]:
        """The type of the samples."""
        return self._c.complex if self._record.complex else self._c.real

    @property
    def axis(self) -> Array:
        """Where the points lie: 0, delta, 2 delta, ..., in double precision."""
        return np.arange(self.points) * self.delta

    def shares(self, x: Array) -> bool:
        """Whether the samples lie in the memory of an array.

        Examples
        --------
        >>> x = np.zeros(8)
        >>> v = Vec(x)
        >>> v.sin().shares(x), v.rfft().shares(x)
        (True, False)
        """
        return self._owner is not None and bool(np.shares_memory(self.array, x))

    def copy(self) -> Vec:
        """A new record with the same points and spacing."""
        result = self._fresh()
        if self._c.dsp_copy(result._at, self._at):
            raise self._refused("copy", "dsp_copy")
        return result

    def cmp(self, other: Vec, tolerance: float = 0.0) -> int:
        """The sign of the first difference beyond a tolerance, of delta first, then of the samples; 0 without one."""
        order = np.zeros(1, np.int32)
        if self._c.dsp_cmp(self._at, self._record_of(other), float(tolerance), address(order)):
            count = f"{self.points} and {other.points} points"
            raise Error("cmp", "", count, "as many are needed in both")
        return int(order[0])

    def __len__(self) -> int:
        return self.points

    def __array__(self, dtype: Any = None, copy: bool | None = None) -> Array:
        shared = self.array
        array = shared if dtype is None else shared.astype(dtype, copy=False)
        if array is not shared and copy is False:
            raise ValueError(f"{shared.dtype} becomes {array.dtype} by a copy alone")
        return shared.copy() if copy and array is shared else array

    def __reduce__(self) -> tuple[Any, ...]:
        return type(self).of, (self.array, self.delta)

    def __repr__(self) -> str:
        return f"Vec({np.array2string(self.array, threshold=8)}, delta={self.delta:g}, dtype={self.dtype})"


def _seen(x: Array) -> str:
    return f"{x.dtype} of shape {x.shape}" + ("" if x.flags.writeable else ", read-only")


def _copied(x: ArrayLike) -> Array:
    """The samples in memory of their own: what x gives as an array may be its own memory."""
    return x.copy() if is_plain(x) else samples(x).copy()


class Result(Vec):
    """A new record that becomes an array at once; while its memory is small it serves another call then."""

    __slots__ = ()

    def _taken(self) -> Array:
        record, c = self._record, self._c
        if not 0 < record.alloc <= _FEW:
            return self.array
        array = np.empty(record.points, c.complex if record.complex else c.real)
        memmove(address(array) or 0, record.data, array.nbytes)
        c.results.append(self)
        return array


class Operand(Methods):
    """Samples that one call reads. The memory is never the library's, so that there is nothing to release."""

    __slots__ = ()

    def __init__(self, x: Array, delta: float = 1.0) -> None:
        self._c = c = PRECISIONS[x.dtype]
        self._owner, self._data = x, address(x)
        self._record = record = c.structure(delta, self._data, 0, x.size, x.dtype.kind == "c")
        self._at = addressof(record)

    def _fresh(self) -> Vec:
        try:
            result: Vec = self._c.results.pop()
            return result
        except IndexError:
            return Result._of(self._c)


def operand(x: ArrayLike, delta: float = 1.0) -> Operand:
    """A record for reading alone: x itself wherever the library can read it."""
    return Operand(samples(x), delta)


def scratch(x: ArrayLike, delta: float = 1.0) -> Vec:
    """A record for one chain of operations that ends in an array: a copy that nobody else sees."""
    return Vec._lent(_copied(x), delta, False)


def operands(a: ArrayLike, b: ArrayLike) -> tuple[Operand, Any]:
    """Two records for reading, in double precision when either is."""
    first, second = samples(a), samples(b)
    if PRECISIONS[first.dtype] is not PRECISIONS[second.dtype]:
        first, second = in_precision(DOUBLE, first), in_precision(DOUBLE, second)
    return Operand(first), Operand(second)
