// SPDX-License-Identifier: MIT
#include "DumpRecord.h"

#include "JsonLineReader.h"
#include "JsonText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace quorvane {
namespace {

using Kind = JsonMember::Kind;

constexpr std::string_view wholeNumber = "a whole number of 64 bits";
constexpr double secondsLimit = 9.0e18;

/// Takes the members of one line up and remembers which of those that must be there have come.
class RecordBuilder
{
public:
    explicit RecordBuilder(DumpRecord& record)
        : m_record(record)
    {}

    bool take(const JsonMember& member)
    {
        if (member.key == "path" || member.key == "rawPath" || member.key == "name") {
            return takeText(member);
        }
        if (member.key == "dateModified") {
            return takeDate(member);
        }
        return takeFlag(member) && takeInteger(member);
    }

    /// What is missing or does not fit together.
    std::string check()
    {
        if (m_fault.empty() && !m_hasId) {
            m_fault = "\"id\" is missing";
        }
        if (m_fault.empty() && !m_hasPath && !m_record.hasRawPath) {
            m_fault = "\"path\" is missing";
        }
        if (m_fault.empty() && m_record.path.empty()) {
            m_fault = "\"path\" is empty";
        }
        if (m_fault.empty() && !m_hasIsDirectory) {
            m_fault = "\"isDirectory\" is missing";
        }
        while (m_record.path.size() > 1 && m_record.path.ends_with('/')) {
            m_record.path.pop_back();
        }
        return m_fault;
    }

    const std::string& fault() const { return m_fault; }

private:
    bool expected(const JsonMember& member, std::string_view what)
    {
        m_fault = '"' + std::string(member.key) + "\" is not " + std::string(what);
        return false;
    }

    bool takeText(const JsonMember& member)
    {
        if (member.kind == Kind::null) {
            return true;
        }
        if (member.kind != Kind::text) {
            return expected(member, "a string");
        }
        if (member.key == "name") {
            m_record.hasName = true;
            m_record.name = member.text;
            return true;
        }
        if (member.key == "rawPath") {
            m_record.hasRawPath = true;
            return takeHexadecimal(member);
        }
        m_hasPath = true;
        if (!m_record.hasRawPath) {
            m_record.path = member.text;
        }
        return true;
    }

    bool takeHexadecimal(const JsonMember& member)
    {
        const std::string_view digits = member.text;
        m_record.path.clear();
        for (std::size_t i = 0; i < digits.size(); i += 2) {
            const std::string_view pair = digits.substr(i, 2);
            unsigned byte = 0;
            const char* const end = pair.data() + pair.size();
            if (pair.size() != 2 || std::from_chars(pair.data(), end, byte, 16).ptr != end) {
                return expected(member, "an even number of hexadecimal digits");
            }
            m_record.path.push_back(static_cast<char>(byte));
        }
        return true;
    }

    bool takeDate(const JsonMember& member)
    {
        if (member.kind == Kind::integer) {
            m_record.metadata.dateModified = member.integer;
        } else if (member.kind == Kind::real && std::abs(member.real) < secondsLimit) {
            m_record.metadata.dateModified = static_cast<std::int64_t>(std::floor(member.real));
        } else if (member.kind != Kind::null) {
            return expected(member, "a number of seconds");
        }
        return true;
    }

    bool takeFlag(const JsonMember& member)
    {
        bool* flag = nullptr;
        if (member.key == "isDirectory") {
            flag = &m_record.metadata.isDirectory;
            m_hasIsDirectory = true;
        } else if (member.key == "isSymbolicLink") {
            flag = &m_record.metadata.isSymbolicLink;
        } else if (member.key == "isRegularFile") {
            flag = &m_record.metadata.isRegularFile;
        } else {
            return true;
        }
        if (member.kind != Kind::boolean) {
            return expected(member, "true or false");
        }
        *flag = member.boolean;
        return true;
    }

    bool takeInteger(const JsonMember& member)
    {
        if (member.key == "id") {
            m_hasId = true;
            return store(member, m_record.id);
        }
        if (member.key == "logicalSize") {
            return store(member, m_record.metadata.logicalSize);
        }
        if (member.key == "sizeOnDisk") {
            return store(member, m_record.metadata.sizeOnDisk);
        }
        if (member.key == "scannedBytes") {
            return store(member, m_record.scannedBytes);
        }
        if (member.key == "scannedBytesOnDisk") {
            return store(member, m_record.scannedBytesOnDisk);
        }
        if (member.key == "fileCount") {
            return store(member, m_record.fileCount);
        }
        if (member.key == "directoryCount") {
            return store(member, m_record.directoryCount);
        }
        return true;
    }

    template<typename Field>
    bool store(const JsonMember& member, Field& field)
    {
        if (member.kind != Kind::integer) {
            return expected(member, wholeNumber);
        }
        field = member.integer;
        return true;
    }

    DumpRecord& m_record;
    std::string m_fault;
    bool m_hasId = false;
    bool m_hasPath = false;
    bool m_hasIsDirectory = false;
};

void clear(DumpRecord& record)
{
    record.path.clear();
    record.name.clear();
    record.hasRawPath = false;
    record.hasName = false;
    record.metadata = {};
    record.scannedBytes.reset();
    record.scannedBytesOnDisk.reset();
    record.fileCount.reset();
    record.directoryCount.reset();
}

} // namespace

std::string readDumpRecord(std::string_view line, DumpRecord& record)
{
    clear(record);
    RecordBuilder builder(record);
    JsonLineReader reader(line);
    JsonMember member;
    while (reader.next(member)) {
        if (!builder.take(member)) {
            return builder.fault();
        }
    }
    if (!reader.fault().empty()) {
        return std::string(reader.fault());
    }
    return builder.check();
}

} // namespace quorvane
