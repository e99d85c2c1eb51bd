// SPDX-License-Identifier: MIT
// sigpak for C++17: records that free themselves, and every operation of sigpak.h under its C name.
//
//     sigpak::record v(1024, 1.0 / 48000.0);
//     ... fill v[0 .. 1023] ...
//     dspi_window(v, DSP_WINDOW_HANN, DSP_WINDOW_FLAG_NO_ROTATE);
//     dspi_rfft(v);
//     sigpak::record power = dspu_magsq(v);
//
// What sigpak.h says of an operation holds here too. The names are those of double precision, and the records tell
// which twin is meant: dspi_rfft takes a record as well as a recordf. Records are passed by reference, those that may
// be missing by pointer.
//
//   sigpak::           a failure is an exception, sigpak::failure. The record that the operation changes is returned;
//                      without it among the arguments the result is a new record.
//   sigpak::status::   a failure is the status of C, -1. This is all there is under -fno-exceptions.
//
// Operations without a record, such as dsp_window_enbw, are overloaded by the type of their result.
#ifndef SIGPAK_HPP
#define SIGPAK_HPP

#include <sigpak.h>

#include <complex>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <new>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

#if defined(__has_include)
#if __has_include(<span>)
#include <span>
#endif
#endif

namespace sigpak {

#if defined(__cpp_lib_span)
template <class T> using span = std::span<T>;
#else
// Elements that belong to somebody else: what is needed of std::span where there is none.
template <class T> class span {
 public:
  constexpr span() noexcept = default;
  constexpr span(T* data, std::size_t size) noexcept : data_(data), size_(size) {}
  template <class Container, class = decltype(static_cast<T*>(std::declval<Container&>().data()))>
  constexpr span(Container& elements) noexcept : data_(elements.data()), size_(elements.size()) {}

  constexpr T* data() const noexcept { return data_; }
  constexpr std::size_t size() const noexcept { return size_; }
  constexpr bool empty() const noexcept { return size_ == 0; }
  constexpr T* begin() const noexcept { return data_; }
  constexpr T* end() const noexcept { return data_ + size_; }
  constexpr T& operator[](std::size_t i) const noexcept { return data_[i]; }

 private:
  T* data_ = nullptr;
  std::size_t size_ = 0;
};
#endif

// An operation that returned -1: an argument was refused, or storage was wanting.
class failure : public std::runtime_error {
 public:
  explicit failure(const char* operation)
      : std::runtime_error(std::string(operation) + ": an argument is refused, or storage is wanting"),
        operation_(operation) {}
  const char* operation() const noexcept { return operation_; }

