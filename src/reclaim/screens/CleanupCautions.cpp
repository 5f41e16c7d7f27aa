// SPDX-License-Identifier: MIT
#include "CleanupCautions.h"

#include "Label.h"
#include "Painting.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace quorvane {
namespace {

constexpr int maxLines = 6;
constexpr int symbolSide = 13;
constexpr int symbolGap = 9;
constexpr int symbolTop = 3;

QString symbolName()
{
    return QStringLiteral("exclamationmark.triangle.fill");
}

QString translated(const char* text)
{
    return QCoreApplication::translate("CleanupCautions", text);
}

/// What is said of an entry that stays: on its row, why as the end of "“{name}” will stay: {why}.",
/// and what to do.
struct Explanation
{
    QString mark;
    QString why;
    QString advice;
};

Explanation explanationOf(TrashOutcome obstacle)
{
    switch (obstacle) {
    case TrashOutcome::holdsMount:
        return {translated("Will stay: holds a mounted volume"),
                translated("a volume is mounted inside it"),
                translated("Unmount the volume, then stage the folder again.")};
    case TrashOutcome::mountPoint:
        return {translated("Will stay: a volume is mounted here"),
                translated("a volume is mounted on it"), translated("Unmount the volume instead.")};
    case TrashOutcome::mountsUnknown:
        return {translated("Will stay: mounts are unknown"),
                translated("the system does not tell what is mounted inside it"),
                translated("Move it with the file manager.")};
    case TrashOutcome::changed:
        return {translated("Will stay: changed since the scan"),
                translated("it has changed since the scan"),
                translated("Scan again, then stage it if it is still to go.")};
    case TrashOutcome::otherKind:
    case TrashOutcome::behindLink:
        return {translated("Will stay: replaced since the scan"),
                translated("something else has taken its place since the scan"),
                translated("Scan again to see what is there now.")};
    case TrashOutcome::missing:
        return {translated("Not there any more"), translated("it is not there any more"),
                translated("Unstage it, or scan again.")};
    case TrashOutcome::protectedPlace:
        return {translated("Will stay: protected"),
                translated("it is part of the system or holds your home folder"),
                translated("Stage what is inside it instead.")};
    case TrashOutcome::notOfferedHere:
        return {
            translated("Will stay: no Trash here"), translated("its volume has no Trash"),
            translated("Move it to a volume that has one, or remove it with the file manager.")};
    case TrashOutcome::readOnly:
        return {translated("Will stay: read-only volume"),
                translated("its volume takes no changes"),
                translated("Make the volume writable, then move it.")};
    case TrashOutcome::notPermitted:
        return {translated("Will stay: not permitted"),
                translated("you may not take it out of its folder"),
                translated("Check the permissions of its folder.")};
    default:
        return {translated("Will stay: out of reach"), translated("it cannot be reached"),
                translated("Check the permissions of its folder.")};
    }
}

Explanation noKeeperExplanation()
{
    return {translated("Will stay: the last copy"),
            translated("its other copies have changed or gone"),
            translated("Search for duplicates again before you choose a copy.")};
}

QString lossTitle(const QueueCaution& caution)
{
    if (caution.lostGroups > 1) {
        return translated("All copies of %1 files are staged").arg(caution.lostGroups);
    }
    return caution.copies == 2
               ? translated("Both copies of this file are staged")
               : translated("All %1 copies of this file are staged").arg(caution.copies);
}

QString lineOf(const FileNode& node, const QueueCaution& caution)
{
    if (caution.kind != QueueCaution::Kind::takesLastCopy) {
        const Explanation stays = caution.kind == QueueCaution::Kind::noKeeperLeft
                                      ? noKeeperExplanation()
                                      : explanationOf(caution.obstacle);
        return translated("“%1” will stay: %2. %3")
            .arg(node.displayName(), stays.why, stays.advice);
    }
    const QString name = caution.example->displayName();
    if (caution.lostGroups > 1) {
        return translated("This takes the last copy of “%1” and of %2 more. Unstage a copy of each "
                          "to keep it.")
            .arg(name, QString::number(caution.lostGroups - 1));
    }
    return translated("This takes the last copy of “%1”. Unstage one of its %2 copies to keep it.")
        .arg(name, QString::number(caution.copies));
}

/// Stands in for the lines that there is no room for.
QString restLine(std::size_t losses, std::size_t staying)
{
    QStringList parts;
    if (losses > 0) {
        parts.push_back(translated("This takes the last copy of %1 more.").arg(losses));
    }
    if (staying > 0) {
        parts.push_back(translated("%1 more will stay. Their rows tell why.").arg(staying));
    }
    return parts.join(QLatin1Char(' '));
}

} // namespace

