#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Prints the table of all operations of sigpak.h, with the names of their parameters, for calls.cpp.

A parameter that may be missing has a question mark behind its name. An operation that is neither in the table nor in
OTHERS cannot be: whoever adds one has it called.
"""

from __future__ import annotations

import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "docs"))

import cxx  # noqa: E402
import header  # noqa: E402

# Hooks stay as the tests install them, files have a target of their own, what makes a record would lose one, and sizing
# wants the shape that the record had: calls.h does that itself.
OTHERS = {"dsp_lib_alloc", "dsp_lib_realloc", "dsp_lib_free", "dsp_init", "dsp_alloc", "dsp_realloc"}

# Pointers to numbers and texts that may be null.
OPTIONAL = {
    "dspi_limit": {"clipped"},
    "dsph_fft": {"count"},
    "dsph_dft": {"count"},
    "dsp_window_to_str": {"buffer"},
    "dsp_window_from_str": {"name"},
}


def row(twins: header.Twins) -> str:
    name = twins.double.name
    optional = cxx.OPTIONAL.get(name, set()) | OPTIONAL.get(name, set())
    names = ", ".join(f'"{p.name}{"?" if p.name in optional else ""}"' for p in twins.double.parameters)
    both = f"call<dsp_vec, {name}>, call<dspf_vec, {twins.single.name}>"
    return f'    {{"{name}", {both}, {{{names}}}}},'


def is_called(twins: header.Twins) -> bool:
    of_files = any("FILE" in kind for kind in [twins.double.returns, *(p.type for p in twins.double.parameters)])
    return twins.double.name not in OTHERS and not of_files


if __name__ == "__main__":
    print("\n".join(row(twins) for twins in header.load().twins if is_called(twins)))
