// SPDX-License-Identifier: MIT
// The records that filters keep between calls.
#include "filters/stream.h"

#include "core/frame.h"

namespace sigpak {
namespace {

template <record V> constinit lender<kept_record<V>> substitute_records;
template <record V> constinit only_state<V> state_record;

template <record V> void own_records() noexcept {
  register_cache<V>(cache::filter_output, []() noexcept {
    return substitute_records<V>.release() == ok ? state_record<V>.release() : failed;
  });
}

}  // namespace

template <record V> lender<kept_record<V>>& substitutes() noexcept {
  own_records<V>();
  return substitute_records<V>;
}

template <record V> only_state<V>& shared_state() noexcept {
  own_records<V>();
  return state_record<V>;
}

template lender<kept_record<dsp_vec>>& substitutes() noexcept;
template lender<kept_record<dspf_vec>>& substitutes() noexcept;
template only_state<dsp_vec>& shared_state() noexcept;
template only_state<dspf_vec>& shared_state() noexcept;

}  // namespace sigpak
