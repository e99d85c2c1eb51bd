// SPDX-License-Identifier: MIT
// Samples in blocks of a channel.
#pragma once

#include <cstdint>
#include <vector>

#include "input/source.h"
#include "record.h"

namespace tool {

// Blocks of so many points, shorter at the end of a piece, and the channels in them. A sample that is not
// finite, or beyond the library's stand-in for infinity, is a data_error.
class block_reader {
 public:
  block_reader(source& in, std::size_t points, double gain);

  void lengthen(std::size_t points);         // of the blocks that are read from now on
  std::size_t read();                        // points that were read
  const record& channel(std::size_t index);  // until the next call

 private:
  void refuse_unusable(std::size_t scalars) const;

  source& in_;
  double gain_;
  std::size_t width_;  // scalars of a point
  std::size_t channels_;
  std::vector<double> frames_;
  record channel_;
  std::size_t points_ = 0;
  std::uint64_t before_ = 0;
};

}  // namespace tool
