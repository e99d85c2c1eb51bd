# SPDX-License-Identifier: MIT
"""What the header tells about each operation, as a method or a function of Python sees it."""

from __future__ import annotations

import re
from dataclasses import dataclass

import header

RESULTS = ("result", "out", "spline", "dst")

# The record that a method belongs to, where it is not the first one that is no result.
_OWNERS = {
    "dsp_append": "dst",
    "dsp_cspline": "y",
    "dsp_interp": "y",
    "dspb_cspline_2d": "z",
    "dsph_avg": "avg",
    "dsph_fft": "avg",
    "dsph_dft": "avg",
}

# Arguments with no meaning, or one that the binding takes over.
_HIDDEN = {"clipped": "None", "reserved": "0", "dspi_limit.mode": "0"}

# Values that most calls want; they count where every later argument has one too.
_DEFAULTS = {
    "flags": "0",
    "direction": "0",
    "odd": "False",
    "antisymmetric": "False",
    "index": "0",
    "hop": "0",
    "lags": "-1",
    "every": "0",
    "dsph_avg.weight": "-1.0",
    "maxcount": "0.0",
    "phase": "0.0",
    "param2": "0.0",
    "ends": "0",
    "start": "0.0",
    "end": "0.0",
    "count": "None",
    "history": "None",
    "state": "None",
    "scratch": "None",
    "dsph_fft.b": "None",
    "dsph_dft.b": "None",
    "dsph_fft.window": "None",
    "dsph_dft.window": "None",
    "dsp_cspline.x": "None",
    "dsp_interp.x": "None",
    "dspd_rsmp2.at": "None",
    "dspd_rsmp2.step": "1.0",
}

# Methods written by hand, and functions that concern no single record.
_NOT_MADE = re.compile(r"dsp_(init|destroy|alloc|realloc|copy|cmp|lib_\w+|version|free_internal|window\w*)|dspf_\w+")

# Where two families share a name the first of these has it, and the other keeps its letter: c_cos.
_FAMILIES = ["", "i", "s", "bs", "b", "d", "u", "h", "c", "f"]

_PLURAL = {"proots", "peak", "hist", "lin_regres", "lin_regres2"}


@dataclass(frozen=True)
class Argument:
    """An argument of the C function, and the Python expression that is passed for it."""

    name: str
    role: str  # owner, result, record, kept, count, real, integer, window, hidden
    expression: str
    annotation: str = ""
    default: str | None = None

    @property
    def declaration(self) -> str:
        return f"{self.name}: {self.annotation}" + (f" = {self.default}" if self.default is not None else "")


@dataclass(frozen=True)
class Operation:
    """A pair of twins with its block and the section that it stands in."""

    twins: header.Twins
    block: header.Block
    section: header.Section

    @property
    def family(self) -> str:
        return self.twins.double.name.split("_")[0][3:]

    @property
    def stem(self) -> str:
        return self.twins.double.name.split("_", 1)[1]

    @property
    def is_made(self) -> bool:
        return not _NOT_MADE.fullmatch(self.twins.double.name)

    @property
    def entries(self) -> dict[str, header.Entry]:
        """The argument lines, those of the section's beginning where the block has none."""
        found: dict[str, header.Entry] = {}
        shared = [part for part in self.section.parts if isinstance(part, header.Comment)]
        for comment in [*shared, self.block.comment]:
            for piece in comment.pieces:
                if isinstance(piece, header.Entry):
                    found.update((name, piece) for name in piece.names)
        return found

    @property
    def texts(self) -> dict[str, str]:
        """The argument lines of the C function as plain text."""
        names = [parameter.name for parameter in self.twins.double.parameters]
        return {name: plain(entry.body) for name, entry in self.entries.items() if name in names}

    @property
    def is_real_only(self) -> bool:
        text = self.block.comment.text
        shared = " ".join(p.text for p in self.section.parts if isinstance(p, header.Comment))
        owner = self.texts.get("v", "")
        return (
            "Real only." in text
            or "of these are real only" in shared
            or owner.startswith("real")
            and not owner.startswith("real or")
            or "A complex record is refused" in text
        )

    @property
    def kind(self) -> str:
        """What the method gives back: itself 'changed', a 'new' record, or a 'number'."""
        if not any(argument.role == "result" for argument in self.arguments):
            return "changed"
        return "number" if self.family in ("s", "bs") and self.stem not in _PLURAL else "new"

    @property
    def arguments(self) -> list[Argument]:
        parameters = self.twins.double.parameters
        owner = _OWNERS.get(self.twins.double.name) or next(
            (p.name for p in parameters if _is_record(p) and p.name not in RESULTS), ""
        )
        arguments = [_argument(self.twins.double.name, p, owner) for p in parameters]
        return _with_defaults(self.twins.double.name, arguments)

    @property
    def declared(self) -> list[Argument]:
        """The arguments that a caller gives."""
        return [a for a in self.arguments if a.role not in ("owner", "result", "hidden")]


