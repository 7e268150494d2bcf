#include "jet/table/RowKeys.h"

#include <algorithm>

#include "jet/catalog/RowCursor.h"
#include "jet/storage/TextCoding.h"
#include "jet/table/UnknownWeight.h"

namespace tavrel::jet {

KeyMaker::KeyMaker(const TableDefinition& table, const std::vector<IndexColumn>& columns,
                   UnknownWeights unknown)
    : unknown_(unknown) {
    for (const IndexColumn& column : columns) {
        const std::size_t place = table.FindColumn(column.number);
        if (place == TableDefinition::npos) {
            ThrowDamaged("인덱스의 열 " + std::to_string(column.number) + "이(가) 없음");
        }
        parts_.push_back({&table.columns[place], place, column.ascending});
    }
}

void KeyMaker::Make(const StoredFields& fields, RowKey& key) const {
    key.bytes.clear();
    key.hasNull = false;
    key.allNull = true;
    key.standIn = false;
    for (const Part& part : parts_) {
        const std::optional<ByteVector>& field = fields[part.place];
        const auto stored = field ? std::optional<ByteView>(*field) : std::nullopt;
        if (!AppendKeyColumn(key.bytes, *part.column, stored, part.ascending)) {
            key.standIn = unknown_ == UnknownWeights::StandIn &&
                          AppendKeyColumn(key.bytes, *part.column, stored, part.ascending, unknown_);
            if (!key.standIn) {
                ThrowUnknownWeight(DecodeUnits(*field), part.column->sortOrder, part.column->name);
            }
        }
        key.hasNull = key.hasNull || !field;
        key.allNull = key.allNull && !field;
    }
    key.standIn = key.standIn || key.bytes.size() > kLongestKnownKey;
    if (key.bytes.size() > (unknown_ == UnknownWeights::Refuse ? kLongestKnownKey : kMaxKeyBytes)) {
        throw MakeError(errors::kRecordTooLarge, {},
                        "인덱스 키 " + std::to_string(key.bytes.size()) + "바이트");
    }
}

void KeyMaker::MarkColumns(std::vector<bool>& wanted) const {
    for (const Part& part : parts_) {
        wanted[part.place] = true;
    }
}

std::uint32_t ScanFields(Pager& pager, const TableDefinition& table, const std::vector<bool>& wanted,
                         const std::function<void(RowPointer, const StoredFields&)>& take) {
    constexpr std::uint32_t kNoOwnerKey = 0;  // enciphered columns are in no index
    StoredFields fields(table.columns.size());
    std::uint32_t rows = 0;
    for (RowCursor cursor(pager, table, kNoOwnerKey); cursor.Next(); ++rows) {
        for (std::size_t place = 0; place < fields.size(); ++place) {
            if (wanted[place]) {
                cursor.Stored(place, fields[place]);
            }
        }
        take(cursor.At(), fields);
    }
    return rows;
}

EntryArena KeysWithoutNull(Pager& pager, const TableDefinition& table,
                           const std::vector<std::uint16_t>& columns) {
    std::vector<IndexColumn> ascending;
    ascending.reserve(columns.size());
    for (const std::uint16_t number : columns) {
        ascending.push_back({number, true});
    }
    const KeyMaker maker(table, ascending, UnknownWeights::StandIn);
    std::vector<bool> wanted(table.columns.size());
    maker.MarkColumns(wanted);
    EntryArena keys;
    RowKey key;
    ScanFields(pager, table, wanted, [&](RowPointer row, const StoredFields& fields) {
        maker.Make(fields, key);
        if (!key.hasNull) {
            keys.Add(key.bytes, row, false);
        }
    });
    keys.Sort();
    return keys;
}

bool EveryKeyFound(const EntryArena& children, const EntryArena& parents) {
    std::size_t parent = 0;
    for (std::size_t child = 0; child < children.Size(); ++child) {
        const ByteView key = children.Key(child);
        while (parent < parents.Size() && std::ranges::lexicographical_compare(parents.Key(parent), key)) {
            ++parent;
        }
        if (parent == parents.Size() || !std::ranges::equal(parents.Key(parent), key)) {
            return false;
        }
    }
    return true;
}

}  // namespace tavrel::jet
