"""A filter on a stream: every block goes on where the one before it ended, because the filter keeps the history. The
blocks filtered one by one are the stream filtered as a whole."""

import numpy as np
import sigpak as sp

rate = 48000.0
total, block = 48000, 1000

# 100 Hz with a disturbance at 5 kHz; a low-pass of 1 kHz, 80 dB down.
signal = sp.cosine(total, 100, rate=rate) + sp.cosine(total, 5000, rate=rate)
taps = sp.fir_taps("low_pass", 201, 1000 / rate, attenuation=80)

filtered = sp.Fir(taps)
joined = np.concatenate([filtered(signal[start : start + block]) for start in range(0, total, block)])

same = sp.rms(sp.fir(signal, taps) - joined) < 1e-15
print("blocks and whole differ by less than 1e-15:", "yes" if same else "no")
print(f"rms of what is left: {sp.rms(joined[200:]):.4f}")  # 1 / sqrt 2 of the cosine at 100 Hz
