"""The transfer function between two channels, and their coherence: noise into a filter, with noise of its own added
behind it. H = S_xy / S_xx is not troubled by that; the coherence tells where it is."""

import numpy as np
import sigpak as sp

random = np.random.default_rng(7)
system = sp.Fir(sp.fir_taps("low_pass", 31, 0.1, attenuation=40))
running = sp.RunningCrossSpectrum(segment=1024, centre=False)
for _ in range(100):
    x = random.normal(size=8192)
    running.add(x, system(x) + 0.1 * random.normal(size=8192))

both = running.result
print("averages", both.segments)
for f, h, c in list(zip(both.f, abs(both.transfer), both.coherence))[::51]:
    print(f"f = {f:.3f}  |H| = {h:.2f}  coherence {c:.2f}")