def plain(pieces: tuple[header.Piece, ...]) -> str:
    parts = []
    for piece in pieces:
        if isinstance(piece, header.Prose):
            parts.append(piece.text)
        elif isinstance(piece, header.Verbatim):
            parts.append(" ".join(" ".join(piece.lines).split()))
    return " ".join(parts)


def _is_record(parameter: header.Parameter) -> bool:
    return parameter.type.endswith("dsp_vec *")


def _argument(operation: str, parameter: header.Parameter, owner: str | None) -> Argument:
    name = parameter.name
    python = {"in": "block"}.get(name, name)
    if name == owner:
        return Argument(name, "owner", "self._at")
    hidden = _HIDDEN.get(f"{operation}.{name}") or _HIDDEN.get(name)
    if hidden:
        return Argument(name, "hidden", hidden)
    if _is_record(parameter) and name in RESULTS:
        return Argument(name, "result", "result._at")
    if operation == "dspd_rsmp2" and name == "at":
        return Argument(name, "record", "double_address(at)", "Vec | None")
    if _is_record(parameter):
        role = "record" if parameter.type.startswith("const") else "kept"
        return Argument(python, role, f"self._record_of({python})", "Vec")
    if parameter.type == "int32_t *":
        return Argument(name, "count", f"count_address({name})", "c_int32 | None")
    if parameter.type in ("double", "float"):
        return Argument(name, "real", f"float({name})", "float")
    if name == "window":
        return Argument(name, "window", "window_number(window)", "Window | int | str")
    if name in ("odd", "antisymmetric"):
        return Argument(name, "integer", f"int32({name})", "bool")
    check = "unsigned" if parameter.type == "uint32_t" else "int32"
    return Argument(name, "integer", f"{check}({name})", "int")


def _with_defaults(operation: str, arguments: list[Argument]) -> list[Argument]:
    """The arguments, with defaults from the end as far as they go without a gap."""
    done: list[Argument] = []
    open_end = True
    for argument in reversed(arguments):
        if argument.role in ("owner", "result", "hidden"):
            done.append(argument)
            continue
        default = _DEFAULTS.get(f"{operation}.{argument.name}") or _DEFAULTS.get(argument.name)
        if argument.role == "integer" and default == "0.0":
            default = "0"
        annotation = argument.annotation
        if default == "None" and not annotation.endswith("None"):
            annotation = f"{annotation} | None"
        if default is None or (argument.role == "integer" and default == "None"):
            open_end, default, annotation = False, None, argument.annotation
        expression = argument.expression
        if annotation.endswith("None"):
            expression = expression.replace("_record_of", "_record_or_null")
        done.append(Argument(argument.name, argument.role, expression, annotation, default if open_end else None))
    return done[::-1]


def operations(model: header.Header) -> list[Operation]:
    return [
        Operation(twins, block, section)
        for section in model.sections
        for block in section.blocks
        for twins in block.twins
    ]


def method_names(model: header.Header) -> dict[str, str]:
    """The name of every method by that of its C function."""
    taken: dict[str, str] = {}
    names: dict[str, str] = {}
    made = [operation for operation in operations(model) if operation.is_made]
    for operation in sorted(made, key=lambda o: _FAMILIES.index(o.family)):
        name = operation.stem if operation.stem not in taken else f"{operation.family[0]}_{operation.stem}"
        taken[name] = names[operation.twins.double.name] = name
    return names
