// SPDX-License-Identifier: MIT
// Prints the figures of merit of all windows as the table of docs/windows.md.
#include <cstdio>

#include "windows/figures.h"

int main() {
  std::printf("| | Window | Coherent gain | ENBW, bins | Highest side lobe, dB | Flatness, dB |\n");
  std::printf("|--:|---|--:|--:|--:|--:|\n");
  for (int window = DSP_WINDOW_UNIFORM; window <= DSP_WINDOW_RIEMANN; ++window) {
    char name[32];
    dsp_window_to_str(window, name, sizeof name);
    const auto f = sigpak::test::figures_of(window);
    std::printf("| %d | %s | %.6f | %.4f | %.1f | %.4f |\n", window, name, f.coherent_gain, f.noise_bandwidth,
                f.side_lobe, f.flatness);
  }
}
