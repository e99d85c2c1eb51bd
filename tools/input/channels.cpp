// SPDX-License-Identifier: MIT
// Which channels of a file are read.
#include "input/channels.h"

#include <algorithm>
#include <charconv>

#include "input/headings.h"

namespace tool {
namespace {

std::string names_of(const std::vector<channel>& all) {
  std::string names;
  for (const auto& c : all) names += (names.empty() ? "" : ", ") + c.name;
  return names;
}

std::size_t place_of(const std::string& word, const std::vector<channel>& all) {
  const auto named = std::ranges::find(all, word, &channel::name);
  if (named != all.end()) return static_cast<std::size_t>(named - all.begin());
  const auto bare = std::ranges::find(all, word, bare_name);
  if (bare != all.end()) return static_cast<std::size_t>(bare - all.begin());
  const std::ptrdiff_t place = place_of_number(word);
  if (place >= 0 && place < std::ssize(all)) return static_cast<std::size_t>(place);
  if (place < 0) throw data_error("there is no channel '" + word + "' among " + names_of(all));
  throw data_error("has " + std::to_string(all.size()) + (all.size() == 1 ? " channel" : " channels") +
                   ", so there is no channel " + word);
}

}  // namespace

std::ptrdiff_t place_of_number(const std::string& word) {
  std::ptrdiff_t number = 0;
  const char* const end = word.data() + word.size();
  const auto [parsed, error] = std::from_chars(word.data(), end, number);
  return error == std::errc() && parsed == end && number > 0 ? number - 1 : -1;
}

std::vector<channel> numbered_channels(std::size_t count) {
  std::vector<channel> all;
  for (std::size_t i = 0; i < count; ++i) all.push_back({std::to_string(i + 1), ""});
  return all;
}

std::vector<std::size_t> chosen_channels(const std::vector<std::string>& wanted,
                                         const std::vector<channel>& all) {
  std::vector<std::size_t> places;
  for (const auto& word : wanted) {
    if (word != "all") {
      places.push_back(place_of(word, all));
      continue;
    }
    for (std::size_t i = 0; i < all.size(); ++i) places.push_back(i);
  }
  if (wanted.empty()) places.push_back(0);
  return places;
}

std::vector<std::size_t> choose_channels(const std::vector<std::string>& wanted, std::size_t count,
                                         subject& about) {
  const auto all = numbered_channels(count);
  const auto places = chosen_channels(wanted, all);
  about.channels.clear();
  for (const std::size_t i : places) about.channels.push_back(all[i]);
  about.understood = about.kind;
  if (count == 1) return places;
  about.understood += places.size() == 1 ? ", channel " : ", channels ";
  for (std::size_t i = 0; i < places.size(); ++i) {
    about.understood += (i == 0 ? "" : ", ") + about.channels[i].name;
  }
  about.understood += " of " + std::to_string(count);
  return places;
}

}  // namespace tool
