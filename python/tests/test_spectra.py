# SPDX-License-Identifier: MIT
"""Spectra of real and made signals against SciPy's, and against what their definitions say of lines and noise."""

from __future__ import annotations

from typing import Any

import numpy as np
import pytest
from scipy import signal

import sigpak as sp

RATE = 360.0


def welch(x: Any, name: str, segment: int, scaling: str) -> tuple[Any, Any]:
    """SciPy's average, of the same window and with the weighted mean taken out as the definition has it."""
    window = sp.window(name, segment)

    def centred(block: Any) -> Any:
        return block - (block @ window / window.sum())[..., None]

    return signal.welch(
        x, RATE, window, segment, detrend=centred, scaling=scaling, return_onesided=not np.iscomplexobj(x)
    )


# Each quantity as a function of SciPy's power spectrum or density.
QUANTITIES: dict[str, tuple[str, Any]] = {
    "power": ("spectrum", lambda p: p),
    "rms": ("spectrum", np.sqrt),
    "peak": ("spectrum", lambda p: np.sqrt(p * np.r_[1, np.full(p.size - 2, 2), 1])),
    "psd": ("density", lambda p: p),
    "asd": ("density", np.sqrt),
}


@pytest.mark.parametrize("quantity", QUANTITIES)
@pytest.mark.parametrize("name", ["hann", "flattop", "kaiser90"])
def test_a_recording_in_every_quantity(ecg: Any, quantity: str, name: str, real: Any) -> None:
    x = ecg[:30000].astype(real)
    found = sp.spectrum(x, RATE, name, 1000, quantity=quantity, unit="mV")
    scaling, change = QUANTITIES[quantity]
    f, power = welch(x.astype(np.float64), name, 1000, scaling)
    assert found.values.dtype == real and found.segments == 59 and found.hop == 500
    np.testing.assert_allclose(found.f, f, rtol=1e-12)
    tolerance = 1e-10 if real is np.float64 else 2e-4
    np.testing.assert_allclose(found.values[1:], change(power)[1:], rtol=tolerance, atol=tolerance * power.max() / 100)
    assert abs(found.enbw / (sp.enbw(name, 1000) * RATE / 1000) - 1) < 1e-3


def test_complex_signals_have_negative_frequencies_first(ecg: Any) -> None:
    x = sp.analytic(ecg[:8192]) * np.exp(-0.3j * np.arange(8192))
    found = sp.spectrum(x, RATE, segment=512, quantity="psd", centre=False)
    f, power = signal.welch(x, RATE, sp.window("hann", 512), 512, detrend=False, return_onesided=False)
    np.testing.assert_allclose(found.f, np.fft.fftshift(f), atol=1e-12)
    np.testing.assert_allclose(found.values, np.fft.fftshift(power), rtol=1e-9, atol=1e-15)


@pytest.mark.parametrize("overlap", [0.0, 0.5, 0.75])
@pytest.mark.parametrize("average", ["mean", "maximum", "minimum", "last"])
def test_a_stream_in_any_blocks_has_the_bits_of_the_whole(ecg: Any, overlap: float, average: str) -> None:
    options = {"overlap": overlap, "average": average, "quantity": "psd"}
    whole = sp.spectrum(ecg[:5000], RATE, segment=300, **options)
    running = sp.RunningSpectrum(RATE, segment=300, **options)  # type: ignore[arg-type]
    for block in np.split(ecg[:5000], [1, 2, 299, 301, 2500, 2500, 4999]):
        running.add(block)
    np.testing.assert_array_equal(running.result.values, whole.values)
    assert running.segments == 1 + (5000 - 300) // round(300 * (1 - overlap))


def test_a_stream_keeps_its_precision() -> None:
    running = sp.RunningSpectrum(segment=4)
    running.add(np.ones(8, np.float32))
    with pytest.raises(sp.Error, match="block = float64; the stream is in float32"):
        running.add(np.ones(8))
    assert running.result.values.dtype == np.float32


