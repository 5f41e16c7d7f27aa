// SPDX-License-Identifier: MIT
#include "FileDigester.h"

#include "FinderFixture.h"

#include <QByteArray>
#include <QCryptographicHash>

namespace quorvane::DuplicateFinder {
namespace {

using test::MemoryContents;
using test::nodeAt;
using test::textOf;
using test::treeFromText;

QByteArray hexOf(const Sha256::Digest& digest)
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

/// The digest of the digests of each megabyte and of what is left.
QByteArray expectedOfParts(const std::string& bytes)
{
    QByteArray digests;
    for (std::size_t at = 0; at <= bytes.size(); at += 1048576) {
        digests += QByteArray::fromHex(expectedHex(bytes.substr(at, 1048576)));
    }
    return expectedHex(digests.toStdString());
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
    EXPECT_EQ(minSampleBytes, 16);
    EXPECT_LE(blockBytes, 1048576);
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
    CancelCallback m_isCancelled = neverCancelled;
    FileDigester m_digester{FileSystemCalls::system(), m_contents, m_isCancelled};
};

TEST_F(FileDigesterTest, HeadIsTheFirst4096BytesAlone)
{
    std::string text = textOf('q', 9000);
    const std::uint64_t head = m_digester.look(node(9000, text)).value().head;
    EXPECT_NE(head, 0U);
    text[4096] ^= 1;
    EXPECT_EQ(m_digester.look(node(9000, text)).value().head, head);
    text[4095] ^= 1;
    EXPECT_NE(m_digester.look(node(9000, text)).value().head, head);
    EXPECT_EQ(m_digester.bytesRead(), 3 * 4096);
}

TEST_F(FileDigesterTest, HeadsThatDifferInAByteOrInLengthHashApart)
{
    std::set<std::uint64_t> heads;
    for (std::size_t bytes = 16; bytes < 200; ++bytes) {
        heads.insert(m_digester.head(node(5000, std::string(bytes, '\0'))).value());
        std::string text(200, '\0');
        text[bytes] = 1;
        heads.insert(m_digester.head(node(5000, text)).value());
    }
    EXPECT_EQ(heads.size(), 2U * (200 - 16));
}

TEST_F(FileDigesterTest, FileWithSeveralNamesIsNotReadAtTheFirstLook)
{
    const FileNode& file = node(9000, textOf('q', 9000));
    m_contents.file("/scan/f").links = 2;
    m_contents.file("/scan/f").inode = 7;
    const FirstLook look = m_digester.look(file).value();
    EXPECT_EQ(look.head, 0U);
    EXPECT_EQ(look.file, (FileIdentity{1, 7}));
    EXPECT_EQ(m_digester.bytesRead(), 0);
    EXPECT_NE(m_digester.head(file).value(), 0U);
}

TEST_F(FileDigesterTest, FewerThanSixteenBytesAreNoSample)
{
    EXPECT_FALSE(m_digester.look(node(5000, std::string(15, 'q'))));
    EXPECT_TRUE(m_digester.look(node(5000, std::string(16, 'q'))));
    EXPECT_FALSE(m_digester.ends(node(600000, std::string(15, 'q'))));
    EXPECT_TRUE(m_digester.ends(node(600000, std::string(16, 'q'))));
}

TEST_F(FileDigesterTest, EndsAreHeadAndTailAlone)
{
    constexpr std::size_t bytes = 1000000;
    std::string text = textOf('q', bytes);
    const std::uint64_t ends = m_digester.ends(node(bytes, text)).value();
    EXPECT_EQ(m_digester.bytesRead(), 524288);
    for (const std::size_t place : {std::size_t{262144}, bytes - 262145}) {
        std::string other = text;
        other[place] ^= 1;
        EXPECT_EQ(m_digester.ends(node(bytes, other)), ends) << place;
    }
    for (const std::size_t place :
         {std::size_t{0}, std::size_t{262143}, bytes - 262144, bytes - 1}) {
        std::string other = text;
        other[place] ^= 1;
        EXPECT_NE(m_digester.ends(node(bytes, other)), ends) << place;
    }
}

TEST_F(FileDigesterTest, TailLiesWhereTheScanSawTheEnd)
{
    const std::string text = textOf('q', 900000);
    EXPECT_EQ(m_digester.ends(node(600000, text)),
              m_digester.ends(node(600000, text.substr(0, 600000))));
}

TEST_F(FileDigesterTest, ContentsAreAllBytes)
{
    for (const std::size_t bytes : {0U, 1U, 65536U, 1048575U, 1048576U, 1048577U, 3000000U}) {
        const std::string text = textOf('q', bytes);
        const Contents contents = m_digester.contents(node(bytes, text)).value();
        EXPECT_EQ(hexOf(contents.digest), expectedOfParts(text)) << bytes;
        EXPECT_EQ(contents.bytes, static_cast<std::int64_t>(bytes));
        EXPECT_FALSE(contents.isBrokenOff);
    }
}

TEST_F(FileDigesterTest, ContentsOfAFileWithAFaultAreItsFrontAndBrokenOff)
{
    for (const std::size_t readable : {0U, 1U, 65536U, 1500000U}) {
        const std::string text = textOf('q', 2000000);
        const FileNode& file = node(2000000, text);
        m_contents.file("/scan/f").readable = static_cast<std::int64_t>(readable);
        const Contents contents = m_digester.contents(file).value();
        EXPECT_EQ(hexOf(contents.digest), expectedOfParts(text.substr(0, readable))) << readable;
        EXPECT_TRUE(contents.isBrokenOff);
    }
}

TEST_F(FileDigesterTest, HolesGiveTheDigestOfTheZerosThatStandForThem)
{
    constexpr std::size_t bytes = 5 * 1048576 + 100;
    // Where data begins and ends, beside the borders of parts, of blocks and of nothing.
    using Ranges = std::vector<FileContentCalls::DataRange>;
    for (const Ranges& data :
         {Ranges{{0, 4096}}, Ranges{{1048576, 2097152}}, Ranges{{1048575, 1048577}},
          Ranges{{3145728, 3211264}, {5242880, 5242980}},
          Ranges{{70000, 70001}, {5000000, 5242980}}}) {
        std::string text(bytes, '\0');
        m_tree = treeFromText("f " + std::to_string(bytes) + " 4096\n");
        std::int64_t dataBytes = 0;
        for (const auto& [begin, end] : data) {
            const auto count = static_cast<std::size_t>(end - begin);
            text.replace(static_cast<std::size_t>(begin), count, textOf('q', count));
            dataBytes += end - begin;
        }
        m_contents.file("/scan/f").bytes = text;
        m_contents.file("/scan/f").data = data;
        const std::int64_t before = m_digester.bytesRead();
        const Contents contents = m_digester.contents(nodeAt(m_tree->root(), "f")).value();
        EXPECT_EQ(hexOf(contents.digest), expectedOfParts(text));
        EXPECT_EQ(contents.bytes, static_cast<std::int64_t>(bytes));
        EXPECT_FALSE(contents.isBrokenOff);
        EXPECT_EQ(m_digester.bytesRead() - before, dataBytes);
    }
}

TEST_F(FileDigesterTest, ShrunkFileIsBrokenOffAndAGrownOneIsNot)
{
    EXPECT_TRUE(m_digester.contents(node(5000, textOf('q', 4999))).value().isBrokenOff);
    EXPECT_FALSE(m_digester.contents(node(5000, textOf('q', 5001))).value().isBrokenOff);
}

TEST_F(FileDigesterTest, CancelEndsAReading)
{
    const FileNode& file = node(3000000, textOf('q', 3000000));
    int polls = 0;
    m_isCancelled = [&] { return ++polls > 3; };
    EXPECT_FALSE(m_digester.contents(file));
    EXPECT_EQ(m_digester.bytesRead(), 3 * 65536);
    polls = 0;
    EXPECT_FALSE(m_digester.ends(file));
    EXPECT_EQ(m_digester.bytesRead(), 6 * 65536);
}

} // namespace
} // namespace quorvane::DuplicateFinder
