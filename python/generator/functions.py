# SPDX-License-Identifier: MIT
"""The module `functions`: operations on arrays that need nothing but their arguments."""

from __future__ import annotations

import header

from .methods import _type_words
from .operations import Operation, method_names, operations
from .texts import docstring

_HEAD = '''"""The operations as functions: arrays in, new arrays or numbers out. Made from the C header."""

from __future__ import annotations

from ._arguments import Array, ArrayLike
from ._pairs import combined
from ._record import Number
from .enums import Window
from .vec import Vec, operand, operands, scratch

__all__ = {names!r}

'''

# In the modules written by hand these names, or ones that say more, do the same.
_OTHERWISE = {
    *("window", "window2", "window_kaiser", "window_gauss", "window_sinc", "corr", "bitrev", "bitrev_scale"),
    *("hwfilt", "shuffle", "zero", "erf", "erfc", "gamma", "lgamma"),
}

# Results that depend on the spacing of the samples.
_WITH_DELTA = {"differ", "integ", "edge", "lin_regres", "lin_regres2", "addcos"}


def _is_function(operation: Operation, name: str) -> bool:
    records = [a for a in operation.declared if a.role in ("record", "kept", "count")]
    return (
        operation.is_made
        and operation.family in ("i", "s", "b", "bs")
        and name == operation.stem
        and name not in _OTHERWISE
        and len(records) <= (operation.family in ("b", "bs"))
    )


def _function(operation: Operation, name: str) -> list[str]:
    owner = next(a.name for a in operation.arguments if a.role == "owner")
    array = owner if owner in ("a", "p") else "x"
    if any(a.name == "x" for a in operation.declared) and array == "x":
        array = "v"
    other = next((a.name for a in operation.declared if a.role == "record"), "")
    delta = name in _WITH_DELTA
    declared = [f"{array}: ArrayLike"]
    declared += [f"{a.name}: ArrayLike" if a.name == other else a.declaration for a in operation.declared]
    declared += ["*, delta: float = 1.0"] if delta else []
    returns = "Number" if operation.kind == "number" else "Array"
    arguments = [(array, "array_like", owner)]
    arguments += [(a.name, "array_like" if a.name == other else _type_words(a), a.name) for a in operation.declared]
    arguments += [("delta", "float, optional", "the spacing of the samples")] if delta else []
    lines = ["", "", f"def {name}({', '.join(declared)}) -> {returns}:"]
    return lines + docstring(operation, arguments, _meaning(operation), 4) + _body(operation, name, array, other, delta)


def _meaning(operation: Operation) -> str:
    if operation.kind == "number":
        return "float or complex: numpy.float32 or numpy.complex64 for an array of single precision."
    return "ndarray: A new array in the precision of the samples."


def _body(operation: Operation, name: str, array: str, other: str, delta: bool) -> list[str]:
    given = ", ".join(a.name for a in operation.declared if a.name != other)
    spacing = ", delta" if delta else ""
    if other:
        lines = [f"    first, second = operands({array}, {other})"]
        if not given and operation.kind != "number":
            return [f'    return combined("{name}", "{operation.twins.double.name}", {array}, {other})']
        given = ", ".join(part for part in ("second", given) if part)
        call = f"first.{name}({given})"
    else:
        copied = "scratch" if operation.kind == "changed" else "operand"
        lines = []
        call = f"{copied}({array}{spacing}).{name}({given})"
    return lines + [f"    return {call}" + ("" if operation.kind == "number" else "._taken()")]


def module(model: header.Header) -> str:
    names = method_names(model)
    made = [(o, names[o.twins.double.name]) for o in operations(model) if o.twins.double.name in names]
    made = [(operation, name) for operation, name in made if _is_function(operation, name)]
    lines = [_HEAD.format(names=[name for _, name in made]).rstrip("\n")]
    for operation, name in made:
        lines += _function(operation, name)
    return "\n".join(lines) + "\n"
