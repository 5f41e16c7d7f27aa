// SPDX-License-Identifier: MIT
#include "NameFolding.h"

#include "Text.h"

#include <QList>
#include <QStringList>

namespace quorvane {
namespace {

QString folded(const QString& text)
{
    QString kept;
    for (const char32_t codePoint : text.normalized(QString::NormalizationForm_D).toUcs4()) {
        if (QChar::category(codePoint) != QChar::Mark_NonSpacing) {
            kept += QStringView(QChar::fromUcs4(codePoint));
        }
    }
    return kept.toCaseFolded();
}

} // namespace

void appendFoldedName(std::string& out, std::string_view name)
{
    const std::size_t start = out.size();
    unsigned char all = 0;
    out.append(name);
    for (std::size_t i = start; i < out.size(); ++i) {
        const char c = out[i];
        all |= static_cast<unsigned char>(c);
        out[i] = asciiLower(c);
    }
    if (all >= 0x80) {
        out.resize(start);
        out.append(folded(displayText(name)).toStdString());
    }
}

std::vector<std::string> foldedWords(const QString& query)
{
    std::vector<std::string> words;
    for (const QString& word : query.trimmed().split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        std::string folded;
        appendFoldedName(folded, word.toStdString());
        if (!folded.empty()) {
            words.push_back(std::move(folded));
        }
    }
    return words;
}

} // namespace quorvane
