# SPDX-License-Identifier: MIT
"""The module `_methods`: every operation on records as a method of `Vec`."""

from __future__ import annotations

import header

from .operations import Argument, Operation, method_names, operations
from .texts import docstring

_HEAD = '''"""The operations as methods of a record, by their names in C. Made from the C header."""

from __future__ import annotations

from ctypes import c_int32
from typing import TYPE_CHECKING

from ._arguments import count_address, double_address, int32, unsigned, window_number
from ._record import Number, RecordBase
from .enums import Window

if TYPE_CHECKING:
    from typing_extensions import Self

    from .vec import Vec


class Methods(RecordBase):
    """What the library does with a record.

    A name is that of the C function without its prefix. Where two families share a name, operations in place come
    first, then statistics, two operands, filters; the other keeps the letter of its family: `cos` takes the cosine of
    the samples, `c_cos` generates one.
    """

    __slots__ = ()
'''

_RETURNS = {
    "changed": "Self: The record itself.",
    "new": "Vec: A new record.",
    "number": "float or complex: numpy.float32 or numpy.complex64 of a record of single precision.",
}


def _type_words(argument: Argument) -> str:
    words = argument.annotation.replace("Window | int | str", "Window, int or str").replace(" | ", " or ")
    return words + (", optional" if argument.default is not None else "")


def _call(operation: Operation) -> str:
    """The call; a record that is kept up to date must be no other of the records, which the check is told."""
    others = ", ".join(a.name for a in operation.declared if a.role == "record")
    return ", ".join(
        f"self._kept({', '.join(part for part in (a.name, others) if part)})" if a.role == "kept" else a.expression
        for a in operation.arguments
    )


def _body(operation: Operation, name: str) -> list[str]:
    """The lines of the method below its documentation."""
    symbol = operation.twins.double.name
    refused = "".join(f", {a.name}={a.name}" for a in operation.declared)
    kept = [a.name for a in operation.declared if a.role == "kept"]
    settle = [f"        self._settle({', '.join(kept)})"] if kept else []
    call = f"self._c.{symbol}({_call(operation)})"
    failed = [f'            raise self._refused("{name}", "{symbol}"{refused})']
    if operation.kind == "number":
        lines = ["        result = self._number()", f"        if {call}:", *failed]
        return lines + ["        return result.number"]
    if operation.kind == "new":
        lines = ["        result = self._fresh()", f"        if {call}:", *failed, *settle]
        return lines + ["        return result"]
    lines = [f"        if {call}:", *failed, *settle]
    return lines + ["        return self if self._record.data == self._data else self._moved()"]


def _method(operation: Operation, name: str) -> list[str]:
    returns = {"changed": "Self", "new": "Vec", "number": "Number"}[operation.kind]
    declared = "".join(f", {argument.declaration}" for argument in operation.declared)
    arguments = [(a.name, _type_words(a), {"block": "in"}.get(a.name, a.name)) for a in operation.declared]
    lines = ["", f"    def {name}(self{declared}) -> {returns}:"]
    return lines + docstring(operation, arguments, _RETURNS[operation.kind], 8) + _body(operation, name)


def module(model: header.Header) -> str:
    names = method_names(model)
    lines = [_HEAD.rstrip("\n")]
    for operation in operations(model):
        name = names.get(operation.twins.double.name)
        if name:
            lines += _method(operation, name)
    return "\n".join(lines) + "\n"
