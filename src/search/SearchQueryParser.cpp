// SPDX-License-Identifier: MIT
#include "SearchQueryParser.h"

#include "CheckedMath.h"
#include "Text.h"

#include <QRegularExpression>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <chrono>
#include <utility>

namespace quorvane {
namespace {

constexpr double dayMs = 86400000.0;
constexpr QLatin1Char blank(' ');
constexpr QLatin1Char quote('"');

struct SizeUnit
{
    QStringView word;
    double bytes;
};
constexpr std::array sizeUnits{
    SizeUnit{u"b", 1.0},           SizeUnit{u"kb", 1024.0},          SizeUnit{u"mb", 1048576.0},
    SizeUnit{u"gb", 1073741824.0}, SizeUnit{u"tb", 1099511627776.0},
};

struct DateAlias
{
    QStringView word;
    int days;
    QStringView label;
};
constexpr std::array dateAliases{
    DateAlias{u"today", 1, u"Today"},       DateAlias{u"yesterday", 2, u"Since yesterday"},
    DateAlias{u"week", 7, u"This week"},    DateAlias{u"recent", 7, u"This week"},
    DateAlias{u"month", 30, u"This month"}, DateAlias{u"year", 365, u"This year"},
};

struct KindAlias
{
    QStringView word;
    SearchFilterKind kind;
};
using enum SearchFilterKind;
constexpr std::array kindAliases{
    KindAlias{u"folder", folder},
    KindAlias{u"folders", folder},
    KindAlias{u"dir", folder},
    KindAlias{u"image", image},
    KindAlias{u"images", image},
    KindAlias{u"img", image},
    KindAlias{u"photo", image},
    KindAlias{u"photos", image},
    KindAlias{u"picture", image},
    KindAlias{u"video", video},
    KindAlias{u"videos", video},
    KindAlias{u"movie", video},
    KindAlias{u"movies", video},
    KindAlias{u"audio", audio},
    KindAlias{u"music", audio},
    KindAlias{u"song", audio},
    KindAlias{u"songs", audio},
    KindAlias{u"doc", document},
    KindAlias{u"docs", document},
    KindAlias{u"document", document},
    KindAlias{u"pdf", pdf},
    KindAlias{u"pdfs", pdf},
    KindAlias{u"app", application},
    KindAlias{u"apps", application},
    KindAlias{u"application", application},
    KindAlias{u"applications", application},
    KindAlias{u"archive", archive},
    KindAlias{u"archives", archive},
    KindAlias{u"zip", archive},
    KindAlias{u"zips", archive},
    KindAlias{u"code", developer},
    KindAlias{u"dev", developer},
};

struct LocationAlias
{
    QStringView word;
    QStringView label;
    std::string_view sub; ///< folder of the home folder; empty for the home folder itself
};
constexpr std::array locationAliases{
    LocationAlias{u"desktop", u"Desktop", "Desktop"},
    LocationAlias{u"downloads", u"Downloads", "Downloads"},
    LocationAlias{u"download", u"Downloads", "Downloads"},
    LocationAlias{u"dl", u"Downloads", "Downloads"},
    LocationAlias{u"documents", u"Documents", "Documents"},
    LocationAlias{u"home", u"Home", ""},
    LocationAlias{u"pictures", u"Pictures", "Pictures"},
};

constexpr std::array<std::string_view, allSearchTokenTypes.size()> tokenTypeNames{
    "kind", "location", "size", "date", "term", "pendingKind", "pendingLocation"};
constexpr std::array<std::string_view, allSearchFilterKinds.size()> kindNames{
    "folder", "image", "video", "audio", "document", "pdf", "application", "archive", "developer"};
constexpr std::array<QStringView, allSearchFilterKinds.size()> chipTexts{
    u"folder", u"image", u"video", u"audio", u"doc", u"pdf", u"app", u"archive", u"code"};

template<class Table>
auto* rowNamed(const Table& table, QStringView word)
{
    const auto row = std::find_if(table.begin(), table.end(),
                                  [&](const auto& each) { return each.word == word; });
    return row == table.end() ? nullptr : &*row;
}

template<class Table>
auto* rowStartingWith(const Table& table, QStringView start)
{
    const auto row = std::find_if(table.begin(), table.end(),
                                  [&](const auto& each) { return each.word.startsWith(start); });
    return row == table.end() ? nullptr : &*row;
}

template<class Case, class Names>
std::optional<Case> caseNamed(const Names& names, std::string_view text)
{
    const auto found = std::find(names.begin(), names.end(), text);
    return found == names.end() ? std::nullopt
                                : std::optional(static_cast<Case>(found - names.begin()));
}

QRegularExpressionMatch matchOfSize(const QString& lower)
{
    // "\d" of the pattern means the digits of every script; a number that is not read counts as 0.
    static const QRegularExpression sizeRegex(
        QStringLiteral("^([<>])(\\d+(?:\\.\\d+)?)(b|kb|mb|gb|tb)$"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    return sizeRegex.match(lower);
}

std::int64_t wholeBytes(double product)
{
    constexpr double limit = 9223372036854775808.0;
    if (!(product < limit)) {
        overflowFault("SearchQueryParser.parse");
    }
    return static_cast<std::int64_t>(product);
}

SearchSize sizeFrom(const QRegularExpressionMatch& match)
{
    const QString number = match.captured(2);
    const QString unit = match.captured(3);
    const bool isReadable =
        std::all_of(number.begin(), number.end(), [](QChar c) { return c.unicode() < 0x80; });
    const double value = isReadable ? decimalValue(number.toStdString()) : 0;
    const std::int64_t bytes = wholeBytes(value * rowNamed(sizeUnits, unit)->bytes);
    SearchSize size;
    size.label = match.captured(1) + number + unit.toUpper();
    (match.captured(1) == QLatin1Char('>') ? size.minBytes : size.maxBytes) = bytes;
    return size;
}

qsizetype characterCount(const QString& text)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype count = 0;
    while (finder.toNextBoundary() >= 0) {
        ++count;
    }
    return count;
}

/// By the Unicode white-space property of the character's first code point.
bool isWhite(QStringView character)
{
    const QChar first = character.front();
    if (first.isHighSurrogate() && character.size() > 1 && character[1].isLowSurrogate()) {
        return QChar::isSpace(QChar::surrogateToUcs4(first, character[1]));
    }
    return first.isSpace();
}

struct Word
{
    SearchRange range;
    QString text;
};

struct Words
{
    std::vector<Word> all;
    bool endsWithWhitespace = false;
};

/// The maximal runs of characters that are not white.
Words wordsOf(const QString& raw)
{
    Words words;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, raw);
    bool isInWord = false;
    qsizetype from = 0;
    for (qsizetype position = 0, to = 0; (to = finder.toNextBoundary()) >= 0; ++position) {
        const QStringView character = QStringView(raw).sliced(from, to - from);
        from = to;
        words.endsWithWhitespace = isWhite(character);
        if (words.endsWithWhitespace) {
            isInWord = false;
            continue;
        }
        if (!std::exchange(isInWord, true)) {
            words.all.push_back({{position, position}, {}});
        }
        words.all.back().range.end = position + 1;
        words.all.back().text += character;
    }
    return words;
}

QString withoutOuterQuotes(const QString& word)
{
    qsizetype start = 0;
    qsizetype end = word.size();
    while (start < end && word[start] == quote) {
        ++start;
    }
    while (start < end && word[end - 1] == quote) {
        --end;
    }
    return word.sliced(start, end - start);
}

/// Reads words one by one into a ParsedSearch.
class Reading
{
public:
    explicit Reading(double nowMs)
        : m_nowMs(nowMs)
    {}

