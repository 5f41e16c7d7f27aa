// SPDX-License-Identifier: MIT
#pragma once

#include "AppScreens.h"
#include "WindowGround.h"

#include <QPointer>
#include <QProperty>
#include <QSize>
#include <QWidget>

namespace quorvane {

class AppState;
class ContentView;
class Dialog;
class FlashPresenter;
class Refresher;

/// The program's window: menu bar over the root screen on the tinted ground, and the flash banner
/// above them. Main thread.
class MainWindow : public QWidget
{
    Q_OBJECT

public:
    static constexpr QSize defaultSize{1560, 980};
    static constexpr QSize minimumContentSize{1000, 620};
    /// Opacity of the palette's tint in the top left corner.
    static constexpr double tintOpacity = 0.3;

    MainWindow(AppState& state, AppScreens screens);

    /// The program is about to end with all its windows. If a batch holds that up, it ends when the
    /// batch is done.
    void expectQuit() { m_isQuitting = true; }

    ContentView& content() { return *m_content; }

protected:
    /// While a batch is on its way to the Trash the window says so, and closes when it is done.
    void closeEvent(QCloseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void takeDefaultSize();
    void refreshFarewell();

    AppState& m_state;
    AppScreens m_screens;
    ContentView* m_content;
    WindowGround m_ground;
    FlashPresenter* m_flash;
    QPropertyNotifier m_paletteChanged;
    QPointer<Dialog> m_farewell; ///< tells that the window closes when the batch is done
    bool m_isQuitting = false;
    Refresher* m_farewellRefresher;
};

} // namespace quorvane
