// SPDX-License-Identifier: MIT
#include "PreviewContent.h"

#include "DiskTree.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QColor>
#include <QImageWriter>

#include <string>

namespace quorvane {
namespace {

using Kind = PreviewContent::Kind;

class PreviewContentTests : public testing::Test
{
protected:
    PreviewContent read(const std::string& name)
    {
        return PreviewContent::read(m_disk.path(name), QSize(200, 100));
    }

    /// A picture with a red left half and a blue right one.
    static QByteArray
    encoded(const QSize& size, const char* format,
            QImageIOHandler::Transformations turn = QImageIOHandler::TransformationNone)
    {
        QImage image(size, QImage::Format_RGB32);
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x) {
                image.setPixelColor(x, y, x < size.width() / 2 ? Qt::red : Qt::blue);
            }
        }
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        QImageWriter writer(&buffer, format);
        writer.setTransformation(turn);
        EXPECT_TRUE(writer.write(image));
        return bytes;
    }

    void picture(const std::string& name, const QByteArray& bytes)
    {
        m_disk.fileWithContents(name, bytes.toStdString());
    }

    DiskTree m_disk;
};

TEST_F(PreviewContentTests, ShowsASmallPictureAsItIs)
{
    picture("named wrongly.txt", encoded(QSize(40, 20), "png"));
    const PreviewContent content = read("named wrongly.txt");
    ASSERT_EQ(content.kind, Kind::picture);
    EXPECT_EQ(content.picture.size(), QSize(40, 20));
    EXPECT_EQ(content.picture.pixelColor(5, 10), QColor(Qt::red));
}

TEST_F(PreviewContentTests, ScalesALargePictureIntoTheRoom)
{
    picture("large.png", encoded(QSize(800, 800), "png"));
    EXPECT_EQ(read("large.png").picture.size(), QSize(100, 100));
}

TEST_F(PreviewContentTests, TurnsAPictureAsItsMetadataSays)
{
    picture("turned.jpg",
            encoded(QSize(400, 200), "jpeg", QImageIOHandler::TransformationRotate90));
    const QImage turned = read("turned.jpg").picture;
    EXPECT_EQ(turned.size(), QSize(50, 100));
    // Turned clockwise, what was on the left is at the top.
    EXPECT_GT(turned.pixelColor(25, 10).red(), 200);
    EXPECT_GT(turned.pixelColor(25, 90).blue(), 200);
}

TEST_F(PreviewContentTests, ShowsTextInUtf8)
{
    m_disk.fileWithContents("odd \xff name", "gr\xc3\xb6\xc3\x9f"
                                             "er\n");
    const PreviewContent content = read("odd \xff name");
    EXPECT_EQ(content.kind, Kind::text);
    EXPECT_EQ(content.text, QStringLiteral("größer\n"));
    EXPECT_FALSE(content.isCut);
}

TEST_F(PreviewContentTests, ReadsOnlyTheBeginningOfALongText)
{
    // Three bytes a character: the limit falls inside one.
    std::string text;
    while (text.size() < 2 * static_cast<std::size_t>(PreviewContent::textLimit)) {
        text += "\xe2\x82\xac";
    }
    m_disk.fileWithContents("long", text);
    const PreviewContent content = read("long");
    EXPECT_EQ(content.kind, Kind::text);
    EXPECT_TRUE(content.isCut);
    EXPECT_EQ(content.text, QString(PreviewContent::textLimit / 3, QChar(0x20AC)));
}

TEST_F(PreviewContentTests, HasASummaryForTheRest)
{
    m_disk.fileWithContents("bytes", std::string("a\0b", 3));
    m_disk.fileWithContents("latin1", "gr\xf6\xdf"
                                      "er");
    m_disk.fileWithContents("broken.png", "\x89PNG\r\n\x1a\n\xff\xff\xff\xff");
    m_disk.file("empty");
    m_disk.folder("folder");
    m_disk.fifo("pipe");
    m_disk.symbolicLink("nowhere", "dangling");
    for (const char* const name :
         {"bytes", "latin1", "broken.png", "empty", "folder", "pipe", "dangling", "missing"}) {
        const PreviewContent content = read(name);
        EXPECT_EQ(content.kind, Kind::summary) << name;
        EXPECT_TRUE(content.picture.isNull()) << name;
        EXPECT_TRUE(content.text.isEmpty()) << name;
    }
}

TEST_F(PreviewContentTests, APictureThatEndsTooSoonNeverStopsTheProgram)
{
    const QByteArray whole = encoded(QSize(300, 300), "png");
    m_disk.fileWithContents("cut.png", whole.left(whole.size() / 2).toStdString());
    EXPECT_EQ(read("cut.png").kind, Kind::summary);
}

} // namespace
} // namespace quorvane
