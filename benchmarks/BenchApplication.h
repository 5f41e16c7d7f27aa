// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>

namespace quorvane {

/// The one application object of a command that paints or opens a window. Main thread.
class BenchApplication final : public QApplication
{
public:
    enum class Display {
        offscreen,  ///< pictures alone
        ofTheWindow ///< the display there is, else none; its dispatcher tells when it goes to sleep
    };

    explicit BenchApplication(Display display)
        : QApplication(wordCountFor(display), words())
    {}

private:
    /// Qt reads the environment when the application is made, and keeps a reference to the count.
    static int& wordCountFor(Display display)
    {
        if (display == Display::ofTheWindow) {
            qputenv("QT_NO_GLIB", "1");
        }
        if (display == Display::offscreen || qEnvironmentVariableIsEmpty("DISPLAY")) {
            qputenv("QT_QPA_PLATFORM", "offscreen");
        }
        static int wordCount = 1;
        return wordCount;
    }
    static char** words()
    {
        static char name[] = "quorvane-bench";
        static char* words[] = {name, nullptr};
        return words;
    }
};

} // namespace quorvane
