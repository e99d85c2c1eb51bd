// SPDX-License-Identifier: MIT
// Workers of the generators that other families call.
#pragma once

#include <cstdint>

namespace sigpak {

// The 31-bit random integer; seeds the generator on its first use.
std::int32_t random_integer() noexcept;

}  // namespace sigpak
