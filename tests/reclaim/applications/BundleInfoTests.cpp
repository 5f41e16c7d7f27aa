// SPDX-License-Identifier: MIT
#include "BundleInfo.h"

#include "PropertyLists.h"

#include <gtest/gtest.h>

namespace quorvane {
namespace {

TEST(BundleInfo, ReadsTheIdentifierOfAnXmlList)
{
    EXPECT_EQ(readBundleInfo(test::xmlList("org.example.App")).identifier, "org.example.App");
}

TEST(BundleInfo, ReadsTheIdentifierOfABinaryList)
{
    EXPECT_EQ(readBundleInfo(test::binaryList("org.example.App")).identifier, "org.example.App");
}

TEST(BundleInfo, AnEmptyIdentifierIsThereAndEmpty)
{
    EXPECT_EQ(readBundleInfo(test::xmlList("")).identifier, "");
}

TEST(BundleInfo, WhatIsNoListHasNoIdentifier)
{
    for (const std::string_view text :
         {"", "bplist00", "bplist", "<plist>", "<?xml version=\"1.0\"?><plist><array/></plist>",
          "<?xml version=\"1.0\"?><plist><dict><key>CFBundleIdentifier</key><integer>1</integer>"
          "</dict></plist>",
          "not a list at all"}) {
        EXPECT_EQ(readBundleInfo(text).identifier, std::nullopt) << text;
    }
}

TEST(BundleInfo, AListBeyondTheLimitIsNotRead)
{
    std::string list = test::xmlList("org.example.App");
    list.append(maxPropertyListBytes, ' ');
    EXPECT_EQ(readBundleInfo(list).identifier, std::nullopt);
}

TEST(BundleInfo, AHundredThousandListsInsideOneAnotherDoNotEndTheProgram)
{
    EXPECT_EQ(readBundleInfo(test::nestedBinaryList(100000, 1)).identifier, std::nullopt);
}

TEST(BundleInfo, AFewBytesThatStandForBillionsOfObjectsAreNotBuilt)
{
    EXPECT_EQ(readBundleInfo(test::nestedBinaryList(60, 2)).identifier, std::nullopt);
}

} // namespace
} // namespace quorvane
