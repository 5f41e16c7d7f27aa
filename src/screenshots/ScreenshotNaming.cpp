// SPDX-License-Identifier: MIT
#include "ScreenshotNaming.h"

#include "Text.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QStringList>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

namespace quorvane {
namespace {

constexpr std::array<std::string_view, 7> imageExtensions{"png",  "jpg",  "jpeg", "heic",
                                                          "heif", "tiff", "gif"};

/// Words of application menus and buttons: they say nothing of what a screen shows.
constexpr std::array<const char*, 41> chromeWords{
    "file",   "edit",   "view",   "go",   "window",   "help",    "cancel", "ok",     "done",
    "save",   "open",   "close",  "back", "next",     "skip",    "later",  "submit", "retry",
    "delete", "sign",   "in",     "out",  "search",   "refresh", "share",  "menu",   "settings",
    "tools",  "more",   "select", "copy", "paste",    "cut",     "undo",   "redo",   "print",
    "export", "import", "rename", "move", "duplicate"};

constexpr std::array<std::string_view, 5> nameParts{"screenshot", "screen shot", "bildschirmfoto",
                                                    "captura de tela", "screencapture"};
constexpr std::array<std::string_view, 2> nameFronts{"screen recording", "capture "};

// Scores of a whole line and of what is in it.
constexpr int tooShort = -50;
constexpr int noLetter = -90;
constexpr int numbersAlone = -95;
constexpr int address = -80;
constexpr int clockTime = -75;
constexpr int chromeAlone = -85;
constexpr int oneWord = -30;
constexpr int chromeWord = -10;
constexpr int realWord = 8;
constexpr int longWord = 2;
constexpr int titleLength = 25;
constexpr int sentenceLength = -40;
constexpr int proseLength = -15;

constexpr qsizetype minLineLength = 4;
constexpr qsizetype maxUsualWordLength = 12;
constexpr int maxTitleWords = 5;
constexpr int maxPhraseWords = 10;
constexpr qsizetype minProseWords = 17;

/// User-perceived characters (Unicode Standard Annex 29).
qsizetype perceivedLength(const QString& text)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype count = 0;
    while (finder.toNextBoundary() > 0) {
        ++count;
    }
    return count;
}

QString perceivedPrefix(const QString& text, qsizetype count)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    while (count > 0 && finder.toNextBoundary() > 0) {
        --count;
    }
    return count > 0 ? text : text.left(std::max<qsizetype>(finder.position(), 0));
}

template<class Predicate>
bool anyCodePoint(const QString& text, Predicate predicate)
{
    const QList<uint> points = text.toUcs4();
    return std::any_of(points.begin(), points.end(), predicate);
}

/// Letter numbers such as Roman numerals are letters and numbers at once.
bool isLetter(uint point)
{
    return QChar::isLetter(point) || QChar::category(point) == QChar::Number_Letter;
}

bool holdsLetter(const QString& text)
{
    return anyCodePoint(text, isLetter);
}

bool holdsNumbersAlone(const QString& text)
{
    return !anyCodePoint(
        text, [](uint point) { return !QChar::isSpace(point) && !QChar::isNumber(point); });
}

QStringList words(const QString& text)
{
    QStringList result;
    QString word;
    for (const QChar character : text) {
        if (!character.isSpace()) {
            word += character;
        } else if (!word.isEmpty()) {
            result.append(std::exchange(word, QString()));
        }
    }
    if (!word.isEmpty()) {
        result.append(word);
    }
    return result;
}

QString trimmedOf(const QString& text, QLatin1String characters)
{
    qsizetype first = 0;
    qsizetype last = text.size();
    while (first < last && characters.contains(text.at(first))) {
        ++first;
    }
    while (last > first && characters.contains(text.at(last - 1))) {
        --last;
    }
    return text.mid(first, last - first);
}

bool isChromeWord(const QString& lowered)
{
    return std::any_of(chromeWords.begin(), chromeWords.end(),
                       [&lowered](const char* word) { return lowered == QLatin1String(word); });
}

