#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Operations on vectors beside NumPy, as one Markdown table: ratios of speed, sigpak to NumPy.

bench_numpy.py LIBRARY [only]: LIBRARY is the shared library. Both sides run on the same array in turns, by this
thread's time; NumPy writes into a result that exists already where it can.
Its elementary functions come from vector libraries that err by some ulp; ours include the copy of the operand.
"""
import ctypes
import sys
import time

import numpy as np


def record_type(scalar):
    class Record(ctypes.Structure):
        _fields_ = [("delta", scalar), ("data", ctypes.c_void_p), ("alloc", ctypes.c_int32),
                    ("points", ctypes.c_uint32), ("complex", ctypes.c_int32), ("reserved", ctypes.c_uint32)]
    return Record


RECORDS = {np.float64: record_type(ctypes.c_double), np.float32: record_type(ctypes.c_float)}


def record(array):
    scalar = array.real.dtype.type
    pairs = np.iscomplexobj(array)
    return RECORDS[scalar](1, array.ctypes.data, array.size * (2 if pairs else 1), array.size, 1 if pairs else 0, 0)


# Ours by the name behind the prefix of the precision: from two operands to a result, in place on a copy of the
# operand, from an operand to a number.
BINARY = [
    ("add", "b_add", np.add), ("multiply", "b_mul", np.multiply), ("divide", "b_div", np.divide),
    ("minimum", "b_min", np.minimum),
]
IN_PLACE = [
    ("square root", "i_sqrt", np.sqrt, 0, 1), ("exp", "i_exp", np.exp, -30, 30), ("log", "i_log", np.log, 1e-3, 1e3),
    ("log10", "i_log10", np.log10, 1e-3, 1e3), ("sin", "i_sin", np.sin, -30, 30), ("cos", "i_cos", np.cos, -30, 30),
    ("tan", "i_tan", np.tan, -30, 30), ("atan", "i_atan", np.arctan, -5, 5), ("asin", "i_asin", np.arcsin, -1, 1),
    ("acos", "i_acos", np.arccos, -1, 1), ("sinh", "i_sinh", np.sinh, -10, 10), ("cosh", "i_cosh", np.cosh, -10, 10),
    ("tanh", "i_tanh", np.tanh, -3, 3), ("sort", "i_sort", None, -1, 1),
]
STATISTICS = [
    ("sum", "s_sum", np.sum), ("mean", "s_mean", np.mean), ("variance", "s_pop_var", np.var),
    ("smallest", "s_min", np.min), ("largest", "s_max", np.max), ("median", "s_median", np.median),
]


def jobs(library, scalar, n):
    """Name, our run and NumPy's."""
    prefix = "dsp" if scalar is np.float64 else "dspf"
    random = np.random.default_rng(n)

    def operation(name):
        return getattr(library, prefix + name)

    def uniform(low, high, size=n):
        return random.uniform(low, high, size).astype(scalar)

    def pointer(array):
        return ctypes.byref(record(array))

    y = uniform(1, 2)
    out = np.empty(n, scalar)
    number = np.empty(16, scalar)
    for name, ours, theirs in BINARY:
        x = uniform(-1, 1)
        a, b, r = pointer(x), pointer(y), pointer(out)
        yield (name, lambda f=operation(ours), a=a, b=b, r=r: f(a, b, r),
               lambda f=theirs, x=x: f(x, y, out=out))
    for name, ours, theirs, low, high in IN_PLACE:
        x = uniform(low, high)
        r = pointer(out)

        def on_copy(f=operation(ours), x=x, r=r):
            out[:] = x
            f(r)

        def sort_copy(x=x):
            out[:] = x
            out.sort()
        yield name, on_copy, sort_copy if theirs is None else lambda f=theirs, x=x: f(x, out=out)
    for name, ours, theirs in STATISTICS:
        x = uniform(-1, 1)
        a, r = pointer(x), pointer(number)
        yield (name, lambda f=operation(ours), a=a, r=r: f(a, r), lambda f=theirs, x=x: f(x))

    z = (uniform(-1, 1) + 1j * uniform(-1, 1)).astype(np.complex128 if scalar is np.float64 else np.complex64)
    w = z[::-1].copy()
    zout = np.empty_like(z)
    a, b, r, magnitudes = pointer(z), pointer(w), pointer(zout), pointer(zout)
    yield "complex multiply", lambda: operation("b_mul")(a, b, r), lambda: np.multiply(z, w, out=zout)
    yield "magnitude", lambda: operation("u_mag")(a, magnitudes), lambda: np.abs(z, out=out)
    if n & (n - 1) == 0:
        zout[:] = z

        def forward():
            zout[:] = z
            operation("i_fft")(r, 0)
        yield "FFT", forward, lambda: np.fft.fft(z)


def seconds(run, repeats):
    start = time.thread_time()
    for _ in range(repeats):
        run()
    return (time.thread_time() - start) / repeats


def ratio(ours, theirs, rounds):
    once = max(seconds(ours, 3), seconds(theirs, 3), 1e-7)
    repeats = max(1, int(3e-4 / once))
    pairs = [(seconds(ours, repeats), seconds(theirs, repeats)) for _ in range(rounds)]
    return float(np.median([t / o for o, t in pairs])), float(np.median([o for o, t in pairs]))


def main():
    library = ctypes.CDLL(sys.argv[1])
    only = sys.argv[2] if len(sys.argv) > 2 else ""
    sizes = [1 << 14, 1 << 17, 1 << 20]
    table = {}
    for scalar in RECORDS:
        for n in sizes:
            for name, ours, theirs in jobs(library, scalar, n):
                if only in name:
                    table.setdefault(name, []).append(ratio(ours, theirs, 5 if n > 1 << 17 else 9))
    heads = [f"{scalar.__name__}, {n} points" for scalar in RECORDS for n in sizes]
    print(f"NumPy {np.__version__}: speed relative to it, and our nanoseconds per point.\n")
    print("| operation | " + " | ".join(heads) + " |")
    print("|---" * (len(heads) + 1) + "|")
    for name, cells in table.items():
        points = [n for _ in RECORDS for n in sizes]
        print(f"| {name} | " + " | ".join(f"{r:.2f} ({s / n * 1e9:.2f})" for (r, s), n in zip(cells, points)) + " |")


if __name__ == "__main__":
    main()
