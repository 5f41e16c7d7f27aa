// SPDX-License-Identifier: MIT
#include "ToolRows.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QLocale>

#include <functional>

namespace quorvane::toolrows {
namespace {

QString translated(const char* text)
{
    return QCoreApplication::translate("ToolRows", text);
}

RowBadge caution(const QString& words)
{
    RowBadge badge;
    badge.text = words;
    badge.tint = Tint::orange;
    badge.symbol = QStringLiteral("exclamationmark.triangle.fill");
    return badge;
}

QString reasonFor(TrashOutcome outcome, const FilePath& path)
{
    const QString folder = path.parent().displayText();
    switch (outcome) {
    case TrashOutcome::notPermitted:
        return translated("no permission for %1").arg(folder);
    case TrashOutcome::readOnly:
        return translated("%1 is read-only").arg(folder);
    case TrashOutcome::notOfferedHere:
        return translated("no Trash for %1").arg(folder);
    case TrashOutcome::protectedPlace:
        return translated("part of the system");
    case TrashOutcome::mountPoint:
    case TrashOutcome::holdsMount:
        return translated("a volume is mounted there");
    case TrashOutcome::mountsUnknown:
        return translated("the mounted volumes are unknown");
    case TrashOutcome::missing:
        return translated("not there any more");
    case TrashOutcome::behindLink:
    case TrashOutcome::otherKind:
    case TrashOutcome::changed:
        return translated("it has changed");
    case TrashOutcome::lastCopy:
        return translated("it is the last copy");
    case TrashOutcome::moved:
    case TrashOutcome::failed:
        break;
    }
    return translated("the move of %1 failed").arg(path.displayText());
}

} // namespace

QString text(std::string_view bytes)
{
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

std::vector<RowBadge> evidenceBadges(const Evidence& evidence)
{
    std::vector<RowBadge> badges;
    if (!evidence.basis.empty()) {
        RowBadge basis;
        basis.text = text(evidence.basis);
        badges.push_back(basis);
    }
    if (!evidence.caution.empty()) {
        badges.push_back(caution(text(evidence.caution)));
    }
    return badges;
}

RowBadge notMoved(const QString& reason)
{
    return caution(translated("Not moved: %1").arg(reason));
}

RowBadge notMoved(TrashOutcome outcome, const FilePath& path)
{
    return notMoved(reasonFor(outcome, path));
}

QString date(std::int64_t secondsSince1970)
{
    return QLocale::c().toString(QDateTime::fromSecsSinceEpoch(secondsSince1970),
                                 QStringLiteral("MMM d, yyyy"));
}

quint64 key(const std::string& id)
{
    return std::hash<std::string>()(id);
}

} // namespace quorvane::toolrows
