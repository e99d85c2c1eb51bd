// The ring of the windows generated last.
#pragma once

#include "core/record.h"

namespace sigpak {

// The window for so many points and these flags, from the ring or generated into it; null when that fails.
// Valid until the next call; its spacing is the caller's to set.
template <record V>
const V* cached_window(std::uint32_t points, int window, int flags, double width) noexcept;

}  // namespace sigpak
