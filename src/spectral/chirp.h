// The transform of any length as a convolution with a chirp.
#pragma once

#include "core/record.h"

namespace sigpak {

// Length at least 3; complex afterwards, scaled forward, delta kept.
template <record V> status chirp_transform(V* v, bool inverse) noexcept;

}  // namespace sigpak
