#include "jet/define/TableWriter.h"

#include <algorithm>

#include "jet/define/Writer.h"

namespace tavrel::jet {

namespace {

constexpr std::int32_t kWrongValueCount = 3346;

std::vector<std::uint16_t> ColumnNumbers(const RealIndex& index) {
    std::vector<std::uint16_t> numbers;
    std::ranges::transform(index.columns, std::back_inserter(numbers), &IndexColumn::number);
    return numbers;
}

/// The tree on the parent's side of a relation.
const RealIndex& ParentTree(const TableDefinition& parent, const LogicalIndex& child) {
    const auto found = std::ranges::find(parent.logicalIndexes, child.partner, &LogicalIndex::number);
    if (found == parent.logicalIndexes.end() || found->real >= parent.realIndexes.size()) {
        ThrowDamaged("관계 " + child.name + "의 상대 인덱스가 없음");
    }
    return parent.realIndexes[found->real];
}

}  // namespace

TableWriter::TableWriter(Writer& writer, std::unique_ptr<RowWriter> rows)
    : writer_(writer),
      rows_(std::move(rows)),
      order_(rows_->Table().ColumnsInOrder()),
      row_(rows_->Table().columns.size()) {}

TableWriter::~TableWriter() {
    try {
        Finish();
    } catch (...) {
        writer_.Context().broken = true;  // nobody is there to hear of it before Flush
    }
}

void TableWriter::Append(const std::vector<Value>& values) {
    if (values.size() != order_.size()) {
        throw MakeError(kWrongValueCount);
    }
    for (std::size_t i = 0; i < order_.size(); ++i) {
        row_[order_[i]] = values[i];
    }
    rows_->Append(row_);
    appended_ = true;
}

void TableWriter::Finish() {
    if (!rows_) {
        return;
    }
    if (!appended_) {
        Close();
        return;
    }
    try {
        rows_->CheckUnique();
        CheckParents();
    } catch (...) {
        rows_->Undo();
        Close();
        throw;
    }
    try {
        rows_->Save();
    } catch (...) {
        writer_.Context().broken = true;
        Close();
        throw;
    }
    Close();
}

/// Every key that refers to another table must be there.
void TableWriter::CheckParents() const {
    const TableDefinition& table = rows_->Table();
    Pager& pager = writer_.Context().pager;
    for (const LogicalIndex& index : table.logicalIndexes) {
        if (index.side != RelationSide::Child) {
            continue;
        }
        const TableDefinition parent = ReadTableDefinition(pager, index.partnerPage);
        const EntryArena children =
            KeysWithoutNull(pager, table, ColumnNumbers(table.realIndexes[index.real]));
        const EntryArena parents = KeysWithoutNull(pager, parent, ColumnNumbers(ParentTree(parent, index)));
        if (!EveryKeyFound(children, parents)) {
            throw MakeError(errors::kNoParentRecord, {writer_.TableName(index.partnerPage)});
        }
    }
}

void TableWriter::Close() {
    writer_.Release(rows_->Table().page);
    rows_.reset();
}

}  // namespace tavrel::jet
