# SPDX-License-Identifier: MIT
"""Many threads at a time, each on arrays and objects of its own, get what one gets."""

from __future__ import annotations

from concurrent.futures import ThreadPoolExecutor
from threading import Barrier
from typing import Any

import numpy as np

import sigpak as sp

THREADS = 8


def work(seed: int, dtype: Any) -> list[Any]:
    """One of everything that keeps tables or scratch memory within the library, at sizes that differ by thread."""
    draw = np.random.default_rng(seed % 4)
    results = []
    for n in (64, 100 + seed % 4, 211, 1024, 3000):
        x = draw.normal(size=n).astype(dtype)
        taps = draw.normal(size=120).astype(dtype)
        results += [sp.rdft(x), sp.dct(x), sp.hilbert(x), sp.fir(x, taps), sp.correlate(x, x).values]
        results += [sp.window("kaiser90", n, dtype=dtype), np.asarray([sp.mean(x), sp.median(x), sp.rms(x)])]
        results += [sp.spectrum(x, segment=60).values, sp.resample(x, 3, 2, passband=0.5, attenuation=60)]
        results += [sp.Vec.of(x).window("hann").rdft().mag().array, sp.Spline(None, x)(x[:10])]
    return results


def test_eight_threads_give_the_bits_of_one(real: Any) -> None:
    start = Barrier(THREADS)

    def together(seed: int) -> list[Any]:
        start.wait()
        return [work(seed, real) for _ in range(5)][-1]

    alone = [work(seed, real) for seed in range(4)]
    for _ in range(3):
        with ThreadPoolExecutor(THREADS) as pool:
            for seed, results in enumerate(pool.map(together, range(THREADS))):
                for found, expected in zip(results, alone[seed % 4]):
                    np.testing.assert_array_equal(found, expected)
