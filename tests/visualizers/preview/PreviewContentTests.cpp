// SPDX-License-Identifier: MIT
#include "PreviewContent.h"

#include "DiskTree.h"
#include "PreviewSamples.h"
#include "PreviewText.h"

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
        return PreviewContent::read(m_disk.path(name), QSize(200, 100), m_stop);
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
    LockedFlag m_stop;
};

TEST_F(PreviewContentTests, ShowsASmallPictureAsItIs)
{
    picture("named wrongly.txt", encoded(QSize(40, 20), "png"));
    const PreviewContent content = read("named wrongly.txt");
    ASSERT_EQ(content.kind, Kind::picture);
    EXPECT_EQ(content.picture.image.size(), QSize(40, 20));
    EXPECT_EQ(content.picture.image.pixelColor(5, 10), QColor(Qt::red));
}

TEST_F(PreviewContentTests, ScalesALargePictureIntoTheRoom)
{
    picture("large.png", encoded(QSize(800, 800), "png"));
    EXPECT_EQ(read("large.png").picture.image.size(), QSize(100, 100));
}

TEST_F(PreviewContentTests, TurnsAPictureAsItsMetadataSays)
{
    picture("turned.jpg",
            encoded(QSize(400, 200), "jpeg", QImageIOHandler::TransformationRotate90));
    const QImage turned = read("turned.jpg").picture.image;
    EXPECT_EQ(turned.size(), QSize(50, 100));
    EXPECT_EQ(read("turned.jpg").picture.fullSize, QSize(200, 400));
    // Turned clockwise, what was on the left is at the top.
    EXPECT_GT(turned.pixelColor(25, 10).red(), 200);
    EXPECT_GT(turned.pixelColor(25, 90).blue(), 200);
}

TEST_F(PreviewContentTests, ADrawingFillsTheRoom)
{
    m_disk.fileWithContents("drawing.svg",
                            "<svg xmlns='http://www.w3.org/2000/svg' width='20' height='20'>"
                            "<rect width='20' height='20' fill='red'/></svg>");
    const PreviewContent content = read("drawing.svg");
    ASSERT_EQ(content.kind, Kind::picture);
    EXPECT_EQ(content.picture.image.size(), QSize(100, 100));
    EXPECT_EQ(content.picture.image.pixelColor(50, 50), QColor(Qt::red));
}

TEST_F(PreviewContentTests, AVeryNarrowPictureKeepsOnePixel)
{
    picture("line.png", encoded(QSize(3000, 1), "png"));
    EXPECT_EQ(read("line.png").picture.image.size(), QSize(200, 1));
}

TEST_F(PreviewContentTests, ReadsNothingOnceItIsToStop)
{
    picture("picture.png", encoded(QSize(40, 20), "png"));
    m_stop.set(true);
    EXPECT_EQ(read("picture.png").kind, Kind::summary);
}

TEST_F(PreviewContentTests, KnowsSoundAndFilmByWhatTheyHold)
{
    m_disk.fileWithContents("film", test::contentsOf("film.mp4"));
    m_disk.fileWithContents("sound.wav", test::waveSound(100));
    EXPECT_EQ(read("film").kind, Kind::media);
    EXPECT_EQ(read("sound.wav").kind, Kind::media);
    m_disk.fileWithContents("source.ts", "export const film = 1;\n");
    EXPECT_EQ(read("source.ts").kind, Kind::text) << "a name that films have as well";
}

TEST_F(PreviewContentTests, ALinkShowsWhatItLeadsTo)
{
    m_disk.fileWithContents("letter", "Dear all");
    m_disk.symbolicLink("letter", "link");
    EXPECT_EQ(read("link").text, QStringLiteral("Dear all"));
}

