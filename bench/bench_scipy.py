#!/usr/bin/env python3
"""Changes of the sample rate beside SciPy with the same taps, as one Markdown table: ratios of speed, sigpak to SciPy.

bench_scipy.py LIBRARY: LIBRARY is the shared library. Both sides run on the same signal in turns, by this thread's
time.
"""
import ctypes
import sys
import time

import numpy as np
from scipy.signal import resample_poly


class Record(ctypes.Structure):
    _fields_ = [("delta", ctypes.c_double), ("data", ctypes.c_void_p), ("alloc", ctypes.c_int32),
                ("points", ctypes.c_uint32), ("complex", ctypes.c_int32), ("reserved", ctypes.c_uint32)]


def array_of(record):
    return np.ctypeslib.as_array(ctypes.cast(record.data, ctypes.POINTER(ctypes.c_double)), (record.points,))


def seconds(run):
    start = time.thread_time()
    run()
    return time.thread_time() - start


def main():
    library = ctypes.CDLL(sys.argv[1])
    library.dspc_rsmp.argtypes = [ctypes.c_void_p, ctypes.c_int32, ctypes.c_int32, ctypes.c_double, ctypes.c_double]
    x = np.random.default_rng(1).uniform(-1, 1, 200_000)
    signal = Record(1, x.ctypes.data, 0, x.size, 0, 0)
    print("| job | taps | largest difference | sigpak to SciPy |\n|---|---|---|---|")
    for up, down in [(160, 147), (147, 160), (2, 1), (1, 4)]:
        taps, out = Record(), Record()
        library.dspc_rsmp(ctypes.byref(taps), up, down, 0.9, 120)
        window = array_of(taps).copy() / up

        def ours():
            library.dspd_rsmp(ctypes.byref(signal), ctypes.byref(out), ctypes.byref(taps), up, down, None)

        def theirs():
            return resample_poly(x, up, down, window=window)

        ours()
        difference = np.max(np.abs(array_of(out) - theirs()))
        ratio = np.median([seconds(theirs) / seconds(ours) for _ in range(7)])
        print(f"| {up}/{down}, (0.9, 120 dB) | {window.size} | {difference:.1e} | {ratio:.1f} |")


if __name__ == "__main__":
    main()
