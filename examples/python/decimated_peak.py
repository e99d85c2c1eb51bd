"""The strongest line below an eighth of the rate in the first channel of a sound file: filtered and decimated by 4 as it
is read, then long spectra of what is left. A Hann window places the line, a flat top tells its amplitude, between bins
too. Reads WAV files of 8 or 16 bits."""

import sys
import wave

import numpy as np
import sigpak as sp

BLOCK, FACTOR = 4096, 4


def blocks(file):
    """The first channel, block by block, in -1 .. 1."""
    width, channels = file.getsampwidth(), file.getnchannels()
    while data := file.readframes(BLOCK):
        samples = np.frombuffer(data, {1: "u1", 2: "<i2"}[width])[::channels]
        yield (samples - 128.0) / 128 if width == 1 else samples / 32768


with wave.open(sys.argv[1]) as file:
    filtered = sp.Fir(sp.fir_taps("low_pass", 127, 0.4 / FACTOR, attenuation=80))
    low = np.concatenate([filtered(block) for block in blocks(file)])[::FACTOR]
    rate = file.getframerate() / FACTOR

narrow, flat = (
    sp.Vec(low.copy(), 1 / rate).window(name, sp.WindowFlag.NO_ROTATE).rdft().mag() for name in ("Hann", "Flattop")
)
_, position = narrow.peak(sp.Peak.PARABOLA, 0).array
# A bin above the first holds half the amplitude of its line.
print(f"{position * narrow.delta:.1f} Hz, amplitude {2 * flat.max():.3f}")
