# SPDX-License-Identifier: MIT
"""A record of the library, and who owns the memory that its samples lie in."""

from __future__ import annotations

from collections.abc import Callable
from ctypes import addressof, c_char, c_void_p, memmove
from threading import local
from typing import TYPE_CHECKING, Any, Union

import numpy as np

from ._library import DOUBLE, SINGLE, Precision
from .errors import Error, refusal

if TYPE_CHECKING:
    from typing_extensions import Self

    from .vec import Vec

Number = Union[float, complex, "np.float32", "np.complex64"]


_from_buffer: Callable[[Any], c_char] = c_char.from_buffer


def address(array: np.ndarray[Any, Any]) -> int | None:
    """Where the first sample of an array lies; None of an empty one."""
    try:
        return addressof(_from_buffer(array))
    except (TypeError, ValueError):  # read-only, or empty
        return int(array.ctypes.data) if array.size else None


class Storage:
    """Memory of the library's that arrays look into; released when the last of them is gone."""

    __slots__ = ("_record", "_c", "__array_interface__")

    def __init__(self, record: Any, c: Precision) -> None:
        self._record, self._c = c.structure(1.0, record.data, record.alloc), c
        self.__array_interface__ = {
            "version": 3,
            "shape": (record.alloc,),
            "typestr": c.real.str,
            "data": (record.data, False),
        }

    def __del__(self) -> None:
        self._c.dsp_destroy(addressof(self._record))


class OneNumber:
    """A record for results of one point, kept for the next of them."""

    __slots__ = ("_record", "_at", "_c")

    def __init__(self, c: Precision) -> None:
        self._record, self._c = c.structure(1.0), c
        self._at = addressof(self._record)

    def __del__(self) -> None:
        self._c.dsp_destroy(self._at)

    @property
    def number(self) -> Number:
        c, record = self._c, self._record
        first = c.scalar.from_address(record.data).value
        if not record.complex:
            return np.float32(first) if c.is_single else float(first)
        second = c.scalar.from_address(record.data + c.size).value
        return np.complex64(complex(first, second)) if c.is_single else complex(first, second)


class _Numbers(local):
    """One of each precision for every thread."""

    def __init__(self) -> None:
        self.double, self.single = OneNumber(DOUBLE), OneNumber(SINGLE)


_numbers = _Numbers()


class RecordBase:
    """A record beside the memory that it was lent.

    The samples are in memory of the library's (alloc above 0), or in that of `_owner`, an array. Results that the
    library puts elsewhere are copied back to the owner while they fit and somebody shares its memory; the first that
    does not fit stays where it is, and the owner keeps what it had.
    """

    __slots__ = ("_record", "_at", "_c", "_data", "_owner", "_shared", "__weakref__")
    _record: Any
    _at: int
    _c: Precision
    _data: int | None
    _owner: np.ndarray[Any, Any] | None
    _shared: bool

    @property
    def points(self) -> int:
        """The number of points."""
        return int(self._record.points)

    @property
    def is_complex(self) -> bool:
        """Whether the samples are complex."""
        return bool(self._record.complex)

    @property
    def is_lost(self) -> bool:
        """Whether the record could not grow, and has lost its samples."""
        return self._record.data is None and self._record.points > 0

    @property
    def _scalars(self) -> int:
        return int(self._record.points) * (2 if self._record.complex else 1)

    def _moved(self) -> Self:
        """Follows the samples after an operation has put them elsewhere."""
        record = self._record
        if self._owner is not None and self._shared and self._scalars * self._c.size <= self._owner.nbytes:
            self._take_back()
        else:
            self._owner, self._data = None, record.data
        return self

    def _take_back(self) -> None:
        """Copies a result from the library's memory into the owner's."""
        record, c = self._record, self._c
        shape = record.delta, record.points, record.complex
        if self._scalars:
            memmove(c_void_p(self._data), record.data, self._scalars * c.size)
        c.dsp_destroy(self._at)
        record.delta, record.points, record.complex = shape
        record.data = self._data

    def _settle(self, *kept: RecordBase | None) -> None:
        """The same for records beside this one that an operation keeps up to date."""
        for other in kept:
            if other is not None and other._record.data != other._data:
                other._moved()

    def _record_of(self, other: RecordBase) -> int:
        if not isinstance(other, RecordBase):
            raise Error("", "", f"an operand of type {type(other).__name__}", "a Vec is needed")
        if other._c is not self._c:
            raise Error("", "", "double and single precision", "records of one precision are needed")
        return other._at

    def _record_or_null(self, other: RecordBase | None) -> int | None:
        return None if other is None else self._record_of(other)

    def _kept(self, other: RecordBase | None, *records: RecordBase | None) -> int | None:
        """The address of a record that is written beside the result: it must be no other of the call."""
        if other is not None and (other is self or any(other is record for record in records)):
            raise Error("", "", "one record twice", "what is kept from call to call is a record of its own")
        return self._record_or_null(other)

    def _number(self) -> OneNumber:
        return _numbers.single if self._c.is_single else _numbers.double

    def _fresh(self) -> Vec:
        raise NotImplementedError

    def _refused(self, name: str, symbol: str, **arguments: Any) -> Error:
        """The error of a refused call. A record that could not grow has lost its samples, and is empty from then on."""
        if self._record.data != self._data:
            self._owner, self._data = None, self._record.data
        error = refusal(name, symbol, self, arguments)
        if self.is_lost:
            self._record.points = 0
        return error
