// SPDX-License-Identifier: MIT
// The library's operations in place: the list is made from its header, the arguments from their types.
#include "commands/in_place.h"

#include <charconv>
#include <tuple>
#include <type_traits>
#include <utility>

#include "commands/options.h"
#include "commands/spectrum_options.h"

namespace tool {
namespace {

// How a parameter is read from a word, and what it is called. One that gives a result takes no word.
template <class T> struct parameter;

template <> struct parameter<double> {
  static constexpr const char* kind = "NUMBER";
  double value = 0;
  explicit parameter(const std::string& word) {
    if (!parse_number(word, value)) throw usage_error(word + " is no number");
  }
  double passed() const { return value; }
};

template <class T>
requires std::is_integral_v<T>
struct parameter<T> {
  static constexpr const char* kind = "INTEGER";
  T value = 0;
  explicit parameter(const std::string& word) {
    const char* const end = word.data() + word.size();
    const auto [parsed, error] = std::from_chars(word.data(), end, value);
    if (error == std::errc() && parsed == end) return;
    int window = 0;
    if (!find_window(word, window).empty()) throw usage_error(word + " is no integer, and no window");
    value = static_cast<T>(window);
  }
  T passed() const { return value; }
};

template <> struct parameter<const dsp_vec*> {
  static constexpr const char* kind = "X,X,...";
  record values;
  explicit parameter(const std::string& word) {
    std::vector<double> all;
    for (std::size_t at = 0; at <= word.size();) {
      const std::size_t end = std::min(word.find(',', at), word.size());
      all.push_back(parameter<double>(word.substr(at, end - at)).value);
      at = end + 1;
    }
    values.resize(all.size());
    std::copy(all.begin(), all.end(), values.data);
  }
  const dsp_vec* passed() const { return &values; }
};

template <class T> constexpr bool takes_word = !std::is_same_v<T, std::int32_t*>;

template <class T> void name_argument(std::vector<const char*>& names) {
  if constexpr (takes_word<T>) names.push_back(parameter<T>::kind);
}

template <class T> auto argument(std::span<const std::string> words, std::size_t& next) {
  if constexpr (takes_word<T>) {
    return parameter<T>(words[next++]);
  } else {
    struct ignored {
      mutable std::int32_t value = 0;
      std::int32_t* passed() const { return &value; }
    };
    return ignored{};
  }
}

template <class... A> in_place_operation operation(const char* name, std::int32_t (*of)(dsp_vec*, A...)) {
  in_place_operation out{name, {}, {}};
  (name_argument<A>(out.arguments), ...);
  out.apply = [of](record& v, [[maybe_unused]] std::span<const std::string> words) {
    [[maybe_unused]] std::size_t next = 0;
    const std::tuple arguments{argument<A>(words, next)...};  // braces: from the left to the right
    return std::apply([&](const auto&... a) { return of(&v, a.passed()...); }, arguments);
  };
  return out;
}

}  // namespace

const std::vector<in_place_operation>& in_place_operations() {
  static const std::vector<in_place_operation> all = {
#define SIGPAK_IN_PLACE(name) operation(#name, dspi_##name),
#include "in_place_operations.inc"
#undef SIGPAK_IN_PLACE
  };
  return all;
}

}  // namespace tool
