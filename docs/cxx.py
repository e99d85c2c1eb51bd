#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Prints include/sigpak_operations.hpp: every operation of sigpak.h for the records of sigpak.hpp.

scripts/manual writes the file with it, and a test compares the two.
"""

from __future__ import annotations

import sys
import textwrap
from typing import Iterator

import header
from header import Function, Parameter, Twins

WIDTH = 110

# Records that may be missing. All others are references.
OPTIONAL = {
    "dsp_cspline": {"x"},
    "dsp_interp": {"x"},
    "dsph_avg": {"scratch"},
    "dsph_fft": {"b", "history", "window"},
    "dsph_dft": {"b", "history", "window"},
    "dsph_corr": {"out", "history"},
    "dspd_fir": {"history"},
    "dspd_sfir": {"history"},
    "dspd_deci": {"state"},
    "dspd_rsmp": {"in", "state"},
    "dspd_rsmp2": {"in", "at", "state"},
    "dspd_hwfilt": {"state"},
}

# What the classes of sigpak.hpp do: making and destroying.
LIFE = {"dsp_init", "dsp_destroy"}

# Functions whose result is no status.
PLAIN = {"dsp_version", "dspf_version", "dspf_fopen", "dspff_fopen", "dspf_fclose", "dspff_fclose"}

# The names of records that hold nothing but the result.
RESULTS = {"out", "result", "spline"}

INTRODUCTION = """\
// Every operation of sigpak.h for the records of sigpak.hpp, which includes this file. Made by docs/cxx.py from
// sigpak.h: whoever changes the one makes the other anew with scripts/manual.
// clang-format off
#ifndef SIGPAK_OPERATIONS_HPP
#define SIGPAK_OPERATIONS_HPP

namespace sigpak {
"""


def is_record(parameter: Parameter) -> bool:
    return "_vec *" in parameter.type


def holder(parameter: Parameter) -> str:
    """The class that stands for a record of C."""
    return "recordf" if "dspf_vec" in parameter.type else "record"


def has_record(function: Function) -> bool:
    return any(is_record(parameter) for parameter in function.parameters)


def declared(name: str, parameter: Parameter) -> str:
    """A parameter as C++ declares it."""
    if not is_record(parameter):
        return f"{parameter.type} {parameter.name}".replace(" *", "*")
    const = "const " if parameter.type.startswith("const ") else ""
    mark = "*" if parameter.name in OPTIONAL.get(name, set()) else "&"
    return f"{const}{holder(parameter)}{mark} {parameter.name}"


def result_of(name: str, function: Function) -> Parameter | None:
    """The record that an operation changes: the last that is neither constant nor optional."""
    found = [
        parameter
        for parameter in function.parameters
        if is_record(parameter)
        and not parameter.type.startswith("const ")
        and parameter.name not in OPTIONAL.get(name, set())
    ]
    return found[-1] if found else None


def call(function: Function) -> str:
    arguments = (f"detail::raw({p.name})" if is_record(p) else p.name for p in function.parameters)
    return f"::{function.name}({', '.join(arguments)})"


def parameters_of(name: str, function: Function, without: Parameter | None = None) -> str:
    return ", ".join(declared(name, p) for p in function.parameters if p is not without)


def defined(head: str, *statements: str) -> str:
    """A function on one line, or on as many as it takes."""
    line = f"{head} {{ {' '.join(statements)} }}"
    if len(line) <= WIDTH:
        return line
    body = [textwrap.fill(each, WIDTH, initial_indent="  ", subsequent_indent="      ") for each in statements]
    return "\n".join([textwrap.fill(head + " {", WIDTH, subsequent_indent="    "), *body, "}"])


def status(name: str, function: Function) -> str:
    """The operation with the status of C."""
    head = f"[[nodiscard]] inline std::int32_t {name}({parameters_of(name, function)}) noexcept"
    return defined(head, f"return {call(function)};")


def throwing(name: str, function: Function) -> str:
    """The operation with exceptions. It returns what it changes; of a file, whether there was a vector."""
    result = result_of(name, function)
    head = f"{name}({parameters_of(name, function)})"
    check = f'detail::checked({call(function)}, "{name}")'
    if name.endswith("_fread"):
        return defined(f"inline bool {head}", f"return {check} != 0;")
    if result is None:
        return defined(f"inline void {head}", f"{check};")
    return defined(f"inline {holder(result)}& {head}", f"{check};", f"return {result.name};")


def fresh(name: str, function: Function) -> str | None:
    """The operation with its result as a new record, where a result is all that the record is for."""
    result = result_of(name, function)
    if result is None or result.name not in RESULTS:
        return None
    kind, to = holder(result), result.name
    head = f"[[nodiscard]] inline {kind} {name}({parameters_of(name, function, result)})"
    return defined(head, f"{kind} {to};", f'detail::checked({call(function)}, "{name}");', f"return {to};")


def number(name: str, function: Function) -> str | None:
    """An operation without a record, as the function of the one number that it stores through a pointer."""
    stored = [p for p in function.parameters if p.type in ("double *", "int32_t *")]
    if has_record(function) or len(stored) != 1 or function.name != name:
        return None
    kind, to = stored[0].type.removesuffix(" *"), stored[0].name
    arguments = ", ".join(f"&{p.name}" if p is stored[0] else p.name for p in function.parameters)
    head = f"[[nodiscard]] inline {kind} {name}({parameters_of(name, function, stored[0])})"
    check = f'detail::checked(::{name}({arguments}), "{name}");'
    return defined(head, f"{kind} {to} = 0;", check, f"return {to};")


def overloads(twins: Twins) -> Iterator[tuple[str, Function]]:
    """The twins under the name of double precision where their arguments tell them apart, otherwise each its own."""
    differ = [p.type for p in twins.double.parameters] != [p.type for p in twins.single.parameters]
    yield twins.double.name, twins.double
    yield twins.double.name if differ else twins.single.name, twins.single


def operations() -> list[tuple[str, Function]]:
    twins = (twins for twins in header.load().twins if twins.double.name not in LIFE)
    return [pair for each in twins for pair in overloads(each)]


def text() -> str:
    lines = [INTRODUCTION]
    lines += [f"using ::{name};" for name in sorted(PLAIN)]
    wrapped = [(name, function) for name, function in operations() if function.name not in PLAIN]
    lines += ["", "namespace status {", ""]
    lines += [status(name, function) for name, function in wrapped]
    lines += ["", "}  // namespace status", "", "#if defined(__cpp_exceptions)", ""]
    for name, function in wrapped:
        lines.append(throwing(name, function))
        lines += [line for line in (fresh(name, function), number(name, function)) if line]
    lines += ["", "#endif", "", "}  // namespace sigpak", "", "#endif"]
    return "\n".join(lines) + "\n"


if __name__ == "__main__":
    sys.stdout.write(text())
