# SPDX-License-Identifier: MIT
"""Filters, resampling, correlation and splines against SciPy's, and streams against the whole."""

from __future__ import annotations

from typing import Any

import numpy as np
import pytest
from scipy import interpolate, signal

import sigpak as sp

CUTS = [1, 2, 50, 51, 700, 700, 2999]


def eps(real: Any) -> float:
    return float(np.finfo(real).eps)


@pytest.mark.parametrize(
    ("kind", "arguments", "ends", "pass_zero"),
    [
        ("low_pass", (0.1,), 0.1, True),
        ("high_pass", (0.3,), 0.3, False),
        ("band_pass", (0.2, 0.1), [0.15, 0.25], False),
        ("band_stop", (0.2, 0.1), [0.15, 0.25], True),
    ],
)
def test_designs_by_window(kind: str, arguments: Any, ends: Any, pass_zero: bool) -> None:
    beta = signal.kaiser_beta(60)
    expected = signal.firwin(101, ends, window=("kaiser", beta), pass_zero=pass_zero, fs=1.0, scale=kind == "low_pass")
    np.testing.assert_allclose(sp.fir_taps(kind, 101, *arguments, attenuation=60), expected, atol=2e-13)
    assert sp.fir_taps(sp.FirKind.LOW_PASS, 5, 0.25).tolist() == sp.fir_taps("low-pass", 5, 0.25).tolist()


@pytest.mark.parametrize("taps", [1, 2, 31, 200])
@pytest.mark.parametrize("form", ["real", "complex"])
def test_filtering_the_whole_and_a_stream(ecg: Any, taps: int, form: str, real: Any) -> None:
    x = (ecg[:3000] + (1j * ecg[3000:6000] if form == "complex" else 0)).astype(
        real if form == "real" else np.result_type(real, np.complex64)
    )
    h = np.random.default_rng(7).normal(size=taps).astype(real)
    expected = signal.oaconvolve(x.astype(np.complex128), h.astype(np.float64))[:3000]
    bound = 4 * eps(real) * np.abs(h).sum() * np.abs(x).max()
    whole = sp.fir(x, h)
    np.testing.assert_allclose(whole, expected, atol=max(bound, 1e-14 * abs(expected).max()))
    given = h.copy()
    stream = sp.Fir(given)
    given[:] = 0
    blocks = [stream(block) for block in np.split(x, CUTS)]
    assert [block.dtype for block in blocks] == [x.dtype] * len(blocks)
    np.testing.assert_allclose(np.concatenate(blocks), whole, atol=2 * bound)
    stream.reset()
    np.testing.assert_array_equal(stream(x[:500]), sp.fir(x[:500], h))