TEST_F(PreviewContentTests, OpensADocument)
{
    m_disk.fileWithContents("paper.pdf", test::documentOfPages(2).toStdString());
    const PreviewContent content = read("paper.pdf");
    ASSERT_EQ(content.kind, Kind::document);
    EXPECT_EQ(content.document->pageCount(), 2);
    m_disk.fileWithContents("broken.pdf", "%PDF-1.4\nthis is all there is\n");
    EXPECT_EQ(read("broken.pdf").kind, Kind::summary);
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

TEST_F(PreviewContentTests, ShowsTextInLatin1WhereItIsNotUtf8)
{
    m_disk.fileWithContents("latin1", "gr\xf6\xdf"
                                      "er\n");
    EXPECT_EQ(read("latin1").kind, Kind::text);
    EXPECT_EQ(read("latin1").text, QStringLiteral("größer\n"));
    // One control character in fifty is still a text's, one in forty-nine is not.
    m_disk.fileWithContents("few", std::string(49, '\xe4') + '\x01');
    EXPECT_EQ(read("few").kind, Kind::text);
    m_disk.fileWithContents("many", std::string(48, '\xe4') + '\x01');
    EXPECT_EQ(read("many").kind, Kind::summary);
}

TEST_F(PreviewContentTests, TakesTheEncodingFromTheByteOrderMark)
{
    // "aö", a line break and a face that takes two units of UTF-16.
    const QString text = QStringLiteral("aö\n\U0001F600");
    const struct
    {
        const char* name;
        std::string bytes;
    } files[] = {
        {"utf8", "\xef\xbb\xbf"
                 "a\xc3\xb6\n\xf0\x9f\x98\x80"},
        {"little16", std::string("\xff\xfe"
                                 "a\0\xf6\0\n\0\x3d\xd8\0\xde",
                                 12)},
        {"big16", std::string("\xfe\xff\0a\0\xf6\0\n\xd8\x3d\xde\0", 12)},
        {"little32", std::string("\xff\xfe\0\0a\0\0\0\xf6\0\0\0\n\0\0\0\0\xf6\1\0", 20)},
        {"big32", std::string("\0\0\xfe\xff\0\0\0a\0\0\0\xf6\0\0\0\n\0\1\xf6\0", 20)},
    };
    for (const auto& file : files) {
        m_disk.fileWithContents(file.name, file.bytes);
        EXPECT_EQ(read(file.name).kind, Kind::text) << file.name;
        EXPECT_EQ(read(file.name).text, text) << file.name;
    }
}

TEST_F(PreviewContentTests, ALongTextInUtf16EndsBeforeHalfACharacter)
{
    // The mark and an even number of bytes; the limit falls between the halves of a face.
    std::string bytes("\xff\xfe", 2);
    while (bytes.size() < static_cast<std::size_t>(PreviewContent::textLimit) + 2) {
        bytes += std::string("\x3d\xd8\0\xde", 4);
    }
    ASSERT_EQ((PreviewContent::textLimit - 2) % 4, 2);
    m_disk.fileWithContents("faces", bytes);
    const PreviewContent content = read("faces");
    ASSERT_EQ(content.kind, Kind::text);
    EXPECT_TRUE(content.isCut);
    EXPECT_TRUE(content.text.endsWith(QStringLiteral("\U0001F600")));
}

TEST_F(PreviewContentTests, AMarkAloneMakesNoText)
{
    m_disk.fileWithContents("mark", "\xff\xfe");
    m_disk.fileWithContents("bytes", std::string("\xff\xfe\1\0\2\0\3\0", 8));
    EXPECT_EQ(read("mark").kind, Kind::summary);
    EXPECT_EQ(read("bytes").kind, Kind::summary) << "nothing but control characters";
}

TEST_F(PreviewContentTests, ReadsOnlyTheBeginningOfALongText)
{
    // Three bytes a character, 255 of them and a line break 766: the limit falls inside one.
    std::string text;
    while (text.size() < 2 * static_cast<std::size_t>(PreviewContent::textLimit)) {
        for (int i = 0; i < 255; ++i) {
            text += "\xe2\x82\xac";
        }
        text += '\n';
    }
    ASSERT_EQ(PreviewContent::textLimit % 766 % 3, 1);
    m_disk.fileWithContents("long", text);
    const PreviewContent content = read("long");
    EXPECT_EQ(content.kind, Kind::text);
    EXPECT_TRUE(content.isCut);
    EXPECT_FALSE(content.isCutByLines);
    const QString line = QString(255, QChar(0x20AC)) + QLatin1Char('\n');
    EXPECT_EQ(content.text, line.repeated(PreviewContent::textLimit / 766) +
                                QString(PreviewContent::textLimit % 766 / 3, QChar(0x20AC)));
}

TEST_F(PreviewContentTests, ALineThatIsTooLongGoesOnInTheNext)
{
    const int longest = maxTextLineLength;
    m_disk.fileWithContents("long", std::string(static_cast<std::size_t>(longest), 'a') + "\n" +
                                        std::string(static_cast<std::size_t>(longest) + 2, 'b'));
    const PreviewContent content = read("long");
    EXPECT_EQ(content.text, QString(longest, QLatin1Char('a')) + QLatin1Char('\n') +
                                QString(longest, QLatin1Char('b')) + QStringLiteral("\nbb"));
    EXPECT_FALSE(content.isCut);
}

TEST_F(PreviewContentTests, ALineIsNotBrokenInsideACharacter)
{
    std::string faces = "x";
    for (int i = 0; i < maxTextLineLength; ++i) {
        faces += "\xf0\x9f\x98\x80";
    }
    m_disk.fileWithContents("faces", faces);
    const QStringList lines = read("faces").text.split(QLatin1Char('\n'));
    ASSERT_GE(lines.size(), 2);
    EXPECT_EQ(lines[0].size(), maxTextLineLength - 1);
    EXPECT_TRUE(lines[1].at(0).isHighSurrogate());
}

TEST_F(PreviewContentTests, ShowsOnlyTheFirstLinesOfMany)
{
    std::string text;
    for (int i = 0; i < maxTextLines; ++i) {
        text += "line\n";
    }
    m_disk.fileWithContents("all", text);
    EXPECT_FALSE(read("all").isCut);
    m_disk.fileWithContents("more", text + "one more\n");
    const PreviewContent content = read("more");
    EXPECT_TRUE(content.isCutByLines);
    EXPECT_TRUE(content.isCut);
    EXPECT_EQ(content.text.count(QLatin1Char('\n')), maxTextLines);
    EXPECT_TRUE(content.text.endsWith(QStringLiteral("line\n")));
}

TEST_F(PreviewContentTests, APictureBeyondTheBoundIsNotDecoded)
{
    // A GIF file of 60000 x 60000 pixels: its head, one frame, and an end.
    m_disk.fileWithContents("huge.gif", std::string("GIF89a\x60\xea\x60\xea\x80\0\0"
                                                    "\0\0\0\xff\xff\xff"
                                                    ",\0\0\0\0\x60\xea\x60\xea\0"
                                                    "\2\2D\1\0;",
                                                    35));
    EXPECT_EQ(read("huge.gif").kind, Kind::summary);
}

TEST_F(PreviewContentTests, HasASummaryForTheRest)
{
    m_disk.fileWithContents("bytes", std::string("a\0b", 3));
    m_disk.fileWithContents("broken.png", "\x89PNG\r\n\x1a\n\xff\xff\xff\xff");
    m_disk.file("empty");
    m_disk.folder("folder");
    m_disk.fifo("pipe");
    m_disk.symbolicLink("nowhere", "dangling");
    for (const char* const name :
         {"bytes", "broken.png", "empty", "folder", "pipe", "dangling", "missing"}) {
        const PreviewContent content = read(name);
        EXPECT_EQ(content.kind, Kind::summary) << name;
        EXPECT_TRUE(content.picture.image.isNull()) << name;
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
