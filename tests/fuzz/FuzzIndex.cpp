// SPDX-License-Identifier: MIT
#include "FuzzTarget.h"

#include "IndexSearch.h"
#include "IndexTable.h"

#include <cstring>
#include <span>
#include <string>
#include <vector>

namespace {

using namespace quorvane;

void search(const IndexTable& table, const QString& query, const FilePath& scope)
{
    const LockedFlag stop;
    SearchRequest request;
    request.query = query;
    request.scope = scope;
    constexpr std::size_t limit = 20;
    IndexHits hits = searchIndex(table, request, limit, stop);
    require(hits.rows.size() <= limit, "no more hits than were asked for");
    request.filters.minBytes = 0;
    request.kind = SearchFilterKind::folder;
    hits = searchIndex(table, request, limit, stop);
    for (const IndexTable::Row row : hits.rows) {
        require(row > 0 && row < table.size(), "a hit is a row and never the root");
        require(table.bytesOf(row) > 0, "a hit passes the filters");
    }
}

void read(const IndexTable& table)
{
    constexpr IndexTable::Row rowsRead = 64;
    for (IndexTable::Row row = 0; row < std::min(table.size(), rowsRead); ++row) {
        require(row == 0 || table.parent(row) < row, "a parent stands before its entries");
        require(table.name(row).find('/') == std::string_view::npos, "no name holds a slash");
        require(table.path(row).bytes().starts_with('/'), "paths are absolute");
        rawValue(table.kind(row));
    }
    const FilePath last = table.path(table.size() - 1);
    search(table, QStringLiteral("a"), FilePath("/"));
    search(table, QString(), last.parent());
    search(table, QStringLiteral("b a"), last);
}

} // namespace

/// The bytes as they are, and as they would be if version and checksum were right.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::vector<std::uint64_t> aligned(size / sizeof(std::uint64_t) + 1);
    std::memcpy(aligned.data(), data, size);
    const auto bytes = std::as_writable_bytes(std::span(aligned)).first(size);
    if (const auto table = IndexTable::fromBytes(bytes)) {
        read(*table);
    }
    if (size < sizeof(IndexHeader)) {
        return 0;
    }
    IndexHeader header;
    std::memcpy(&header, bytes.data(), sizeof header);
    header.magic = IndexHeader::expectedMagic;
    header.version = IndexHeader::expectedVersion;
    std::memcpy(bytes.data(), &header, sizeof header);
    IndexChecksum checksum;
    checksum.add(bytes.subspan(offsetof(IndexHeader, version)));
    header.checksum = checksum.value();
    std::memcpy(bytes.data(), &header, sizeof header);
    if (const auto table = IndexTable::fromBytes(bytes)) {
        read(*table);
    }
    return 0;
}
