#include "jet/session/SessionTable.h"

#include <algorithm>

#include "jet/index/IndexReader.h"
#include "jet/index/KeyEncoder.h"
#include "jet/storage/TextCoding.h"
#include "jet/storage/UsageMap.h"
#include "jet/table/RowEncoder.h"

namespace tavrel::jet {

namespace {

/// Stored bytes of a value as the key encoder wants them; nothing for Null.
std::optional<ByteVector> StoredForKey(const Column& column, const Value& value, std::uint32_t ownerKey) {
    if (IsNull(value)) {
        return std::nullopt;
    }
    if (column.type == ColumnType::Memo) {
        return PlainText(TextOf(value));
    }
    return EncodeField(column, value, ownerKey);
}

class TableReader : public sql::RowReader {
  public:
    TableReader(Database& database, const TableDefinition& table, const std::vector<std::size_t>& order)
        : cursor_(database.Pager(), table, database.Header().ownerKey), order_(order) {}

    bool Next() override { return cursor_.Next(); }
    [[nodiscard]] sql::RowId Id() const override { return RowIdOf(cursor_.At()); }
    void Get(std::size_t column, Value& out) override { out = cursor_.Get(order_[column]); }

  private:
    RowCursor cursor_;
    const std::vector<std::size_t>& order_;
};

class IndexRangeReader : public sql::IndexCursor {
  public:
    IndexRangeReader(Database& database, const TableDefinition& table, const RealIndex& index,
                     const std::vector<std::size_t>& order)
        : table_(table),
          index_(index),
          ownerKey_(database.Header().ownerKey),
          reader_(database.Pager(), index.root, table.page),
          cursor_(database.Pager(), table, ownerKey_),
          order_(order) {}

    bool Seek(const sql::KeyRange& range) override {
        first_.clear();
        for (std::size_t part = 0; part < range.equal.size(); ++part) {
            if (!Append(part, range.equal[part], first_)) {
                return false;
            }
        }
        last_ = first_;
        const std::size_t next = range.equal.size();
        const bool ascending = next >= index_.columns.size() || index_.columns[next].ascending;
        const Value* low = ascending ? range.from : range.to;
        const Value* high = ascending ? range.to : range.from;
        state_ = State::Before;
        return (low == nullptr || Append(next, *low, first_)) &&
               (high == nullptr || Append(next, *high, last_));
    }

    bool Next() override {
        if (state_ == State::End) {
            return false;
        }
        const bool more = state_ == State::Before ? reader_.Seek(first_) : reader_.Next();
        state_ = more && !BehindLast(reader_.Key()) ? State::OnRow : State::End;
        if (state_ == State::OnRow) {
            cursor_.GoTo(reader_.Row());
        }
        return state_ == State::OnRow;
    }
    [[nodiscard]] sql::RowId Id() const override { return RowIdOf(cursor_.At()); }
    void Get(std::size_t column, Value& out) override { out = cursor_.Get(order_[column]); }

  private:
    enum class State { Before, OnRow, End };

    bool Append(std::size_t part, const Value& value, ByteVector& key) const {
        const std::size_t place = table_.FindColumn(index_.columns[part].number);
        const Column& column = table_.columns[place];
        const std::optional<ByteVector> stored = StoredForKey(column, value, ownerKey_);
        const auto bytes = EncodeKeyColumn(column, stored ? std::optional<ByteView>(*stored) : std::nullopt,
                                           index_.columns[part].ascending);
        if (bytes) {
            AppendBytes(key, *bytes);
        }
        // A longer key may be stored in another form: it is not looked up.
        return bytes && key.size() <= kLongestKnownKey;
    }

    [[nodiscard]] bool BehindLast(ByteView key) const {
        const std::size_t length = std::min(key.size(), last_.size());
        return length > 0 && std::memcmp(key.data(), last_.data(), length) > 0;
    }

