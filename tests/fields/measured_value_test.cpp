// Conversion, formatting and parsing of measured values, and the characters that fields accept.
#include "paper/fields/measured_value.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "paper/fields/numeric_field.h"

namespace kestrel {
namespace {

TEST(MeasuredValue, ConversionAddsHalfTheDivisor) {
  EXPECT_EQ(ConvertMeasure(580, kMillimetre, kInch, 203), 2283);
  EXPECT_EQ(ConvertMeasure(2283, kInch, kMillimetre, 203), 580);
  EXPECT_EQ(ConvertMeasure(99, kDot, kMillimetre, 203), 124);
  EXPECT_EQ(ConvertMeasure(99, kDot, kInch, 203), 488);
  EXPECT_EQ(ConvertMeasure(30, kMillimetre, kDot, 203), 24);
  EXPECT_EQ(ConvertMeasure(1000, kInch, kDot, 305), 305);
  EXPECT_EQ(ConvertMeasure(77, kDot, kPlain, 203), 77);
  EXPECT_EQ(ConvertMeasure(77, kDot, kMillimetre, 0), 77) << "without a density";
  // A quotient below 0 is truncated too; a result may exceed 16 bits.
  EXPECT_EQ(ConvertMeasure(-580, kMillimetre, kInch, 203), -2282);
  EXPECT_EQ(ConvertMeasure(32767, kMillimetre, kInch, 203), 129004);
}

TEST(MeasuredValue, FormatHasTheDecimalsOfTheUnit) {
  const auto format = [](int value, int unit) {
    WCHAR text[kMeasureTextLength];
    const int length = FormatMeasure(text, value, unit);
    return std::u16string(text, static_cast<size_t>(length));
  };
  EXPECT_EQ(format(580, kMillimetre), u"58.0");
  EXPECT_EQ(format(-5, kMillimetre), u"-0.5");
  EXPECT_EQ(format(40, kInch), u"0.040");
  EXPECT_EQ(format(INT_MIN, kInch), u"-2147483.648");
}

TEST(MeasuredValue, ParseScalesTheNumberAtTheStartOfTheText) {
  EXPECT_EQ(ParseMeasure(u"\t 58", 1), 580);
  EXPECT_EQ(ParseMeasure(u"58.25", 1), 582);  // further digits are dropped
  EXPECT_EQ(ParseMeasure(u"-.5", 1), -5);
  EXPECT_EQ(ParseMeasure(u"--1.5", 1), 5);  // the second sign applies to the integer part
  EXPECT_EQ(ParseMeasure(nullptr, 1), 0);
  EXPECT_EQ(ParseMeasure(u"2147484", 3), INT_MAX);
  EXPECT_EQ(ParseMeasure(u"-4294967296", 3), INT_MIN);
  EXPECT_EQ(ParseMeasure(u"1.5", 6), 0);
}

TEST(MeasuredValue, EveryFormattedValueIsParsedAgain) {
  for (const int unit : {kMillimetre, kInch, kDot, kPlain}) {
    for (int value = SHRT_MIN; value <= SHRT_MAX; ++value) {
      WCHAR text[kMeasureTextLength];
      FormatMeasure(text, value, unit);
      ASSERT_EQ(ParseMeasure(text, DecimalsOf(unit)), value) << "unit " << unit;
    }
  }
}

TEST(MeasuredValue, TextLimitFitsTheLongerBound) {
  EXPECT_EQ(MeasureTextLimit(100, 1630, kMillimetre), 5);
  EXPECT_EQ(MeasureTextLimit(-5, 5, kMillimetre), 4);
  EXPECT_EQ(MeasureTextLimit(0, 12345, kInch), 6);
}

TEST(FieldTyping, AcceptsDigitsAndOnePointOrMinus) {
  for (const char16_t* text : {u"5.5", u" 7.", u".5", u"", u"09"})
    EXPECT_TRUE(IsMeasureTyping(text, kMillimetre)) << testing::PrintToString(text);
  for (const char16_t* text : {u"5.5.", u"4. 5", u"4 ", u"-4", u"4x", u"/", u":"})
    EXPECT_FALSE(IsMeasureTyping(text, kInch)) << testing::PrintToString(text);
  EXPECT_FALSE(IsMeasureTyping(u"5.5", kDot));
  for (const char16_t* text : {u"-12", u"09", u"-", u"5-3", u""})
    EXPECT_TRUE(IsPlainTyping(text)) << testing::PrintToString(text);
  for (const char16_t* text : {u"1.5", u"1a", u" 1", u"/", u":"})
    EXPECT_FALSE(IsPlainTyping(text)) << testing::PrintToString(text);
}

TEST(FieldTyping, WholeNumberHasDigitsAfterAtMostOneMinus) {
  int number = 0;
  EXPECT_TRUE(ParseWholeNumber(u"007", &number));
  EXPECT_EQ(number, 7);
  EXPECT_TRUE(ParseWholeNumber(u"-99999999999", &number));
  EXPECT_EQ(number, INT_MIN);
  for (const char16_t* text : {u"", u"-", u"--5", u"5-3", u"+3", u"-+3", u" 12", u"12 "})
    EXPECT_FALSE(ParseWholeNumber(text, &number)) << testing::PrintToString(text);
  EXPECT_EQ(number, INT_MIN) << "other texts leave the number unchanged";
}

}  // namespace
}  // namespace kestrel
