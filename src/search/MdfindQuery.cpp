// SPDX-License-Identifier: MIT
#include "MdfindQuery.h"

#include <QStringList>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string_view>

namespace quorvane {
namespace {

constexpr std::array<const char*, allSearchFilterKinds.size()> kindClauses{
    R"((kMDItemContentTypeTree == "public.folder"))",
    R"((kMDItemContentTypeTree == "public.image"))",
    R"((kMDItemContentTypeTree == "public.movie"))",
    R"((kMDItemContentTypeTree == "public.audio"))",
    R"((kMDItemContentTypeTree == "public.composite-content" || )"
    R"(kMDItemContentTypeTree == "public.plain-text"))",
    R"((kMDItemContentTypeTree == "com.adobe.pdf"))",
    R"((kMDItemContentTypeTree == "com.apple.application-bundle"))",
    R"((kMDItemContentTypeTree == "public.archive" || )"
    R"(kMDItemContentTypeTree == "public.zip-archive"))",
    R"((kMDItemContentTypeTree == "public.source-code"))"};

/// At least 1: "today(-0)" would leave out what changed before midnight.
std::string wholeDaysBetween(double fromMs, double nowMs)
{
    constexpr double dayMs = 86400000.0;
    constexpr double limit = 1e9;
    const double days = std::clamp(std::trunc((nowMs - fromMs) / dayMs), 1.0, limit);
    return std::to_string(static_cast<std::int64_t>(days));
}

/// Taking away what ends or escapes a string is the whole of the escaping.
std::string nameClause(std::string word)
{
    constexpr std::string_view dropped = "\"'`$\\";
    std::erase_if(word, [&](char c) { return dropped.find(c) != dropped.npos; });
    return "kMDItemFSName == \"*" + word + "*\"cd";
}

} // namespace

std::vector<std::string> mdfindArgs(const SearchRequest& request, double nowMs)
{
    const SearchFilters& filters = request.filters;
    std::vector<std::string> args{"-onlyin", request.scope.bytes()};
    if (!request.kind && filters.isEmpty()) {
        args.emplace_back("-name");
        args.push_back(request.query.toStdString());
        return args;
    }
    std::string expression;
    const auto add = [&](const std::string& clause) {
        expression += (expression.empty() ? "" : " && ") + clause;
    };
    if (request.kind) {
        add(kindClauses[static_cast<std::size_t>(*request.kind)]);
    }
    if (filters.minBytes) {
        add("kMDItemFSSize > " + std::to_string(*filters.minBytes));
    }
    if (filters.maxBytes) {
        add("kMDItemFSSize < " + std::to_string(*filters.maxBytes));
    }
    if (filters.fromMs) {
        add("kMDItemFSContentChangeDate >= $time.today(-" +
            wholeDaysBetween(*filters.fromMs, nowMs) + ")");
    }
    for (const QString& word : request.query.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        add(nameClause(word.toStdString()));
    }
    args.push_back(expression);
    return args;
}

} // namespace quorvane