def test_two_signals_against_scipy(ecg: Any, real: Any) -> None:
    x = ecg[:20000].astype(real)
    taps = sp.fir_taps("low_pass", 31, 0.1, attenuation=50)
    y = sp.fir(x, taps.astype(real)) + np.random.default_rng(2).normal(0, 0.001, 20000).astype(real)
    both = sp.cross_spectrum(x, y, RATE, "hann", 500, centre=False)
    window = sp.window("hann", 500)
    x, y = x.astype(np.float64), y.astype(np.float64)
    f, xy = signal.csd(x, y, RATE, window, 500, detrend=False)
    tolerance = 1e-9 if real is np.float64 else 1e-3
    np.testing.assert_allclose(both.f, f, rtol=1e-12)
    np.testing.assert_allclose(both.xy, xy, rtol=tolerance, atol=tolerance * abs(xy).max() / 10)
    np.testing.assert_allclose(both.xx, signal.welch(x, RATE, window, 500, detrend=False)[1], rtol=tolerance)
    coherent = signal.coherence(x, y, RATE, window, 500, detrend=False)[1]
    np.testing.assert_allclose(both.coherence, coherent, rtol=10 * tolerance, atol=tolerance)
    clear = coherent > 0.9
    expected = signal.freqz(taps, worN=2 * np.pi * f / RATE)[1]
    assert clear.sum() > 15 and abs(sp.transfer(x, y, RATE, "hann", 500)[1] - expected)[clear & (f > 0)].max() < 0.1
    np.testing.assert_array_equal(sp.coherence(x, y, RATE, segment=500)[1] <= 1 + 1e-12, True)
    assert np.isfinite(sp.coherence(np.zeros(9), np.zeros(9), segment=4)[1]).all()


def test_lines_are_those_above_the_noise_and_no_leakage() -> None:
    rate, n = 10000.0, 200000
    noise = np.random.default_rng(3).normal(0, 0.05, n)
    x = 2.0 * sp.cosine(n, 1234.5, rate=rate) + 0.01 * sp.cosine(n, 3000.0, rate=rate) + noise + 0.3
    for window in ("hann", "flattop", "blackman_harris4"):
        s = sp.spectrum(x, rate, window, 4096, quantity="rms", unit="V")
        np.testing.assert_allclose([line.frequency for line in s.lines], [1234.5, 3000.0], atol=1.2)
        assert abs(s.lines[0].frequency - 1234.5) < 0.3 and s.unit == "V rms"
    assert abs(s.lines[0].value / 2**0.5 - 1) < 0.1
    for padding in (1, 2, 4, 8):
        flat = sp.spectrum(x, rate, "flattop", 4096, padding=padding).lines[0]
        assert abs(flat.frequency - 1234.5) < 0.3 and abs(flat.value - 2**0.5) < 0.02, flat
        for name in ("hann", "uniform", "blackman_harris4"):
            assert len(sp.spectrum(x, rate, name, 4096, padding=padding).lines) <= 2, (name, padding)
    fine = sp.spectrum(x, rate, "blackman_harris4", 4096, quantity="peak", padding=8).lines
    np.testing.assert_allclose([line.frequency for line in fine], [1234.5, 3000.0], atol=0.25)
    assert abs(fine[0].value - 2) < 2e-3 and abs(fine[1].value - 0.01) < 1e-3
    density = sp.spectrum(x, rate, segment=4096, quantity="asd", unit="V")
    assert abs(density.noise_floor / (0.05 * (2 / rate) ** 0.5) - 1) < 0.03 and density.unit == "V/sqrt(Hz)"
    for segment, average in ((4096, "mean"), (200000, "mean"), (4096, "maximum"), (4096, "minimum")):
        level = sp.spectrum(noise, rate, segment=segment, quantity="power", average=average).noise_floor
        assert abs(level / (0.05**2 * 1.5 / (segment / 2)) - 1) < 0.05, (segment, average)
    alarms = sum(bool(sp.spectrum(part, rate, segment=256, quantity="power").lines) for part in np.split(noise, 100))
    assert alarms <= 2
    assert sp.spectrum(np.zeros(100), segment=20).lines == [] and sp.spectrum([1.0, 2.0]).lines == []


