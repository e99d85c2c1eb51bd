# SPDX-License-Identifier: MIT
"""Every function and method with arguments of wrong types and shapes: an exception says so, and nothing is harmed."""

from __future__ import annotations

import inspect
import os
import random
from typing import Any, Callable

import numpy as np
import pytest

import sigpak as sp

ROUNDS = int(os.environ.get("SIGPAK_MISUSES", "40"))

WRONG: list[Any] = [
    None,
    "text",
    b"bytes",
    object(),
    -1,
    2**40,
    1.5,
    float("nan"),
    3 + 4j,
    [],
    ["a"],
    {},
    np.zeros((2, 3)),
    np.zeros((2, 2, 2), np.complex64),
    np.zeros(0),
    np.array(["a", "b"]),
    np.array([None, 1]),
    np.ma.masked_array([1.0, 2.0], [True, False]),
    np.zeros(4, np.int64),
]


def callables() -> list[tuple[str, Callable[..., Any]]]:
    functions = [(n, f) for n, f in vars(sp).items() if inspect.isfunction(f) and not n.startswith("_")]
    methods = [(n, f) for n, f in inspect.getmembers(sp.Vec, inspect.isfunction) if not n.startswith("_")]
    return sorted(functions) + [(f"Vec.{name}", method) for name, method in methods]


@pytest.mark.filterwarnings("ignore")  # NumPy has some to say about such arguments
@pytest.mark.parametrize(("name", "function"), callables(), ids=[name for name, _ in callables()])
def test_wrong_arguments_are_refused(name: str, function: Callable[..., Any], tmp_path: Any, monkeypatch: Any) -> None:
    monkeypatch.chdir(tmp_path)
    rng = random.Random(name)
    parameters = list(inspect.signature(function).parameters.values())
    wanted = [p for p in parameters if p.kind in (p.POSITIONAL_ONLY, p.POSITIONAL_OR_KEYWORD)]
    untouched = np.arange(1.0, 9.0)
    refused = 0
    for _ in range(ROUNDS):
        signal = untouched.copy()
        right = [sp.Vec(signal.copy()), signal, 2, 0.5]
        given = [rng.choice(WRONG) if rng.random() < 0.6 else rng.choice(right) for _ in wanted]
        if name.startswith("Vec."):
            given[0] = right[0]
        try:
            function(*given)
        except (TypeError, ValueError, OverflowError, AttributeError, MemoryError, OSError):
            refused += 1
    assert refused > 0 or len(wanted) <= 1 or function is sp.Vec.shares
    assert sp.Vec(untouched.copy()).square().array.tolist() == [x * x for x in untouched]


def test_short_arrays_get_what_long_ones_get(real: Any) -> None:
    draw = np.random.default_rng(12)
    kinds = [real, np.result_type(real, np.complex64)]
    kept = []
    for n in (0, 1, 2, 700, 2047, 2048, 2049):
        for kind in kinds:
            a, b = (draw.normal(size=n).astype(kind) for _ in range(2))
            others = (b, b[::-1], b.astype(kinds[1]), b.real.astype(np.float64))
            for other in others:
                found = sp.add(a, other)
                np.testing.assert_allclose(found, a + other, rtol=1e-6 if real is np.float32 else 0)
                assert found.flags.writeable
                kept.append((found, found.copy()))
    for found, copy in kept:
        np.testing.assert_array_equal(found, copy)
    assert not np.shares_memory(sp.mul(a, a), sp.mul(a, a))
    with pytest.raises(sp.Error, match="div"):
        sp.div(np.ones(3, real), np.ones(2, real))
    assert sp.div(np.ones(2, real), np.zeros(2, real))[0] > 1e14
