// SPDX-License-Identifier: MIT
// The binary form: what is written, every generation and byte order read, and files that lie.
#include "io/streams.h"

namespace sigpak::test {
namespace {

template <class V> class Binary : public testing::Test {};
TYPED_TEST_SUITE(Binary, records, record_names);

constexpr std::uint32_t magic = 0xEB0330BE;
constexpr index modest = index{1} << 18;  // scalars that a header may make the reader ask for unproven

template <class S>
std::string file_bytes(const std::vector<std::uint32_t>& words, S delta, const std::vector<S>& data,
                       bool big_endian = false) {
  std::string out;
  const auto put = [&](auto x) {
    std::string bytes(sizeof x, '\0');
    std::memcpy(bytes.data(), &x, sizeof x);
    if (big_endian != (std::endian::native == std::endian::big)) std::reverse(bytes.begin(), bytes.end());
    out += bytes;
  };
  for (const auto word : words) put(word);
  put(delta);
  for (const S x : data) put(x);
  return out;
}

// Three points of two scalars, in the current generation and the one of this width, in both byte orders.
template <class S> std::vector<std::string> generations(S delta, const std::vector<S>& data) {
  const bool wide = sizeof(S) == 8;
  std::vector<std::string> out;
  for (const bool big_endian : {false, true}) {
    out.push_back(file_bytes<S>({magic, wide ? 0xABCD08U : 0x04U, 3, 5}, delta, data, big_endian));
    out.push_back(file_bytes<S>({wide ? 0xEB0110BEU : 0xEB0220BEU, 3, 5}, delta, data, big_endian));
  }
  return out;
}

TYPED_TEST(Binary, TheBytesOnDiskWholeAndInParts) {
  using V = TypeParam;
  using S = scalar<V>;
  signal<V> v({1, -2, 0.5, 4}, true);
  v.complex = -7;
  v.delta = S(0.25);
  const std::uint32_t type = is_double<V> ? 0x408U : 0x404U;
  const auto wanted = file_bytes<S>({magic, type, 2, 0U - 7}, S(0.25), {1, -2, 0.5, 4});
  EXPECT_EQ(wanted.substr(0, 4), "\xBE\x30\x03\xEB");
  EXPECT_EQ(written<V>(v, 0), wanted);
  EXPECT_EQ(written([&v](std::FILE* f) { EXPECT_EQ(TWIN(f_fwrite)(&v, f), 0); }), wanted);
  EXPECT_EQ(written<V>(v, 0x200), wanted.substr(0, 16 + sizeof(S)));
  EXPECT_EQ(written<V>(v, 0x100), wanted.substr(16 + sizeof(S)));
  EXPECT_EQ(written<V>(v, 0x300), "");
  v.points = 0xfffffffd;
  EXPECT_EQ(written<V>(v, 0).size(), 16 + sizeof(S)) << "no points";
  v.points = 0;
}

TYPED_TEST(Binary, WrittenAndReadBackBitForBitOrConverted) {
  using V = TypeParam;
  using Other = std::conditional_t<is_double<V>, dspf_vec, dsp_vec>;
  for (const bool pairs : {false, true}) {
    for (const std::size_t n : {0U, 1U, 2U, 3U, 2048U, 2049U, 300'000U}) {
      auto data = awkward<V>();
      for (const auto x : noise<V>(static_cast<index>(2 * n))) data.push_back(x);
      data.resize(pairs ? 2 * n : n);
      signal<V> v(data, pairs);
      v.delta = scalar<V>(-1) / 3;
      signal<V> back;
      const auto bytes = written<V>(v, 0);
      ASSERT_EQ(TWIN(f_fread)(&back, (n == 2049 ? piped(bytes) : reading(bytes)).get()), 1);
      EXPECT_EQ(back.points, n);
      EXPECT_EQ(back.complex, v.complex);
      EXPECT_EQ(back.delta, v.delta);
      EXPECT_EQ(back.alloc, scalars<V>(&v));
      EXPECT_TRUE(same_bits(back.values(), data));
      const auto other = noise<Other>(static_cast<index>(2 * n));
      EXPECT_EQ(all_vectors<V>(written<Other>(signal<Other>(other), 0)).first[0],
                samples<V>(other.begin(), other.end()));
    }
  }
}

TYPED_TEST(Binary, EveryGenerationInBothByteOrders) {
  using V = TypeParam;
  const auto check = [](const auto& files, double delta, const auto& wanted) {
    for (const auto& bytes : files) {
      signal<V> v;
      ASSERT_EQ(TWIN(f_fread)(&v, reading(bytes).get()), 1);
      EXPECT_EQ(v.delta, static_cast<scalar<V>>(delta));
      EXPECT_EQ(v.complex, 5);
      EXPECT_EQ(v.values(), samples<V>(wanted.begin(), wanted.end()));
      const std::size_t point = 2 * sizeof(wanted[0]);
      for (std::size_t length = 0; length < bytes.size(); ++length) {
        signal<V> cut;
        EXPECT_EQ(TWIN(f_fread)(&cut, reading(bytes.substr(0, length)).get()), length == 0 ? 0 : -1)
            << length;
        const std::size_t missing = (bytes.size() - length + point - 1) / point;
        EXPECT_EQ(cut.points, missing < 3 ? 3 - missing : 0) << length << ": the points that arrived";
        for (index i = 0; i < scalars<V>(&cut); ++i) EXPECT_EQ(cut.data[i], v.data[i]);
      }
    }
    expect_harmless<V>(files[0], modest);
    expect_harmless<V>(files[3], modest);
  };
  const std::vector<double> wide = {0.1, -1e300, 1.0000000596046448, 4.9e-324, -0.0, 3};
  const std::vector<float> narrow = {0.1F, -1e30F, 1.0000001F, 1e-45F, -0.0F, 3};
  check(generations(1.0 / 3, wide), 1.0 / 3, wide);
  check(generations(0.7F, narrow), double{0.7F}, narrow);
}

TYPED_TEST(Binary, AHeaderAloneCannotAskForMemory) {
  using V = TypeParam;
  const failing_records watch(LONG_MAX);
  for (const std::uint32_t points : {0x10000000U, 0x3fffffffU, 0x7fffffffU, 0x80000000U, 0xffffffffU}) {
    for (const std::uint32_t complex : {0U, 1U}) {
      for (const std::uint32_t type : {0x408U, 0x404U}) {
        std::string bytes = file_bytes<double>({magic, type, points, complex}, 1.0, {});
        bytes.resize(60'000);
        signal<V> v;
        EXPECT_EQ(TWIN(f_fread)(&v, piped(bytes).get()), -1);
        const std::size_t width = type & 0xff;
        const std::size_t arrived = (bytes.size() - 16 - width) / width / (complex + 1);
        EXPECT_EQ(v.points, points * (std::uint64_t{complex} + 1) > INT_MAX ? 0 : arrived);
        EXPECT_LE(scalars<V>(&v), v.alloc);
      }
    }
  }
  EXPECT_LE(watch.largest<V>(), modest);
}

TYPED_TEST(Binary, AnUnknownMagicOrWidthIsRefused) {
  using V = TypeParam;
  for (const std::uint32_t word : {0xEB0440BEU, 0xEB0330BFU, 0xEB0000BEU, 0xBE0330BEU}) {
    EXPECT_EQ(all_vectors<V>(file_bytes<double>({word, 0x408, 1, 0}, 1.0, {1})).second, -1);
  }
  for (const std::uint32_t type : {0U, 2U, 5U, 16U, 0x800U, 0x8000000U}) {
    signal<V> v;
    const auto bytes = file_bytes<double>({magic, type, 1, 3}, 1.0, {1});
    EXPECT_EQ(TWIN(f_fread)(&v, reading(bytes).get()), -1);
    EXPECT_EQ(v.points, 0U);
    EXPECT_EQ(v.complex, 3);
  }
}

TYPED_TEST(Binary, StorageIsReusedLentStorageLeftAloneAndAFailedAllocationReported) {
  using V = TypeParam;
  const auto bytes = file_bytes<double>({magic, 0x408, 3, 0}, 1.0, {1, 2, 3});
  for (const bool lent : {false, true}) {
    signal<V> v{9, 9, 9, 9};
    if (lent) v.lend();
    const auto* const data = v.data;
    EXPECT_EQ(TWIN(f_fread)(&v, reading(bytes).get()), 1);
    EXPECT_EQ(v.values(), (samples<V>{1, 2, 3}));
    EXPECT_EQ(v.data == data, !lent);
    EXPECT_EQ(v.alloc, lent ? 3 : 4);
    EXPECT_EQ(v.lent(), lent ? samples<V>(4, 9) : samples<V>());
  }
  const auto large = written<V>(signal<V>(noise<V>(400'000)), 0);
  EXPECT_GT(failures_before_success<failing_records>([&large] {
              signal<V> v;
              const auto status = TWIN(f_fread)(&v, reading(large).get());
              EXPECT_EQ(v.data == nullptr, status == -1);
              EXPECT_EQ(v.points, status == -1 ? 0U : 400'000U);
              return status;
            }),
            1);
}

TYPED_TEST(Binary, ShortWritesAreReported) {
  using V = TypeParam;
  const signal<V> v(noise<V>(64));
  for (const std::int32_t flags : {0, 0x100, 0x200}) {
    std::string room(10, '\0');
    const stream f(fmemopen(room.data(), room.size(), "wb"), std::fclose);
    std::setvbuf(f.get(), nullptr, _IONBF, 0);
    EXPECT_EQ(TWIN(f_fwrite2)(&v, f.get(), flags), -1) << flags;
  }
}

}  // namespace
}  // namespace sigpak::test
