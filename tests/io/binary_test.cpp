// The binary form: what is written, every generation and byte order read, and files that lie.
#include "io/streams.h"

namespace sigpak::test {
namespace {

template <class V> class Binary : public testing::Test {};
TYPED_TEST_SUITE(Binary, records, record_names);

constexpr index modest = index{1} << 18;  // scalars that a header may make the reader ask for unproven

struct file {
  std::uint32_t magic = 0xEB0330BE;
  bool typed = true;
  bool big_endian = false;
  std::uint32_t type = 0x408;
  std::uint32_t points = 0;
  std::int32_t complex = 0;
};

template <class S> std::string file_bytes(const file& h, S delta, const std::vector<S>& data) {
  const auto put = [&h](auto x) { return number_bytes(x, h.big_endian); };
  std::string out = put(h.magic);
  if (h.typed) out += put(h.type);
  out += put(h.points) + put(h.complex) + put(delta);
  for (const S x : data) out += put(x);
  return out;
}

template <record V> std::string vector_bytes(const V& v) {
  return written([&v](std::FILE* f) { EXPECT_EQ(TWIN(f_fwrite)(&v, f), 0); });
}

// The three generations in both byte orders, with three points of two scalars each.
template <class S> std::vector<std::string> generations(S delta, const std::vector<S>& pairs) {
  std::vector<std::string> out;
  const bool wide = sizeof(S) == 8;
  for (const bool big_endian : {false, true}) {
    for (const bool typed : {false, true}) {
      const file h{.magic = typed  ? 0xEB0330BE
                            : wide ? 0xEB0110BE
                                   : 0xEB0220BE,
                   .typed = typed,
                   .big_endian = big_endian,
                   .type = wide ? 0xABCD08U : 0x04U,
                   .points = static_cast<std::uint32_t>(pairs.size() / 2),
                   .complex = 5};
      out.push_back(file_bytes(h, delta, pairs));
    }
  }
  return out;
}

TYPED_TEST(Binary, TheBytesOnDisk) {
  using V = TypeParam;
  signal<V> v({1, -2, 0.5, 4}, true);
  v.complex = -7;
  v.delta = scalar<V>(0.25);
  using S = scalar<V>;
  const file h{.type = is_double<V> ? 0x408U : 0x404U, .points = 2, .complex = -7};
  const auto wanted = file_bytes<S>(h, S(0.25), {1, -2, 0.5, 4});
  EXPECT_EQ(wanted.substr(0, 4), "\xBE\x30\x03\xEB");
  EXPECT_EQ(vector_bytes<V>(v), wanted);
}

TYPED_TEST(Binary, WrittenAndReadBackBitForBit) {
  using V = TypeParam;
  for (const bool pairs : {false, true}) {
    for (const index n : {0, 1, 2, 3, 1000, 2049}) {
      auto contents = awkward<V>();
      for (const auto x : noise<V>(n)) contents.push_back(x);
      contents.resize(static_cast<std::size_t>(pairs ? 2 * n : n));
      signal<V> v(contents, pairs);
      v.delta = scalar<V>(-1) / 3;
      signal<V> back;
      const auto bytes = vector_bytes<V>(v);
      ASSERT_EQ(TWIN(f_fread)(&back, reading(bytes).get()), 1);
      EXPECT_EQ(back.points, v.points);
      EXPECT_EQ(back.complex, v.complex);
      EXPECT_EQ(back.delta, v.delta);
      EXPECT_EQ(back.alloc, scalars<V>(&v));
      EXPECT_TRUE(same_bits(back.values(), contents));
    }
  }
}

TYPED_TEST(Binary, EveryGenerationInBothByteOrders) {
  using V = TypeParam;
  const auto check = [](const std::string& bytes, double delta, const auto& wanted) {
    signal<V> v;
    ASSERT_EQ(TWIN(f_fread)(&v, reading(bytes).get()), 1);
    EXPECT_EQ(v.delta, static_cast<scalar<V>>(delta));
    EXPECT_EQ(v.points, 3U);
    EXPECT_EQ(v.complex, 5);
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      EXPECT_EQ(v.data[i], static_cast<scalar<V>>(wanted[i])) << i;
    }
  };
  const std::vector<double> wide = {0.1, -1e300, 1.0000000596046448, 4.9e-324, -0.0, 3};
  const std::vector<float> narrow = {0.1F, -1e30F, 1.0000001F, 1e-45F, -0.0F, 3};
  for (const auto& bytes : generations(1.0 / 3, wide)) check(bytes, 1.0 / 3, wide);
  for (const auto& bytes : generations(0.7F, narrow)) check(bytes, double{0.7F}, narrow);
}

TYPED_TEST(Binary, CutShortAtEveryByte) {
  using V = TypeParam;
  auto files = generations(1.0, std::vector<double>{1, 2, 3, 4, 5, 6});
  for (const auto& bytes : generations(1.0F, std::vector<float>{1, 2, 3, 4, 5, 6})) files.push_back(bytes);
  for (const auto& bytes : files) {
    for (std::size_t length = 0; length < bytes.size(); ++length) {
      signal<V> v{7, 8, 9};
      const auto part = bytes.substr(0, length);
      const auto f = reading(part);
      EXPECT_EQ(TWIN(f_fread)(&v, f.get()), length == 0 ? 0 : -1) << length;
      EXPECT_TRUE(length > 0 || v.points == 0);
      v.points = 0;
    }
  }
}

TYPED_TEST(Binary, AnyByteChangedDoesNoHarm) {
  using V = TypeParam;
  auto files = generations(1.0, std::vector<double>{1, 2, 3, 4, 5, 6});
  files.push_back(generations(1.0F, std::vector<float>{1, 2, 3, 4, 5, 6})[0]);
  const largest_request<V> watch;
  for (const auto& bytes : files) {
    for (std::size_t at = 0; at < bytes.size(); ++at) {
      for (int value = 0; value < 256; ++value) {
        std::string damaged = bytes;
        damaged[at] = static_cast<char>(value);
        signal<V> v;
        const auto status = TWIN(f_fread)(&v, reading(damaged).get());
        EXPECT_TRUE(status == 1 || status == -1) << at << ' ' << value;
        EXPECT_TRUE(status == -1 || scalars<V>(&v) <= 12) << at << ' ' << value;
        EXPECT_TRUE(status == 1 || at < bytes.size() - 24) << "only a scalar changed";
      }
    }
  }
  EXPECT_LE(watch.scalars(), modest);
}

TYPED_TEST(Binary, AHeaderAloneCannotAskForMemory) {
  using V = TypeParam;
  const largest_request<V> watch;
  for (const std::uint32_t points : {0x10000000U, 0x3fffffffU, 0x7fffffffU, 0x80000000U, 0xffffffffU}) {
    for (const std::int32_t complex : {0, 1}) {
      for (const std::uint32_t type : {0x408U, 0x404U}) {
        std::string bytes = file_bytes<double>({.type = type, .points = points, .complex = complex}, 1.0, {});
        bytes.resize(100'000);
        signal<V> v;
        EXPECT_EQ(TWIN(f_fread)(&v, piped(bytes).get()), -1);
        EXPECT_EQ(TWIN(f_fread)(&v, reading(bytes).get()), -1);
        EXPECT_EQ(v.points, points);
        v.points = 0;
      }
    }
  }
  EXPECT_LE(watch.scalars(), modest);
}

TYPED_TEST(Binary, AnUnknownMagicOrWidthIsRefused) {
  using V = TypeParam;
  for (const std::uint32_t magic : {0xEB0440BEU, 0xEB0330BFU, 0xEB0000BEU, 0xBE0330BEU}) {
    signal<V> v;
    const auto bytes = file_bytes<double>({.magic = magic, .points = 1}, 1.0, {1});
    EXPECT_EQ(TWIN(f_fread)(&v, reading(bytes).get()), -1);
  }
  for (const std::uint32_t type : {0U, 2U, 5U, 16U, 0x800U, 0x8000000U}) {
    signal<V> v;
    const auto bytes = file_bytes<double>({.type = type, .points = 1, .complex = 3}, 1.0, {1});
    EXPECT_EQ(TWIN(f_fread)(&v, reading(bytes).get()), -1);
    EXPECT_EQ(v.points, 1U);
    EXPECT_EQ(v.complex, 3);
    v.points = 0;
  }
}

TYPED_TEST(Binary, LongVectorsThroughAPipe) {
  using V = TypeParam;
  const auto data = noise<V>(1'000'002);
  signal<V> v(data, true);
  signal<V> back{1, 2, 3};
  EXPECT_EQ(TWIN(f_fread)(&back, piped(vector_bytes<V>(v)).get()), 1);
  EXPECT_EQ(back.points, 500'001U);
  EXPECT_EQ(back.alloc, 1'000'002);
  EXPECT_TRUE(same_bits(back.values(), data));

  using Other = std::conditional_t<is_double<V>, dspf_vec, dsp_vec>;
  signal<Other> other(samples<Other>(data.begin(), data.end()));
  const auto bytes = vector_bytes<Other>(other);
  EXPECT_EQ(TWIN(f_fread)(&back, piped(bytes).get()), 1);
  EXPECT_EQ(back.points, 1'000'002U);
  EXPECT_EQ(back.values()[1'000'001], static_cast<scalar<V>>(static_cast<float>(data.back())));
}

TYPED_TEST(Binary, StorageIsReusedAndLentStorageLeftAlone) {
  using V = TypeParam;
  const auto bytes = file_bytes<double>({.points = 3}, 1.0, {1, 2, 3});
  signal<V> roomy{9, 9, 9, 9};
  const auto* const data = roomy.data;
  EXPECT_EQ(TWIN(f_fread)(&roomy, reading(bytes).get()), 1);
  EXPECT_EQ(roomy.data, data);
  EXPECT_EQ(roomy.alloc, 4);
  signal<V> lending{9, 9, 9, 9};
  lending.lend();
  EXPECT_EQ(TWIN(f_fread)(&lending, reading(bytes).get()), 1);
  EXPECT_EQ(lending.values(), (samples<V>{1, 2, 3}));
  EXPECT_EQ(lending.lent(), (samples<V>{9, 9, 9, 9}));
}

TYPED_TEST(Binary, EveryFailedAllocationIsAFailedRead) {
  using V = TypeParam;
  signal<V> v(noise<V>(400'000));
  const auto bytes = vector_bytes<V>(v);
  for (int allowed = 0;; ++allowed) {
    signal<V> back;
    const failing_records<V> most(allowed);
    const auto status = TWIN(f_fread)(&back, reading(bytes).get());
    if (status == 1) {
      EXPECT_GT(allowed, 1);
      break;
    }
    EXPECT_EQ(back.data, nullptr);
    EXPECT_EQ(back.alloc, 0);
    back.points = 0;
  }
}

TYPED_TEST(Binary, ShortWritesAreReported) {
  using V = TypeParam;
  const signal<V> v(noise<V>(64));
  for (const std::int32_t flags : {0, 0x100, 0x200}) {
    std::string room(10, '\0');
    const stream f(fmemopen(room.data(), room.size(), "wb"));
    std::setvbuf(f.get(), nullptr, _IONBF, 0);
    EXPECT_EQ(TWIN(f_fwrite2)(&v, f.get(), flags), -1) << flags;
  }
}

TYPED_TEST(Binary, HeaderAndBodyApart) {
  using V = TypeParam;
  const signal<V> v{1, 2, 3};
  const auto put = [&v](std::int32_t flags) {
    return written([&](std::FILE* f) { EXPECT_EQ(TWIN(f_fwrite2)(&v, f, flags), 0); });
  };
  EXPECT_EQ(put(0x200) + put(0x100), vector_bytes<V>(v));
  EXPECT_EQ(put(0x100).size(), 3 * sizeof(scalar<V>));
  EXPECT_EQ(put(0x300), "");
  V negative = v;
  negative.points = 0xfffffffd;
  EXPECT_EQ(vector_bytes<V>(negative).size(), 16 + sizeof(scalar<V>)) << "no points";
}

}  // namespace
}  // namespace sigpak::test
