# SPDX-License-Identifier: MIT
"""The module `_c`: the prototypes of the library, and what an error can say about a refusal."""

from __future__ import annotations

import re

import header

from .operations import RESULTS, operations

_REFUSAL = re.compile(r"(?<![\w\[\]])-1\b|refuse")
_LETTERS = {"int32_t": "i", "uint32_t": "u", "double": "d", "float": "f", "const char *": "s"}

_HEAD = '''"""The functions of the library by the names of double precision. Made from the C header."""

from __future__ import annotations

from ctypes import CDLL, c_char_p, c_double, c_float, c_int32, c_uint32, c_void_p
from typing import Any, Callable

Call = Callable[..., int]

PACKAGE_VERSION = "{package}"
VERSION = {version}

_TYPES: dict[str, Any] = {{
    "p": c_void_p, "i": c_int32, "u": c_uint32, "d": c_double, "f": c_float, "s": c_char_p,
}}


class Calls:
    """The functions of one precision.

    Parameters
    ----------
    library : CDLL
        The loaded library.
    twin : int
        0 for the functions of double precision, 1 for those of single.
    """

    def __init__(self, library: CDLL, twin: int) -> None:
        self.is_single = twin == 1
        for name, prototype in PROTOTYPES.items():
            symbol, letters = prototype[2 * twin : 2 * twin + 2]
            function = getattr(library, symbol)
            function.restype = _TYPES[letters[0]]
            function.argtypes = [_TYPES[letter] for letter in letters[1:]]
            setattr(self, name, function)

'''


def _letters(function: header.Function) -> str:
    types = [function.returns] + [parameter.type for parameter in function.parameters]
    return "".join(_LETTERS.get(kind, "p") for kind in types)


def _refusals(model: header.Header) -> list[str]:
    """What the header says of the arguments that an operation refuses, and of other failures under no name."""
    lines = []
    for operation in operations(model):
        texts = {name: text for name, text in operation.texts.items() if name not in RESULTS}
        prose = [p.text for p in operation.block.comment.pieces if isinstance(p, header.Prose)]
        sentences = [sentence for text in prose for sentence in re.split(r"(?<=[a-z0-9][.;]) ", text)]
        texts[""] = " ".join(sentence for sentence in sentences if _REFUSAL.search(sentence))
        said = {name: " ".join(text.split()) for name, text in texts.items() if _REFUSAL.search(text)}
        if said:
            lines.append(f"    {operation.twins.double.name!r}: {said!r},")
    return lines


def module(model: header.Header, package: str) -> str:
    version = next(p.value for s in model.sections for p in s.parts if isinstance(p, header.Definition))
    lines = [_HEAD.format(package=package, version=version).rstrip("\n")]
    lines += [f"    {twins.double.name}: Call" for twins in model.twins]
    lines += ["", "", "# The symbol and the types of result and arguments, of double and of single precision."]
    lines += ["PROTOTYPES = {"]
    for twins in model.twins:
        double, single = twins.double, twins.single
        lines.append(
            f'    "{double.name}": ("{double.name}", "{_letters(double)}", "{single.name}", "{_letters(single)}"),'
        )
    lines += ["}", "", "# What the header says of arguments that are refused."]
    lines += ["REFUSALS: dict[str, dict[str, str]] = {", *_refusals(model), "}", ""]
    real_only = sorted(o.twins.double.name for o in operations(model) if o.is_real_only)
    lines += ["REAL_ONLY = frozenset((", *(f'    "{name}",' for name in real_only), "))", ""]
    return "\n".join(lines)
