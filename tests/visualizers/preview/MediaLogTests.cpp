// SPDX-License-Identifier: MIT
#include "DiskTree.h"
#include "PreviewSamples.h"

#include <gtest/gtest.h>

#include <QProcess>
#include <QProcessEnvironment>

namespace quorvane {
namespace {

/// What a program that opens a film prints.
class MediaLogTests : public testing::Test
{
protected:
    QByteArray printed(const char* rules)
    {
        m_disk.fileWithContents("film.mp4", test::contentsOf("film.mp4"));
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("QT_LOGGING_RULES"));
        if (rules != nullptr) {
            environment.insert(QStringLiteral("QT_LOGGING_RULES"), QLatin1String(rules));
        }
        QProcess program;
        program.setProcessEnvironment(environment);
        program.setProcessChannelMode(QProcess::MergedChannels);
        program.start(QStringLiteral(QUORVANE_PLAY_FILM), {m_disk.path("film.mp4").displayText()});
        EXPECT_TRUE(program.waitForFinished());
        EXPECT_EQ(program.exitCode(), 0);
        return program.readAll();
    }

    DiskTree m_disk;
};

TEST_F(MediaLogTests, TheSearchForCodecsStaysOffTheTerminal)
{
    const QByteArray text = printed(nullptr);
    for (const char* const word : {"codec", "HW ", "hw context", "AVHWDevice", "CUDA"}) {
        EXPECT_FALSE(text.contains(word)) << text.toStdString();
    }
}

TEST_F(MediaLogTests, RulesOfTheUsersOwnHold)
{
    EXPECT_TRUE(printed("*.debug=true").contains("codec"));
}

} // namespace
} // namespace quorvane
