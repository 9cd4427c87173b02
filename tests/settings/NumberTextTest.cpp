#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>

#include "settings/NumberText.h"
#include "settings/Printing.h"

namespace lumirra {
namespace {

QString Q(const char* text) {
    return QString::fromUtf8(text);
}

TEST(NumberText, IntegerTakesASignAndDigitsOnly) {
    const std::pair<const char*, long long> good[] = {
        {"0", 0}, {"+5", 5}, {"007", 7}, {"-3", -3}, {"-0", 0}};
    for (const auto& [text, value] : good) {
        EXPECT_EQ(ParseInteger(Q(text)), value) << text;
    }
    EXPECT_EQ(ParseInteger(Q("99999999999999999999")), std::numeric_limits<long long>::max());
    EXPECT_EQ(ParseInteger(Q("-99999999999999999999")), std::numeric_limits<long long>::min());
    for (const char* text :
         {"", "+", "-", "--1", "1 ", " 1", "12.5", "1e3", "0x10", "1,000", "٣"}) {
        EXPECT_FALSE(ParseInteger(Q(text))) << text;
    }
}

TEST(NumberText, DecimalTakesTheWholeTextWhateverTheProcessLocale) {
    const char* old = std::setlocale(LC_ALL, nullptr);
    const std::string before = old != nullptr ? old : "C";
    // Not installed everywhere; where it is, a point must still be the decimal point.
    std::setlocale(LC_ALL, "de_DE.UTF-8");
    const std::pair<const char*, float> good[] = {
        {"2.5", 2.5F}, {"+.5", 0.5F},       {"-1e-3", -1e-3F},  {"0x10", 16.0F},
        {"5.", 5.0F},  {"1e60", HUGE_VALF}, {"inf", HUGE_VALF}, {"-INFINITY", -HUGE_VALF}};
    for (const auto& [text, value] : good) {
        EXPECT_EQ(ParseDecimal(Q(text)), value) << text;
    }
    ASSERT_TRUE(ParseDecimal(Q("nan")));
    EXPECT_TRUE(std::isnan(*ParseDecimal(Q("nan"))));
    for (const char* text :
         {"", " 1", "1 ", "1\n", "\t1", "1,5", "0.1s", "--1", ".", "e5", "１", "1\u00a0"}) {
        EXPECT_FALSE(ParseDecimal(Q(text))) << text;
    }
    EXPECT_FALSE(ParseDecimal(QStringLiteral("1") + QChar(0)));
    std::setlocale(LC_ALL, before.c_str());
}

TEST(NumberText, FieldNumberReadsTheBeginning) {
    EXPECT_EQ(FieldNumber(Q("12.5 px")), 12.5);
    EXPECT_EQ(FieldNumber(Q("abc")), 0);
    EXPECT_EQ(FieldNumber(Q("nan")), 0);
    EXPECT_TRUE(std::isinf(FieldNumber(Q("inf"))));
}

// The C library's own formatting, in the C locale, is the oracle.
TEST(NumberText, FormatsLikePrintf) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> exponent(-12, 12);
    for (int i = 0; i < 2000; ++i) {
        const double value = std::pow(10.0, exponent(random)) * (i % 2 == 0 ? 1 : -1);
        char text[400];
        std::snprintf(text, sizeof text, "%.1f", value);
        EXPECT_EQ(FieldNumber(FixedText(value, 1)), FieldNumber(Q(text)));
        std::snprintf(text, sizeof text, "%.6g", value);
        EXPECT_TRUE(PointText(value, 6) == Q(text) || PointText(value, 6) == Q(text) + Q(".0"));
        std::snprintf(text, sizeof text, "%.15g", value);
        EXPECT_TRUE(PointText(value, 15).startsWith(Q(text)));
        EXPECT_EQ(ParseDecimal(PlainText(static_cast<float>(value))), static_cast<float>(value));
    }
    EXPECT_EQ(PointText(20, 6), Q("20.0"));
    EXPECT_EQ(PointText(static_cast<double>(0.2F), 6), Q("0.2"));
    EXPECT_EQ(PointText(static_cast<double>(1.0F / 3), 6), Q("0.333333"));
    EXPECT_EQ(PointText(1234567, 6), Q("1.23457e+06"));
    EXPECT_EQ(PointText(1, 15), Q("1.0"));
    EXPECT_EQ(FixedText(-0.04, 1), Q("0.0"));
    EXPECT_EQ(PlainText(46.875F), Q("46.875"));
    EXPECT_EQ(PlainText(80), Q("80"));
}

}  // namespace
}  // namespace lumirra
