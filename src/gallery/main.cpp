// SPDX-License-Identifier: MIT
#include "DesktopSettings.h"
#include "GalleryWindow.h"
#include "QuorvaneStyle.h"
#include "Theme.h"
#include "ToolGallery.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTimer>

#include <memory>
#include <optional>

#include <cstdio>

using namespace quorvane;

namespace {

constexpr int settleTime = 200; ///< milliseconds that the window gets before its picture is taken

/// The value behind an option, read before there is an application to parse the arguments.
QByteArray earlyOption(int argc, char** argv, const char* name)
{
    for (int index = 1; index + 1 < argc; ++index) {
        if (qstrcmp(argv[index], name) == 0) {
            return argv[index + 1];
        }
    }
    return {};
}

struct Options
{
    AppTheme scheme = AppTheme::dark;
    AccentChoice accent = AccentChoice::blue;
    QString page;
    QString screenshot;
};

std::optional<Options> parse(const QApplication& application)
{
    QCommandLineParser parser;
    const QCommandLineOption scheme(QStringLiteral("theme"), QStringLiteral("Colour scheme."),
                                    QStringLiteral("dark|light"), QStringLiteral("dark"));
    const QCommandLineOption accent(QStringLiteral("accent"), QStringLiteral("Accent colour."),
                                    QStringLiteral("name"), QStringLiteral("blue"));
    const QCommandLineOption screenshot(QStringLiteral("screenshot"),
                                        QStringLiteral("Save a picture and end."),
                                        QStringLiteral("file"));
    const QCommandLineOption scale(QStringLiteral("scale"), QStringLiteral("Scale factor."),
                                   QStringLiteral("number"));
    const QCommandLineOption page(QStringLiteral("page"), QStringLiteral("What to show."),
                                  QStringLiteral("controls|rows|sections|empty"),
                                  QStringLiteral("controls"));
    parser.addOptions({scheme, accent, screenshot, scale, page});
    parser.addHelpOption();
    parser.process(application);
    const auto wantedScheme = appThemeFromRawValue(parser.value(scheme).toStdString());
    const auto wantedAccent = accentChoiceFromRawValue(parser.value(accent).toStdString());
    if (!wantedScheme || !wantedAccent) {
        return std::nullopt;
    }
    return Options{*wantedScheme, *wantedAccent, parser.value(page), parser.value(screenshot)};
}

std::unique_ptr<QWidget> makePage(const QString& page)
{
    if (page == QLatin1String("controls")) {
        return std::make_unique<gallery::GalleryWindow>();
    }
    return std::make_unique<gallery::ToolGallery>(page);
}

} // namespace

int main(int argc, char** argv)
{
    const QByteArray scale = earlyOption(argc, argv, "--scale");
    if (!scale.isEmpty()) {
        qputenv("QT_SCALE_FACTOR", scale);
    }
    prepareTextRendering();
    QApplication application(argc, argv);
    const std::optional<Options> options = parse(application);
    if (!options) {
        std::fputs("Unknown theme or accent.\n", stderr);
        return 2;
    }
    QuorvaneStyle::install(application);
    setTheme(options->scheme, options->accent);
    if (!options->screenshot.isEmpty()) {
        DesktopSettings::instance().setReducedMotion(true);
        QApplication::setCursorFlashTime(0);
    }
    const std::unique_ptr<QWidget> window = makePage(options->page);
    window->show();
    if (auto* const focused = window->findChild<QWidget*>(QStringLiteral("initialFocus"))) {
        focused->setFocus();
    }
    if (options->screenshot.isEmpty()) {
        return QApplication::exec();
    }
    int status = 0;
    QTimer::singleShot(settleTime, window.get(), [&] {
        if (!window->grab().save(options->screenshot)) {
            std::fputs("Cannot write the picture.\n", stderr);
            status = 1;
        }
        QApplication::quit();
    });
    QApplication::exec();
    return status;
}
