// SPDX-License-Identifier: MIT
#include "DrawingReader.h"

#include "DiskTree.h"
#include "PreviewContent.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QColor>
#include <QFile>
#include <QImage>

#include <zlib.h>

#include <string>

namespace quorvane {
namespace {

QByteArray pngOf(const QImage& image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(image.save(&buffer, "PNG"));
    return bytes;
}

QByteArray pngOf(const QSize& size, const QColor& color)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return pngOf(image);
}

/// A blue square with something inside it, over all of it or not.
QByteArray drawingWith(const QByteArray& inside)
{
    return "<svg xmlns='http://www.w3.org/2000/svg' "
           "xmlns:xlink='http://www.w3.org/1999/xlink' width='20' height='20'>"
           "<rect width='20' height='20' fill='#0000ff'/>" +
           inside + "</svg>";
}

QByteArray pictureAt(const QByteArray& reference)
{
    return "<image width='20' height='20' xlink:href='" + reference + "'/>";
}

QByteArray held(const QByteArray& bytes)
{
    return "data:image/png;base64," + bytes.toBase64();
}

QByteArray packed(const QByteArray& bytes)
{
    z_stream stream{};
    EXPECT_EQ(deflateInit2(&stream, 9, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY), Z_OK);
    QByteArray in = bytes;
    QByteArray out(static_cast<qsizetype>(deflateBound(&stream, static_cast<uLong>(in.size()))),
                   '\0');
    stream.next_in = reinterpret_cast<Bytef*>(in.data());
    stream.avail_in = static_cast<uInt>(in.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    out.truncate(static_cast<qsizetype>(stream.total_out));
    deflateEnd(&stream);
    return out;
}

class DrawingReaderTests : public testing::Test
{
protected:
    PreviewContent read(const QByteArray& bytes)
    {
        m_disk.fileWithContents("drawing.svg", bytes.toStdString());
        return PreviewContent::read(m_disk.path("drawing.svg"), QSize(40, 40), LockedFlag());
    }

    QColor middleOf(const QByteArray& bytes)
    {
        const PreviewContent content = read(bytes);
        EXPECT_EQ(content.kind, PreviewContent::Kind::picture);
        return content.picture.image.isNull() ? QColor() : content.picture.image.pixelColor(20, 20);
    }

    DiskTree m_disk;
};

TEST_F(DrawingReaderTests, OpensNoFileThatItNames)
{
    const QByteArray png = pngOf(QSize(4, 4), Qt::red);
    m_disk.fileWithContents("red.png", png.toStdString());
    const QByteArray absolute = QFile::encodeName(m_disk.path("red.png").displayText());
    ASSERT_TRUE(QFile::exists(QString::fromLatin1(absolute)));
    const QByteArray references[] = {"red.png", absolute, "file://" + absolute, " " + absolute};
    for (const QByteArray& reference : references) {
        EXPECT_EQ(middleOf(drawingWith(pictureAt(reference))), QColor(Qt::blue))
            << reference.toStdString();
    }
}

TEST_F(DrawingReaderTests, APipeThatItNamesHoldsNothingUp)
{
    m_disk.fifo("pipe");
    const QByteArray pipe = QFile::encodeName(m_disk.path("pipe").displayText());
    EXPECT_EQ(middleOf(drawingWith(pictureAt(pipe))), QColor(Qt::blue));
    EXPECT_EQ(
        middleOf("<?xml-stylesheet type=\"text/css\" href=\"" + pipe + "\"?>" + drawingWith({})),
        QColor(Qt::blue));
    EXPECT_EQ(middleOf("<!DOCTYPE svg [<!ENTITY e SYSTEM '" + pipe + "'>]>" + drawingWith({})),
              QColor(Qt::blue));
}

TEST_F(DrawingReaderTests, DrawsThePicturesThatStandInIt)
{
    const QByteArray png = pngOf(QSize(4, 4), Qt::red);
    EXPECT_EQ(middleOf(drawingWith(pictureAt(held(png)))), QColor(Qt::red));
    // A drawing in a drawing would name files again.
    EXPECT_EQ(middleOf(drawingWith(
                  pictureAt(held("<svg xmlns='http://www.w3.org/2000/svg' width='20' height='20'>"
                                 "<rect width='20' height='20' fill='#ff0000'/></svg>")))),
              QColor(Qt::blue));
}

TEST_F(DrawingReaderTests, APictureThatCannotBeDecodedIsNoFileName)
{
    const QByteArray cut = pngOf(QSize(4, 4), Qt::red).left(60);
    for (const QByteArray& reference : {held(cut), held({}), QByteArray("data/red.png")}) {
        const QByteArray drawing = drawingWith(pictureAt(reference));
        EXPECT_FALSE(selfContained(drawing).contains("data")) << reference.toStdString();
        EXPECT_EQ(middleOf(drawing), QColor(Qt::blue)) << reference.toStdString();
    }
}

TEST_F(DrawingReaderTests, LeavesOutOnlyWhatRefersToOutside)
{
    const QByteArray red = "<rect width='20' height='20' fill='#ff0000'/>";
    EXPECT_EQ(middleOf(drawingWith("<a xlink:href='http://example.invalid/'>" + red + "</a>")),
              QColor(Qt::red));
    EXPECT_EQ(middleOf(drawingWith("<use xlink:href='other.svg#r'/>" + red)), QColor(Qt::red));
}

TEST_F(DrawingReaderTests, KeepsWhatRefersToItself)
{
    EXPECT_EQ(middleOf(drawingWith("<defs><rect id='r' width='20' height='20' fill='#ff0000'/>"
                                   "</defs><use xlink:href='#r'/>")),
              QColor(Qt::red));
    EXPECT_EQ(middleOf("<!DOCTYPE svg [<!ENTITY hue '#ff0000'>]>" +
                       drawingWith("<rect width='20' height='20' fill='&hue;'/>")),
              QColor(Qt::red));
    EXPECT_EQ(middleOf(drawingWith("<style>rect.over { fill: #ff0000 }</style>"
                                   "<rect class='over' width='20' height='20'/>")),
              QColor(Qt::red));
}

TEST_F(DrawingReaderTests, HoldsItsBoundOnHeldPictures)
{
    // Two of 6000 x 6000 pixels are more than all may have together.
    ASSERT_GT(2 * 6000 * 6000, maxHeldPixels);
    QImage image(6000, 6000, QImage::Format_Mono);
    image.fill(0);
    const QByteArray large = pictureAt(held(pngOf(image)));
    EXPECT_EQ(selfContained(drawingWith(large + large)).count("data:"), 1);
}

TEST_F(DrawingReaderTests, APackedDrawingIsDrawnToo)
{
    const QByteArray drawing = drawingWith({});
    EXPECT_EQ(middleOf(packed(drawing)), QColor(Qt::blue));
    // A little file that unpacks to more than the bound.
    const QByteArray endless = "<!--" + QByteArray(maxDrawingBytes, ' ') + "-->" + drawing;
    EXPECT_EQ(read(packed(endless)).kind, PreviewContent::Kind::summary);
    EXPECT_EQ(read(packed("no drawing")).kind, PreviewContent::Kind::summary);
    EXPECT_EQ(read(packed(drawing).left(30)).kind, PreviewContent::Kind::summary);
}

TEST_F(DrawingReaderTests, WhatIsBrokenOrTooLongShowsItsText)
{
    const QByteArray broken = "<svg xmlns='http://www.w3.org/2000/svg'><rect></svg>";
    EXPECT_EQ(read(broken).kind, PreviewContent::Kind::text);
    EXPECT_EQ(read(drawingWith("<a:b:c/>")).kind, PreviewContent::Kind::text);
    EXPECT_EQ(read("<!--" + QByteArray(maxDrawingBytes, ' ') + "-->" + drawingWith({})).kind,
              PreviewContent::Kind::text);
    // Each mention of a name takes the room of what it stands for.
    const QByteArray names = QByteArray("&e;").repeated(400'000);
    EXPECT_EQ(selfContained("<!DOCTYPE svg [<!ENTITY e 'eeeeeeee'>]>" + drawingWith(names)),
              QByteArray());
}

} // namespace
} // namespace quorvane
