// SPDX-License-Identifier: MIT
#include "ScanSnapshot.h"

#include <QLocale>

#include <gtest/gtest.h>

#include <limits>

namespace quorvane {
namespace {

ScanSnapshot sample()
{
    ScanSnapshot snapshot;
    snapshot.id = QUuid::fromString(QLatin1String("0F8FAD5B-D9CB-469F-A165-70867728950E"));
    snapshot.date = 775943520.25;
    snapshot.rootPath = "/Users/mära";
    snapshot.rootBytes = 300000;
    snapshot.items = {{"/Movies/x.mov", 200000}, {"/a \"b\".bin", 65536}};
    return snapshot;
}

/// Written by hand after the description of the form.
const std::string sampleJson =
    R"({"date":775943520.25,"id":"0F8FAD5B-D9CB-469F-A165-70867728950E","items":)"
    R"([{"bytes":200000,"path":"\/Movies\/x.mov"},{"bytes":65536,"path":"\/a \"b\".bin"}],)"
    R"("rootBytes":300000,"rootPath":"\/Users\/mära"})";

std::string replaced(std::string text, std::string_view from, std::string_view to)
{
    const std::size_t place = text.find(from);
    EXPECT_NE(place, text.npos) << from;
    return text.replace(place, from.size(), to);
}

TEST(ScanSnapshot, IsStoredToTheLetter)
{
    EXPECT_EQ(encodeSnapshot(sample()), sampleJson);
    ScanSnapshot empty;
    empty.date = 7.52e8;
    empty.rootPath = "/";
    EXPECT_EQ(encodeSnapshot(empty),
              R"({"date":752000000,"id":"00000000-0000-0000-0000-000000000000","items":[],)"
              R"("rootBytes":0,"rootPath":"\/"})");
}

TEST(ScanSnapshot, IsReadAsItWasStoredDateIncluded)
{
    EXPECT_EQ(decodeSnapshot(sampleJson), sample());
    EXPECT_EQ(decodeSnapshotHeading(sampleJson), static_cast<SnapshotHeading>(sample()));
    ScanSnapshot now = sample();
    for (const double date : {snapshotDateNow(), 0.1, -1e300, 5e-324}) {
        now.date = date;
        EXPECT_EQ(decodeSnapshot(encodeSnapshot(now)), now) << date;
    }
}

TEST(ScanSnapshot, KeysInAnotherOrderAndOthersBesideThemAreRead)
{
    EXPECT_EQ(
        decodeSnapshot(R"({ "rootPath":"/Users/m\u00e4ra", "version":{"of":[1,null]}, "items":)"
                       R"([ {"path":"/Movies/x.mov","bytes":200000,"hash":"x"} , )"
                       R"({"bytes":65536,"path":"/a \"b\".bin"}],"rootBytes":300000,)"
                       R"("id":"0F8FAD5B-D9CB-469F-A165-70867728950E","date":7.7594352025e8 } )"),
        sample());
}

TEST(ScanSnapshot, ABrokenTextIsNone)
{
    const std::pair<const char*, const char*> changes[] = {
        {R"("date":775943520.25,)", ""},
        {R"("id":"0F8FAD5B-D9CB-469F-A165-70867728950E",)", ""},
        {R"("rootBytes":300000,)", ""},
        {R"(,"rootPath":"\/Users\/mära")", ""},
        {R"("bytes":65536,)", ""},
        {R"(,"path":"\/a \"b\".bin")", ""},
        {"775943520.25", "\"today\""},
        {"775943520.25", "1e999"},
        {"0F8FAD5B", "0f8fad5b"},
        {"0F8FAD5B-D9CB-469F-A165-70867728950E", "1"},
        {":65536", ":65536.5"},
        {":65536", ":-65536"},
        {":300000", ":-1"},
        {":300000", ":9223372036854775808"},
        {R"("rootBytes":300000,)", R"("rootBytes":300000,"rootBytes":300000,)"},
        {"}]", "},]"},
        {"}]", "}"},
        {"mära", "m\xE4ra"},
    };
    for (const auto& [from, to] : changes) {
        const std::string broken = replaced(sampleJson, from, to);
        EXPECT_FALSE(decodeSnapshot(broken)) << from << " to " << to;
        EXPECT_FALSE(decodeSnapshotHeading(broken)) << from << " to " << to;
    }
    for (std::size_t length = 0; length < sampleJson.size(); ++length) {
        ASSERT_FALSE(decodeSnapshotHeading(std::string_view(sampleJson).substr(0, length)))
            << length;
    }
    EXPECT_FALSE(decodeSnapshot(sampleJson + "x"));
}

TEST(ScanSnapshot, DatesReadInTheMediumFormOfTheLocale)
{
    // 2025-08-03 21:12:00 on the machine's clock.
    const QDateTime time(QDate(2025, 8, 3), QTime(21, 12));
    SnapshotHeading heading;
    heading.date = static_cast<double>(time.toSecsSinceEpoch() - 978307200);
    EXPECT_EQ(heading.formattedDate(QLocale(QLatin1String("en_US"))),
              QStringLiteral("Aug 3, 2025 at 9:12 PM"));
    EXPECT_EQ(heading.formattedDateOnly(QLocale(QLatin1String("en_US"))),
              QStringLiteral("Aug 3, 2025"));
    EXPECT_EQ(heading.formattedDay(QLocale(QLatin1String("en_US"))), QStringLiteral("Aug 3"));
    EXPECT_EQ(heading.formattedDay(QLocale(QLatin1String("de_DE"))), QStringLiteral("3. Aug."));
    EXPECT_EQ(heading.formattedDate(QLocale(QLatin1String("en_GB"))),
              QStringLiteral("3 Aug 2025 at 21:12"));
    EXPECT_EQ(heading.formattedDate(QLocale(QLatin1String("de_DE"))),
              QStringLiteral("3. Aug. 2025, 21:12"));
}

TEST(ScanSnapshot, AnyDateCanBeShown)
{
    for (const double date : {1e300, -1e300, 0.0, std::numeric_limits<double>::max()}) {
        SnapshotHeading heading;
        heading.date = date;
        EXPECT_FALSE(heading.formattedDate(QLocale::c()).isEmpty()) << date;
    }
}

} // namespace
} // namespace quorvane
