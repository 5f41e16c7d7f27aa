// SPDX-License-Identifier: MIT
#include "MediaPlayer.h"
#include "MediaSlider.h"
#include "MediaView.h"

#include "Button.h"
#include "DiskTree.h"
#include "FilmRotation.h"
#include "Label.h"
#include "LatestFrame.h"
#include "PreviewSamples.h"
#include "Theme.h"
#include "WaitFor.h"

#include <gtest/gtest.h>

#include <QAudioDevice>
#include <QBuffer>
#include <QMediaDevices>
#include <QTest>

#include <cstdint>
#include <string>

namespace quorvane {
namespace {

using Phase = MediaStatus::Phase;

bool canBeHeard()
{
    return !QMediaDevices::defaultAudioOutput().isNull();
}

class MediaTests : public testing::Test
{
protected:
    MediaTests() { m_disk.fileWithContents("film \xff.mp4", test::contentsOf("film.mp4")); }

    FilePath film() { return m_disk.path("film \xff.mp4"); }

    /// Two minutes, so that it is not over when a slow machine looks at it.
    FilePath longFilm()
    {
        m_disk.fileWithContents("long.mp4", test::contentsOf("long-film.mp4"));
        return m_disk.path("long.mp4");
    }

    Phase phaseOf(const FilePath& path)
    {
        m_player.open(path);
        EXPECT_TRUE(waitFor([this] { return m_player.status().phase != Phase::opening; }));
        return m_player.status().phase;
    }