bool isAddress(const QString& lowered)
{
    return lowered.contains(QLatin1String("://")) || lowered.startsWith(QLatin1String("file://")) ||
           lowered.startsWith(QLatin1String("www."));
}

int wordsScore(const QStringList& lineWords)
{
    int score = 0;
    int realWords = 0;
    for (const QString& piece : lineWords) {
        const QString word = trimmedOf(piece, QLatin1String(".,;:!?()"));
        if (word.isEmpty() || !holdsLetter(word)) {
            continue;
        }
        if (isChromeWord(word.toLower())) {
            score += chromeWord;
            continue;
        }
        ++realWords;
        score += realWord + (perceivedLength(word) > maxUsualWordLength ? longWord : 0);
    }
    if (realWords == 0) {
        return chromeAlone;
    }
    if (realWords == 1) {
        return oneWord;
    }
    if (realWords <= maxTitleWords) {
        score += titleLength;
    } else if (realWords > maxPhraseWords) {
        score += sentenceLength;
    }
    return score + (lineWords.size() >= minProseWords ? proseLength : 0);
}

/// The text in UTF-8 within so many bytes, cut at the border of a user-perceived character, without
/// an underscore at its end.
std::string cutToBytes(const QString& text, std::size_t maxBytes)
{
    QString kept = text;
    while (static_cast<std::size_t>(kept.toUtf8().size()) > maxBytes) {
        kept = perceivedPrefix(kept, perceivedLength(kept) - 1);
    }
    while (kept.size() < text.size() && kept.endsWith(QLatin1Char('_'))) {
        kept.chop(1);
    }
    return kept.toStdString();
}

/// Whether the stem is the other one, a blank and a number.
bool isNumbered(std::string_view stem, std::string_view other)
{
    if (!stem.starts_with(other) || stem.size() < other.size() + 2 || stem[other.size()] != ' ') {
        return false;
    }
    const std::string_view number = stem.substr(other.size() + 1);
    return number.find_first_not_of("0123456789") == std::string_view::npos;
}

} // namespace

std::string_view ScreenshotNaming::extensionOf(std::string_view filename)
{
    const std::size_t point = filename.rfind('.');
    // A point in front hides a file, and one at the end says nothing.
    return point == std::string_view::npos || point == 0 ? std::string_view()
                                                         : filename.substr(point + 1);
}

std::string_view ScreenshotNaming::stemOf(std::string_view filename)
{
    const std::string_view extension = extensionOf(filename);
    return extension.empty() ? filename
                             : filename.substr(0, filename.size() - extension.size() - 1);
}

bool ScreenshotNaming::isImageName(std::string_view filename)
{
    const std::string extension = lowercased(extensionOf(filename));
    return std::find(imageExtensions.begin(), imageExtensions.end(), extension) !=
           imageExtensions.end();
}

bool ScreenshotNaming::matchesScreenshotName(std::string_view filename)
{
    const std::string stem = lowercased(stemOf(filename));
    const auto holds = [&stem](std::string_view part) {
        return stem.find(part) != std::string::npos;
    };
    const auto begins = [&stem](std::string_view front) { return stem.starts_with(front); };
    return std::any_of(nameParts.begin(), nameParts.end(), holds) ||
           std::any_of(nameFronts.begin(), nameFronts.end(), begins);
}

bool ScreenshotNaming::alreadyRenamed(std::string_view filename)
{
    return stemOf(filename).find(" – ") != std::string_view::npos;
}

int ScreenshotNaming::lineScore(const QString& line)
{
    static const QRegularExpression clock(QStringLiteral("^\\d{1,2}:\\d{2}"),
                                          QRegularExpression::UseUnicodePropertiesOption);
    const QString text = line.trimmed();
    if (perceivedLength(text) < minLineLength) {
        return tooShort;
    }
    if (!holdsLetter(text)) {
        return noLetter;
    }
    if (holdsNumbersAlone(text)) {
        return numbersAlone;
    }
    if (isAddress(text.toLower())) {
        return address;
    }
    if (clock.match(text).hasMatch()) {
        return clockTime;
    }
    return wordsScore(words(text));
}

