// SPDX-License-Identifier: MIT
// Files that are cut or wrong leave records that every operation takes.
#include <filesystem>
#include <fstream>
#include <iterator>

#include "io/streams.h"
#include "support/calls.h"

namespace sigpak::test {
namespace {

template <class V> class HostileFiles : public testing::Test {};
TYPED_TEST_SUITE(HostileFiles, records, record_names);

// The files of the corpus that fail, whole or without their last bytes.
template <record V> std::vector<std::string> failing_files() {
  std::vector<std::string> found;
  for (const auto& entry : std::filesystem::directory_iterator(SIGPAK_CORPUS)) {
    std::ifstream in(entry.path(), std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    for (const std::size_t missing : {0, 1, 6}) {
      const std::string part = bytes.substr(0, bytes.size() - std::min(bytes.size(), missing));
      if (!part.empty() && all_vectors<V>(part).second == -1) found.push_back(part);
    }
  }
  return found;
}

TYPED_TEST(HostileFiles, LeaveRecordsThatEveryOperationTakes) {
  using V = TypeParam;
  const failing_memory limited({.most_bytes = std::size_t{1} << 22});
  place<V> at;
  std::mt19937 engine(1);
  const auto files = failing_files<V>();
  EXPECT_GE(files.size(), 20U);
  for (const std::string& file : files) {
    for (std::size_t i = 0; i < export_count(); ++i) {
      const exported& op = export_at(i);
      const auto f = reading(file);
      while (TWIN(f_fread)(at.at(0), f.get()) == 1) {
      }
      std::vector<std::uint8_t> bytes(32);
      for (auto& b : bytes) b = static_cast<std::uint8_t>(engine() >> 24);
      choices from(bytes.data(), bytes.size());
      arguments a = chosen_arguments(op, from);
      for (argument& each : a) each.record = each.record < 3 ? std::uint8_t{0} : each.record;
      if (prepare(op, a, at)) op.call(at, a);
      ASSERT_EQ(at.settle(), nullptr) << op.name;
    }
  }
}

}  // namespace
}  // namespace sigpak::test
