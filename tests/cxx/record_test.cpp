// SPDX-License-Identifier: MIT
// The records of sigpak.hpp: what they own, what they lend, and how they fail.

#include <sigpak.hpp>

#include <cmath>
#include <cstdio>
#include <memory>
#include <numeric>
#include <vector>

#include <gtest/gtest.h>

namespace {

template <class T> struct Record : testing::Test {
  using record = sigpak::basic_record<T>;

  static record counting(std::size_t points) {
    record v(points, T(0.5));
    std::iota(v.begin(), v.end(), T(1));
    return v;
  }
};
using scalars = testing::Types<double, float>;
TYPED_TEST_SUITE(Record, scalars);

template <class T> std::vector<T> values(const sigpak::basic_record<T>& v) { return {v.begin(), v.end()}; }

TYPED_TEST(Record, OwnsCopiesAndMoves) {
  auto v = TestFixture::counting(5);
  auto copy = v;
  const auto* storage = v.begin();
  copy[0] = 9;
  EXPECT_EQ(v[0], 1) << "a copy has storage of its own";
  copy = v;
  EXPECT_EQ(values(copy), values(v));
  EXPECT_EQ(copy.delta(), TypeParam(0.5));
  auto moved = std::move(v);
  EXPECT_EQ(moved.begin(), storage);
  EXPECT_TRUE(v.empty());
  v = std::move(moved);
  EXPECT_EQ(v.begin(), storage);
  v = static_cast<decltype(v)&&>(v);
  EXPECT_EQ(v.points(), 5u) << "moved onto itself";
  auto adopted = decltype(v)::adopt(*v.c_record());
  EXPECT_TRUE(v.empty());
  EXPECT_EQ(adopted.begin(), storage);
}

TYPED_TEST(Record, ResizesWithZeros) {
  auto v = TestFixture::counting(3);
  v.resize(5);
  EXPECT_EQ(values(v), (std::vector<TypeParam>{1, 2, 3, 0, 0}));
  v.resize(2);
  v.resize(3);
  EXPECT_EQ(values(v), (std::vector<TypeParam>{1, 2, 0}));
  v.resize(2, sigpak::form::complex);
  EXPECT_EQ(values(v), (std::vector<TypeParam>{0, 0, 0, 0}));
  v.complexes()[1] = {3, 4};
  const auto magnitudes = dspu_mag(v);
  EXPECT_EQ(values(magnitudes), (std::vector<TypeParam>{0, 5}));
  EXPECT_TRUE(magnitudes.complexes().empty());
  for (const std::size_t points : {std::size_t{1} << 31, std::size_t{1} << 32, ~std::size_t{0}}) {
    EXPECT_FALSE(v.try_resize(points, sigpak::form::real)) << points;
    EXPECT_TRUE(v.empty());
    EXPECT_THROW(v.resize(points), std::bad_alloc);
  }
  v.resize(1);
  EXPECT_EQ(values(v), std::vector<TypeParam>{0});
}

TYPED_TEST(Record, LendsABuffer) {
  std::vector<TypeParam> samples = {1, 2, 3, 4};
  auto lent = TestFixture::record::lend(samples);
  EXPECT_TRUE(lent.is_lent());
  dspi_scale(lent, 2);
  EXPECT_EQ(samples[3], 8) << "in place where nothing is sized";
  lent.resize(5);
  EXPECT_FALSE(lent.is_lent());
  EXPECT_EQ(values(lent), (std::vector<TypeParam>{2, 4, 6, 8, 0}));
  EXPECT_EQ(TestFixture::record::lend(samples, 1, sigpak::form::complex).points(), 2u);
  const sigpak::span<TypeParam> most(samples.data(), (std::size_t{1} << 32) + 2);
  EXPECT_THROW(TestFixture::record::lend(most), std::bad_alloc) << "more than a record counts";
  const auto copied = TestFixture::record::of(samples);
  samples[0] = 0;
  EXPECT_EQ(copied[0], 2);
  EXPECT_EQ(values(TestFixture::record::of({7, 8})), (std::vector<TypeParam>{7, 8}));
}

TYPED_TEST(Record, ReturnsWhatAnOperationChanges) {
  auto v = TestFixture::counting(8), out = v;
  EXPECT_EQ(&dspi_scale(v, 2), &v);
  EXPECT_EQ(&dspb_add(v, v, out), &out);
  EXPECT_EQ(values(dspb_add(v, v)), values(out));
  EXPECT_EQ(dsps_sum(v)[0], 72);
  EXPECT_EQ(values(dspd_deci(v, 4, nullptr)), (std::vector<TypeParam>{2, 10}));
  EXPECT_EQ(values(dspd_rsmp(&v, v, v, 1, 8, nullptr)).size(), 1u) << "an operand that may be missing";
  EXPECT_DOUBLE_EQ(sigpak::dsp_window_enbw(DSP_WINDOW_HANN, 64), 1.5);
  EXPECT_EQ(sigpak::dsp_window_from_str("hann"), DSP_WINDOW_HANN);
}

TYPED_TEST(Record, FailsByExceptionOrByStatus) {
  auto v = TestFixture::counting(5);
  try {
    dspi_rfft(v);
    FAIL() << "five points are no power of two";
  } catch (const sigpak::failure& refused) {
    EXPECT_STREQ(refused.operation(), "dspi_rfft");
    EXPECT_NE(std::string(refused.what()).find("dspi_rfft"), std::string::npos);
  }
  EXPECT_EQ(sigpak::status::dspi_rfft(v), -1);
  EXPECT_EQ(sigpak::status::dspi_rdft(v), 0);
  EXPECT_THROW((void)sigpak::dsp_window_from_str("none of them"), sigpak::failure);
}

TYPED_TEST(Record, IsEmptyOnceAnOperationFoundNoStorage) {
  using c_type = typename TestFixture::record::c_type;
  using hook = std::int32_t (*)(c_type*, std::uint32_t, std::int32_t);
  auto v = TestFixture::counting(5);
  const hook refuse = [](c_type* grown, std::uint32_t, std::int32_t) -> std::int32_t {
    std::free(grown->data);
    grown->data = nullptr;
    return -1;
  };
  sigpak::dsp_lib_realloc(refuse, nullptr);
  EXPECT_THROW(dspi_rtoc(v), sigpak::failure);
  sigpak::dsp_lib_realloc(hook{}, nullptr);
  EXPECT_EQ(v.c_record()->points, 0u);
  EXPECT_EQ(dsps_sum(v)[0], 0);
}

TYPED_TEST(Record, ReadsFilesToTheirEnd) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::tmpfile(), &std::fclose);
  ASSERT_NE(file, nullptr);
  const auto v = TestFixture::counting(3);
  dspf_fwrite(v, file.get());
  std::rewind(file.get());
  typename TestFixture::record read;
  EXPECT_TRUE(dspf_fread(read, file.get()));
  EXPECT_EQ(values(read), values(v));
  EXPECT_FALSE(dspf_fread(read, file.get()));
  std::rewind(file.get());
  std::fputc(0, file.get());
  std::rewind(file.get());
  EXPECT_THROW(dspf_fread(read, file.get()), sigpak::failure);
}

}  // namespace
