#include "paper/fields/measured_value.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>

namespace kestrel {
namespace {

constexpr int kLeast = -32768;
constexpr int kMost = 32767;

TEST(MeasuredValue, ConvertsWithHalfTheDivisorAdded) {
  constexpr struct {
    int value, from, to, dpi, expected;
  } kCases[] = {
      {580, kMillimetre, kInch, 203, 2283},
      {2283, kInch, kMillimetre, 203, 580},
      {99, kDot, kMillimetre, 203, 124},
      {99, kDot, kMillimetre, 305, 82},
      {99, kDot, kInch, 203, 488},
      {99, kDot, kInch, 305, 325},
      {30, kMillimetre, kDot, 203, 24},
      {30, kMillimetre, kDot, 305, 36},
      {1000, kInch, kDot, 203, 203},
      {1000, kInch, kDot, 305, 305},
      // Half of an odd density is cut: 101, not 101.5.
      {1, kDot, kInch, 203, 5},
      {0, kMillimetre, kInch, 203, 0},
      {0, kDot, kMillimetre, 305, 0},
      // Negative values are cut towards 0, as integer division does.
      {-1, kMillimetre, kInch, 203, -3},
      {-580, kMillimetre, kInch, 203, -2282},
      {-5, kInch, kMillimetre, 203, 0},
      // The ends of a stored field.
      {kMost, kMillimetre, kInch, 203, 129004},
      {kLeast, kMillimetre, kInch, 203, -129007},
      {kMost, kInch, kMillimetre, 203, 8323},
      {kLeast, kInch, kMillimetre, 203, -8322},
      {kMost, kMillimetre, kDot, 305, 39346},
      {kLeast, kDot, kMillimetre, 203, -40999},
      {kMost, kDot, kInch, 305, 107433},
      // Nothing to convert.
      {77, kInch, kInch, 203, 77},
      {77, kPlain, kInch, 203, 77},
      {77, kDot, kPlain, 203, 77},
      {77, kMillimetre, 9, 203, 77},
      {77, -1, kDot, 203, 77},
      {77, kDot, kMillimetre, 0, 77},
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
      {580, kMillimetre, u"58.0"},
      {5, kMillimetre, u"0.5"},
      {0, kMillimetre, u"0.0"},
      {-5, kMillimetre, u"-0.5"},
      {-123, kMillimetre, u"-12.3"},
      {2283, kInch, u"2.283"},
      {40, kInch, u"0.040"},
      {0, kInch, u"0.000"},
      {10000, kInch, u"10.000"},
      {kLeast, kInch, u"-32.768"},
      {0, kDot, u"0"},
      {-999, kPlain, u"-999"},
      {kMost, kDot, u"32767"},
      {INT32_MIN, kInch, u"-2147483.648"},
      {INT32_MAX, 77, u"2147483647"},
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
      {u"58", 1, 580},      {u"58.25", 1, 582},  // dropped, not rounded
      {u"2.5", 3, 2500},    {u" -3", 0, -3},        {u"1.23456", 3, 1234},
      {u"12mm", 1, 120},    {u"12mm", 3, 12000},    {u"", 1, 0},
      {u"mm", 1, 0},        {u"\t 7", 0, 7},        {u"- 7", 0, 0},
      {u"+7", 1, 70},       {u".5", 1, 5},          {u"-.5", 1, -5},
      {u"-0.5", 3, -500},   {u"5.", 3, 5000},       {u"1.2.3", 3, 1200},
      {u"1.9", 0, 1},       {u"--5", 0, 5},  // the second sign belongs to the number
      {u"-+5", 0, -5},      {u"5-3", 0, 5},         {u"１２", 0, 0},
      {u"1", 5, 100000},    {u"1.5", 6, 0},         {u"4294967296", 0, INT32_MAX},
      {u"32768", 0, 32768}, {u"-32768", 0, -32768},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(ParseMeasure(c.text, c.decimals), c.expected)
        << testing::PrintToString(std::u16string(c.text)) << " with " << c.decimals;
  }
  EXPECT_EQ(ParseMeasure(nullptr, 1), 0);
}

TEST(MeasuredValue, EveryStoredValueSurvivesItsText) {
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
      {100, 1630, kMillimetre, 5}, {0, 80, kMillimetre, 3},  {0, 9, kMillimetre, 3},
      {0, 0, kMillimetre, 3},      {394, 6417, kInch, 5},    {0, 315, kInch, 5},
      {0, 99, kInch, 5},           {0, 12345, kInch, 6},     {-300, 300, kDot, 4},
      {0, 0, kPlain, 1},           {-9999, 9999, kPlain, 5}, {-9999, 5, kPlain, 5},
      {27, 550, kDot, 3},          {-5, 5, kMillimetre, 4},  {-40, 99, kPlain, 3},
      {kLeast, kMost, kPlain, 6},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(MeasureTextLimit(c.minimum, c.maximum, c.unit), c.expected)
        << c.minimum << ".." << c.maximum << " in " << c.unit;
  }
}

}  // namespace
}  // namespace kestrel