std::optional<RowBadge> cautionBadge(const QueueCaution& caution)
{
    RowBadge badge;
    badge.tint = Tint::orange;
    badge.symbol = symbolName();
    switch (caution.kind) {
    case QueueCaution::Kind::none:
        return std::nullopt;
    case QueueCaution::Kind::takesLastCopy:
        badge.text = translated("Takes the last copy");
        badge.toolTip = lossTitle(caution) % QLatin1Char('\n') %
                        translated("After the move none would be left outside the Trash. Unstage "
                                   "one of them to keep it.");
        return badge;
    case QueueCaution::Kind::willStay:
    case QueueCaution::Kind::noKeeperLeft:
        break;
    }
    const Explanation stays = caution.kind == QueueCaution::Kind::noKeeperLeft
                                  ? noKeeperExplanation()
                                  : explanationOf(caution.obstacle);
    badge.text = stays.mark;
    badge.toolTip =
        translated("This will stay: %1").arg(stays.why) % QLatin1Char('\n') % stays.advice;
    return badge;
}

QStringList cautionLines(const QueueCautions& cautions)
{
    QStringList lines;
    std::size_t losses = 0;
    std::size_t staying = 0;
    const auto count = static_cast<std::size_t>(std::count_if(
        cautions.cautions.begin(), cautions.cautions.end(),
        [](const QueueCaution& each) { return each.kind != QueueCaution::Kind::none; }));
    // What would be lost is named before what only stays.
    std::vector<std::size_t> order(cautions.cautions.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_partition(order.begin(), order.end(), [&cautions](std::size_t i) {
        return cautions.cautions[i].kind == QueueCaution::Kind::takesLastCopy;
    });
    for (const std::size_t i : order) {
        const QueueCaution& caution = cautions.cautions[i];
        if (caution.kind == QueueCaution::Kind::none) {
            continue;
        }
        if (count <= maxLines || lines.size() + 1 < maxLines) {
            lines.push_back(lineOf(*cautions.queue[i], caution));
        } else if (caution.kind == QueueCaution::Kind::takesLastCopy) {
            losses += caution.lostGroups;
        } else {
            ++staying;
        }
    }
    if (losses + staying > 0) {
        lines.push_back(restLine(losses, staying));
    }
    return lines;
}

CautionPanel::CautionPanel(QWidget* parent)
    : QWidget(parent)
    , m_column(new QVBoxLayout(this))
{
    setObjectName(QStringLiteral("cautionPanel"));
    // Text and buttons around it stand at their own distances.
    m_column->setContentsMargins(spacing::m, spacing::l + spacing::m, spacing::m, spacing::m);
    m_column->setSpacing(spacing::s);
    hide();
}

void CautionPanel::setLines(const QStringList& lines)
{
    if (lines == m_lines) {
        return;
    }
    m_lines = lines;
    while (QLayoutItem* const item = m_column->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    for (const QString& line : m_lines) {
        auto* const row = new QWidget(this);
        auto* const words = new QHBoxLayout(row);
        words->setContentsMargins(0, 0, 0, 0);
        words->setSpacing(symbolGap);
        auto* const symbol = new QLabel(row);
        symbol->setPixmap(symbolPixmap(symbolName(), symbolSide, themeColor(ThemeColor::orangeText),
                                       devicePixelRatioF()));
        symbol->setContentsMargins(0, symbolTop, 0, 0);
        words->addWidget(symbol, 0, Qt::AlignTop);
        auto* const text = new Label(line, TextStyle::caption, ThemeColor::text1, row);
        text->setTextFormat(Qt::PlainText);
        text->setWordWrap(true);
        words->addWidget(text, 1);
        m_column->addWidget(row);
    }
    setAccessibleName(m_lines.join(QLatin1Char(' ')));
    setVisible(!m_lines.isEmpty());
}

void CautionPanel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintPanel(painter, rect().adjusted(0, spacing::l, 0, 0), radius::control,
               themeColor(ThemeColor::orangeLow), Qt::transparent);
}

} // namespace quorvane