    DiskTree m_disk;
    MediaPlayer m_player;
};

TEST_F(MediaTests, PlaysAFilmFromItsBeginningToItsEnd)
{
    QColor first;
    QColor last;
    QObject::connect(&m_player, &MediaPlayer::frameReady, [&](const QImage& frame) {
        last = frame.pixelColor(frame.rect().center());
        if (!first.isValid()) {
            first = last;
        }
    });
    m_player.setFrameRoom(QSize(32, 32));
    ASSERT_EQ(phaseOf(longFilm()), Phase::ready);
    EXPECT_TRUE(m_player.status().hasFilm);
    EXPECT_EQ(m_player.status().hasSound, canBeHeard());
    EXPECT_FALSE(m_player.status().isSilent);
    EXPECT_EQ(m_player.status().duration, 120'000);
    ASSERT_TRUE(waitFor([this] { return m_player.status().isPlaying; }));
    ASSERT_TRUE(waitFor([&first] { return first.isValid(); }));
    EXPECT_GT(first.red(), 200) << "the first minute is red, the second one blue";
    m_player.seek(119'000);
    ASSERT_TRUE(waitFor([&last] { return last.blue() > 200; }));
    EXPECT_TRUE(waitFor([this] { return !m_player.status().isPlaying; }));
}

TEST_F(MediaTests, AFrameFitsTheRoom)
{
    QSize size;
    QObject::connect(&m_player, &MediaPlayer::frameReady,
                     [&size](const QImage& frame) { size = frame.size(); });
    m_player.setFrameRoom(QSize(32, 32));
    m_player.open(film());
    ASSERT_TRUE(waitFor([&size] { return size.isValid(); }));
    EXPECT_EQ(size, QSize(32, 18));
}

TEST_F(MediaTests, AFilmStandsUpright)
{
    m_disk.fileWithContents("turned.mp4", test::turnedFilm(0, 0x10000));
    QImage shown;
    QObject::connect(&m_player, &MediaPlayer::frameReady,
                     [&shown](const QImage& frame) { shown = frame; });
    m_player.setFrameRoom(QSize(200, 32));
    m_player.open(m_disk.path("turned.mp4"));
    ASSERT_TRUE(waitFor([&shown] { return !shown.isNull(); }));
    EXPECT_EQ(shown.size(), QSize(18, 32));
}

TEST_F(MediaTests, PausesAndSeeks)
{
    ASSERT_EQ(phaseOf(longFilm()), Phase::ready);
    m_player.setPlaying(false);
    ASSERT_TRUE(waitFor([this] { return !m_player.status().isPlaying; }));
    m_player.seek(90'000);
    EXPECT_TRUE(waitFor([this] { return m_player.status().position >= 89'000; }));
    m_player.setPlaying(true);
    EXPECT_TRUE(waitFor([this] { return m_player.status().isPlaying; }));
}

TEST_F(MediaTests, PlaysAgainAfterTheEnd)
{
    ASSERT_EQ(phaseOf(film()), Phase::ready);
    m_player.seek(1900);
    ASSERT_TRUE(
        waitFor([this] { return !m_player.status().isPlaying && m_player.status().position > 0; }));
    // Each report is looked at: a slow machine may be late for the beginning itself.
    bool isBackAtTheStart = false;
    QObject::connect(&m_player, &MediaPlayer::statusChanged, [&] {
        const MediaStatus& status = m_player.status();
        isBackAtTheStart = isBackAtTheStart || (status.isPlaying && status.position < 1000);
    });
    m_player.setPlaying(true);
    EXPECT_TRUE(waitFor([&] { return isBackAtTheStart; }));
}

TEST_F(MediaTests, ASoundPlaysWhereItCanBeHeard)
{
    m_disk.fileWithContents("sound.wav", test::waveSound(500));
    EXPECT_EQ(phaseOf(m_disk.path("sound.wav")), Phase::ready);
    EXPECT_FALSE(m_player.status().hasFilm);
    EXPECT_EQ(m_player.status().hasSound, canBeHeard());
    EXPECT_EQ(m_player.status().isSilent, !canBeHeard());
    EXPECT_EQ(m_player.status().duration, 500);
}

TEST_F(MediaTests, ASoundThatCannotBeHeardShowsItsLengthAndStandsStill)
{
    if (canBeHeard()) {
        GTEST_SKIP() << "there is a device for sound";
    }
    m_disk.fileWithContents("sound.wav", test::waveSound(2000));
    MediaView view;
    view.resize(400, 300);
    view.show();
    bool isOpened = false;
    QObject::connect(&view, &MediaView::opened, [&isOpened] { isOpened = true; });
    view.open(m_disk.path("sound.wav"));
    ASSERT_TRUE(waitFor([&isOpened] { return isOpened; }));
    for (const char* const name :
         {"mediaPlayButton", "mediaPosition", "mediaMuteButton", "mediaVolume"}) {
        EXPECT_FALSE(view.findChild<QWidget*>(QLatin1String(name))->isEnabled()) << name;
    }
    QStringList times;
    for (const Label* const label : view.findChildren<Label*>()) {
        times.append(label->text());
    }
    EXPECT_EQ(times, (QStringList{QStringLiteral("0:00"), QStringLiteral("0:02")}));
    EXPECT_EQ(MediaView::silenceText(), QStringLiteral("No device to play sound"));
    EXPECT_FALSE(view.player().status().isPlaying);
}

TEST_F(MediaTests, AFilmWithoutAFrameRateIsNotShown)
{
    // The beginning of one picture in H.263, 176 x 144, and nothing that could be told from it.
    m_disk.fileWithContents("film.mov",
                            std::string("\0\0\x80\x02\x08", 5) + std::string(2000, '\x0f'));
    EXPECT_EQ(phaseOf(m_disk.path("film.mov")), Phase::failed);
    EXPECT_FALSE(m_player.status().hasFilm);
}

TEST_F(MediaTests, FailsForWhatIsBroken)
{
    const std::string whole = test::contentsOf("film.mp4");
    m_disk.fileWithContents("cut.mp4", whole.substr(0, 100));
    m_disk.fileWithContents("noise.mp4", std::string(5000, '\x5a'));
    m_disk.file("empty.mp4");
    m_disk.folder("folder.mp4");
    m_disk.fifo("pipe.mp4");
    for (const char* const name :
         {"cut.mp4", "noise.mp4", "empty.mp4", "folder.mp4", "pipe.mp4", "missing.mp4"}) {
        EXPECT_EQ(phaseOf(m_disk.path(name)), Phase::failed) << name;
    }
    EXPECT_EQ(phaseOf(film()), Phase::ready) << "the next one plays again";
}

TEST_F(MediaTests, NothingIsHeardOfAFileThatIsClosed)
{
    for (int i = 0; i < 20; ++i) {
        m_player.open(film());
    }
    ASSERT_EQ(phaseOf(film()), Phase::ready);
    m_player.close();
    EXPECT_EQ(m_player.status(), MediaStatus{});
    int told = 0;
    QObject::connect(&m_player, &MediaPlayer::statusChanged, [&told] { ++told; });
    m_disk.file("empty.mp4");
    m_player.open(m_disk.path("empty.mp4"));
    ASSERT_TRUE(waitFor([&told] { return told > 0; }));
    EXPECT_EQ(m_player.status().phase, Phase::failed) << "of the newest file alone";
}

TEST_F(MediaTests, TheViewHasControls)
{
    MediaView view;
    view.resize(400, 300);
    view.show();
    bool isOpened = false;
    QObject::connect(&view, &MediaView::opened, [&isOpened] { isOpened = true; });
    view.open(longFilm());
    ASSERT_TRUE(waitFor([&isOpened] { return isOpened; }));
    EXPECT_TRUE(waitFor([&view] { return view.grab().toImage().pixelColor(200, 100).red() > 200; }))
        << "a frame fills the stage";
    auto* const play = view.findChild<ToolButton*>(QStringLiteral("mediaPlayButton"));
    auto* const place = view.findChild<MediaSlider*>(QStringLiteral("mediaPosition"));
    EXPECT_EQ(place->maximum(), 120'000);
    ASSERT_TRUE(waitFor([play] { return play->symbol() == QLatin1String("pause.fill"); }));
    EXPECT_EQ(play->toolTip(), QStringLiteral("Pause"));
    QTest::mouseClick(play, Qt::LeftButton);
    ASSERT_TRUE(waitFor([play] { return play->symbol() == QLatin1String("play.fill"); }));
    EXPECT_EQ(play->toolTip(), QStringLiteral("Play"));
    QTest::mouseClick(place, Qt::LeftButton, {}, QPoint(place->width() * 3 / 4, 5));
    EXPECT_TRUE(waitFor([&view] { return view.player().status().position >= 80'000; }));
    EXPECT_EQ(view.findChild<QWidget*>(QStringLiteral("mediaVolume"))->isEnabled(), canBeHeard());
}

TEST_F(MediaTests, VolumeAndMuteGoTogether)
{
    MediaView view;
    auto* const mute = view.findChild<ToolButton*>(QStringLiteral("mediaMuteButton"));
    auto* const volume = view.findChild<MediaSlider*>(QStringLiteral("mediaVolume"));
    EXPECT_EQ(volume->value(), 100);
    mute->click();
    EXPECT_TRUE(view.player().isMuted());
    EXPECT_EQ(mute->symbol(), QStringLiteral("speaker.slash.fill"));
    EXPECT_EQ(mute->toolTip(), QStringLiteral("Unmute"));
    volume->setValue(40);
    EXPECT_FALSE(view.player().isMuted());
    EXPECT_DOUBLE_EQ(view.player().volume(), 0.4);
    EXPECT_EQ(mute->toolTip(), QStringLiteral("Mute"));
    volume->setValue(0);
    EXPECT_TRUE(view.player().isMuted());
}

TEST_F(MediaTests, TellsTimes)
{
    EXPECT_EQ(MediaView::timeText(0), QStringLiteral("0:00"));
    EXPECT_EQ(MediaView::timeText(7'999), QStringLiteral("0:07"));
    EXPECT_EQ(MediaView::timeText(3'599'000), QStringLiteral("59:59"));
    EXPECT_EQ(MediaView::timeText(3'600'000), QStringLiteral("1:00:00"));
    EXPECT_EQ(MediaView::timeText(36'061'000), QStringLiteral("10:01:01"));
}

int rotationOf(const std::string& contents)
{
    QByteArray bytes = QByteArray::fromStdString(contents);
    QBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    return filmRotation(device);
}

TEST(FilmRotationTests, TellsQuartersOfATurnClockwise)
{
    constexpr std::uint32_t one = 0x10000;
    EXPECT_EQ(rotationOf(test::turnedFilm(one, 0)), 0);
    EXPECT_EQ(rotationOf(test::turnedFilm(0, one)), 90);
    EXPECT_EQ(rotationOf(test::turnedFilm(0u - one, 0)), 180);
    EXPECT_EQ(rotationOf(test::turnedFilm(0, 0u - one)), 270);
    EXPECT_EQ(rotationOf(test::turnedFilm(0, 0)), 0);
}

TEST(FilmRotationTests, WhatIsBrokenIsNotTurned)
{
    const std::string whole = test::turnedFilm(0, 0x10000);
    const std::size_t movie = whole.find("moov");
    for (std::size_t length = 0; length < whole.size(); length += 7) {
        const int rotation = rotationOf(whole.substr(0, length));
        EXPECT_EQ(rotation, 0) << "cut after " << length << ", its last box ends too late";
    }
    for (const char size : {'\0', '\1', '\x7f', '\xff'}) {
        std::string damaged = whole;
        for (std::size_t i = movie - 4; i < movie; ++i) {
            damaged[i] = size;
        }
        rotationOf(damaged); // any answer, and an end
    }
    EXPECT_EQ(rotationOf(std::string(1000, '\0')), 0);
    EXPECT_EQ(rotationOf(std::string()), 0);
}

TEST(LatestFrameTests, ANewerFrameTakesThePlaceOfOneThatWaits)
{
    LatestFrame frame;
    QImage old(1, 1, QImage::Format_RGB32);
    QImage young(2, 2, QImage::Format_RGB32);
    EXPECT_TRUE(frame.take().isNull());
    EXPECT_TRUE(frame.put(old));
    EXPECT_FALSE(frame.put(young)) << "somebody has been told";
    EXPECT_EQ(frame.take().size(), QSize(2, 2));
    EXPECT_TRUE(frame.take().isNull());
    EXPECT_TRUE(frame.put(old));
}

TEST(MediaSliderTests, TheKnobStandsOutFromAnyGround)
{
    setTheme(AppTheme::light, AccentChoice::blue);
    MediaSlider slider(QStringLiteral("Position"));
    slider.setRange(0, 100);
    slider.setValue(50);
    slider.resize(212, 20);
    const QImage image = slider.grab().toImage();
    // The middle of a knob of 12 points is white, and its edge left and right is not.
    EXPECT_EQ(image.pixelColor(106, 10), themeColor(ThemeColor::knob));
    for (const int x : {100, 111}) {
        EXPECT_LT(image.pixelColor(x, 10).red(), 64) << x;
        EXPECT_GT(image.pixelColor(x, 10).blue(), 200) << x;
    }
    setTheme(AppTheme::dark, AccentChoice::blue);
}

} // namespace
} // namespace quorvane