@pytest.mark.parametrize(("up", "down"), [(1, 1), (2, 1), (1, 3), (160, 147), (3, 7)])
def test_resampling_the_whole_and_a_stream(ecg: Any, up: int, down: int, real: Any) -> None:
    x = ecg[:3000].astype(real)
    taps = np.ones(1) if up == down else sp.resampling_taps(up, down, 0.8, 100)
    expected = signal.resample_poly(x.astype(np.float64), up, down, window=taps / taps.sum())
    whole = sp.resample(x, up, down, passband=0.8, attenuation=100)
    assert whole.dtype == real and whole.size == -(-3000 * up // down)
    np.testing.assert_allclose(whole, expected, atol=200 * eps(real) * np.abs(x).max())
    stream = sp.Resampler(up, down, passband=0.8, attenuation=100)
    parts = [stream(block) for block in np.split(x, CUTS)] + [stream.finish()]
    np.testing.assert_array_equal(np.concatenate(parts), whole)
    np.testing.assert_array_equal(np.concatenate([stream(x), stream.finish()]), whole)
    assert stream.finish().size == 0 and sp.Resampler(3, 2, taps=[1.0, 2.0, 1.0])([1.0, 2.0]).size == 3


def test_decimation_and_rates_of_any_ratio(real: Any) -> None:
    n, f = np.arange(4000), 0.03
    x = np.cos(2 * np.pi * f * n).astype(real)
    tolerance = 2e-5 if real is np.float32 else 3e-6
    np.testing.assert_allclose(sp.decimate(x, 4)[100:-100], x[400:-400:4], atol=tolerance)
    times = np.random.default_rng(8).uniform(500, 3500, 300)
    np.testing.assert_allclose(sp.resample_at(x, times), np.cos(2 * np.pi * f * times), atol=tolerance)
    stream = sp.VariableResampler(np.pi / 3)
    parts = [stream(block) for block in np.split(x, CUTS)] + [stream.finish()]
    whole = np.concatenate(parts)
    k = np.arange(whole.size)[300:-300]
    np.testing.assert_allclose(whole[300:-300], np.cos(2 * np.pi * f * k * np.pi / 3), atol=tolerance)
    with pytest.raises(sp.Error, match="Resampler: 2 points, real, up = 1, down = 0; .*1 .. 2.24"):
        sp.Resampler(1, 0, taps=[1.0])(x[:2])
    with pytest.raises(sp.Error, match="step = -1"):
        sp.VariableResampler(-1)(x)


@pytest.mark.parametrize("forms", ["ff", "fc", "cf", "cc"])
def test_correlation_of_every_form(forms: str, real: Any) -> None:
    draw = np.random.default_rng(9)
    a, b = (draw.normal(size=300) + (1j * draw.normal(size=300) if form == "c" else 0) for form in forms)
    if real is np.float32:
        a, b = (x.astype(np.complex64 if x.dtype.kind == "c" else real) for x in (a, b))
    expected = signal.correlate(a.astype(complex), b.astype(complex))
    lags, values = sp.correlate(a, b)
    np.testing.assert_allclose(values, expected, atol=400 * eps(real) * 30)
    np.testing.assert_array_equal(lags, signal.correlation_lags(300, 300))
    biased = sp.correlate(a, b, 20, scale="biased")
    np.testing.assert_allclose(biased.values, expected[279:320] / 300, atol=400 * eps(real))
    assert sp.correlate(a, a, 0, scale="coefficient").values[0] == pytest.approx(1, abs=20 * eps(real))
    around = np.fft.fftshift(np.fft.ifft(np.fft.fft(a) * np.conj(np.fft.fft(b))))
    found = sp.correlate(a, b, 149, circular=True).values
    np.testing.assert_allclose(found, around[1:], atol=400 * eps(real) * 30)
    stream = sp.Correlator(20, scale="biased")
    for first, second in zip(np.split(a, CUTS[:3]), np.split(b, CUTS[:3])):
        stream.add(first, second)
    np.testing.assert_allclose(stream.result.values, biased.values, atol=400 * eps(real))
    assert stream.result.values.dtype == values.dtype


@pytest.mark.parametrize("ends", ["not-a-knot", "natural", "clamped", "periodic", "monotone"])
def test_splines(ends: str, real: Any) -> None:
    draw = np.random.default_rng(10)
    x = np.cumsum(draw.uniform(0.5, 2, 30)).astype(real)
    y = draw.normal(size=30).astype(real)
    y[-1] = y[0]
    at = draw.uniform(x[0], x[-1], 100).astype(real)
    if ends == "monotone":
        expected: Any = interpolate.PchipInterpolator(x.astype(float), y.astype(float))
    else:
        expected = interpolate.CubicSpline(x.astype(float), y.astype(float), bc_type=ends)
    spline, bound = sp.Spline(x, y, ends), 400 * eps(real)
    for derivative in (0, 1, 2):
        values = expected(at.astype(float), derivative)
        np.testing.assert_allclose(spline(at, derivative), values, atol=bound * np.abs(values).max())
    whole = [expected.integrate(x[0], t) for t in at.astype(float)]
    np.testing.assert_allclose(spline.integral(at), whole, atol=bound * np.abs(whole).max())
    np.testing.assert_allclose(spline.slopes, expected(x.astype(float), 1), atol=bound * np.abs(spline.slopes).max())
    assert spline(at).dtype == real and x.flags.writeable


def test_what_holds_outside_of_the_points(real: Any) -> None:
    y = np.array([0.0, 1.0, 4.0, 9.0], real)
    for outside, expected in (("extrapolate", 16.0), ("hold", 9.0), ("wrap", 1.0)):
        assert sp.Spline(None, y, outside=outside)([4.0])[0] == pytest.approx(expected, abs=20 * eps(real))
    square = sp.Spline(None, y / 4, "clamped", slopes=(0.0, 3.0), delta=0.5)
    assert square([0.75])[0] == pytest.approx(0.5625, abs=eps(real))
    assert sp.interp([0.5, 5.0], [0, 1, 3], y[:3], outside="hold").tolist() == [0.5, 4.0]


def test_surfaces(real: Any) -> None:
    draw = np.random.default_rng(11)
    x, y = np.arange(7.0).astype(real), np.cumsum(draw.uniform(0.5, 1, 6)).astype(real)
    z = draw.normal(size=(6, 7)).astype(real)
    expected = interpolate.RectBivariateSpline(y, x, z, s=0)
    at_x, at_y = np.array([0.5, 3.3, 6.0], real), np.array([y[0], (y[1] + y[2]) / 2], real)
    found = sp.Surface(x, y, z)
    np.testing.assert_allclose(found(at_x, at_y), expected(at_y, at_x), atol=200 * eps(real))
    np.testing.assert_allclose(found(at_x[:2], at_y, pairs=True), expected.ev(at_y, at_x[:2]), atol=200 * eps(real))
    with pytest.raises(sp.Error, match=r"z = of shape \(7, 6\); rows by columns \(6, 7\)"):
        sp.Surface(x, y, z.T)
