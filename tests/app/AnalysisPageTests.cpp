// SPDX-License-Identifier: MIT
#include "AnalysisView.h"

#include <gtest/gtest.h>

namespace quorvane {
namespace {

TEST(AnalysisPage, ARunningScanComesBeforeEverything)
{
    for (const bool hasError : {false, true}) {
        for (const bool hasScan : {false, true}) {
            EXPECT_EQ(analysisPage(true, hasError, hasScan), AnalysisPage::progress);
        }
    }
}

TEST(AnalysisPage, AnErrorComesBeforeAResult)
{
    EXPECT_EQ(analysisPage(false, true, true), AnalysisPage::error);
    EXPECT_EQ(analysisPage(false, true, false), AnalysisPage::error);
}

TEST(AnalysisPage, WithoutAScanTheWelcomeStays)
{
    EXPECT_EQ(analysisPage(false, false, true), AnalysisPage::result);
    EXPECT_EQ(analysisPage(false, false, false), AnalysisPage::welcome);
}

} // namespace
} // namespace quorvane
