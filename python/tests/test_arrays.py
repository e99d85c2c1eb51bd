# SPDX-License-Identifier: MIT
"""Functions on arrays: which arrays they take, what they give, and that it is right."""

from __future__ import annotations

import inspect
from typing import Any

import numpy as np
import pytest
from scipy import special, stats
from scipy.signal import hilbert

import sigpak as sp
from sigpak import functions

X = np.arange(1.0, 7.0)


class Holder:
    """Gives its own memory away, as series of samples do."""

    def __init__(self) -> None:
        self.samples = X.copy()

    def __array__(self) -> Any:
        return self.samples


TAKEN: list[Any] = [
    [1, 2, 3, 4, 5, 6],
    (1.0, 2, 3, 4, 5, 6),
    range(1, 7),
    np.arange(1, 7, dtype=np.int16),
    np.arange(1, 7, dtype=np.uint64),
    np.arange(1.0, 13.0)[::2] / 2 + 0.5,
    np.repeat(X, 3)[::3],
    X[::-1].copy()[::-1],
    X.astype(">f8"),
    np.frombuffer(b"\0" + X.tobytes(), np.uint8)[1:].view(np.float64),
    np.frombuffer(X.tobytes()),
    np.array([X, X]).T[:, 1],
    np.ma.array(X),
    sp.Vec(X.copy()),
    Holder(),
]
REFUSED = [
    (np.float64(3.0), "a single number"),
    (3, "a single number"),
    (np.zeros((2, 2)), "2 dimensions"),
    (np.zeros(3, np.float16), "type float16; float32, float64, complex64 or complex128"),
    (np.zeros(3, np.longdouble), "type (float128|longdouble)"),
    (["a"], "type <U1"),
    (np.ma.masked_equal([1.0, 2.0], 2.0), "masked samples"),
    ([None], "type object"),
    (np.zeros(2, "M8[s]"), "type datetime64"),
    (np.broadcast_to(0.0, (2**31,)), "2147483648 points; a record holds"),
    (np.broadcast_to(np.complex64(0), (2**30,)), "1073741824 points"),
]


@pytest.mark.parametrize("x", TAKEN, ids=range(len(TAKEN)))
def test_arrays_of_every_layout_are_read(x: Any) -> None:
    before = bytes(np.asarray(x).tobytes())
    np.testing.assert_array_equal(sp.scale(x, 2.0), 2 * X)
    assert sp.Vec.of(x).scale(3.0).array[5] == 18.0
    np.testing.assert_array_equal(sp.add(x, x), 2 * X)
    assert sp.sum(x) == 21.0
    assert np.asarray(x).tobytes() == before


@pytest.mark.parametrize(("x", "reason"), REFUSED)
def test_other_arrays_are_refused_before_they_are_copied(x: Any, reason: str) -> None:
    for call in (sp.neg, sp.mean, sp.Fir([1.0]), sp.spectrum):
        with pytest.raises(sp.Error, match=reason):
            call(x)


def test_arguments_without_a_meaning_are_refused() -> None:
    for call in (
        lambda: sp.window("hann", 4, dtype=np.int64),
        lambda: sp.window("hann", 4, dtype=np.complex128),
        lambda: sp.read("-", dtype=np.int64),
        lambda: sp.spectrum(X, rate=np.inf),
    ):
        with pytest.raises(sp.Error, match="needed"):
            call()


def test_empty_nan_and_infinite_samples_pass(real: Any) -> None:
    empty = np.empty(0, real)
    assert sp.sin(empty).shape == (0,) and sp.sum(empty) == 0 and sp.dft(empty).dtype.kind == "f"
    assert sp.add(empty, [1.0]).tolist() == [1.0] and sp.neg([]).dtype == np.float64
    odd = np.array([np.nan, np.inf, -0.0], real)
    np.testing.assert_array_equal(np.signbit(sp.neg(odd)), ~np.signbit(odd))
    assert np.isnan(sp.sqrt(odd)[0]) and np.isnan(sp.sum(odd))


