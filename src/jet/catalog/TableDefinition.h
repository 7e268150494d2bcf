// A table definition: one or more pages of type 2, chained.  Each page has 8 bytes of header (02 01, u16 free
// bytes, u32 next page); what follows them in all pages, one after the other, is the definition.  Offsets as
// in the first page:
//
// | offset | size | content                                                                        |
// |--------|------|--------------------------------------------------------------------------------|
// | 08     | u32  | length of the definition, counted from 08                                      |
// | 0C     | u32  | 0x659                                                                          |
// | 10     | u32  | number of rows                                                                 |
// | 14     | u32  | last autonumber value given out                                                |
// | 18     | u32  | autonumber step                                                                |
// | 28     | u8   | 'N' user table, 'S' engine table                                               |
// | 29     | u16  | column numbers ever given out                                                  |
// | 2B     | u16  | variable columns ever given out                                                |
// | 2D     | u16  | number of columns                                                              |
// | 2F     | u32  | number of logical indexes                                                      |
// | 33     | u32  | number of real indexes                                                         |
// | 37     | u32  | row pointer of the owned-pages map                                             |
// | 3B     | u32  | row pointer of the free-space map                                              |
// | 3F     |      | statistics 12 * real, columns 25 * n, names, real indexes 52 * n,              |
// |        |      | logical indexes 28 * n, names, long-value trailer 10 * n, FF FF + 8 zero bytes |
#pragma once

#include <string>
#include <vector>

#include "jet/catalog/ColumnType.h"
#include "jet/storage/Pager.h"
#include "jet/storage/RowLayout.h"

namespace tavrel::jet {

inline constexpr std::uint32_t kNoNumber = 0xFFFFFFFF;
inline constexpr unsigned kMaxColumns = 255;
inline constexpr unsigned kMaxIndexes = 32;
inline constexpr unsigned kMaxIndexColumns = 10;

namespace columnFlags {
inline constexpr std::uint8_t kFixed = 0x01;
inline constexpr std::uint8_t kNullable = 0x02;
inline constexpr std::uint8_t kAutonumber = 0x04;
inline constexpr std::uint8_t kEngine = 0x10;
inline constexpr std::uint8_t kEnciphered = 0x20;
inline constexpr std::uint8_t kAutoGuid = 0x40;  ///< on GUID columns only
inline constexpr std::uint8_t kHyperlink = 0x80;
}  // namespace columnFlags
inline constexpr std::uint8_t kColumnCompressed = 0x01;  ///< flags 2

/// One column's record.
struct Column {
    std::string name;
    ColumnType type = ColumnType::Long;
    std::uint16_t number = 0;
    std::uint16_t variableIndex = 0;  ///< field 7
    std::uint16_t position = 0;       ///< display position
    std::uint16_t sortOrder = 0;      ///< LCID; Numeric: unused
    std::uint16_t sortVersion = 0;
    std::uint8_t precision = 0;  ///< Numeric
    std::uint8_t scale = 0;      ///< Numeric
    std::uint8_t flags = 0;
    std::uint8_t flags2 = 0;
    std::uint16_t fixedOffset = 0;
    std::uint16_t length = 0;  ///< bytes
    bool constantsRight = true;
    RowPointer ownedMap{};  ///< long values only
    RowPointer freeMap{};
    bool hasMaps = false;

