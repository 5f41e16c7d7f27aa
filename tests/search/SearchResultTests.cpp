// SPDX-License-Identifier: MIT
#include "SearchResult.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace quorvane {
namespace {

std::string kindOf(std::string_view name, bool isDir = false)
{
    return std::string(rawValue(FileKindClassifier::classify(name, isDir)));
}

std::string sizeText(std::int64_t bytes)
{
    return SearchResultsFormatter::size(bytes).toStdString();
}

/// The text for a date so many days ago.
std::string ageText(double days)
{
    constexpr double now = 1'700'000'000'000.0;
    return SearchResultsFormatter::relativeDate(now - days * 86'400'000.0, now).toStdString();
}

TEST(FileKindClassifier, EveryExtensionHasItsKind)
{
    const struct
    {
        const char* kind;
        std::string_view extensions;
    } rows[] = {
        {"Video", "mp4 mkv mov avi webm m4v wmv flv "},
        {"Audio", "mp3 wav aac flac m4a ogg wma aiff "},
        {"Image", "jpg jpeg png gif heic svg webp tiff bmp ico raw "},
        {"Document", "doc docx txt md rtf odt pages xls xlsx ppt pptx csv "},
        {"PDF", "pdf "},
        {"Archive", "zip rar 7z tar gz bz2 xz "},
        {"Disk Image", "dmg iso img sparseimage sparsebundle "},
        {"Developer", "js ts jsx tsx py json html css scss swift java c cpp h go rs rb php vue "
                      "yaml yml sh bash zsh "},
        {"Application", "app appimage desktop "},
        {"Other", "psd exe numbers 3gp toolongtobeanextension "},
    };
    for (const auto& row : rows) {
        for (std::string_view rest = row.extensions; !rest.empty();) {
            const std::string extension(rest.substr(0, rest.find(' ')));
            rest.remove_prefix(extension.size() + 1);
            EXPECT_EQ(kindOf("a." + extension), row.kind) << extension;
            EXPECT_EQ(kindOf("a.b." + extension), row.kind) << extension;
        }
    }
}

TEST(FileKindClassifier, CaseDoesNotMatter)
{
    EXPECT_EQ(kindOf("A.TAR.GZ"), "Archive");
    EXPECT_EQ(kindOf("X.App"), "Application");
    EXPECT_EQ(kindOf("film.m\xE2\x84\xAAv"), "Video") << "the Kelvin sign is a capital k";
}

TEST(FileKindClassifier, AFolderIsAFolderUnlessItIsAnApplication)
{
    EXPECT_EQ(kindOf("photos.jpg", true), "Folder");
    EXPECT_EQ(kindOf("plain", true), "Folder");
    EXPECT_EQ(kindOf("", true), "Folder");
    EXPECT_EQ(kindOf("Mail.app", true), "Application");
    EXPECT_EQ(kindOf("Mail.app", false), "Application");
}

TEST(FileKindClassifier, APointAtTheStartBeginsNoExtension)
{
    EXPECT_EQ(kindOf(".png"), "Other");
    EXPECT_EQ(kindOf(".a.png"), "Image");
    EXPECT_EQ(kindOf(".app"), "Application");
    EXPECT_EQ(kindOf("png"), "Other");
    EXPECT_EQ(kindOf("png."), "Other");
    EXPECT_EQ(kindOf(""), "Other");
    EXPECT_EQ(kindOf("..."), "Other");
}

TEST(FileKindClassifier, BytesThatAreNotTextHaveAnExtensionAllTheSame)
{
    EXPECT_EQ(kindOf("\xFF\xFE.JPG"), "Image");
    EXPECT_EQ(kindOf("a.\xFF"), "Other");
}

TEST(FileKindClassifier, TheKindsOfFiltersHaveTheSameNames)
{
    for (const SearchFilterKind kind : allSearchFilterKinds) {
        std::string name(rawValue(resultKind(kind)));
        for (char& c : name) {
            c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        }
        EXPECT_EQ(name, rawValue(kind));
    }
}

TEST(SearchResultsFormatter, SizesStepBy1024)
{
    EXPECT_EQ(sizeText(0), "0 B");
    EXPECT_EQ(sizeText(1), "1.0 B");
    EXPECT_EQ(sizeText(1023), "1023.0 B");
    EXPECT_EQ(sizeText(1024), "1.0 KB");
    EXPECT_EQ(sizeText(1536), "1.5 KB");
    EXPECT_EQ(sizeText(1280), "1.2 KB") << "1.25 goes to the even digit";
    EXPECT_EQ(sizeText(std::int64_t{1} << 20), "1.0 MB");
    EXPECT_EQ(sizeText(std::int64_t{1} << 30), "1.0 GB");
    EXPECT_EQ(sizeText(std::int64_t{1} << 40), "1.0 TB");
    EXPECT_EQ(sizeText(std::int64_t{1} << 60), "1048576.0 TB");
    EXPECT_EQ(sizeText(std::numeric_limits<std::int64_t>::max()), "8388608.0 TB");
}

TEST(SearchResultsFormatter, ANegativeSizeEndsTheProgram)
{
    EXPECT_DEATH(sizeText(-1), "SearchResultsFormatter.size");
}

TEST(SearchResultsFormatter, AgesCountInTheLargestUnit)
{
    EXPECT_EQ(ageText(0), "Today");
    EXPECT_EQ(ageText(0.99), "Today");
    EXPECT_EQ(ageText(1), "Yesterday");
    EXPECT_EQ(ageText(2), "2 days ago");
    EXPECT_EQ(ageText(6.9), "6 days ago");
    EXPECT_EQ(ageText(7), "1 weeks ago");
    EXPECT_EQ(ageText(29), "4 weeks ago");
    EXPECT_EQ(ageText(30), "1 months ago");
    EXPECT_EQ(ageText(364), "12 months ago");
    EXPECT_EQ(ageText(400), "1 years ago");
    EXPECT_EQ(ageText(800), "2 years ago");
}

TEST(SearchResultsFormatter, ADateInTheFutureCountsDaysBackwards)
{
    EXPECT_EQ(ageText(-0.5), "Today");
    EXPECT_EQ(ageText(-3), "-3 days ago");
}

TEST(SearchResultsFormatter, NoDateHasNoText)
{
    EXPECT_TRUE(SearchResultsFormatter::relativeDate(0, 1e12).isEmpty());
    EXPECT_TRUE(SearchResultsFormatter::relativeDate(-5, 1e12).isEmpty());
    // A date beyond all years harms nothing.
    EXPECT_FALSE(SearchResultsFormatter::relativeDate(1e300, 1e12).isEmpty());
}

TEST(SearchFilters, LimitsOfSizeAreStrictAndThatOfAgeIsNot)
{
    SearchFilters filters;
    EXPECT_TRUE(filters.pass(0, 0));
    filters = {100, 200, 5.0};
    EXPECT_FALSE(filters.pass(100, 5));
    EXPECT_TRUE(filters.pass(101, 5));
    EXPECT_TRUE(filters.pass(199, 5));
    EXPECT_FALSE(filters.pass(200, 5));
    EXPECT_FALSE(filters.pass(150, 4.999));
}

} // namespace
} // namespace quorvane