@pytest.mark.parametrize("quantity", QUANTITIES)
@pytest.mark.parametrize("segment", [500, 501])
def test_bands_add_up_to_all_there_is(quantity: str, segment: int) -> None:
    rate, n = 1000.0, 200000
    x = np.random.default_rng(7).normal(size=n) + 3 * (-1.0) ** np.arange(n) + 2 * sp.cosine(n, 123.0, rate=rate)
    for padding, window in ((1, "hann"), (4, "flattop")):
        s = sp.spectrum(x, rate, window, segment, quantity=quantity, padding=padding, centre=False)
        parts = [s.band_rms(low, high) for low, high in ((-1.0, 100.1), (100.1, 150.3), (150.3, np.inf))]
        np.testing.assert_allclose(np.square(parts), [0.2, 2.1, 9.7], rtol=0.03)
        assert abs(np.hypot.reduce(parts) / s.band_rms() - 1) < 1e-12 and s.band_rms(600) == 0
    pairs = x.view(np.complex128)
    whole = sp.spectrum(pairs, rate, segment=segment, quantity=quantity).band_rms(-500, 500)
    assert abs(whole / np.std(pairs) - 1) < 0.02


def test_noise_of_any_colour_has_no_lines() -> None:
    noise = np.random.default_rng(5).normal(size=(6, 100000))
    pole = 0.91 * np.exp(0.3j * np.pi)
    colours = {
        "white": ([1.0], [1.0]),
        "drift": ([1.0], [1.0, -1.0]),
        "flicker": ([0.049922, -0.095993, 0.050612, -0.004408], [1.0, -2.494956, 2.017265, -0.522189]),
        "resonance": ([1.0], np.poly([pole, pole.conjugate()]).real),
    }
    for name, (b, a) in colours.items():
        for average in ("mean", "maximum", "minimum", "last") if name == "white" else ("mean",):
            kept = [sp.spectrum(signal.lfilter(b, a, x), segment=512, average=average).lines for x in noise]
            assert sum(map(len, kept)) <= 1, (name, average, kept)


def test_lines_close_to_others_are_found() -> None:
    n, noise = np.arange(20000), np.random.default_rng(6).normal(0, 1e-4, 20000)
    x = noise + sum(np.sin(2 * np.pi * (2.3 + 4.2 * k) / 1024 * n) for k in range(6))
    assert len(sp.spectrum(x, window="hann", segment=1024, padding=4).lines) == 6


def test_csv_and_plot(tmp_path: Any) -> None:
    s = sp.spectrum(np.random.default_rng(4).normal(size=400), 8.0, segment=100, quantity="psd", unit="V")
    s.to_csv(tmp_path / "s.csv")
    lines = (tmp_path / "s.csv").read_text().splitlines()
    assert {"# quantity: psd", "# unit: V", "# segments: 7", "# rate: 8.0", "# window: Hann"} <= set(lines)
    back = np.loadtxt(lines[lines.index("frequency [Hz],psd [V^2/Hz]") + 1 :], delimiter=",")
    np.testing.assert_array_equal(back, np.stack([s.f, s.values], 1))
    assert sp.spectrum(np.ones(9), quantity="psd", unit="m/s^2").unit == "(m/s^2)^2/Hz"
    units = [sp.spectrum(np.ones(9), quantity=quantity).unit for quantity in QUANTITIES]
    assert units == ["", "rms", "", "1/Hz", "1/sqrt(Hz)"]
    pytest.importorskip("matplotlib").use("Agg")
    assert s.plot().get_ylabel() == "level in dB re 1 V^2/Hz"


@pytest.mark.parametrize("name", ["hann", "hamming", "blackman", "bartlett", "boxcar"])
def test_windows_that_others_have_too(name: str, real: Any) -> None:
    found = sp.window(name, 64, dtype=real)
    np.testing.assert_allclose(found, signal.get_window(name, 64), atol=5e-8 if real is np.float32 else 1e-14)
    assert found.dtype == real and abs(sp.window(name, 64, norm="mean").mean() - 1) < 1e-13
    assert abs((sp.window(name, 64, norm="rms") ** 2).mean() - 1) < 1e-13
    power = np.abs(np.fft.fft(signal.get_window(name, 64))) ** 2
    assert abs(sp.enbw(name, 64) - power.sum() / power[0]) < 1e-12


def test_windows_with_a_parameter() -> None:
    np.testing.assert_allclose(sp.kaiser(33, 8.0, symmetric=True), signal.windows.kaiser(33, 8.0), atol=1e-14)
    gauss = signal.windows.gaussian(33, 0.15 * 33)
    np.testing.assert_allclose(sp.gauss(33, 0.15, symmetric=True), gauss, atol=1e-14)
    assert np.count_nonzero(sp.window("hann", 64, width=16.0)) == 15
    assert sp.window_name(sp.Window.FLATTOP) and sp.window(sp.window_name(5), 8).shape == (8,)