    /// mayComplete: the word is the last one and nothing stands behind it.
    void read(const Word& word, bool mayComplete)
    {
        const QString trimmed = withoutOuterQuotes(word.text);
        if (trimmed != word.text) {
            add(word, SearchTokenType::term, trimmed);
            return;
        }
        const QString lower = trimmed.toLower();
        if (const std::optional<SearchTokenType> type = takeFilter(lower)) {
            m_parsed.tokens.push_back({word.range, *type});
            return;
        }
        if (!mayComplete || characterCount(lower) < 2 || !offerCompletion(word, lower)) {
            add(word, SearchTokenType::term, trimmed);
        }
    }

    ParsedSearch finish(const FilePath& home)
    {
        if (m_location != nullptr) {
            m_parsed.locationLabel = m_location->label.toString();
            if (!home.isEmpty()) {
                m_parsed.locationPath =
                    m_location->sub.empty() ? home : home.appending(m_location->sub);
            }
        }
        return std::move(m_parsed);
    }

private:
    void add(const Word& word, SearchTokenType type, const QString& term)
    {
        m_parsed.tokens.push_back({word.range, type});
        if (!term.isEmpty()) {
            m_parsed.terms.push_back(term);
        }
    }

    /// Fills the first free slot that the word fits.
    std::optional<SearchTokenType> takeFilter(const QString& lower)
    {
        if (!m_parsed.size) {
            if (const QRegularExpressionMatch match = matchOfSize(lower); match.hasMatch()) {
                m_parsed.size = sizeFrom(match);
                return SearchTokenType::size;
            }
        }
        if (const DateAlias* alias = rowNamed(dateAliases, lower); alias && !m_parsed.date) {
            m_parsed.date = SearchDate{m_nowMs + alias->days * -dayMs, alias->label.toString()};
            return SearchTokenType::date;
        }
        if (const KindAlias* alias = rowNamed(kindAliases, lower); alias && !m_parsed.kind) {
            m_parsed.kind = alias->kind;
            return SearchTokenType::kind;
        }
        if (const LocationAlias* alias = rowNamed(locationAliases, lower); alias && !m_location) {
            m_location = alias;
            return SearchTokenType::location;
        }
        return std::nullopt;
    }

