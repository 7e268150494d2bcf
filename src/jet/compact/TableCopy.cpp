#include "jet/compact/TableCopy.h"

#include <algorithm>
#include <numeric>

#include "jet/compact/EqualKeys.h"
#include "jet/index/IndexReader.h"
#include "jet/storage/UsageMap.h"

namespace tavrel::jet::compact {

namespace {

constexpr std::size_t kFlagBytes = 1;
constexpr std::size_t kLongKeyBytes = kFlagBytes + 4;
constexpr std::uint8_t kNotNull = 0x7F;
constexpr std::uint32_t kSignBit = 0x80000000;
/// Rows that are read in the order of their pages before they are written in that of their keys.
constexpr std::size_t kBatchRows = 65'000;
constexpr std::size_t kBatchBytes = std::size_t{8} << 20;

std::uint32_t NewId(const ObjectIds& ids, std::uint32_t id) {
    const auto found = ids.find(static_cast<std::int32_t>(id));
    return found == ids.end() ? id : static_cast<std::uint32_t>(found->second);
}

/// The key of a Long column at the front of an index key, with the object's new number.
void PatchKey(const ObjectIds& ids, std::span<std::uint8_t> key) {
    if (key.size() < kLongKeyBytes || key[0] != kNotNull) {
        return;
    }
    const std::uint32_t id = NewId(ids, U32Be(key, kFlagBytes) ^ kSignBit) ^ kSignBit;
    for (unsigned i = 0; i < 4; ++i) {
        key[kFlagBytes + i] = static_cast<std::uint8_t>(id >> (24 - 8 * i));
    }
}

}  // namespace

TableCopy::TableCopy(CopyContext& context, const TableDefinition& source, const PackedTable& packed,
                     TableOutput& out, IdColumns idColumns)
    : context_(context),
      source_(source),
      packed_(packed),
      out_(out),
      idColumns_(std::move(idColumns)),
      sourceShape_(source.Shape()),
      packedShape_(packed.Definition().Shape()),
      longValues_(context.source, context.nextMark) {
    for (std::size_t place = 0; place < source_.columns.size(); ++place) {
        if (IsLong(source_.columns[place].type)) {
            if (!source_.columns[place].hasMaps) {
                ThrowDamaged("긴 값 열 " + source_.columns[place].name + "의 지도가 없음");
            }
            longPlaces_.push_back(place);
        }
    }
    for (std::size_t i = 0; i < source_.realIndexes.size(); ++i) {
        Nulls nulls{.index = i, .places = {}, .rows = {}};
        for (const IndexColumn& column : source_.realIndexes[i].columns) {
            nulls.places.push_back(source_.FindColumn(column.number));
            if (nulls.places.back() == TableDefinition::npos) {
                ThrowDamaged("인덱스의 열 " + std::to_string(column.number) + "이(가) 없음");
            }
        }
        if (source_.realIndexes[i].IgnoreNulls()) {
            nulls_.push_back(std::move(nulls));
        }
    }
}

void TableCopy::Run() {
    context_.map.Clear();
    CopyRows();
    MeetOwnedPages();
    if (copied_.Count() != live_ || followed_ != hidden_) {
        ThrowDamaged("인덱스의 행과 페이지의 행이 다름");
    }
    if (!longValues_.CopiedAll()) {
        ThrowDamaged("긴 값과 그것을 가리키는 행이 맞지 않음");
    }
    out_.FinishRows();
    for (std::size_t index = 0; index < source_.realIndexes.size(); ++index) {
        KeyIsPatched(index) ? CopyPatchedIndex(index) : CopyIndex(index);
    }
}

// ---- rows

std::optional<std::size_t> TableCopy::PrimaryTree() const {
    const auto primary = std::ranges::find(source_.logicalIndexes, LogicalKind::Primary, &LogicalIndex::kind);
    if (primary == source_.logicalIndexes.end()) {
        return std::nullopt;
    }
    if (primary->real >= source_.realIndexes.size()) {
        ThrowDamaged("인덱스 " + primary->name + "의 트리가 없음");
    }
    return primary->real;
}

void TableCopy::CopyRows() {
    const std::optional<std::size_t> primary = PrimaryTree();
    if (primary && KeyIsPatched(*primary)) {
        RowTally tally;
        const EntryArena order = PatchedEntries(*primary, tally, false);
        for (std::size_t i = 0; i < order.Size(); ++i) {
            CopyRow(order.Row(i), RowAt(order.Row(i)));
        }
        return;
    }
    if (primary) {
        IndexReader reader(context_.source.Cache(), source_.realIndexes[*primary].root, source_.page);
        const std::size_t limit = RowsPerBatch();
        std::vector<RowPointer> batch;
        for (bool found = reader.First(); found; found = reader.Next()) {
            batch.push_back(reader.Row());
            if (batch.size() == limit) {
                CopyBatch(batch);
                batch.clear();
            }
        }
        CopyBatch(batch);
        fetched_ = {};
        pieces_ = {};
        return;
    }
    for (const PageNumber page : ReadUsageMap(context_.source.Cache(), source_.ownedMap).pages) {
        const PageRef held = context_.source.Read(page);
        const DataPageView view(held);
        for (unsigned slot = 0; slot < view.SlotCount(); ++slot) {
            if ((view.At(slot).flags & kSlotHidden) == 0) {
                const RowPointer at{page, static_cast<std::uint8_t>(slot)};
                CopyRow(at, RowAt(at));
            }
        }
    }
}

/// By what the definition says of the number of rows.
std::size_t TableCopy::RowsPerBatch() const {
    const std::size_t pages = ReadUsageMap(context_.source.Cache(), source_.ownedMap).pages.size();
    const std::size_t rowBytes = pages * kPageSize / std::max<std::size_t>(source_.rowCount, 1) + 1;
    return std::clamp<std::size_t>(kBatchBytes / rowBytes, 1, kBatchRows);
}

/// Where keys and pages have different orders each page is read once for many rows.
void TableCopy::CopyBatch(const std::vector<RowPointer>& batch) {
    const bool fetched = !std::ranges::is_sorted(batch) && FetchBatch(batch);
    for (std::size_t i = 0; i < batch.size(); ++i) {
        CopyRow(batch[i],
                fetched ? ByteView(fetched_).subspan(pieces_[i].start, pieces_[i].length) : RowAt(batch[i]));
    }
}

/// False, and nothing has happened, when the rows are longer than expected.
bool TableCopy::FetchBatch(const std::vector<RowPointer>& batch) {
    const std::uint64_t followed = followed_;
    std::vector<std::uint32_t> order(batch.size());
    std::iota(order.begin(), order.end(), 0U);
    std::ranges::sort(order, {}, [&](std::uint32_t i) { return batch[i].ToU32(); });
    pieces_.resize(batch.size());
    fetched_.clear();
    fetched_.reserve(kBatchBytes);
    for (const std::uint32_t i : order) {
        const ByteView row = RowAt(batch[i]);
        if (fetched_.size() + row.size() > 2 * kBatchBytes) {
            followed_ = followed;
            return false;
        }
        pieces_[i] = {fetched_.size(), row.size()};
        AppendBytes(fetched_, row);
    }
    return true;
}

/// A page of the table is met for the first time: its rows are counted and get their places in the map.
void TableCopy::Meet(PageNumber page, const DataPageView& view) {
    if (view.Owner() != source_.page || view.SlotCount() > kMaxSlots) {
        ThrowDamaged("페이지 " + std::to_string(page) + "이(가) 테이블의 것이 아님");
    }
    context_.map.AddPage(page, view.SlotCount());
    for (unsigned slot = 0; slot < view.SlotCount(); ++slot) {
        const std::uint16_t flags = view.At(slot).flags;
        live_ += (flags & kSlotHidden) == 0 ? 1 : 0;
        hidden_ += flags == kSlotHidden ? 1 : 0;
    }
}

/// The row that a slot names, wherever it lies.
ByteView TableCopy::RowAt(RowPointer at) {
    if (pageNumber_ != at.page || !page_) {
        page_ = context_.source.Read(at.page);
        pageNumber_ = at.page;
    }
    const DataPageView view(*page_);
    if (!context_.map.Knows(at.page)) {
        Meet(at.page, view);
    }
    const Slot slot = view.At(at.row);
    if (slot.flags == 0) {
        return slot.row;
    }
    if (slot.flags != kSlotMoved) {
        ThrowDamaged("인덱스가 없는 행을 가리킴");
    }
    const RowPointer target = RowPointer::FromU32(U32(slot.row, 0));
    moved_ = context_.source.Read(target.page);
    const DataPageView targetView(*moved_);
    if (!context_.map.Knows(target.page)) {
        Meet(target.page, targetView);
    }
    const Slot moved = targetView.At(target.row);
    if (moved.flags != kSlotHidden) {
        ThrowDamaged("옮겨진 행의 포인터가 잘못됨");
    }
    ++followed_;
    return moved.row;
}

void TableCopy::CopyRow(RowPointer at, ByteView row) {
    if (context_.map.Get(at).page != 0) {
        ThrowDamaged("인덱스가 한 행을 두 번 가리킴");
    }
    if (!nulls_.empty()) {
        CountNulls(at, row);
    }
    packed_.Convert(sourceShape_, row, row_);
    if (!longPlaces_.empty()) {
        CopyLongValues();
    }
    if (idColumns_.ids != nullptr) {
        PatchIds();
    }
    context_.map.Set(at, out_.Append(row_));
    copied_.Add(at);
}

void TableCopy::CopyLongValues() {
    const RowView view(packedShape_, row_);
    for (const std::size_t place : longPlaces_) {
        if (const std::optional<ByteView> field = view.Field(place)) {
            const std::size_t offset = static_cast<std::size_t>(field->data() - row_.data());
            const bool shorten = source_.columns[place].type == ColumnType::Ole;
            longValues_.Copy(std::span(row_).subspan(offset, field->size()), out_.LongValues(place), shorten);
        }
    }
}

void TableCopy::PatchIds() {
    const RowView view(packedShape_, row_);
    for (const std::size_t place : idColumns_.places) {
        if (const std::optional<ByteView> field = view.Field(place); field && field->size() == 4) {
            const std::size_t offset = static_cast<std::size_t>(field->data() - row_.data());
            PutU32(row_, offset, NewId(*idColumns_.ids, U32(row_, offset)));
        }
    }
}

void TableCopy::CountNulls(RowPointer at, ByteView row) {
    const RowView view(sourceShape_, row);
    for (Nulls& nulls : nulls_) {
        if (std::ranges::any_of(nulls.places,
                                [&](std::size_t place) { return view.Field(place).has_value(); })) {
            nulls.rows.Add(at);
        }
    }
}

/// Pages that no row has led to hold none, or the table is not sound.
void TableCopy::MeetOwnedPages() {
    for (const PageNumber page : ReadUsageMap(context_.source.Cache(), source_.ownedMap, kEveryPage).pages) {
        if (page >= context_.source.Count()) {
            ThrowDamaged("테이블의 페이지 " + std::to_string(page) + "이(가) 파일 끝 뒤에 있음");
        }
        if (!context_.map.Knows(page)) {
            const PageRef held = context_.source.Read(page);
            Meet(page, DataPageView(held));
        }
    }
}

// ---- indexes

bool TableCopy::KeyIsPatched(std::size_t index) const {
    const std::vector<IndexColumn>& columns = source_.realIndexes[index].columns;
    return idColumns_.ids != nullptr && !columns.empty() && columns.front().ascending &&
           std::ranges::find(idColumns_.places, source_.FindColumn(columns.front().number)) !=
               idColumns_.places.end();
}

void TableCopy::RequireRows(std::size_t index, const RowTally& entries) const {
    const auto nulls = std::ranges::find(nulls_, index, &Nulls::index);
    if (entries != (nulls == nulls_.end() ? copied_ : nulls->rows)) {
        ThrowDamaged("인덱스에 없는 행이 있음");
    }
}

void TableCopy::CopyIndex(std::size_t index) {
    IndexReader reader(context_.source.Cache(), source_.realIndexes[index].root, source_.page);
    IndexOutput written = out_.BeginIndex();
    EqualKeys run(written, context_.out.Count());
    RowTally tally;
    for (bool found = reader.First(); found; found = reader.Next()) {
        const RowPointer to = context_.map.Get(reader.Row());
        if (to.page == 0) {
            ThrowDamaged("인덱스가 없는 행을 가리킴");
        }
        tally.Add(reader.Row());
        run.Add(reader.Key(), to);
    }
    run.Finish();
    RequireRows(index, tally);
    out_.EndIndex(index, written);
}

/// The entries of an index that begins with an object number, in their new order.
EntryArena TableCopy::PatchedEntries(std::size_t index, RowTally& tally, bool newPlaces) {
    EntryArena entries;
    IndexReader reader(context_.source.Cache(), source_.realIndexes[index].root, source_.page);
    ByteVector key;
    for (bool found = reader.First(); found; found = reader.Next()) {
        key.assign(reader.Key().begin(), reader.Key().end());
        PatchKey(*idColumns_.ids, key);
        const RowPointer row = newPlaces ? context_.map.Get(reader.Row()) : reader.Row();
        if (row.page == 0) {
            ThrowDamaged("인덱스가 없는 행을 가리킴");
        }
        tally.Add(reader.Row());
        entries.Add(key, row, false);
    }
    entries.Sort();
    return entries;
}

void TableCopy::CopyPatchedIndex(std::size_t index) {
    RowTally tally;
    const EntryArena entries = PatchedEntries(index, tally, true);
    RequireRows(index, tally);
    IndexOutput written = out_.BeginIndex();
    for (std::size_t i = 0; i < entries.Size(); ++i) {
        written.Add(entries.Entry(i));
    }
    out_.EndIndex(index, written);
}

}  // namespace tavrel::jet::compact
