// SPDX-License-Identifier: MIT
#include "GrowthColors.h"

#include <QCoreApplication>
#include <QLocale>

namespace quorvane {

QString sinceText(const SnapshotGrowth& growth, const FileNode& node)
{
    return QCoreApplication::translate("GrowthColors", "since %1: %2")
        .arg(growth.base().formattedDay(QLocale()), signedBytes(growth.changeOf(node).delta));
}

} // namespace quorvane