    bool offerCompletion(const Word& word, const QString& lower)
    {
        if (const KindAlias* alias = rowStartingWith(kindAliases, lower); alias && !m_parsed.kind) {
            add(word, SearchTokenType::pendingKind, word.text);
            m_parsed.pending = SearchPending{word.range, alias->word.toString()};
            return true;
        }
        if (const LocationAlias* alias = rowStartingWith(locationAliases, lower);
            alias && !m_location) {
            add(word, SearchTokenType::pendingLocation, word.text);
            m_parsed.pending = SearchPending{word.range, alias->word.toString()};
            return true;
        }
        return false;
    }

    double m_nowMs;
    ParsedSearch m_parsed;
    const LocationAlias* m_location = nullptr;
};

QString textAt(const QString& raw, SearchRange range)
{
    return raw.sliced(range.start, range.end - range.start);
}

/// The category that a word of the raw text competes in: that of its token, or for a term the one
/// that its text names.
std::optional<SearchTokenType> categoryOf(const SearchToken& token, const QString& raw)
{
    return token.type == SearchTokenType::term
               ? SearchQueryParser::aliasCategory(textAt(raw, token.range))
               : SearchQueryParser::filterCategory(token.type);
}

QString withSingleBlanks(const QString& text)
{
    return text.split(blank, Qt::SkipEmptyParts).join(blank);
}

QString followedBy(const QString& text, const QString& word)
{
    return text.isEmpty() ? QString(word + blank) : QString(text + blank + word + blank);
}

} // namespace

std::string_view rawValue(SearchTokenType type)
{
    return tokenTypeNames[static_cast<std::size_t>(type)];
}

std::optional<SearchTokenType> searchTokenTypeFromRawValue(std::string_view text)
{
    return caseNamed<SearchTokenType>(tokenTypeNames, text);
}

std::string_view rawValue(SearchFilterKind kind)
{
    return kindNames[static_cast<std::size_t>(kind)];
}

std::optional<SearchFilterKind> searchFilterKindFromRawValue(std::string_view text)
{
    return caseNamed<SearchFilterKind>(kindNames, text);
}

QString chipText(SearchFilterKind kind)
{
    return chipTexts[static_cast<std::size_t>(kind)].toString();
}

double SearchQueryParser::currentMs()
{
    const std::chrono::duration<double> now = std::chrono::system_clock::now().time_since_epoch();
    return now.count() * 1000.0;
}

ParsedSearch SearchQueryParser::parse(const QString& raw, const FilePath& home, double nowMs)
{
    const Words words = wordsOf(raw);
    Reading reading(nowMs);
    for (const Word& word : words.all) {
        reading.read(word, &word == &words.all.back() && !words.endsWithWhitespace);
    }
    return reading.finish(home);
}

std::optional<SearchTokenType> SearchQueryParser::aliasCategory(const QString& word)
{
    const QString lower = word.toLower();
    if (matchOfSize(lower).hasMatch()) {
        return SearchTokenType::size;
    }
    if (rowNamed(dateAliases, lower) != nullptr) {
        return SearchTokenType::date;
    }
    if (rowNamed(kindAliases, lower) != nullptr) {
        return SearchTokenType::kind;
    }
    if (rowNamed(locationAliases, lower) != nullptr) {
        return SearchTokenType::location;
    }
    return std::nullopt;
}

std::optional<SearchTokenType> SearchQueryParser::filterCategory(SearchTokenType type)
{
    switch (type) {
    case SearchTokenType::kind:
    case SearchTokenType::pendingKind:
        return SearchTokenType::kind;
    case SearchTokenType::location:
    case SearchTokenType::pendingLocation:
        return SearchTokenType::location;
    case SearchTokenType::size:
    case SearchTokenType::date:
        return type;
    case SearchTokenType::term:
        break;
    }
    return std::nullopt;
}

std::optional<SearchFilterKind> SearchQueryParser::kindNamed(const QString& lowerCaseWord)
{
    const KindAlias* alias = rowNamed(kindAliases, lowerCaseWord);
    return alias == nullptr ? std::nullopt : std::optional(alias->kind);
}

std::optional<QString> SearchQueryParser::locationLabelNamed(const QString& lowerCaseWord)
{
    const LocationAlias* alias = rowNamed(locationAliases, lowerCaseWord);
    return alias == nullptr ? std::nullopt : std::optional(alias->label.toString());
}

std::optional<QString> SearchQueryParser::dateLabelNamed(const QString& lowerCaseWord)
{
    const DateAlias* alias = rowNamed(dateAliases, lowerCaseWord);
    return alias == nullptr ? std::nullopt : std::optional(alias->label.toString());
}

QString SearchQueryParser::replacingFilter(const QString& word, const QString& raw,
                                           const FilePath& home)
{
    const std::optional<SearchTokenType> category = aliasCategory(word);
    if (!category) {
        return followedBy(raw.trimmed(), word);
    }
    QString kept;
    qsizetype cursor = 0;
    for (const SearchToken& token : parse(raw, home).tokens) {
        if (categoryOf(token, raw) == category) {
            kept += textAt(raw, {cursor, token.range.start});
            cursor = token.range.end;
        }
    }
    kept += QStringView(raw).sliced(cursor);
    return followedBy(withSingleBlanks(kept).trimmed(), word);
}

QString SearchQueryParser::removing(SearchTokenType category, const QString& raw,
                                    const FilePath& home)
{
    if (filterCategory(category) != category) {
        return raw;
    }
    const std::vector<SearchToken> tokens = parse(raw, home).tokens;
    const auto token = std::find_if(tokens.begin(), tokens.end(), [&](const SearchToken& each) {
        return categoryOf(each, raw) == category;
    });
    QString kept = raw;
    if (token != tokens.end()) {
        kept.remove(token->range.start, token->range.end - token->range.start);
    }
    return withSingleBlanks(kept) + blank;
}

} // namespace quorvane