    const TableDefinition& table_;
    const RealIndex& index_;
    std::uint32_t ownerKey_;
    IndexReader reader_;
    RowCursor cursor_;
    const std::vector<std::size_t>& order_;
    ByteVector first_;  ///< the range's keys begin with, or lie between, these
    ByteVector last_;
    State state_ = State::End;
};

}  // namespace

SessionTable::SessionTable(Database& database, const CatalogObject& object)
    : database_(database),
      name_(object.name),
      definition_(database.Catalog().Definition(object.DefinitionPage())),
      order_(definition_.ColumnsInOrder()) {
    const PropertyBlob properties = database.Catalog().Properties(object);
    for (const std::size_t place : order_) {
        const Column& column = definition_.columns[place];
        const Property* required = properties.OfColumn(column.name, "Required");
        const Property* zeroLength = properties.OfColumn(column.name, "AllowZeroLength");
        const Property* defaultValue = properties.OfColumn(column.name, "DefaultValue");
        columns_.push_back({.name = column.name,
                            .type = column.type,
                            .size = column.DaoSize(),
                            .precision = column.precision,
                            .scale = column.scale,
                            .autonumber = column.Autonumber(),
                            .required = required != nullptr && required->AsBoolean(),
                            .refusesEmptyText = zeroLength != nullptr && !zeroLength->AsBoolean(),
                            .defaultValue = defaultValue != nullptr ? defaultValue->AsText() : ""});
    }
    for (const LogicalIndex& logical : definition_.logicalIndexes) {
        AddIndex(logical);
    }
}

/// An index that statements may look keys up in; trees that several names share are offered once.
void SessionTable::AddIndex(const LogicalIndex& logical) {
    if (logical.real >= definition_.realIndexes.size() ||
        std::ranges::find(reals_, logical.real) != reals_.end()) {
        return;
    }
    const RealIndex& real = definition_.realIndexes[logical.real];
    sql::TableIndex index{.name = logical.name,
                          .parts = {},
                          .unique = real.Unique(),
                          .primary = logical.kind == LogicalKind::Primary,
                          .ignoresNulls = real.IgnoreNulls()};
    for (const IndexColumn& column : real.columns) {
        const auto place = std::ranges::find(order_, definition_.FindColumn(column.number));
        if (place == order_.end()) {
            return;
        }
        index.parts.push_back({static_cast<std::size_t>(place - order_.begin()), column.ascending});
    }
    indexes_.push_back(std::move(index));
    reals_.push_back(logical.real);
}

/// Counts slots without looking into rows: the count in the definition is stale in files that were not
/// closed.
std::uint64_t SessionTable::RowCount() const {
    std::uint64_t rows = 0;
    for (const PageNumber number : ReadRowPages(database_.Pager(), definition_.ownedMap)) {
        const PageRef page = database_.Pager().Read(number);
        const DataPageView view(page);
        for (unsigned slot = 0; slot < view.SlotCount(); ++slot) {
            rows += (view.At(slot).flags & kSlotHidden) == 0 ? 1 : 0;
        }
    }
    return rows;
}

/// What the definition says; where it says nothing, rows are counted after all, which costs no more than the
/// pages that there are.
std::uint64_t SessionTable::RowEstimate() const {
    constexpr std::size_t kRowCount = 0x10;
    const std::uint32_t stored = U32(database_.Pager().Read(definition_.page), kRowCount);
    return stored > 0 ? stored : RowCount();
}

bool SessionTable::ScanToleratesChanges() const {
    return std::ranges::none_of(definition_.logicalIndexes, [this](const LogicalIndex& index) {
        return index.side != RelationSide::None && index.partnerPage == definition_.page;
    });
}

std::unique_ptr<sql::RowReader> SessionTable::Scan(std::span<const std::size_t> /*columns*/) {
    return std::make_unique<TableReader>(database_, definition_, order_);
}

std::unique_ptr<sql::IndexCursor> SessionTable::OpenIndex(std::size_t index,
                                                          std::span<const std::size_t> /*columns*/) {
    return std::make_unique<IndexRangeReader>(database_, definition_,
                                              definition_.realIndexes[reals_.at(index)], order_);
}

}  // namespace tavrel::jet
