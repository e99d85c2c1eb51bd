// The records that filters keep between calls.
#include "filters/stream.h"

#include "core/frame.h"

namespace sigpak {
namespace {

template <record V> constinit V substitute_record = {1, nullptr, 0, 0, 0, 0};
template <record V> constinit V state_record = {1, nullptr, 0, 0, 0, 0};

template <record V> status release() noexcept {
  if (destroy(&substitute_record<V>) != ok) return failed;
  return destroy(&state_record<V>);
}

template <record V> V* kept(V* scratch) noexcept {
  register_cache<V>(cache::filter_output, release<V>);
  return scratch;
}

}  // namespace

template <record V> V* substitute_output() noexcept { return kept(&substitute_record<V>); }
template <record V> V* shared_state() noexcept { return kept(&state_record<V>); }

template dsp_vec* substitute_output() noexcept;
template dspf_vec* substitute_output() noexcept;
template dsp_vec* shared_state() noexcept;
template dspf_vec* shared_state() noexcept;

}  // namespace sigpak
