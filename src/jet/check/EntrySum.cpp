#include "jet/check/EntrySum.h"

#include <algorithm>

#include "jet/check/EntryHash.h"
#include "jet/index/IndexPage.h"
#include "jet/index/KeyEncoder.h"

namespace tavrel::jet::check {

void EntrySum::Add(ByteView entry) {
    ++number_;
    sum_ += EntryHash(entry);
}

WantedEntries::WantedEntries(const TableDefinition& table, const RealIndex& index)
    : table_(table), index_(index), columns_(KeyColumns(table, index)) {}

void WantedEntries::Add(RowPointer slot, const RowView& row) {
    if (!certain_) {
        return;
    }
    try {
        certain_ = AddChecked(slot, row);
    } catch (const Error&) {
        certain_ = false;  // IndexEntries tells
    }
}

bool WantedEntries::AddChecked(RowPointer slot, const RowView& row) {
    entry_.clear();
    KeyNulls nulls;
    for (const KeyColumn& keyColumn : columns_) {
        const Column& column = table_.columns[keyColumn.place];
        const std::optional<ByteView> value = row.Field(keyColumn.place);
        nulls.Add(!value);
        if ((value && IsLong(column.type)) ||
            !AppendKeyColumn(entry_, column, value, keyColumn.ascending, UnknownWeights::Refuse)) {
            return false;
        }
    }
    if (nulls.all && index_.IgnoreNulls()) {
        return !index_.Required();
    }
    AppendU24Be(entry_, slot.page);
    AppendU8(entry_, slot.row);
    sum_.Add(entry_);
    return !index_.Required() || !nulls.any;
}

void PresentEntries::Add(ByteView entry) {
    sum_.Add(entry);
    if (!index_.Unique()) {
        return;
    }
    // Entries come in key order, so equal keys are neighbours.  A key of one byte is null.
    const ByteView key = LeafKey(entry);
    anyDuplicate_ |= sum_.Number() > 1 && key.size() != 1 && std::ranges::equal(key, lastKey_);
    lastKey_.assign(key.begin(), key.end());
}

}  // namespace tavrel::jet::check