    [[nodiscard]] bool Fixed() const { return (flags & columnFlags::kFixed) != 0; }
    [[nodiscard]] bool Autonumber() const {
        return (flags & columnFlags::kAutonumber) != 0 ||
               (type == ColumnType::Guid && (flags & columnFlags::kAutoGuid) != 0);
    }
    [[nodiscard]] bool Enciphered() const { return (flags & columnFlags::kEnciphered) != 0; }
    [[nodiscard]] bool Compressed() const { return (flags2 & kColumnCompressed) != 0; }
    /// DAO's Size: characters for Text, 0 for Memo and OLE, 16 for Numeric, else bytes.
    [[nodiscard]] unsigned DaoSize() const;
};

namespace indexFlags {
inline constexpr std::uint16_t kUnique = 0x01;
inline constexpr std::uint16_t kIgnoreNulls = 0x02;
inline constexpr std::uint16_t kRequired = 0x08;
inline constexpr std::uint16_t kAlways = 0x80;
}  // namespace indexFlags

struct IndexColumn {
    std::uint16_t number = 0;  ///< column number
    bool ascending = true;
};

/// A tree.
struct RealIndex {
    std::uint32_t entriesWhenBuilt = 0;
    std::uint32_t distinctKeys = 0;
    std::vector<IndexColumn> columns;
    RowPointer map{};
    PageNumber root = 0;
    std::uint16_t flags = indexFlags::kAlways;
    bool constantsRight = true;

    [[nodiscard]] bool Unique() const { return (flags & indexFlags::kUnique) != 0; }
    [[nodiscard]] bool IgnoreNulls() const { return (flags & indexFlags::kIgnoreNulls) != 0; }
    [[nodiscard]] bool Required() const { return (flags & indexFlags::kRequired) != 0; }
};

enum class LogicalKind : std::uint8_t { Plain = 0, Primary = 1, Relation = 2 };
enum class RelationSide : std::uint8_t { None = 0, Parent = 1, Child = 2 };

/// A name for a tree.
struct LogicalIndex {
    std::string name;
    std::uint32_t number = 0;
    std::uint32_t real = 0;  ///< place in TableDefinition::realIndexes
    RelationSide side = RelationSide::None;
    std::uint32_t partner = kNoNumber;  ///< logical number in the other table
    PageNumber partnerPage = 0;
    std::uint8_t cascadeUpdates = 4;
    std::uint8_t cascadeDeletes = 4;
    LogicalKind kind = LogicalKind::Plain;
    std::uint8_t rawKind = 0;  ///< as stored, which may be none of LogicalKind
    std::uint8_t rawSide = 0;
    bool constantsRight = true;
};

struct LongValueMaps {
    std::uint16_t column = 0;
    RowPointer owned{};
    RowPointer free{};
};

struct TableDefinition {
    PageNumber page = 0;             ///< first page
    std::vector<PageNumber> pages;   ///< all of them, in order
    std::uint32_t length = 0;        ///< as stored
    std::uint32_t parsedLength = 0;  ///< where the terminator really ends
    std::uint32_t rowCount = 0;
    std::uint32_t lastAutonumber = 0;
    std::uint32_t autonumberStep = 1;
    std::uint8_t kind = 'N';
    std::uint16_t columnNumbers = 0;
    std::uint16_t variableNumbers = 0;
    RowPointer ownedMap{};
    RowPointer freeMap{};
    std::vector<Column> columns;  ///< in the order of the records
    std::vector<RealIndex> realIndexes;
    std::vector<LogicalIndex> logicalIndexes;  ///< in the order of the records
    std::vector<LongValueMaps> trailer;        ///< in the order of the records
    bool constantsRight = true;

    /// Places in `columns` by (display position, column number): the order that users see.
    [[nodiscard]] std::vector<std::size_t> ColumnsInOrder() const;
    /// Place of a column; npos when there is none.
    [[nodiscard]] std::size_t FindColumn(std::uint16_t number) const;
    [[nodiscard]] std::size_t FindColumnByName(std::string_view name) const;  ///< letter case ignored
    [[nodiscard]] RowShape Shape() const;
    static constexpr std::size_t npos = static_cast<std::size_t>(-1);
};

/// Reads the definition that starts at a page.  Throws 3428 for anything impossible.
TableDefinition ReadTableDefinition(Pager& pager, PageNumber page);

/// The definition's bytes from offset 08 on, the length field right.
ByteVector BuildTableDefinition(const TableDefinition& table);

}  // namespace tavrel::jet
