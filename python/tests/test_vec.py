# SPDX-License-Identifier: MIT
"""Records: whose memory they work in, and that views outlive them."""

from __future__ import annotations

import gc
import pickle
import resource
from pathlib import Path
from typing import Any

import numpy as np
import pytest

import sigpak as sp


class Measured(sp.Vec):
    """A record of somebody's own."""


def test_operations_change_the_array_that_was_lent(real: Any) -> None:
    x = np.array([1.0, 4.0, 9.0, 16.0], real)
    v = sp.Vec(x, 0.5)
    assert v.sqrt() is v and v.array is x and x.tolist() == [1, 2, 3, 4]
    v.window("uniform", sp.WindowFlag.PEAK).zero().offset(2.0)  # what the library makes elsewhere comes back
    assert v.shares(x) and x.tolist() == [2, 2, 2, 2] and v.delta == 0.5 and len(v) == v.points == 4
    assert v.dtype == real and v.axis.tolist() == [0, 0.5, 1, 1.5]


def test_results_that_do_not_fit_leave_the_array(real: Any) -> None:
    x = np.array([1.0, 2.0, 3.0, 4.0], real)
    v = sp.Vec(x, 1.0).rdft()
    assert not v.shares(x) and x.tolist() == [1, 2, 3, 4] and v.is_complex and v.delta == 0.25
    spectrum = v.array
    assert v.mag().array.dtype == real and v.shares(spectrum)
    np.testing.assert_allclose(spectrum.view(real)[:3], [2.5, 0.5**0.5, 0.5], rtol=1e-6)
    assert sp.Vec(x).zpad(3).array is x and sp.Vec(x).shift(1).array.base is x


def test_a_record_may_be_made_anew(real: Any) -> None:
    x, y = np.ones(3, real), np.full(4, 2.0, real)
    v = Measured(x).zpad(1000)
    seen = v.array
    for _ in range(3):
        v.__init__(y)  # type: ignore[misc]
        assert v.neg().shares(y) and v.points == 4 and seen[:3].tolist() == [1, 1, 1] and not seen[3:].any()
        v.zpad(100000)
    w = sp.Vec.empty(200000, dtype=real)
    before = resident()
    for _ in range(200):
        w.__init__(y)  # type: ignore[misc]
        w.zpad(200000)
    assert resident() - before < 50e6  # of 160 or 320 MB


def resident() -> int:
    """The bytes of memory that this process has."""
    return int(Path("/proc/self/statm").read_text().split()[1]) * resource.getpagesize()


def test_views_outlive_growth_and_record() -> None:
    v = sp.Vec.empty(1000).c_cos(0.01)
    first = v.array
    copy = first.copy()
    v.zpad(100000)
    second = v.array
    del v
    gc.collect()
    filler = [np.full(1000, np.nan) for _ in range(50)]
    np.testing.assert_array_equal(first, copy)
    np.testing.assert_array_equal(second[:1000], copy)
    assert second.size == 100000 and not second[1000:].any() and len(filler) == 50


@pytest.mark.parametrize(
    "x",
    [
        [1.0, 2.0],
        np.arange(4),
        np.zeros(8)[::2],
        np.zeros(4, ">f8"),
        np.frombuffer(b"\0" * 16),
        np.zeros(17, np.uint8)[1:].view(np.float64),
        np.zeros((2, 2)),
        np.array(1.0),
        np.zeros(2, np.float16),
    ],
    ids=["list", "integers", "strided", "foreign", "read-only", "unaligned", "two", "none", "half"],
)
def test_only_plain_arrays_are_lent_but_most_are_copied(x: Any) -> None:
    with pytest.raises(sp.Error):
        sp.Vec(x)
    if np.ndim(x) == 1 and np.asarray(x).dtype != np.float16:
        v = sp.Vec.of(x, 2.0)
        assert v.scale(3.0).array.tolist() == (3.0 * np.asarray(x)).tolist() and v.delta == 2.0


def test_records_of_two_precisions_do_not_meet() -> None:
    a, b = sp.Vec(np.ones(3)), sp.Vec(np.ones(3, np.float32))
    for call in (a.add, a.append, a.fir, a.cmp, a.corr):
        with pytest.raises(sp.Error, match="records of one precision"):
            call(b)
    with pytest.raises(sp.Error, match="double precision"):
        b.rsmp2(b, b)


@pytest.mark.parametrize("other", [None, np.ones(3), [1.0], 2.0])
def test_only_records_are_operands(other: Any) -> None:
    v = sp.Vec(np.ones(3))
    for name in ("mul", "add", "dot", "append", "fir", "cmp", "corr", "h_dft", "rsmp2"):
        with pytest.raises(sp.Error, match="a Vec is needed"):
            getattr(v, name)(other)
    if other is not None:
        for call in (lambda: v.fir(v, other), lambda: v.h_dft(v, other), lambda: v.rsmp2(v, other)):
            with pytest.raises(sp.Error, match="a Vec is needed"):
                call()
    with pytest.raises(sp.Error, match="c_int32"):
        v.h_dft(v, count=0)


def test_what_is_kept_is_a_record_of_its_own() -> None:
    a, taps = sp.Vec(np.ones(3)), sp.Vec.of([1.0, 2.0])
    for call in (lambda: a.fir(taps, taps), lambda: a.fir(taps, a), lambda: a.rsmp(taps, 1, 1, a)):
        with pytest.raises(sp.Error, match="one record twice"):
            call()
    history = sp.Vec(np.array([9.0]))
    assert a.fir(taps, history).array.tolist() == [19.0, 3.0, 3.0] and history.array.tolist() == [1.0]


def test_a_refused_call_leaves_the_record_usable() -> None:
    v = sp.Vec(np.array([1.0, 2.0, 3.0]))
    with pytest.raises(sp.Error) as caught:
        v.rfft()
    error = caught.value
    assert (error.operation, error.argument, error.value) == ("rfft", "", "3 points")
    assert v.scale(2.0).array.tolist() == [2.0, 4.0, 6.0]


def test_what_records_have_in_common_with_arrays() -> None:
    v = sp.Vec(np.array([1.0 + 2j, 3.0]), 0.25)
    w = v.copy()
    assert v.cmp(w) == 0 and w.offset(1.0).cmp(v) == 1 and v.cmp(w, 2.0) == 0 and v.array[0] == 1 + 2j
    again = pickle.loads(pickle.dumps(v))
    assert again.cmp(v) == 0 and again.delta == 0.25
    assert type(pickle.loads(pickle.dumps(Measured.of([1.0])))) is Measured
    assert v.__array__() is v.array and not v.shares(v.__array__(copy=True))
    with pytest.raises(ValueError, match="by a copy"):
        v.__array__(np.complex64, copy=False)
    assert np.asarray(v).tolist() == [1 + 2j, 3] and repr(v) == "Vec([1.+2.j 3.+0.j], delta=0.25, dtype=complex128)"
    with pytest.raises(sp.Error, match="2 and 1 points"):
        v.cmp(sp.Vec.of([1j]))
    v.delta = 2.0
    assert v.delta == 2.0 and sp.Vec.empty().points == 0 and sp.Vec.empty().array.size == 0
