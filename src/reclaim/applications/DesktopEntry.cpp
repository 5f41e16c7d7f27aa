// SPDX-License-Identifier: MIT
#include "DesktopEntry.h"

#include "DiskReader.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <utility>

namespace quorvane {
namespace {

constexpr std::string_view suffix = ".desktop";
constexpr std::string_view mainGroup = "[Desktop Entry]";
/// Folders inside one another below a folder of applications; freedesktop.org sets no limit.
constexpr std::size_t maxDepth = 4;

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view blanks = " \t\r";
    const std::size_t start = text.find_first_not_of(blanks);
    if (start == std::string_view::npos) {
        return {};
    }
    return text.substr(start, text.find_last_not_of(blanks) - start + 1);
}

std::string_view takeLine(std::string_view& text)
{
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

/// Undoes the escapes of a value of type string.
std::string unescaped(std::string_view value)
{
    std::string result;
    result.reserve(value.size());
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            result.push_back(value[i]);
            continue;
        }
        constexpr std::string_view codes = "sntr";
        constexpr std::string_view meanings = " \n\t\r";
        ++i;
        const std::size_t code = codes.find(value[i]);
        result.push_back(code == std::string_view::npos ? value[i] : meanings[code]);
    }
    return result;
}

std::vector<std::string> listOf(std::string_view value)
{
    std::vector<std::string> items;
    while (!value.empty()) {
        const std::size_t end = std::min(value.find(';'), value.size());
        if (const std::string_view item = trimmed(value.substr(0, end)); !item.empty()) {
            items.emplace_back(item);
        }
        value.remove_prefix(std::min(end + 1, value.size()));
    }
    return items;
}

/// The keys' locales to look for, the best first: lang_COUNTRY@MODIFIER, lang_COUNTRY,
/// lang@MODIFIER, lang. An encoding is left out.
std::vector<std::string> localeChain(std::string_view locale)
{
    const std::size_t at = std::min(locale.find('@'), locale.size());
    const std::string modifier(locale.substr(at));
    std::string_view rest = locale.substr(0, at);
    rest = rest.substr(0, rest.find('.'));
    const std::size_t underscore = std::min(rest.find('_'), rest.size());
    const std::string language(rest.substr(0, underscore));
    const std::string country(rest.substr(underscore));
    std::vector<std::string> chain;
    for (std::string each :
         {language + country + modifier, language + country, language + modifier, language}) {
        if (!each.empty() && std::find(chain.begin(), chain.end(), each) == chain.end()) {
            chain.push_back(std::move(each));
        }
    }
    return chain;
}

bool isAssignment(std::string_view word)
{
    const std::size_t equals = word.find('=');
    return equals != std::string_view::npos && equals > 0 &&
           word.substr(0, equals).find('/') == std::string_view::npos;
}

/// The next word of a command line by the quoting rules of Exec; absent at the end.
std::optional<std::string> takeWord(std::string_view& line)
{
    const std::size_t start = line.find_first_not_of(" \t");
    if (start == std::string_view::npos) {
        return std::nullopt;
    }
    std::string word;
    bool isQuoted = false;
    std::size_t i = start;
    for (; i < line.size(); ++i) {
        const char c = line[i];
        if (c == '"') {
            isQuoted = !isQuoted;
        } else if (c == '\\' && isQuoted && i + 1 < line.size()) {
            word.push_back(line[++i]);
        } else if (!isQuoted && (c == ' ' || c == '\t')) {
            break;
        } else {
            word.push_back(c);
        }
    }
    line.remove_prefix(i);
    return word;
}

bool isOneOf(std::span<const std::string> desktops, const std::vector<std::string>& names)
{
    return std::any_of(desktops.begin(), desktops.end(), [&](const std::string& desktop) {
        return std::find(names.begin(), names.end(), desktop) != names.end();
    });
}

struct PendingFolder
{
    FilePath path;
    std::string prefix;
    std::size_t depth;
};

} // namespace

bool DesktopEntry::isVisible(std::span<const std::string> desktops) const
{
    return isApplication && !isHidden && !isNoDisplay && !name.empty() &&
           (onlyShowIn.empty() || isOneOf(desktops, onlyShowIn)) && !isOneOf(desktops, notShowIn);
}