 private:
  const char* operation_;  // a literal
};

enum class form { real, complex };

namespace detail {

template <class T> struct c_record;
template <> struct c_record<double> { using type = dsp_vec; };
template <> struct c_record<float> { using type = dspf_vec; };

inline std::int32_t initialise(dsp_vec* v) noexcept { return dsp_init(v); }
inline std::int32_t initialise(dspf_vec* v) noexcept { return dspf_init(v); }
inline std::int32_t destroy(dsp_vec* v) noexcept { return dsp_destroy(v); }
inline std::int32_t destroy(dspf_vec* v) noexcept { return dspf_destroy(v); }
inline std::int32_t copy(dsp_vec* to, const dsp_vec* from) noexcept { return dsp_copy(to, from); }
inline std::int32_t copy(dspf_vec* to, const dspf_vec* from) noexcept { return dspf_copy(to, from); }
inline std::int32_t grow(dsp_vec* v, std::uint32_t n, std::int32_t c) noexcept { return dsp_realloc(v, n, c); }
inline std::int32_t grow(dspf_vec* v, std::uint32_t n, std::int32_t c) noexcept { return dspf_realloc(v, n, c); }

[[noreturn]] inline void out_of_memory() {
#if defined(__cpp_exceptions)
  throw std::bad_alloc();
#else
  std::abort();
#endif
}

inline std::int32_t checked(std::int32_t status, const char* operation) {
#if defined(__cpp_exceptions)
  if (status < 0) throw failure(operation);
#else
  (void)operation;
#endif
  return status;
}

}  // namespace detail

// A dsp_vec or dspf_vec and its storage. A copy has storage of its own; a record that was moved from is empty.
template <class T> class basic_record {
 public:
  using value_type = T;
  using c_type = typename detail::c_record<T>::type;

  // No points, delta 1.
  basic_record() noexcept { detail::initialise(&record_); }

  // Zeros; std::bad_alloc when there is no storage for them, as wherever a record is sized here.
  explicit basic_record(std::size_t points, T delta = 1, form shape = form::real) : basic_record() {
    record_.delta = delta;
    resize(points, shape);
  }

  // A copy of real samples, from a list or anything else with data() and size().
  static basic_record of(std::initializer_list<T> samples, T delta = 1) {
    return of(span<const T>(samples.begin(), samples.size()), delta);
  }
  static basic_record of(span<const T> samples, T delta = 1) {
    basic_record copied(samples.size(), delta);
    if (!samples.empty()) std::memcpy(copied.record_.data, samples.data(), samples.size() * sizeof(T));
    return copied;
  }

  // Lends a buffer, which must outlive the record or its last change of storage: sigpak.h, "Ownership". Of complex
  // samples it holds the pairs (re, im). std::bad_alloc for more points than a record counts, 2^31 - 1.
  static basic_record lend(span<T> scalars, T delta = 1, form shape = form::real) {
    const std::size_t points = shape == form::complex ? scalars.size() / 2 : scalars.size();
    if (points > 0x7fffffffU) detail::out_of_memory();
    basic_record lent;
    lent.record_.delta = delta;
    lent.record_.data = scalars.data();
    lent.record_.points = static_cast<std::uint32_t>(points);
    lent.record_.complex = shape == form::complex;
    return lent;
  }

  // Takes over what a record of C owns, which is left as dsp_init leaves it.
  static basic_record adopt(c_type& record) noexcept {
    basic_record adopted;
    std::swap(adopted.record_, record);
    return adopted;
  }

  basic_record(const basic_record& other) : basic_record() {
    if (detail::copy(&record_, &other.record_) != 0) detail::out_of_memory();
  }
  basic_record(basic_record&& other) noexcept : basic_record() { swap(other); }
  basic_record& operator=(const basic_record& other) {
    if (detail::copy(&record_, &other.record_) != 0) {
      record_.points = 0;
      detail::out_of_memory();
    }
    return *this;
  }
  basic_record& operator=(basic_record&& other) noexcept {
    basic_record taken(std::move(other));
    swap(taken);
    return *this;
  }
  ~basic_record() { detail::destroy(&record_); }

  void swap(basic_record& other) noexcept { std::swap(record_, other.record_); }

  T delta() const noexcept { return record_.delta; }
  void set_delta(T delta) noexcept { record_.delta = delta; }
  bool is_complex() const noexcept { return record_.complex != 0; }
  bool is_lent() const noexcept { return record_.alloc <= 0 && record_.data != nullptr; }

  // A complex point counts once, and a negative number of points is none.
  std::size_t points() const noexcept {
    return record_.data != nullptr && static_cast<std::int32_t>(record_.points) > 0 ? record_.points : 0;
  }
  std::size_t size() const noexcept { return points() * (is_complex() ? 2 : 1); }  // scalars
  bool empty() const noexcept { return points() == 0; }

  // Keeps the points that stay, and makes those that are new zeros. Between forms nothing is kept.
  void resize(std::size_t points, form shape) {
    if (!try_resize(points, shape)) detail::out_of_memory();
  }
  void resize(std::size_t points) { resize(points, is_complex() ? form::complex : form::real); }

  // The same; false when there is no storage for it, and the record is then empty.
  [[nodiscard]] bool try_resize(std::size_t points, form shape) noexcept {
    const bool keeps = is_complex() == (shape == form::complex);
    const std::size_t kept = keeps ? (points < this->points() ? points : this->points()) : 0;
    const std::size_t width = shape == form::complex ? 2 : 1;
    const auto before = static_cast<std::uint32_t>(keeps ? this->points() : 0);
    record_.points = points > 0x7fffffffU ? 0x80000000U : static_cast<std::uint32_t>(points);
    record_.complex = shape == form::complex;
    if (detail::grow(&record_, before, record_.complex) != 0) {
      record_.points = 0;
      return false;
    }
    if (points > kept) std::memset(record_.data + kept * width, 0, (points - kept) * width * sizeof(T));
    return true;
  }

  // The scalars: of complex samples re, im, re, im. Not of a record that is about to go.
  span<T> scalars() & noexcept { return {record_.data, size()}; }
  span<const T> scalars() const& noexcept { return {record_.data, size()}; }
  void scalars() const&& = delete;

  // The points of a complex record, of any other none. std::complex<T> is laid out as T[2] by definition.
  span<std::complex<T>> complexes() & noexcept {
    return {reinterpret_cast<std::complex<T>*>(record_.data), is_complex() ? points() : 0};
  }
  span<const std::complex<T>> complexes() const& noexcept {
    return {reinterpret_cast<const std::complex<T>*>(record_.data), is_complex() ? points() : 0};
  }
  void complexes() const&& = delete;

  // One scalar; no check.
  T& operator[](std::size_t i) noexcept { return record_.data[i]; }
  const T& operator[](std::size_t i) const noexcept { return record_.data[i]; }
  T* begin() noexcept { return record_.data; }
  T* end() noexcept { return record_.data + size(); }
  const T* begin() const noexcept { return record_.data; }
  const T* end() const noexcept { return record_.data + size(); }

  // The record of C, for functions that take one. What it owns stays this record's.
  c_type* c_record() noexcept { return &record_; }
  const c_type* c_record() const noexcept { return &record_; }

 private:
  c_type record_;
};

using record = basic_record<double>;
using recordf = basic_record<float>;

namespace detail {

// A record in the hands of an operation. One that runs out of storage leaves points without data: they are gone.
template <class T> class handed {
 public:
  explicit handed(basic_record<T>* v) noexcept : record_(v != nullptr ? v->c_record() : nullptr) {}
  handed(const handed&) = delete;
  handed& operator=(const handed&) = delete;
  ~handed() {
    if (record_ != nullptr && record_->data == nullptr) record_->points = 0;
  }
  operator typename c_record<T>::type*() const noexcept { return record_; }

 private:
  typename c_record<T>::type* record_;
};

template <class T> handed<T> raw(basic_record<T>& v) noexcept { return handed<T>(&v); }
template <class T> handed<T> raw(basic_record<T>* v) noexcept { return handed<T>(v); }
template <class T> const typename c_record<T>::type* raw(const basic_record<T>& v) noexcept { return v.c_record(); }
template <class T> const typename c_record<T>::type* raw(const basic_record<T>* v) noexcept {
  return v != nullptr ? v->c_record() : nullptr;
}

}  // namespace detail
}  // namespace sigpak

#include <sigpak_operations.hpp>

#endif