std::optional<QString> ScreenshotNaming::bestSlug(const std::vector<QString>& lines)
{
    const QString* best = nullptr;
    int bestScore = minScore - 1;
    for (const QString& line : lines) {
        const int score = lineScore(line);
        if (score > bestScore) {
            bestScore = score;
            best = &line;
        }
    }
    if (best == nullptr) {
        return std::nullopt;
    }
    return sanitize(titleCase(*best), maxSlugLength);
}

QString ScreenshotNaming::titleCase(const QString& text)
{
    QStringList result;
    for (const QString& piece : words(text)) {
        const QString trimmedWord = trimmedOf(piece, QLatin1String(".,;:!?"));
        const QString word = trimmedWord.isEmpty() ? piece : trimmedWord;
        const QString first = perceivedPrefix(word, 1);
        const bool beginsWithLetter = !first.isEmpty() && isLetter(first.toUcs4().front());
        result.append(beginsWithLetter ? first.toUpper() + word.mid(first.size()) : word);
    }
    return result.join(QLatin1Char(' '));
}

QString ScreenshotNaming::sanitize(const QString& text, int max)
{
    QString single;
    bool followsBlank = false;
    for (const QChar character : text) {
        const bool isBlank = character.isSpace();
        if (isBlank && followsBlank) {
            continue;
        }
        followsBlank = isBlank;
        const bool isRefused = QLatin1String("\\/:*?\"<>|").contains(character);
        single += isBlank ? QLatin1Char(' ') : isRefused ? QLatin1Char('-') : character;
    }
    return trimmedOf(perceivedPrefix(single, max), QLatin1String(". -"));
}

std::optional<QString> ScreenshotNaming::captureDay(std::string_view filename,
                                                    std::optional<std::int64_t> created,
                                                    const QTimeZone& zone)
{
    static const QRegularExpression day(QStringLiteral("\\d{4}-\\d{2}-\\d{2}"));
    const QString found = day.match(displayText(filename)).captured();
    if (QDate::fromString(found, Qt::ISODate).isValid()) {
        return found;
    }
    if (!created) {
        return std::nullopt;
    }
    return QDateTime::fromSecsSinceEpoch(*created, zone).date().toString(Qt::ISODate);
}

std::string ScreenshotNaming::proposeName(std::string_view filename,
                                          const std::vector<QString>& lines,
                                          std::optional<std::int64_t> created,
                                          const QTimeZone& zone)
{
    const std::optional<QString> slug = bestSlug(lines);
    if (!slug || slug->isEmpty()) {
        return std::string(filename);
    }
    const std::optional<QString> day = captureDay(filename, created, zone);
    const std::string prefix = day ? day->toStdString() + '_' : std::string();
    const std::string_view extension = extensionOf(filename);
    const std::string ending = extension.empty() ? std::string() : '.' + std::string(extension);
    const std::size_t taken = std::min(prefix.size() + ending.size(), maxNameBytes);
    const std::string kept = cutToBytes(words(*slug).join(QLatin1Char('_')), maxNameBytes - taken);
    if (kept.empty() || isNumbered(stemOf(filename), prefix + kept)) {
        return std::string(filename);
    }
    return prefix + kept + ending;
}

std::string ScreenshotNaming::numbered(std::string_view name, int number)
{
    const std::string_view extension = extensionOf(name);
    std::string ending = ' ' + std::to_string(number);
    if (!extension.empty()) {
        ending.append(1, '.').append(extension);
    }
    std::string_view stem = stemOf(name);
    if (stem.size() + ending.size() > maxNameBytes) {
        const std::size_t room = maxNameBytes - std::min(ending.size(), maxNameBytes);
        if (isUtf8(stem)) {
            return cutToBytes(QString::fromUtf8(stem.data(), static_cast<qsizetype>(stem.size())),
                              room) +
                   ending;
        }
        stem = stem.substr(0, room);
    }
    return std::string(stem) + ending;
}

} // namespace quorvane