std::string_view DesktopEntry::programName() const
{
    const std::string_view whole = program;
    return whole.substr(whole.rfind('/') + 1);
}

std::string programOfExec(std::string_view exec)
{
    bool isAfterEnv = false;
    while (const std::optional<std::string> word = takeWord(exec)) {
        if (*word == "env" || word->ends_with("/env")) {
            isAfterEnv = true;
        } else if (isAfterEnv && (*word == "-u" || *word == "-C")) {
            takeWord(exec);
        } else if (!isAfterEnv || !(isAssignment(*word) || word->starts_with('-'))) {
            return *word;
        }
    }
    return {};
}

DesktopEntry parseDesktopEntry(std::string_view text, std::string_view locale)
{
    DesktopEntry entry;
    const std::vector<std::string> locales = localeChain(locale);
    std::size_t nameRank = locales.size() + 1;
    bool isInGroup = false;
    while (!text.empty()) {
        const std::string_view line = trimmed(takeLine(text));
        if (line.empty() || line.front() == '#') {
            continue;
        }
        if (line.front() == '[') {
            if (isInGroup) {
                break;
            }
            isInGroup = line == mainGroup;
            continue;
        }
        const std::size_t equals = line.find('=');
        if (!isInGroup || equals == std::string_view::npos) {
            continue;
        }
        const std::string_view key = trimmed(line.substr(0, equals));
        const std::string_view value = trimmed(line.substr(equals + 1));
        if (key == "Type") {
            entry.isApplication = value == "Application";
        } else if (key == "Exec") {
            entry.program = programOfExec(unescaped(value));
        } else if (key == "Icon") {
            entry.icon = unescaped(value);
        } else if (key == "Hidden") {
            entry.isHidden = value == "true";
        } else if (key == "NoDisplay") {
            entry.isNoDisplay = value == "true";
        } else if (key == "OnlyShowIn") {
            entry.onlyShowIn = listOf(value);
        } else if (key == "NotShowIn") {
            entry.notShowIn = listOf(value);
        } else if (key == "X-SnapInstanceName") {
            entry.snap = unescaped(value);
        } else if (key == "Name" || (key.starts_with("Name[") && key.ends_with(']'))) {
            const std::string_view tag =
                key == "Name" ? std::string_view() : key.substr(5, key.size() - 6);
            const auto found = std::find(locales.begin(), locales.end(), tag);
            const auto rank = static_cast<std::size_t>(found - locales.begin());
            if (rank < nameRank && (found != locales.end() || tag.empty())) {
                nameRank = rank;
                entry.name = unescaped(value);
            }
        }
    }
    return entry;
}

std::vector<DesktopEntry> desktopEntries(std::span<const FilePath> folders, std::string_view locale,
                                         const DiskReader& reader)
{
    std::map<std::string, DesktopEntry> entries;
    for (const FilePath& folder : folders) {
        std::vector<PendingFolder> pending{{folder, {}, 0}};
        while (!pending.empty()) {
            const PendingFolder place = std::move(pending.back());
            pending.pop_back();
            for (const std::string& name : reader.names(place.path)) {
                const FilePath path = place.path.appending(name);
                if (!name.ends_with(suffix)) {
                    if (place.depth + 1 < maxDepth && reader.isDirectory(path)) {
                        pending.push_back({path, place.prefix + name + '-', place.depth + 1});
                    }
                    continue;
                }
                std::string id = place.prefix + name.substr(0, name.size() - suffix.size());
                const auto [slot, isNew] = entries.emplace(std::move(id), DesktopEntry());
                if (!isNew) {
                    continue;
                }
                slot->second = parseDesktopEntry(reader.linkedText(path).value_or(""), locale);
                slot->second.id = slot->first;
                slot->second.path = path;
            }
        }
    }
    std::vector<DesktopEntry> list;
    list.reserve(entries.size());
    for (auto& [id, entry] : entries) {
        list.push_back(std::move(entry));
    }
    return list;
}

} // namespace quorvane
