"""A stream from 44.1 kHz to 48 kHz, block by block: 48000 / 44100 = 160 / 147."""

import numpy as np
import sigpak as sp

block, blocks = 1024, 43
tone = sp.cosine(block * blocks, 997, rate=44100.0)

resampled = sp.Resampler(160, 147, passband=0.9, attenuation=100)
parts = [resampled(tone[start : start + block]) for start in range(0, tone.size, block)]
stream = np.concatenate([*parts, resampled.finish()])  # at the end the samples that waited come out
print(f"{tone.size} samples at 44.1 kHz, {stream.size} at 48.0 kHz")

spectrum = sp.spectrum(stream, 48000.0, segment=stream.size)
print(f"rms {sp.rms(stream):.3f}, {spectrum.lines[0].frequency:.1f} Hz")
