// SPDX-License-Identifier: MIT
// The two forms for people, written: ASCII, which reads back, and the summary in one line.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

#include "io/io.h"

namespace sigpak {
namespace {

// Digits that tell apart what the field wants told apart; one less than would bring every scalar back
// exactly.
template <class T> struct printed;
template <> struct printed<double> { static constexpr int digits = 16; };
template <> struct printed<float> { static constexpr int digits = 7; };

constexpr int summary_points = 32;
constexpr int summary_digits = 4;
constexpr double whole_from = 9999;  // magnitudes that the summary prints as whole numbers
constexpr double whole_to = 999999999;

// Text gathered on its way into a stream. Numbers carry the decimal point of the C locale whatever the
// program has set.
class text_sink {
 public:
  explicit text_sink(std::FILE* f) noexcept : f_(f) {}
  ~text_sink() { flush(); }
  text_sink(const text_sink&) = delete;
  text_sink& operator=(const text_sink&) = delete;

  text_sink& operator<<(std::string_view text) noexcept {
    make_room();
    used_ += text.copy(end(), text.size());
    return *this;
  }
  text_sink& operator<<(std::int32_t number) noexcept {
    make_room();
    used_ = offset(std::to_chars(end(), limit(), number));
    return *this;
  }
  text_sink& significant(double x, int digits) noexcept {  // %.<digits>g
    make_room();
    used_ = offset(std::to_chars(end(), limit(), x, std::chars_format::general, digits));
    return *this;
  }
  text_sink& whole(double x) noexcept {  // %.0f
    make_room();
    used_ = offset(std::to_chars(end(), limit(), x, std::chars_format::fixed, 0));
    return *this;
  }

 private:
  static constexpr std::size_t item = 64;  // longer than any text or number written at once
  char* end() noexcept { return buffer_ + used_; }
  char* limit() noexcept { return buffer_ + sizeof buffer_; }
  std::size_t offset(std::to_chars_result written) const noexcept {
    return static_cast<std::size_t>(written.ptr - buffer_);
  }
  void make_room() noexcept {
    if (used_ + item > sizeof buffer_) flush();
  }
  void flush() noexcept {
    std::fwrite(buffer_, 1, used_, f_);
    used_ = 0;
  }

  std::FILE* f_;
  std::size_t used_ = 0;
  char buffer_[4096] = {};
};

// The scalars of the first points, parts of a pair and points kept apart by their own separators.
template <record V, class Put>
void put_points(text_sink& out, const V* v, index points, std::string_view between_parts,
                std::string_view between_points, Put put) noexcept {
  for (index i = 0; i < points; ++i) {
    if (i > 0) out << between_points;
    put(static_cast<double>(v->data[i * width(v)]));
    if (is_complex(v)) {
      out << between_parts;
      put(static_cast<double>(v->data[2 * i + 1]));
    }
  }
}

void put_short(text_sink& out, double x) noexcept {
  const double size = std::abs(x);
  if (size >= whole_from && size <= whole_to) {
    out.whole(x);
  } else {
    out.significant(x, summary_digits);
  }
}

}  // namespace

template <record V> void write_ascii(const V* v, std::FILE* f, parts wanted) noexcept {
  constexpr int digits = printed<scalar<V>>::digits;
  text_sink out(f);
  if (wanted.header) {
    out << "#DSP ASCII data from sigpak package\n";
    out << "#DSP points = " << static_cast<std::int32_t>(v->points) << "\n";
    out << "#DSP complex = " << v->complex << "\n";
    out << "#DSP type = " << static_cast<std::int32_t>(sizeof(scalar<V>)) << "\n";
    out << "#DSP delta = ";
    out.significant(static_cast<double>(v->delta), digits) << "\n";
  }
  if (!wanted.body || length(v) == 0) return;
  put_points(out, v, length(v), " ", "\n", [&out](double x) { out.significant(x, digits); });
  out << "\n";
}

template <record V> void write_summary(const V* v, std::FILE* f, parts wanted) noexcept {
  text_sink out(f);
  const auto put = [&out](double x) { put_short(out, x); };
  if (wanted.header) {
    out << "[";
    put(static_cast<std::int32_t>(v->points));
    out << "/";
    put(static_cast<double>(v->delta));
    out << (length(v) > 0 ? "] " : "]");
  }
  if (!wanted.body) return;
  put_points(out, v, std::min<index>(length(v), summary_points), ",", " ", put);
  out << (length(v) > summary_points ? " ...\n" : "\n");
}

template void write_ascii(const dsp_vec*, std::FILE*, parts) noexcept;
template void write_ascii(const dspf_vec*, std::FILE*, parts) noexcept;
template void write_summary(const dsp_vec*, std::FILE*, parts) noexcept;
template void write_summary(const dspf_vec*, std::FILE*, parts) noexcept;

}  // namespace sigpak
