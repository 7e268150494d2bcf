// The bytes of a table definition; its layout stands in TableDefinition.h.
#include "jet/catalog/TableDefinition.h"
#include "text/Utf.h"

namespace tavrel::jet {

namespace {

constexpr std::uint32_t kMark = 0x659;
constexpr std::uint32_t kRealMark = 0x783;

void AppendName(ByteVector& out, const std::string& name) {
    const std::u16string units = text::Utf16FromUtf8(name);
    AppendU16(out, static_cast<std::uint16_t>(units.size() * 2));
    for (const char16_t unit : units) {
        AppendU16(out, unit);
    }
}

void AppendZeros(ByteVector& out, std::size_t count) {
    out.insert(out.end(), count, std::uint8_t{0});
}

void AppendHead(ByteVector& out, const TableDefinition& table) {
    AppendU32(out, 0);  // the length, put in at the end
    AppendU32(out, kMark);
    AppendU32(out, table.rowCount);
    AppendU32(out, table.lastAutonumber);
    AppendU32(out, table.autonumberStep);
    AppendZeros(out, 12);
    AppendU8(out, table.kind);
    AppendU16(out, table.columnNumbers);
    AppendU16(out, table.variableNumbers);
    AppendU16(out, static_cast<std::uint16_t>(table.columns.size()));
    AppendU32(out, static_cast<std::uint32_t>(table.logicalIndexes.size()));
    AppendU32(out, static_cast<std::uint32_t>(table.realIndexes.size()));
    AppendU32(out, table.ownedMap.ToU32());
    AppendU32(out, table.freeMap.ToU32());
}

void AppendColumn(ByteVector& out, const Column& column) {
    AppendU8(out, static_cast<std::uint8_t>(column.type));
    AppendU32(out, kMark);
    AppendU16(out, column.number);
    AppendU16(out, column.variableIndex);
    AppendU16(out, column.position);
    if (column.type == ColumnType::Numeric) {
        AppendU8(out, column.precision);
        AppendU8(out, column.scale);
        AppendU16(out, 0);
    } else {
        AppendU16(out, column.sortOrder);
        AppendU16(out, column.sortVersion);
    }
    AppendU8(out, column.flags);
    AppendU8(out, column.flags2);
    AppendU32(out, 0);
    AppendU16(out, column.fixedOffset);
    AppendU16(out, column.length);
}

void AppendRealIndex(ByteVector& out, const RealIndex& index) {
    AppendU32(out, kRealMark);
    for (std::size_t k = 0; k < kMaxIndexColumns; ++k) {
        const bool used = k < index.columns.size();
        AppendU16(out, used ? index.columns[k].number : 0xFFFF);
        AppendU8(out, used && index.columns[k].ascending ? 1 : 0);
    }
    AppendU32(out, index.map.ToU32());
    AppendU32(out, index.root);
    AppendU32(out, 0);
    AppendU16(out, index.flags);
    AppendU32(out, 0);
}

void AppendLogicalIndex(ByteVector& out, const LogicalIndex& index) {
    AppendU32(out, kMark);
    AppendU32(out, index.number);
    AppendU32(out, index.real);
    AppendU8(out, static_cast<std::uint8_t>(index.side));
    AppendU32(out, index.partner);
    AppendU32(out, index.partnerPage);
    AppendU8(out, index.cascadeUpdates);
    AppendU8(out, index.cascadeDeletes);
    AppendU8(out, static_cast<std::uint8_t>(index.kind));
    AppendU32(out, 0);
}

void AppendTrailer(ByteVector& out, const TableDefinition& table) {
    for (const LongValueMaps& maps : table.trailer) {
        AppendU16(out, maps.column);
        AppendU32(out, maps.owned.ToU32());
        AppendU32(out, maps.free.ToU32());
    }
    AppendU16(out, 0xFFFF);
    AppendZeros(out, 8);
}

}  // namespace

ByteVector BuildTableDefinition(const TableDefinition& table) {
    ByteVector out;
    AppendHead(out, table);
    for (const RealIndex& index : table.realIndexes) {
        AppendU32(out, index.entriesWhenBuilt);
        AppendU32(out, index.distinctKeys);
        AppendU32(out, 0);
    }
    for (const Column& column : table.columns) {
        AppendColumn(out, column);
    }
    for (const Column& column : table.columns) {
        AppendName(out, column.name);
    }
    for (const RealIndex& index : table.realIndexes) {
        AppendRealIndex(out, index);
    }
    for (const LogicalIndex& index : table.logicalIndexes) {
        AppendLogicalIndex(out, index);
    }
    for (const LogicalIndex& index : table.logicalIndexes) {
        AppendName(out, index.name);
    }
    AppendTrailer(out, table);
    PutU32(out, 0, static_cast<std::uint32_t>(out.size()));
    return out;
}

}  // namespace tavrel::jet
