// Reading a table definition; its layout stands in TableDefinition.h.
#include <algorithm>
#include <string>

#include "jet/catalog/TableDefinition.h"
#include "jet/storage/DataPage.h"
#include "text/Utf.h"

namespace tavrel::jet {

namespace {

constexpr std::size_t kPageHeader = 8;
constexpr std::size_t kRecordsStart = 0x3F;
constexpr std::size_t kStatisticsBytes = 12;
constexpr std::size_t kColumnBytes = 25;
constexpr std::size_t kRealBytes = 52;
constexpr std::size_t kLogicalBytes = 28;
constexpr std::uint32_t kMark = 0x659;
constexpr std::uint32_t kRealMark = 0x783;
constexpr std::uint16_t kTrailerEnd = 0xFFFF;
constexpr std::uint16_t kUnusedColumn = 0xFFFF;
/// 255 columns and 32 indexes with the longest names take 15 pages.
constexpr std::size_t kMaxDefinitionPages = 64;

/// The definition in one piece, offsets as in the first page.
ByteVector GatherPages(Pager& pager, TableDefinition& table) {
    ByteVector bytes;
    for (PageNumber next = table.page; next != 0;) {
        if (std::find(table.pages.begin(), table.pages.end(), next) != table.pages.end() ||
            table.pages.size() == kMaxDefinitionPages) {
            ThrowDamaged("테이블 정의의 연결이 되풀이됨 (페이지 " + std::to_string(next) + ")");
        }
        const PageRef page = pager.Read(next);
        if (page.Bytes()[0] != kPageTypeDefinition) {
            ThrowDamaged("페이지 " + std::to_string(next) + "이(가) 테이블 정의가 아님");
        }
        AppendBytes(bytes, page.Bytes().subspan(table.pages.empty() ? 0 : kPageHeader));
        table.pages.push_back(next);
        next = U32(page, 4);
    }
    return bytes;
}

/// Walks over the records behind the fixed fields.
class RecordReader {
  public:
    explicit RecordReader(ByteView bytes) : bytes_(bytes) {}

    ByteView Take(std::size_t length) {
        const ByteView part = Slice(bytes_, at_, length);
        at_ += length;
        return part;
    }
    std::string TakeName() {
        const std::size_t length = U16(Take(2), 0);
        return text::Utf8FromUtf16Le(Take(length));
    }
    [[nodiscard]] std::size_t At() const { return at_; }

