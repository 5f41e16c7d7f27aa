// SPDX-License-Identifier: MIT
#pragma once

#include "DiskTree.h"
#include "FakePlatform.h"
#include "FaultyFileSystemCalls.h"
#include "Gate.h"
#include "MainWindow.h"
#include "QuorvaneApp.h"
#include "WaitFor.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QPointer>
#include <QTest>

#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace quorvane {

/// The program over a small home folder, with a gate that can hold a scan up.
class ProgramFixture : public ::testing::Test
{
protected:
    /// For a window to come up, in milliseconds, on a machine that has much else to do.
    static constexpr int patience = 30'000;

    ProgramFixture()
    {
        m_disk.file("home/Movies/film.mov", 90000);
        m_disk.file("home/Documents/letter.txt", 3000);
        m_disk.file("other/notes.md", 500);
        m_calls.before(FaultyFileSystemCalls::Call::openDirectory,
                       [this](int, std::string_view) { m_gate.pass(); });
    }

    ~ProgramFixture() override { m_gate.open(); }

    /// Shows the window and waits until it is on screen.
    void start(AppScreens screens = AppScreens::standard())
    {
        m_program = std::make_unique<QuorvaneApp>(*qApp, m_platform.platform(), std::move(screens));
        m_quitsWithItsWindow = QApplication::quitOnLastWindowClosed();
        QApplication::setQuitOnLastWindowClosed(false);
        m_program->showWindow();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window(), patience));
    }

    /// The same with the program's own screens, each of which showSection() can wait for.
    void startWithSections()
    {
        AppScreens screens = AppScreens::standard();
        for (const AppSection section : screens.sections.keys()) {
            screens.sections.add(section, [this, section, all = AppScreens::standard().sections](
                                              AppState& state, QWidget* parent) {
                QWidget* const screen = all.make(section, state, parent);
                m_sections[section] = screen;
                return screen;
            });
        }
        m_sectionKeys = screens.sections.keys();
        start(std::move(screens));
    }

    /// Sections that the program has a screen for.
    const std::vector<AppSection>& sectionKeys() const { return m_sectionKeys; }

    /// Shows the section's own screen and waits until it stands. False when it does not.
    bool showSection(AppSection section)
    {
        state().section = section;
        const bool isOnShow = waitFor([this, section] {
            const auto found = m_sections.find(section);
            return found != m_sections.end() && found->second && found->second->isVisible();
        });
        settle();
        return isOnShow;
    }

    AppState& state() { return m_program->appState(); }
    MainWindow& window() { return m_program->window(); }

    /// The widget or action of that name in the window; fails the test when there is none.
    template<class T = QWidget>
    T* find(const char* name)
    {
        T* const found = window().findChild<T*>(QLatin1String(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }

    bool exists(const char* name)
    {
        return window().findChild<QObject*>(QLatin1String(name)) != nullptr;
    }

    bool isShown(const char* name)
    {
        const auto* const widget = window().findChild<QWidget*>(QLatin1String(name));
        return widget != nullptr && widget->isVisible();
    }

    bool waitUntilShown(const char* name)
    {
        return waitFor([this, name] { return isShown(name); });
    }

    void click(const char* name)
    {
        if (QWidget* const widget = find(name)) {
            EXPECT_TRUE(widget->isVisible()) << name;
            QTest::mouseClick(widget, Qt::LeftButton);
        }
    }

    /// Everything that has been posted so far is done.
    void settle()
    {
        bool turned = false;
        QMetaObject::invokeMethod(
            qApp, [&turned] { turned = true; }, Qt::QueuedConnection);
        EXPECT_TRUE(waitFor([&turned] { return turned; }));
    }

    /// A finished scan of the home folder is on show.
    void scanHome()
    {
        state().scanHome();
        ASSERT_TRUE(waitUntilShown("visualizerHost"));
    }

    DiskTree m_disk;
    Gate m_gate{Gate::State::open};
    FaultyFileSystemCalls m_calls;
    FakePlatform m_platform{m_disk.path("home"), m_calls};
    std::unique_ptr<QuorvaneApp> m_program;
    bool m_quitsWithItsWindow = false;

private:
    std::vector<AppSection> m_sectionKeys;
    std::map<AppSection, QPointer<QWidget>> m_sections;
};

} // namespace quorvane