# What each function is, in another library's words; the arguments are taken in double precision.
DEFINITIONS: dict[str, Any] = {
    "scale": lambda x: 2 * x,
    "offset": lambda x: x + 2,
    "neg": np.negative,
    "abs": np.abs,
    "square": np.square,
    "recip": np.reciprocal,
    "sqrt": np.sqrt,
    "exp": np.exp,
    "exp10": lambda x: 10.0**x,
    "log": np.log,
    "log10": np.log10,
    "db": lambda x: 2 * np.log10(x),
    "sin": np.sin,
    "cos": np.cos,
    "tan": np.tan,
    "sinc": lambda x: np.sinc(x / np.pi),
    "atan": np.arctan,
    "sinh": np.sinh,
    "cosh": np.cosh,
    "tanh": np.tanh,
    "besi0": special.i0,
    "besj0": special.j0,
    "besj1": special.j1,
    "besy0": special.y0,
    "besy1": special.y1,
    "rev": lambda x: x[::-1],
    "sort": np.sort,
    "shift": lambda x: x[2:],
    "zpad": lambda x: x,
    "unwrap": np.unwrap,
    "swap_halves": np.fft.fftshift,
    "swap_halves2": np.fft.ifftshift,
    "differ": lambda x: np.diff(x, prepend=0),
    "integ": np.cumsum,
    "pdiffer": np.polynomial.polynomial.polyder,
    "sum": np.sum,
    "mean": np.mean,
    "min": np.min,
    "max": np.max,
    "magsq_sum": lambda x: np.sum(x**2),
    "rms": lambda x: np.sqrt(np.mean(x**2)),
    "pop_var": np.var,
    "samp_var": lambda x: np.var(x, ddof=1),
    "pop_stddev": np.std,
    "samp_stddev": lambda x: np.std(x, ddof=1),
    "skew": stats.skew,
    "excess": stats.kurtosis,
    "gmean": stats.gmean,
    "hmean": stats.hmean,
    "median": np.median,
    "peval": lambda x: np.polynomial.polynomial.polyval(2.0, x),
    "pztoc": np.polynomial.polynomial.polyfromroots,
    "lin_regres": lambda x: stats.linregress(np.arange(x.size), x)[:2],
    "fft": lambda x: np.fft.fft(x) / x.size,
    "dft": lambda x: np.fft.fft(x) / x.size,
    "rfft": lambda x: np.fft.rfft(x) / x.size,
    "rdft": lambda x: np.fft.rfft(x) / x.size,
    "irdft": lambda x: np.fft.irfft(x) * (2 * x.size - 2),
    "irfft": lambda x: np.fft.irfft(x) * (2 * x.size - 2),
    "hilbert": lambda x: hilbert(x).imag,
    "analytic": hilbert,
    "recon": lambda x: np.concatenate([x, x[-2:0:-1]]),
    "mag": np.abs,
    "magsq": np.square,
    "phase": np.angle,
    "real": np.real,
    "imag": np.imag,
    "rtoc": lambda x: x + 0j,
    "timesi": lambda x: 1j * x,
    "conj": np.conj,
    "zinter": lambda x: np.kron(x, [1, 0]),
}
PAIRS: dict[str, Any] = {
    "add": np.add,
    "sub": np.subtract,
    "mul": np.multiply,
    "div": np.divide,
    "conj_mul": lambda a, b: a * np.conj(b),
    "dot": np.dot,
    "pmul": np.convolve,
    "inter": lambda a, b: np.stack([a, b], 1).ravel(),
    "ritoc": lambda a, b: a + 1j * b,
}


@pytest.mark.parametrize("name", DEFINITIONS)
def test_functions_of_one_array(name: str, real: Any) -> None:
    call, size = getattr(sp, name), 9 if name == "irfft" else 16
    x = np.random.default_rng(5).uniform(0.1, 2.0, size).astype(real)
    numbers = [p for p in list(inspect.signature(call).parameters.values())[1:] if p.default is p.empty]
    found = call(x, *[size if name == "zpad" else 2] * len(numbers))
    expected = np.asarray(DEFINITIONS[name](x.astype(np.float64)))
    np.testing.assert_allclose(found, expected, rtol=0, atol=60 * np.finfo(real).eps * max(1, abs(expected).max()))
    assert found.dtype if isinstance(found, np.ndarray) else True
    kind = np.asarray(found).dtype
    assert kind.itemsize * (1 if kind.kind == "f" else 0.5) == np.dtype(real).itemsize


