// SPDX-License-Identifier: MIT
// The spectra of a command that go into one picture.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "commands/spectrum_options.h"
#include "output/report.h"
#include "output/screen.h"
#include "pictures/picture.h"

namespace tool {

// A spectrum in the band that is told, with what is known about it.
struct shown_spectrum {
  shown_spectrum(spectrum of, const measure& in, const telling_options& telling);
  spectrum s;
  measure told;
  std::vector<line> lines;
  std::optional<told_band> band;
  double floor;
};

class gallery {
 public:
  gallery(const telling_options& telling, const picture_options& drawing)
      : telling_(telling), drawing_(drawing) {}

  void take(spectrum s, const measure& told) {
    take(std::make_unique<shown_spectrum>(std::move(s), told, telling_));
  }
  void take(std::unique_ptr<shown_spectrum> s);
  bool is_empty() const { return shown_.empty(); }

  void write_svg() const;
  std::string plot(screen_size size, int rows_besides) const;

 private:
  picture drawn() const;

  const telling_options& telling_;
  const picture_options& drawing_;
  std::vector<std::unique_ptr<shown_spectrum>> shown_;
};

}  // namespace tool
