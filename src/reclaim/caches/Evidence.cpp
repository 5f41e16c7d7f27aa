// SPDX-License-Identifier: MIT
#include "Evidence.h"

#include "DirectoryWalk.h"
#include "FileContentCalls.h"
#include "FileSystemCalls.h"

#include <algorithm>
#include <array>
#include <span>

namespace quorvane {
namespace {

constexpr std::string_view tagName = "CACHEDIR.TAG";
/// The first bytes of a valid tag: bford.info/cachedir.
constexpr std::string_view tagSignature = "Signature: 8a477f597d28d172789f06886806bc55";

enum class Where : unsigned char { beside, inside };

/// A file from which, or with which, a tool makes the folder of that name.
struct Manifest
{
    std::string_view folder;
    Where where;
    std::string_view file;
};

constexpr Manifest manifests[] = {
    {"node_modules", Where::beside, "package.json"},
    {"Pods", Where::beside, "Podfile"},
    {"Carthage", Where::beside, "Cartfile"},
    {".build", Where::beside, "Package.swift"},
    {".swiftpm", Where::beside, "Package.swift"},
    {".venv", Where::inside, "pyvenv.cfg"},
    {"venv", Where::inside, "pyvenv.cfg"},
    {".gradle", Where::beside, "build.gradle"},
    {".gradle", Where::beside, "build.gradle.kts"},
    {".gradle", Where::beside, "settings.gradle"},
    {".gradle", Where::beside, "settings.gradle.kts"},
    {"target", Where::beside, "Cargo.toml"},
    {"target", Where::beside, "pom.xml"},
    {"target", Where::beside, "build.sbt"},
    {"build", Where::inside, "CMakeCache.txt"},
    {"build", Where::inside, "build.ninja"},
    {"build", Where::beside, "build.gradle"},
    {"build", Where::beside, "build.gradle.kts"},
    {"build", Where::beside, "package.json"},
    {"build", Where::beside, "setup.py"},
    {"build", Where::beside, "pyproject.toml"},
    {"build", Where::beside, "meson.build"},
    {"dist", Where::beside, "package.json"},
    {"dist", Where::beside, "setup.py"},
    {"dist", Where::beside, "pyproject.toml"},
    {"vendor", Where::beside, "go.mod"},
    {"vendor", Where::beside, "composer.json"},
    {"vendor", Where::beside, "Gemfile"},
    {"vendor", Where::beside, "Cargo.toml"},
};

/// Names that people give to folders of their own, too.
constexpr std::string_view ambiguousNames[] = {"vendor", "build", "dist", "target"};

bool isFile(FileSystemCalls& calls, const FilePath& path)
{
    const ReachablePlace place(calls, path);
    EntryStatus status;
    return place.isReachable() && calls.status(place.parent(), place.name(), status) &&
           status.kind == EntryStatus::Kind::regularFile;
}

bool isTagged(const FilePath& folder, FileSystemCalls& calls, FileContentCalls& contents)
{
    const FilePath path = folder.appending(tagName);
    const ReachablePlace place(calls, path);
    const int file = isFile(calls, path) ? contents.open(place.parent(), place.name()) : -1;
    if (file < 0) {
        return false;
    }
    std::array<char, tagSignature.size()> head{};
    std::size_t got = 0;
    while (got < head.size()) {
        const std::int64_t more =
            contents.read(file, std::as_writable_bytes(std::span(head).subspan(got)));
        if (more <= 0) {
            break;
        }
        got += static_cast<std::size_t>(more);
    }
    contents.close(file);
    return std::string_view(head.data(), got) == tagSignature;
}

} // namespace

Evidence evidenceFor(const FilePath& folder, FileSystemCalls& calls, FileContentCalls& contents)
{
    const std::string_view name = folder.lastComponent();
    Evidence evidence;
    if (name == ".git") {
        evidence.caution = holdsHistory;
        return evidence;
    }
    if (isTagged(folder, calls, contents)) {
        evidence.basis = std::string(tagName) + " in it";
        return evidence;
    }
    for (const Manifest& manifest : manifests) {
        if (manifest.folder != name) {
            continue;
        }
        const bool isInside = manifest.where == Where::inside;
        const FilePath place = isInside ? folder : folder.parent();
        if (isFile(calls, place.appending(manifest.file))) {
            evidence.basis = std::string(manifest.file) + (isInside ? " in it" : " beside it");
            return evidence;
        }
    }
    if (std::find(std::begin(ambiguousNames), std::end(ambiguousNames), name) !=
        std::end(ambiguousNames)) {
        evidence.caution = hasNoManifest;
    }
    return evidence;
}

} // namespace quorvane
