#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Running spectra, correlations, surfaces and resampling beside SciPy, as one Markdown table: ratios of speed, sigpak to SciPy.

bench_scipy.py LIBRARY: LIBRARY is the shared library. Both sides run on the same array in turns, by this thread's time.
"""
import ctypes
import sys

import numpy as np
import scipy
from scipy import interpolate, signal

from bench_numpy import RECORDS, ratio, record

Record = RECORDS[np.float64]


def empty():
    return Record(1, None, 0, 0, 0, 0)


def jobs(library):
    """Name, samples or points of a run, our run and SciPy's."""
    random = np.random.default_rng(1)
    null = ctypes.c_void_p()
    x = random.standard_normal(1_000_000)
    y = random.standard_normal(1_000_000)
    a, b = record(x), record(y)
    ref = ctypes.byref
    maxcount = ctypes.c_double(0)
    for n in (1024, 8192, 65536):
        w = signal.windows.hann(n, sym=False)
        window = record(w)
        avg, history = empty(), empty()

        def welch(avg=avg, history=history, window=window, w=w):
            history.points = 0
            library.dsph_fft(ref(a), null, ref(avg), ref(history), ref(window), 33, 0, null, maxcount)

        def coherence(avg=avg, window=window, w=w):
            library.dsph_fft(ref(a), ref(b), ref(avg), null, ref(window), 1, 0, null, maxcount)
        yield f"welch, {n}", x.size, welch, lambda w=w: signal.welch(x, window=w, detrend=False)
        yield f"coherence, {n}", x.size, coherence, lambda w=w: signal.coherence(x, y, window=w, detrend=False)
    out = empty()
    for n in (1_000, 10_000, 100_000, 1_000_000):
        p, q = x[:n].copy(), y[:n].copy()
        c, d = record(p), record(q)
        yield (f"correlate, all lags of {n}", n, lambda c=c, d=d, p=p: library.dspb_corr(ref(c), ref(d), ref(out), -1, 0),
               lambda p=p, q=q: signal.correlate(p, q, method="fft"))
    for lags in (1000, 16):
        yield (f"correlate, {lags} lags of 1000000", x.size,
               lambda lags=lags: library.dspb_corr(ref(a), ref(b), ref(out), lags, 0),
               lambda: signal.correlate(x, y, method="fft"))
    g = np.arange(256.0)
    z = random.standard_normal((256, 256))
    tx = np.sort(random.uniform(0, 255, 256))
    gx, gz, rx = record(g), record(z.ravel()), record(tx)
    px, py = random.uniform(0, 255, 65536), random.uniform(0, 255, 65536)
    sx, sy = record(px), record(py)
    yield ("surface on a grid", 65536,
           lambda: library.dspb_cspline_2d(ref(rx), ref(rx), ref(out), ref(gx), ref(gx), ref(gz), 0),
           lambda: interpolate.RectBivariateSpline(g, g, z)(tx, tx))
    yield ("surface, scattered", 65536,
           lambda: library.dspb_cspline_2d(ref(sx), ref(sy), ref(out), ref(gx), ref(gx), ref(gz), 256),
           lambda: interpolate.RectBivariateSpline(g, g, z).ev(py, px))
    library.dspc_rsmp.argtypes = [ctypes.c_void_p, ctypes.c_int32, ctypes.c_int32, ctypes.c_double, ctypes.c_double]
    u = x[:200_000].copy()
    v = record(u)
    for up, down in ((160, 147), (147, 160), (2, 1), (1, 4)):
        taps = empty()
        library.dspc_rsmp(ref(taps), up, down, 0.9, 120)
        same = np.ctypeslib.as_array(ctypes.cast(taps.data, ctypes.POINTER(ctypes.c_double)), (taps.points,)) / up
        yield (f"resample {up}/{down}, (0.9, 120 dB)", u.size,
               lambda taps=taps, up=up, down=down: library.dspd_rsmp(ref(v), ref(out), ref(taps), up, down, null),
               lambda up=up, down=down, same=same: signal.resample_poly(u, up, down, window=same))


def main():
    library = ctypes.CDLL(sys.argv[1])
    print(f"SciPy {scipy.__version__}\n\n| operation | speed relative to it | our ns per sample |\n|---|---|---|")
    for name, points, ours, theirs in jobs(library):
        speed, seconds = ratio(ours, theirs, 5)
        print(f"| {name} | {speed:.1f} | {seconds / points * 1e9:.2f} |", flush=True)


if __name__ == "__main__":
    main()
