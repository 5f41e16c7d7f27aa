// SPDX-License-Identifier: MIT
#include "JsonRecord.h"
#include "JsonText.h"
#include "SearchQueryParser.h"

#include <utility>

namespace quorvane {
namespace {

constexpr OptionRule options[] = {{"home", true}, {"now", true}};

struct QueryContext
{
    FilePath home;
    double nowMs = 0;
};

/// Appends a text as it stands between the quotes of a JSON string. Half a surrogate pair, which
/// UTF-8 cannot tell, becomes the escape of its unit.
void appendJsonUnits(std::string& out, const QString& text)
{
    QString whole;
    const auto flush = [&] { appendJsonText(out, std::exchange(whole, {}).toStdString()); };
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!text[i].isSurrogate()) {
            whole += text[i];
        } else if (text[i].isHighSurrogate() && i + 1 < text.size() &&
                   text[i + 1].isLowSurrogate()) {
            whole += QStringView(text).sliced(i++, 2);
        } else {
            flush();
            out += "\\u" + QByteArray::number(text[i].unicode(), 16).toStdString();
        }
    }
    flush();
}

void addText(JsonObject& object, std::string_view key, const QString& text)
{
    std::string content;
    appendJsonUnits(content, text);
    object.escapedText(key, content);
}

void addRange(JsonObject& object, SearchRange range)
{
    object.integer("start", range.start);
    object.integer("end", range.end);
}

void addTokens(JsonObject& object, const std::vector<SearchToken>& tokens)
{
    JsonList list(object.list("tokens"));
    for (const SearchToken& token : tokens) {
        JsonObject item(list.next());
        addRange(item, token.range);
        item.text("type", rawValue(token.type));
        item.close();
    }
    list.close();
}

void addSize(JsonObject& object, const SearchSize& size)
{
    JsonObject nested(object.list("size"));
    if (size.minBytes) {
        nested.integer("minBytes", *size.minBytes);
    }
    if (size.maxBytes) {
        nested.integer("maxBytes", *size.maxBytes);
    }
    addText(nested, "label", size.label);
    nested.close();
}

void addFilters(JsonObject& object, const ParsedSearch& parsed)
{
    if (parsed.kind) {
        object.text("kind", rawValue(*parsed.kind));
    }
    if (parsed.locationLabel) {
        object.text("locationLabel", parsed.locationLabel->toStdString());
    }
    if (parsed.locationPath) {
        object.text("locationPath", parsed.locationPath->bytes());
    }
    if (parsed.pending) {
        JsonObject nested(object.list("pending"));
        addRange(nested, parsed.pending->range);
        addText(nested, "completion", parsed.pending->completion);
        nested.close();
    }
    if (parsed.size) {
        addSize(object, *parsed.size);
    }
    if (parsed.date) {
        JsonObject nested(object.list("date"));
        nested.real("fromMs", parsed.date->fromMs);
        addText(nested, "label", parsed.date->label);
        nested.close();
    }
}

void addParsed(JsonObject& object, const ParsedSearch& parsed)
{
    addTokens(object, parsed.tokens);
    JsonList terms(object.list("terms"));
    for (const QString& term : parsed.terms) {
        std::string& out = terms.next();
        out.push_back('"');
        appendJsonUnits(out, term);
        out.push_back('"');
    }
    terms.close();
    addFilters(object, parsed);
    object.boolean("searchable", parsed.searchable());
    addText(object, "termQuery", parsed.termQuery());
}

QString textOf(const JsonRecord& record, std::string_view key)
{
    const std::string_view text = record.text(key).value_or("");
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string answer(const QueryContext& context, const JsonRecord& record, std::string& out)
{
    const std::string_view op = record.text("op").value_or("");
    const QString raw = textOf(record, "raw");
    JsonObject object(out);
    if (op == "parse") {
        addParsed(object, SearchQueryParser::parse(raw, context.home, context.nowMs));
    } else if (op == "replacing") {
        const QString result =
            SearchQueryParser::replacingFilter(textOf(record, "word"), raw, context.home);
        addText(object, "raw", result);
    } else if (op == "removing") {
        const auto category = searchTokenTypeFromRawValue(record.text("category").value_or(""));
        if (!category) {
            return "has no category of that name";
        }
        addText(object, "raw", SearchQueryParser::removing(*category, raw, context.home));
    } else if (op == "category") {
        if (const auto category = SearchQueryParser::aliasCategory(textOf(record, "word"))) {
            object.text("category", rawValue(*category));
        }
    } else {
        return "has no op of parse, replacing, removing or category";
    }
    object.endLine();
    return {};
}

int runQuery(const Arguments& arguments)
{
    QueryContext context;
    context.home = FilePath(std::string(arguments.value("home").value_or("")));
    const std::optional<double> now = arguments.has("now")
                                          ? realFromText(*arguments.value("now"))
                                          : std::optional(SearchQueryParser::currentMs());
    if (!arguments.operands().empty() || !now) {
        return complain("query takes --home PATH and --now with milliseconds since 1970",
                        exitUsage);
    }
    context.nowMs = *now;
    return answerLines(
        [&](const JsonRecord& record, std::string& out) { return answer(context, record, out); });
}

} // namespace

const Command queryCommand{"query", "[--home PATH] [--now MS]",
                           "Read or edit the search query of each line of standard input.", options,
                           runQuery};

} // namespace quorvane