  private:
    ByteView bytes_;
    std::size_t at_ = kRecordsStart;
};

Column ParseColumn(ByteView record) {
    if (!IsKnownType(record[0])) {
        ThrowDamaged("알 수 없는 열 형식 " + std::to_string(record[0]));
    }
    Column column;
    column.type = static_cast<ColumnType>(record[0]);
    column.number = U16(record, 5);
    column.variableIndex = U16(record, 7);
    column.position = U16(record, 9);
    column.flags = record[15];
    column.flags2 = record[16];
    column.fixedOffset = U16(record, 21);
    column.length = U16(record, 23);
    column.constantsRight = U32(record, 1) == kMark && U32(record, 17) == 0;
    if (column.type == ColumnType::Numeric) {
        column.precision = record[11];
        column.scale = record[12];
    } else {
        column.sortOrder = U16(record, 11);
        column.sortVersion = U16(record, 13);
    }
    return column;
}

void ParseRealIndex(ByteView record, RealIndex& index) {
    for (unsigned k = 0; k < kMaxIndexColumns; ++k) {
        const std::uint16_t number = U16(record, 4 + 3 * k);
        if (number != kUnusedColumn) {
            index.columns.push_back({number, record[6 + 3 * k] != 0});
        }
    }
    index.map = RowPointer::FromU32(U32(record, 34));
    index.root = U32(record, 38);
    index.flags = U16(record, 46);
    constexpr std::uint16_t kUnknownFlags = 0xFF74;
    index.constantsRight = index.constantsRight && U32(record, 0) == kRealMark && U32(record, 48) == 0 &&
                           (index.flags & kUnknownFlags) == 0 && (index.flags & indexFlags::kAlways) != 0;
}

LogicalIndex ParseLogicalIndex(ByteView record) {
    LogicalIndex index;
    index.number = U32(record, 4);
    index.real = U32(record, 8);
    index.rawSide = record[12];
    index.partner = U32(record, 13);
    index.partnerPage = U32(record, 17);
    index.cascadeUpdates = record[21];
    index.cascadeDeletes = record[22];
    index.rawKind = record[23];
    index.side = index.rawSide <= 2 ? static_cast<RelationSide>(index.rawSide) : RelationSide::None;
    index.kind = index.rawKind <= 2 ? static_cast<LogicalKind>(index.rawKind) : LogicalKind::Plain;
    index.constantsRight = U32(record, 0) == kMark && U32(record, 24) == 0;
    return index;
}

void ParseHead(ByteView bytes, TableDefinition& table) {
    table.length = U32(bytes, 0x08);
    table.rowCount = U32(bytes, 0x10);
    table.lastAutonumber = U32(bytes, 0x14);
    table.autonumberStep = U32(bytes, 0x18);
    table.kind = U8(bytes, 0x28);
    table.columnNumbers = U16(bytes, 0x29);
    table.variableNumbers = U16(bytes, 0x2B);
    table.ownedMap = RowPointer::FromU32(U32(bytes, 0x37));
    table.freeMap = RowPointer::FromU32(U32(bytes, 0x3B));
}

void ParseColumns(RecordReader& reader, std::size_t count, TableDefinition& table) {
    for (std::size_t i = 0; i < count; ++i) {
        table.columns.push_back(ParseColumn(reader.Take(kColumnBytes)));
    }
    for (Column& column : table.columns) {
        column.name = reader.TakeName();
    }
}

void ParseIndexes(RecordReader& reader, std::size_t logicalCount, TableDefinition& table) {
    for (RealIndex& index : table.realIndexes) {
        ParseRealIndex(reader.Take(kRealBytes), index);
    }
    for (std::size_t i = 0; i < logicalCount; ++i) {
        table.logicalIndexes.push_back(ParseLogicalIndex(reader.Take(kLogicalBytes)));
    }
    for (LogicalIndex& index : table.logicalIndexes) {
        index.name = reader.TakeName();
    }
}

void ParseTrailer(RecordReader& reader, TableDefinition& table) {
    for (std::uint16_t number = U16(reader.Take(2), 0); number != kTrailerEnd;
         number = U16(reader.Take(2), 0)) {
        const ByteView maps = reader.Take(8);
        table.trailer.push_back(
            {number, RowPointer::FromU32(U32(maps, 0)), RowPointer::FromU32(U32(maps, 4))});
        const std::size_t place = table.FindColumn(number);
        if (place != TableDefinition::npos) {
            table.columns[place].ownedMap = table.trailer.back().owned;
            table.columns[place].freeMap = table.trailer.back().free;
            table.columns[place].hasMaps = true;
        }
    }
}

}  // namespace

TableDefinition ReadTableDefinition(Pager& pager, PageNumber page) {
    TableDefinition table;
    table.page = page;
    const ByteVector bytes = GatherPages(pager, table);
    ParseHead(bytes, table);
    RecordReader reader(bytes);
    const std::size_t realCount = U32(bytes, 0x33);
    for (std::size_t i = 0; i < realCount; ++i) {
        const ByteView statistics = reader.Take(kStatisticsBytes);
        RealIndex& index = table.realIndexes.emplace_back();
        index.entriesWhenBuilt = U32(statistics, 0);
        index.distinctKeys = U32(statistics, 4);
        index.constantsRight = U32(statistics, 8) == 0;
    }
    ParseColumns(reader, U16(bytes, 0x2D), table);
    ParseIndexes(reader, U32(bytes, 0x2F), table);
    ParseTrailer(reader, table);
    table.parsedLength = static_cast<std::uint32_t>(reader.At());
    const ByteView rest = Slice(bytes, reader.At(), 8);
    table.constantsRight = U32(bytes, 0x0C) == kMark &&
                           std::all_of(rest.begin(), rest.end(), [](std::uint8_t b) { return b == 0; });
    return table;
}

}  // namespace tavrel::jet