@pytest.mark.parametrize("name", PAIRS)
@pytest.mark.parametrize("forms", ["ff", "fc", "cf", "cc"])
def test_functions_of_two_arrays(name: str, forms: str, real: Any) -> None:
    draw = np.random.default_rng(6)
    a, b = (draw.uniform(0.5, 2, 9) + (1j * draw.uniform(0.5, 2, 9) if form == "c" else 0) for form in forms)
    single = real is np.float32
    a, b = (x.astype(np.complex64 if x.dtype.kind == "c" else real) if single else x for x in (a, b))
    if name == "ritoc" and "c" in forms:
        with pytest.raises(sp.Error):
            sp.ritoc(a, b)
        return
    found, expected = getattr(sp, name)(a, b), PAIRS[name](a.astype(complex), b.astype(complex))
    np.testing.assert_allclose(found, expected, rtol=20 * np.finfo(real).eps)
    kind = np.asarray(found).dtype
    assert (kind.kind == "c") == ("c" in forms or name == "ritoc")
    assert kind.itemsize == np.dtype(real).itemsize * (1 + (kind.kind == "c"))


def test_every_function_with_plain_arguments_is_defined_above() -> None:
    special_cases = {"limit", "cscale", "avg_add", "addcos", "zpad2", "unzpad", "edge", "psolve", "pcsolve", "proots"}
    special_cases |= {"orecon", "peak", "hist", "lin_regres2", "dct", "window_fir", "rtop", "ptor", "asin", "acos"}
    assert set(functions.__all__) == set(DEFINITIONS) | set(PAIRS) | special_cases


def test_functions_with_arguments_of_their_own(real: Any) -> None:
    x = np.array([3.0, -1.0, 2.0, 5.0, 0.5], real)
    eps = float(np.finfo(real).eps)
    assert sp.limit(x, 2.5, 0.0).tolist() == np.clip(x, 0, 2.5).tolist()
    assert sp.hist(x, -1.0, 2.0, 3).tolist() == np.histogram(x, 3, (-1, 5))[0].tolist()
    np.testing.assert_allclose(sp.cscale(x, 1, -2), x * (1 - 2j), rtol=4 * eps)
    np.testing.assert_allclose(sp.ptor(sp.rtop(x + 1j)), x + 1j, rtol=0, atol=30 * eps)
    np.testing.assert_allclose(sp.dct(sp.dct(x), sp.Dct.INVERSE), x, rtol=0, atol=30 * eps)
    np.testing.assert_allclose(sp.asin(x[4:]) + sp.acos(x[4:]), np.pi / 2, rtol=4 * eps)
    np.testing.assert_allclose(sp.edge(x, sp.Edge.BOTH, 0.5, delta=0.1), [0.0625, 0.15, 0.4][:2] + [0.4][:0], rtol=1e-6)
    np.testing.assert_allclose(sp.integ(x, delta=0.5), 0.5 * np.cumsum(x), rtol=4 * eps)
    assert sp.peak(x).tolist() == [5.0, 3.0] and sp.peak(x, sp.Peak.MINIMUM).tolist() == [-1.0, 1.0]
    assert sp.unzpad(sp.zpad2(x, 9, sp.Pad.UNSCALED | sp.Pad.SPLIT), 5, 0x302).tolist() == x.tolist()
    np.testing.assert_allclose(sp.roots(np.array([-6, 11, -6, 1], real)), [1, 2, 3], rtol=40 * eps)
    assert abs(sp.psolve(np.array([-2, 0, 1], real), 1.0) - 2**0.5) < 4 * eps
    assert abs(sp.pcsolve(np.array([1, 0, 1], real), 0.1, 1.0) - 1j) < 4 * eps
    assert sp.avg_add(x, [0, 0, 0, 0, 0], 0.25).tolist() == (x / 4).tolist()


def test_generators(real: Any) -> None:
    n, eps = np.arange(1000), float(np.finfo(real).eps)
    kind = np.complex64 if real is np.float32 else np.complex128
    wave = sp.phasor(1000, 50.0, 0.5, rate=1000.0, dtype=kind)
    np.testing.assert_allclose(wave, np.exp(1j * (2 * np.pi * 0.05 * n + 0.5)), atol=400 * eps)
    np.testing.assert_allclose(sp.cosine(1000, 50.0, 0.5, rate=1000.0, dtype=real), wave.real, atol=eps)
    assert sp.line(4, 0.5, 1.0, dtype=real).tolist() == [1.0, 1.5, 2.0, 2.5]
    noise = sp.random(20000, "laplace", dtype=real)
    assert noise.dtype == real and abs(float(noise.mean())) < 0.06 and abs(float(noise.var()) - 2) < 0.25
