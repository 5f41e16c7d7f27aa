// SPDX-License-Identifier: MIT
// The program with the user's own preferences. Opens the settings, clicks the named controls of
// their second page one after the other, and is killed the moment the last click returns. What
// follows a colon is the number of a segment.

#include "AppState.h"
#include "FakePlatform.h"
#include "JsonPreferences.h"
#include "MainWindow.h"
#include "QuorvaneApp.h"
#include "SegmentedPicker.h"
#include "WaitFor.h"

#include <QAbstractButton>
#include <QApplication>
#include <QTest>

#include <csignal>
#include <cstdlib>

namespace quorvane {
namespace {

/// Null when nothing of that name shows.
QWidget* shownWidget(const QWidget& window, const QString& name)
{
    const QStringList parts = name.split(QLatin1Char(':'));
    auto* const widget = window.findChild<QWidget*>(parts[0]);
    if (widget == nullptr || !widget->isVisible()) {
        return nullptr;
    }
    auto* const picker = qobject_cast<SegmentedPicker*>(widget);
    return picker != nullptr && parts.size() == 2 ? picker->segment(parts[1].toInt()) : widget;
}

bool click(const QWidget& window, const QString& name)
{
    if (!waitFor([&] { return shownWidget(window, name) != nullptr; })) {
        return false;
    }
    QTest::mouseClick(shownWidget(window, name), Qt::LeftButton);
    return true;
}

} // namespace
} // namespace quorvane

int main(int argc, char** argv)
{
    using namespace quorvane;
    QApplication application(argc, argv);
    FakePlatform fake;
    const Platform below = fake.platform();
    JsonPreferences preferences(JsonPreferences::standardFilePath());
    QuorvaneApp program(application,
                        Platform{below.fileSystem, preferences, below.workspace,
                                 below.folderChooser, below.trash, below.home,
                                 below.lowerThisThread},
                        AppScreens::standard());
    program.showWindow();
    QStringList clicks{QStringLiteral("settingsButton"), QStringLiteral("settingsCategory.1")};
    clicks += QCoreApplication::arguments().mid(1);
    for (const QString& name : clicks) {
        if (!click(program.window(), name)) {
            return EXIT_FAILURE;
        }
    }
    std::raise(SIGKILL);
    return EXIT_FAILURE;
}
