#include "paper/fields/measured_value.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>

namespace kestrel {
namespace {

constexpr int kLeast = -32768;
constexpr int kMost = 32767;
constexpr int mm = kMillimetre;
constexpr int in = kInch;

TEST(MeasuredValue, ConvertsWithHalfTheDivisorAdded) {
  constexpr struct {
    int value, from, to, dpi, expected;
  } kCases[] = {
      {580, mm, in, 203, 2283},     {2283, in, mm, 203, 580},        {99, kDot, mm, 203, 124},
      {99, kDot, mm, 305, 82},      {99, kDot, in, 203, 488},        {30, mm, kDot, 203, 24},
      {1000, in, kDot, 305, 305},   {1, kDot, in, 203, 5},           {-580, mm, in, 203, -2282},
      {kMost, mm, in, 203, 129004}, {kLeast, kDot, mm, 203, -40999}, {77, kPlain, in, 203, 77},
      {77, kDot, kPlain, 203, 77},  {77, -1, kDot, 203, 77},         {77, kDot, mm, 0, 77},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(ConvertMeasure(c.value, c.from, c.to, c.dpi), c.expected)
        << c.value << " from " << c.from << " to " << c.to << " at " << c.dpi;
  }
}

TEST(MeasuredValue, FormatsWithTheDecimalsOfItsUnit) {
  const struct {
    int value, unit;
    std::u16string expected;
  } kCases[] = {
      {580, mm, u"58.0"},       {5, mm, u"0.5"},
      {-5, mm, u"-0.5"},        {40, in, u"0.040"},
      {kLeast, in, u"-32.768"}, {0, kDot, u"0"},
      {-999, kPlain, u"-999"},  {INT32_MIN, in, u"-2147483.648"},
  };
  for (const auto& c : kCases) {
    WCHAR text[kMeasureTextLength];
    std::fill(std::begin(text), std::end(text), u'#');
    EXPECT_EQ(FormatMeasure(text, c.value, c.unit), static_cast<int>(c.expected.size()));
    EXPECT_EQ(text, c.expected);
  }
}

TEST(MeasuredValue, ParsesUpToWhatIsNoNumber) {
  constexpr struct {
    const WCHAR* text;
    int decimals, expected;
  } kCases[] = {
      {u"58", 1, 580},       {u"58.25", 1, 582}, {u"2.5", 3, 2500},  {u" -3", 0, -3},
      {u"1.23456", 3, 1234}, {u"", 1, 0},        {u"\t 7", 0, 7},    {u"+7", 1, 70},
      {u".5", 1, 5},         {u"-.5", 1, -5},    {u"-0.5", 3, -500}, {u"5.", 3, 5000},
      {u"1.9", 0, 1},        {u"1", 5, 100000},  {u"1.5", 6, 0},     {u"1.99999999", 5, 199999},
      {u"--5", 0, 5},        {u"-+5", 0, -5},    {u"+-1.5", 1, 0},   {u"--1.5", 1, 5},
      {u"32768", 0, 32768},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(ParseMeasure(c.text, c.decimals), c.expected)
        << testing::PrintToString(std::u16string(c.text)) << " with " << c.decimals;
  }
  EXPECT_EQ(ParseMeasure(nullptr, 1), 0);
  for (const WCHAR* beyond : {u"4294967296", u"2147483.648", u"2147484"}) {
    EXPECT_EQ(ParseMeasure(beyond, 3), INT32_MAX);
  }
  EXPECT_EQ(ParseMeasure(u"-2147484", 3), INT32_MIN);
  EXPECT_EQ(ParseMeasure(u"１２", 0), 0);
  for (int unit : {kMillimetre, kInch, kDot, kPlain}) {
    for (int value = kLeast; value <= kMost; ++value) {
      WCHAR text[kMeasureTextLength];
      FormatMeasure(text, value, unit);
      ASSERT_EQ(ParseMeasure(text, DecimalsOf(unit)), value) << "unit " << unit;
    }
  }
}

TEST(MeasuredValue, LimitsTheTextByItsWidestBound) {
  constexpr struct {
    int minimum, maximum, unit, expected;
  } kCases[] = {
      {100, 1630, mm, 5},    {0, 80, mm, 3},       {0, 9, mm, 3},     {-5, 5, mm, 4},
      {394, 6417, in, 5},    {0, 315, in, 5},      {0, 12345, in, 6}, {-300, 300, kDot, 4},
      {27, 550, kDot, 3},    {0, 0, kPlain, 1},    {0, 9, kPlain, 1}, {0, 10, kPlain, 2},
      {-9999, 5, kPlain, 5}, {-40, 99, kPlain, 3},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(MeasureTextLimit(c.minimum, c.maximum, c.unit), c.expected)
        << c.minimum << ".." << c.maximum << " in " << c.unit;
  }
}

}  // namespace
}  // namespace kestrel
