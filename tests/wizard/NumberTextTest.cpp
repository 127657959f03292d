// Numbers typed into the wizard's boxes and the forms they are shown in.
#include "wizard/NumberText.h"

#include <gtest/gtest.h>

namespace railwright::wizard {
namespace {

TEST(NumberText, TextThatIsNotAWholeNumberCountsAsZero) {
    struct Case {
        const char* text;
        double real;
        int32_t whole;
    };
    for (const Case& test : {
             Case{"12", 12, 12},
             Case{" 3.7 ", 3.7, 4},
             Case{"+2.5", 2.5, 2},
             Case{"3.5", 3.5, 4},
             Case{"-2.5", -2.5, -2},
             Case{"-3.5", -3.5, -4},
             Case{".5", 0.5, 0},
             Case{"1.5", 1.5, 2},
             Case{"7.", 7, 7},
             Case{"1e2", 100, 100},
             Case{"2E-1", 0.2, 0},
             Case{"", 0, 0},
             Case{"abc", 0, 0},
             Case{"12abc", 0, 0},
             Case{"1,5", 0, 0},
             Case{".", 0, 0},
             Case{"-", 0, 0},
             Case{"1e", 0, 0},
             Case{"inf", 0, 0},
             Case{"nan", 0, 0},
             Case{"0x10", 0, 0},
             Case{"1e999", 0, 0},
             Case{"3000000000", 3e9, 0},
         }) {
        EXPECT_EQ(RealValue(test.text), test.real) << test.text;
        EXPECT_EQ(WholeNumber(test.text), test.whole) << test.text;
    }
    // Beyond the single range: 0.
    EXPECT_EQ(SingleValue("1e39"), 0.0f);
    EXPECT_EQ(SingleValue("1e38"), 1e38f);
}

TEST(NumberText, DisplayFormsRoundHalfAwayFromZeroOnTheTypedDigits) {
    struct Case {
        float value;
        int minDecimals;
        int maxDecimals;
        const char* text;
    };
    for (const Case& test : {
             Case{12.345f, 1, 2, "12.35"},
             Case{2.675f, 1, 2, "2.68"},
             Case{0.125f, 1, 2, "0.13"},
             Case{100, 1, 2, "100.0"},
             Case{100, 1, 1, "100.0"},
             Case{99.95f, 1, 1, "100.0"},
             Case{0.5f, 1, 3, "0.5"},
             Case{0.4572f, 1, 3, "0.457"},
             Case{9.9996f, 1, 3, "10.0"},
             Case{-3, 1, 2, "-3.0"},
             Case{-0.001f, 1, 2, "0.0"},
             Case{123456.7f, 1, 1, "123456.7"},
         }) {
        EXPECT_EQ(DecimalText(test.value, test.minDecimals, test.maxDecimals), test.text)
            << test.value;
    }
    EXPECT_EQ(RealBoxText(0.0f, 1, 2), "Default");
    EXPECT_EQ(RealBoxText(-0.0f, 1, 2), "Default");
}

}  // namespace
}  // namespace railwright::wizard
