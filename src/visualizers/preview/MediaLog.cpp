// SPDX-License-Identifier: MIT
#include "MediaLog.h"

#include <QLoggingCategory>
#include <QStandardPaths>
#include <QtGlobal>

#ifdef QUORVANE_USES_FFMPEG
extern "C" {
#include <libavutil/log.h>
}
#endif

namespace quorvane {
namespace {

bool hasRulesOfTheUser()
{
    return qEnvironmentVariableIsSet("QT_LOGGING_RULES") ||
           qEnvironmentVariableIsSet("QT_LOGGING_CONF") ||
           !QStandardPaths::locate(QStandardPaths::GenericConfigLocation,
                                   QStringLiteral("QtProject/qtlogging.ini"))
                .isEmpty();
}

} // namespace

void quietMediaLog()
{
    if (hasRulesOfTheUser()) {
        return;
    }
    // The search for codecs is told in no category of its own.
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false\n"
                                                    "qt.multimedia*=false\n"));
    // The library of drivers for graphics cards counts from 0, nothing, to 2.
    constexpr const char* driverMessages = "LIBVA_MESSAGING_LEVEL";
    if (!qEnvironmentVariableIsSet(driverMessages)) {
        qputenv(driverMessages, "0");
    }
#ifdef QUORVANE_USES_FFMPEG
    av_log_set_level(AV_LOG_QUIET);
#endif
}

} // namespace quorvane
