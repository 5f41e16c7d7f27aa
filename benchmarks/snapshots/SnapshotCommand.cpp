// SPDX-License-Identifier: MIT
#include "Command.h"
#include "JsonText.h"
#include "SnapshotDiff.h"
#include "SnapshotGrowth.h"
#include "SnapshotStore.h"
#include "Text.h"
#include "TreeSource.h"

#include <chrono>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <variant>

namespace quorvane {
namespace {

constexpr OptionRule options[] = {{"dump", true}, {"out", true}};

double secondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

int runCapture(const Arguments& arguments)
{
    const std::optional<std::string_view> out = arguments.value("out");
    if (!out) {
        return complain("snapshot capture needs --out FILE; try --help", exitUsage);
    }
    const auto loaded = loadTree(arguments);
    if (const SourceFault* fault = std::get_if<SourceFault>(&loaded)) {
        return complain(fault->message, fault->code);
    }
    FileNode& root = std::get<std::shared_ptr<FileTree>>(loaded)->root();
    const auto start = std::chrono::steady_clock::now();
    const ScanSnapshot snapshot = SnapshotStore::capture(root).snapshot;
    const double seconds = secondsSince(start);
    std::ofstream file(std::string(*out), std::ios::binary);
    if (!(file << encodeSnapshot(snapshot) << std::flush)) {
        return complain(std::string(*out) + ": cannot be written", exitFailure);
    }
    std::cerr << "capture seconds: " << seconds << '\n';
    return exitSuccess;
}

/// The snapshot in a file, or the code of what was complained about.
std::variant<ScanSnapshot, ExitCode> snapshotIn(std::string_view name)
{
    std::ifstream in(std::string(name), std::ios::binary);
    const std::string json(std::istreambuf_iterator<char>(in), {});
    if (!in.is_open() || in.bad()) {
        complain(std::string(name) + ": cannot be read", exitFailure);
        return exitFailure;
    }
    std::optional<ScanSnapshot> snapshot = decodeSnapshot(json);
    if (!snapshot) {
        complain(std::string(name) + ": is not a snapshot", exitUsage);
        return exitUsage;
    }
    return std::move(*snapshot);
}

int runDiff(const Arguments& arguments)
{
    if (arguments.operands().size() != 2) {
        return complain("snapshot diff needs two files; try --help", exitUsage);
    }
    const auto past = snapshotIn(arguments.operands()[0]);
    const auto present = snapshotIn(arguments.operands()[1]);
    for (const auto* const each : {&past, &present}) {
        if (const ExitCode* code = std::get_if<ExitCode>(each)) {
            return *code;
        }
    }
    const auto start = std::chrono::steady_clock::now();
    const std::vector<SnapshotDiff> rows =
        diff(std::get<ScanSnapshot>(past), std::get<ScanSnapshot>(present));
    const double seconds = secondsSince(start);
    for (const SnapshotDiff& row : rows) {
        std::string line;
        JsonObject object(line);
        object.text("path", row.path);
        object.integer("pastBytes", row.pastBytes);
        object.integer("presentBytes", row.presentBytes);
        object.integer("delta", row.deltaBytes());
        object.endLine();
        std::cout << line;
    }
    std::cerr << "diff seconds: " << seconds << '\n';
    return exitSuccess;
}

int runList(const Arguments& arguments)
{
    if (arguments.operands().size() != 1) {
        return complain("snapshot list needs one DIR; try --help", exitUsage);
    }
    const SnapshotStore store(folderFromArgument(arguments.operands().front()));
    const auto start = std::chrono::steady_clock::now();
    const std::vector<StoredSnapshot> snapshots = store.load();
    const double seconds = secondsSince(start);
    for (const StoredSnapshot& snapshot : snapshots) {
        std::string line;
        JsonObject object(line);
        object.text("id", uuidText(snapshot.id));
        object.real("date", snapshot.date);
        object.text("rootPath", snapshot.rootPath);
        object.integer("rootBytes", snapshot.rootBytes);
        object.endLine();
        std::cout << line;
    }
    std::cerr << "list seconds: " << seconds << '\n';
    return exitSuccess;
}

int runGrowth(const Arguments& arguments)
{
    if (arguments.operands().empty()) {
        return complain("snapshot growth needs a snapshot and a tree; try --help", exitUsage);
    }
    auto base = snapshotIn(arguments.operands().front());
    if (const ExitCode* code = std::get_if<ExitCode>(&base)) {
        return *code;
    }
    const auto loaded = loadTree(arguments.withoutFirstOperand());
    if (const SourceFault* fault = std::get_if<SourceFault>(&loaded)) {
        return complain(fault->message, fault->code);
    }
    const NodePointer root = std::get<std::shared_ptr<FileTree>>(loaded)->rootPointer();
    ScanSnapshot& snapshot = std::get<ScanSnapshot>(base);
    const auto start = std::chrono::steady_clock::now();
    const SnapshotGrowth growth(snapshot, std::move(snapshot.items), root);
    const double seconds = secondsSince(start);
    std::vector<const FileNode*> stack{root.get()};
    while (!stack.empty()) {
        const FileNode* const node = stack.back();
        stack.pop_back();
        for (const FileNode& child : node->children()) {
            stack.push_back(&child);
        }
        const SnapshotGrowth::Change change = growth.changeOf(*node);
        if (change.delta == 0) {
            continue;
        }
        std::string line;
        JsonObject object(line);
        object.path(node->path().bytes());
        object.integer("past", change.past);
        object.integer("delta", change.delta);
        object.integer("step", static_cast<std::int64_t>(growth.stepOf(*node)));
        object.endLine();
        std::cout << line;
    }
    std::cerr << "growth seconds: " << seconds << '\n';
    return exitSuccess;
}

int runSnapshot(const Arguments& arguments)
{
    const std::string_view act =
        arguments.operands().empty() ? std::string_view() : arguments.operands().front();
    const Arguments rest = arguments.withoutFirstOperand();
    if (act == "capture") {
        return runCapture(rest);
    }
    if (arguments.has("out")) {
        return complain("--out belongs to snapshot capture; try --help", exitUsage);
    }
    if (act == "growth") {
        return runGrowth(rest);
    }
    if (arguments.has("dump") || (act != "diff" && act != "list")) {
        return complain("snapshot needs capture, diff, growth or list; try --help", exitUsage);
    }
    return act == "diff" ? runDiff(rest) : runList(rest);
}

} // namespace

const Command snapshotCommand{
    "snapshot",
    "capture (DIR | --dump FILE) --out FILE | diff A B | growth A (DIR | --dump FILE) | list DIR",
    "Take a snapshot of a tree, compare two of them or one with a tree, or list those in a folder.",
    options, runSnapshot};

} // namespace quorvane
