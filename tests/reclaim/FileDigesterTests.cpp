// SPDX-License-Identifier: MIT
#include "FileDigester.h"

#include "FinderFixture.h"
#include "HeadTable.h"

#include <QByteArray>
#include <QCryptographicHash>

namespace quorvane::DuplicateFinder {
namespace {

using test::MemoryContents;
using test::nodeAt;
using test::textOf;
using test::treeFromText;

QByteArray hexOf(const Digest& digest)
{
    return QByteArray(reinterpret_cast<const char*>(digest.data()),
                      static_cast<qsizetype>(digest.size()))
        .toHex();
}

/// By the other implementation that is at hand.
QByteArray expectedHex(const std::string& bytes)
{
    return QCryptographicHash::hash(QByteArray::fromStdString(bytes), QCryptographicHash::Sha256)
        .toHex();
}

std::span<const std::byte> bytesOf(const std::string& text)
{
    return std::as_bytes(std::span(text));
}

TEST(Sha256, GivesTheDigestsOfTheStandard)
{
    Sha256 hash;
    hash.start();
    EXPECT_EQ(hexOf(hash.finish().value()),
              "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    hash.start();
    hash.update(bytesOf("a"));
    hash.update(bytesOf("bc"));
    EXPECT_EQ(hexOf(hash.finish().value()),
              "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

TEST(Sha256, HasNoDigestWithoutAStart)
{
    Sha256 hash;
    EXPECT_FALSE(hash.finish());
    hash.start();
    EXPECT_TRUE(hash.finish());
    EXPECT_FALSE(hash.finish());
}

TEST(FileDigester, ValuesOfThePasses)
{
    EXPECT_EQ(defaultMinimumBytes, 1024);
    EXPECT_EQ(wholeSampleBytes, 524288);
    EXPECT_EQ(endSampleBytes, 262144);
    EXPECT_EQ(leastSampleBytes, 16);
    EXPECT_EQ(blockBytes, 1048576);
}

class FileDigesterTest : public ::testing::Test
{
protected:
    const FileNode& node(std::size_t scannedBytes, std::string bytes)
    {
        m_tree = treeFromText("f " + std::to_string(scannedBytes) + "\n");
        m_contents.file("/scan/f").bytes = std::move(bytes);
        return nodeAt(m_tree->root(), "f");
    }

    std::shared_ptr<FileTree> m_tree;
    MemoryContents m_contents;
    FileDigester m_digester{FileSystemCalls::system(), m_contents, 2'000'000'000};
};

TEST_F(FileDigesterTest, SampleOfASmallFileIsTheWhole)
{
    for (const std::size_t bytes : {16U, 4095U, 4096U, 4097U, 300000U, 524287U, 524288U}) {
        const std::string text = textOf('q', bytes);
        const std::optional<Sample> sample = m_digester.partialDigest(node(bytes, text));
        ASSERT_TRUE(sample) << bytes;
        EXPECT_EQ(hexOf(sample->digest), expectedHex(text)) << bytes;
        EXPECT_TRUE(sample->coversWholeFile) << bytes;
    }
}

TEST_F(FileDigesterTest, SampleOfALargeFileIsHeadAndTailInOne)
{
    for (const std::size_t bytes : {524289U, 1000000U}) {
        const std::string text = textOf('q', bytes);
        const std::optional<Sample> sample = m_digester.partialDigest(node(bytes, text));
        ASSERT_TRUE(sample) << bytes;
        EXPECT_EQ(hexOf(sample->digest),
                  expectedHex(text.substr(0, 262144) + text.substr(bytes - 262144)))
            << bytes;
        EXPECT_FALSE(sample->coversWholeFile) << bytes;
    }
    EXPECT_EQ(m_digester.bytesRead(), 2 * 524288);
}

TEST_F(FileDigesterTest, TailLiesWhereTheScanSawTheEnd)
{
    const std::string text = textOf('q', 900000);
    const std::optional<Sample> sample = m_digester.partialDigest(node(600000, text));
    EXPECT_EQ(hexOf(sample.value().digest),
              expectedHex(text.substr(0, 262144) + text.substr(600000 - 262144, 262144)));
}

TEST_F(FileDigesterTest, SampleOfAShrunkLargeFileIsWhatThereIs)
{
    const std::string text = textOf('q', 1000);
    const std::optional<Sample> sample = m_digester.partialDigest(node(600000, text));
    EXPECT_EQ(hexOf(sample.value().digest), expectedHex(text));
    EXPECT_FALSE(sample->coversWholeFile);
}

TEST_F(FileDigesterTest, FewerThanSixteenBytesAreNoSample)
{
    EXPECT_FALSE(m_digester.partialDigest(node(5000, std::string(15, 'q'))));
    EXPECT_FALSE(m_digester.partialDigest(node(600000, std::string(15, 'q'))));
    EXPECT_TRUE(m_digester.partialDigest(node(5000, std::string(16, 'q'))));
}

TEST_F(FileDigesterTest, FaultBehindSixteenBytesGivesASampleThatIsNotTheWhole)
{
    const std::string text = textOf('q', 5000);
    const FileNode& file = node(5000, text);
    m_contents.file("/scan/f").readable = 16;
    const std::optional<Sample> sample = m_digester.partialDigest(file);
    EXPECT_EQ(hexOf(sample.value().digest), expectedHex(text.substr(0, 16)));
    EXPECT_FALSE(sample->coversWholeFile);
}

TEST_F(FileDigesterTest, GrownFileIsNotCoveredByItsSample)
{
    const std::optional<Sample> sample = m_digester.partialDigest(node(5000, textOf('q', 524289)));
    EXPECT_FALSE(sample.value().coversWholeFile);
    EXPECT_LE(m_digester.bytesRead(), 524289);
}

TEST_F(FileDigesterTest, FullDigestIsThatOfAllBytes)
{
    for (const std::size_t bytes : {0U, 1U, 262144U, 1048575U, 1048576U, 1048577U, 3000000U}) {
        const std::string text = textOf('q', bytes);
        EXPECT_EQ(hexOf(m_digester.fullDigest(node(bytes, text)).value()), expectedHex(text))
            << bytes;
    }
}

TEST_F(FileDigesterTest, FullDigestOfAFileWithAFaultIsThatOfItsFront)
{
    for (const std::size_t readable : {0U, 1U, 1048576U, 1500000U}) {
        const std::string text = textOf('q', 2000000);
        const FileNode& file = node(2000000, text);
        m_contents.file("/scan/f").readable = static_cast<std::int64_t>(readable);
        EXPECT_EQ(hexOf(m_digester.fullDigest(file).value()), expectedHex(text.substr(0, readable)))
            << readable;
    }
}

TEST_F(FileDigesterTest, SampleServesOnlyForAFileThatDidNotChange)
{
    const std::string text = textOf('q', 5000);
    const FileNode& file = node(5000, text);
    const Digest sample = m_digester.partialDigest(file).value().digest;
    const std::int64_t before = m_digester.bytesRead();
    m_contents.file("/scan/f").bytes.back() ^= 1;
    // A date before the search proves that what is there is what was sampled.
    m_contents.file("/scan/f").changedSeconds = 1'999'999'999;
    EXPECT_EQ(m_digester.fullDigest(file, sample), sample);
    EXPECT_EQ(m_digester.bytesRead(), before);
    m_contents.file("/scan/f").changedSeconds = 2'000'000'000;
    EXPECT_EQ(hexOf(m_digester.fullDigest(file, sample).value()),
              expectedHex(m_contents.file("/scan/f").bytes));
    m_contents.remove("/scan/f");
    EXPECT_FALSE(m_digester.fullDigest(file, sample));
}

TEST_F(FileDigesterTest, HeadServesOnlyForAFileThatDidNotChange)
{
    const std::string text = textOf('q', 2000000);
    const FileNode& file = node(2000000, text);
    const Sample sample = m_digester.partialDigest(file).value();
    ASSERT_TRUE(sample.head);
    std::int64_t before = m_digester.bytesRead();
    EXPECT_EQ(hexOf(m_digester.fullDigest(file, SampleTraces{sample.head.get()}).value()),
              expectedHex(text));
    EXPECT_EQ(m_digester.bytesRead() - before, 2000000 - 262144);
    before = m_digester.bytesRead();
    m_contents.file("/scan/f").bytes[5] ^= 1;
    m_contents.file("/scan/f").changedSeconds = 2'000'000'000;
    EXPECT_EQ(hexOf(m_digester.fullDigest(file, SampleTraces{sample.head.get()}).value()),
              expectedHex(m_contents.file("/scan/f").bytes));
    EXPECT_EQ(m_digester.bytesRead() - before, 2000000);
    m_contents.remove("/scan/f");
    EXPECT_FALSE(m_digester.fullDigest(file, SampleTraces{sample.head.get()}));
}

TEST_F(FileDigesterTest, HeadIsKeptOnlyWhereBothEndsAreWhole)
{
    EXPECT_FALSE(m_digester.partialDigest(node(524288, textOf('q', 524288))).value().head);
    EXPECT_TRUE(m_digester.partialDigest(node(524289, textOf('q', 524289))).value().head);
    EXPECT_FALSE(m_digester.partialDigest(node(524289, textOf('q', 524288))).value().head);
    EXPECT_FALSE(m_digester.partialDigest(node(600000, textOf('q', 1000))).value().head);
}

TEST_F(FileDigesterTest, HeadFilterSeesSizeAndHeadAlone)
{
    std::vector<std::uint64_t> heads;
    const auto turnAway = [&](std::uint64_t head, bool) {
        heads.push_back(head);
        return false;
    };
    std::string text = textOf('q', 9000);
    EXPECT_TRUE(m_digester.partialDigest(node(9000, text), turnAway).value().isTurnedAway);
    text[4096] ^= 1;
    EXPECT_TRUE(m_digester.partialDigest(node(9000, text), turnAway).value().isTurnedAway);
    text[4095] ^= 1;
    EXPECT_TRUE(m_digester.partialDigest(node(9000, text), turnAway).value().isTurnedAway);
    EXPECT_EQ(heads.at(0), heads.at(1));
    EXPECT_NE(heads.at(1), heads.at(2));
    EXPECT_EQ(m_digester.bytesRead(), 3 * 4096);
}

TEST_F(FileDigesterTest, FileThatIsNoMoreThanAHeadNeverWaits)
{
    const auto fail = [](std::uint64_t, bool) {
        ADD_FAILURE();
        return false;
    };
    // Also one that shrank, and one that cannot be read beyond.
    const std::string text = textOf('q', 4097);
    for (const auto& [scanned, bytes] : {std::pair(2048, 2048), std::pair(4096, 4096),
                                         std::pair(4096, 100), std::pair(9000, 100)}) {
        const std::string part = text.substr(0, static_cast<std::size_t>(bytes));
        const std::int64_t before = m_digester.bytesRead();
        const std::optional<Sample> sample =
            m_digester.partialDigest(node(static_cast<std::size_t>(scanned), part), fail);
        EXPECT_EQ(hexOf(sample.value().digest), expectedHex(part)) << scanned;
        EXPECT_TRUE(sample->coversWholeFile) << scanned;
        EXPECT_EQ(m_digester.bytesRead() - before, bytes) << scanned;
    }
    const FileNode& file = node(4096, text);
    m_contents.file("/scan/f").readable = 4095;
    EXPECT_EQ(hexOf(m_digester.partialDigest(file, fail).value().digest),
              expectedHex(text.substr(0, 4095)));
}

TEST_F(FileDigesterTest, FileThatGrewBeyondAHeadWaits)
{
    int asked = 0;
    const auto turnAway = [&](std::uint64_t, bool) {
        ++asked;
        return false;
    };
    const std::string text = textOf('q', 5000);
    EXPECT_TRUE(m_digester.partialDigest(node(2048, text), turnAway).value().isTurnedAway);
    EXPECT_EQ(hexOf(m_digester.partialDigest(node(2048, text)).value().digest), expectedHex(text));
    EXPECT_EQ(asked, 1);
}

TEST(HeadTable, TellsEveryoneButTheFirstAndTellsOfTheFirstOnce)
{
    HeadTable table(4);
    EXPECT_TRUE(table.meet(7, 10).isFirst);
    EXPECT_TRUE(table.meet(8, 11).isFirst);
    const HeadTable::Meeting second = table.meet(7, 12);
    EXPECT_FALSE(second.isFirst);
    EXPECT_EQ(second.waiting, 10U);
    const HeadTable::Meeting third = table.meet(7, 13);
    EXPECT_FALSE(third.isFirst);
    EXPECT_EQ(third.waiting, HeadTable::nobody);
    EXPECT_EQ(table.waiting(), std::vector<std::uint32_t>{11});
}

TEST(HeadTable, HoldsHeadsThatShareASlot)
{
    HeadTable table(3);
    EXPECT_TRUE(table.meet(0, 1).isFirst);
    EXPECT_TRUE(table.meet(std::uint64_t{1} << 32, 2).isFirst);
    EXPECT_TRUE(table.meet(std::uint64_t{1} << 33, 3).isFirst);
    EXPECT_EQ(table.meet(std::uint64_t{1} << 32, 4).waiting, 2U);
    EXPECT_EQ(table.meet(0, 5).waiting, 1U);
}

} // namespace
} // namespace quorvane::DuplicateFinder
