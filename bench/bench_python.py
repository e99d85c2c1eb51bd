#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What a call from Python costs beside the work: microseconds on 16 points, as a Markdown table.

bench_python.py LIBRARY: the best of several rounds by this thread's time, with NumPy's call of the same kind.
"""
import os
import sys
import tempfile
import time
import timeit
from pathlib import Path

import numpy as np

TREE = Path(__file__).resolve().parent.parent
CALLS = [
    ("v.neg()", "np.negative(x)"),
    ("v.scale(1.0)", "np.multiply(x, 1.0)"),
    ("v.mean()", "np.mean(x)"),
    ("v.add(w)", "np.add(x, x)"),
    ("z.fft().fft(1)", "np.fft.ifft(np.fft.fft(c))"),
    ("sp.Vec(x)", "x.view()"),
    ("v.array", ""),
    ("sp.neg(x)", "np.negative(x)"),
    ("sp.mean(x)", "np.mean(x)"),
    ("sp.rfft(x)", "np.fft.rfft(x)"),
    ("sp.add(x, x)", "np.add(x, x)"),
]


def microseconds(call, names, count=20000, rounds=15):
    times = timeit.repeat(call, globals=names, timer=time.thread_time, number=count, repeat=rounds)
    return min(times) / count * 1e6


def main():
    os.environ["SIGPAK_LIBRARY"] = str(Path(sys.argv[1]).resolve())
    with tempfile.TemporaryDirectory() as folder:
        sys.path[:0] = [folder, str(TREE / "python")]
        import generate

        generate.assemble(Path(folder) / "sigpak")
        sys.path.remove(str(TREE / "python"))
        import sigpak as sp

    x, c = np.ones(16), np.ones(16, complex)
    names = {"sp": sp, "np": np, "x": x, "c": c, "v": sp.Vec(x.copy()), "w": sp.Vec(x.copy()), "z": sp.Vec(c.copy())}
    print("| call | us | NumPy | us |\n|---|---|---|---|")
    for ours, theirs in CALLS:
        told = f"{microseconds(theirs, names):.2f}" if theirs else ""
        print(f"| `{ours}` | {microseconds(ours, names):.2f} | {f'`{theirs}`' if theirs else ''} | {told} |")


if __name__ == "__main__":
    main()
