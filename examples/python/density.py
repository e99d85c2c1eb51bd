"""The noise density of a signal in V/sqrt(Hz): white noise whose density is known, and a line of 10 mV rms."""

import numpy as np
import sigpak as sp

rate, deviation = 10000.0, 0.002
noise = np.random.default_rng(1).normal(0, deviation, 1 << 20)
v = noise + 0.010 * np.sqrt(2) * sp.cosine(noise.size, 1000, rate=rate)

density = sp.spectrum(v, rate, "hann", 4096, quantity="psd", unit="V")

# The density of a line depends on the resolution; its power does not: the bins around it, times their width.
width = density.f[1]
line = round(1000 / width)
power = density.values[line - 3 : line + 4].sum() * width

floor = np.median(np.sqrt(density.values[100:2000]))
print(f"floor {1e6 * floor:.2f} uV/sqrt(Hz), exactly {1e6 * deviation * np.sqrt(2 / rate):.2f}")
print(f"line {1e3 * np.sqrt(power):.2f} mV rms")
