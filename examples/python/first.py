"""A first program: the frequency of a tone."""

import numpy as np
import sigpak as sp

rate = 8000.0
v = sp.Vec(0.5 * np.sin(2 * np.pi * 1234.5 * np.arange(1024) / rate), 1 / rate)

v.window("Hann", sp.WindowFlag.NO_ROTATE).rfft().mag()  # 513 bins, v.delta is now their width in Hz
height, position = v.peak(sp.Peak.PARABOLA, 0).array
print(f"{position * v.delta:.1f} Hz")
