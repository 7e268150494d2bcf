#include "jet/compact/TableOutput.h"

#include <algorithm>

#include "jet/storage/DataPage.h"

namespace tavrel::jet::compact {

namespace {

constexpr std::size_t kHead = 8;
constexpr std::size_t kPartBytes = kPageSize - kHead;

/// A column without a free-space map: each of its values has a page to itself.
bool SharesNothing(const LongValueMaps& maps) {
    return maps.free.page == 0;
}

}  // namespace

std::size_t TableOutput::MapCount(const TableDefinition& definition) {
    const auto alone = std::ranges::count_if(definition.trailer, &SharesNothing);
    return 2 + 2 * definition.trailer.size() - static_cast<std::size_t>(alone) +
           definition.realIndexes.size();
}

/// Map rows: owned pages, pages with room, the same two for each long-value column, then one for each index.
TableOutput::TableOutput(PageOutput& out, TableDefinition definition, PageNumber page, MapRows* maps,
                         std::size_t firstMap)
    : out_(out), definition_(std::move(definition)), maps_(maps), firstMap_(firstMap) {
    const std::size_t pages = (BuildTableDefinition(definition_).size() + kPartBytes - 1) / kPartBytes;
    definition_.page = page != 0 ? page : out_.Take();
    definition_.pages.assign(1, definition_.page);
    while (definition_.pages.size() < pages) {
        definition_.pages.push_back(out_.Take());
    }
    if (maps_ == nullptr) {
        maps_ = &ownMaps_.emplace(out_, MapCount(definition_));
    }
    GiveMaps();
    const auto counter = std::ranges::find_if(definition_.columns, [](const Column& column) {
        return column.Autonumber() && column.type == ColumnType::Long;
    });
    if (counter != definition_.columns.end()) {
        autonumber_ = static_cast<std::size_t>(counter - definition_.columns.begin());
        shape_ = definition_.Shape();
    }
    data_.emplace(out_, definition_.page);
}

void TableOutput::GiveMaps() {
    std::size_t map = firstMap_;
    definition_.ownedMap = maps_->At(map++);
    definition_.freeMap = maps_->At(map++);
    for (LongValueMaps& column : definition_.trailer) {
        const bool shares = !SharesNothing(column);
        column.owned = maps_->At(map++);
        column.free = shares ? maps_->At(map++) : RowPointer{};
        const std::size_t place = definition_.FindColumn(column.column);
        if (place != TableDefinition::npos) {
            longValues_.try_emplace(place, out_, shares);
        }
    }
    firstIndexMap_ = map;
    for (RealIndex& index : definition_.realIndexes) {
        index.map = maps_->At(map++);
    }
}

void TableOutput::NoteAutonumber(ByteView row) {
    const std::optional<ByteView> field = RowView(shape_, row).Field(*autonumber_);
    if (field && field->size() == 4) {
        highestAutonumber_ = std::max(highestAutonumber_, U32(*field, 0));
    }
}

/// Rows that were brought in with their numbers may stand above the last one that was given out.
void TableOutput::RaiseAutonumber() {
    constexpr std::uint32_t kNegative = 0x80000000;  // random numbers: there is no last one
    if (highestAutonumber_ < kNegative) {
        definition_.lastAutonumber = std::max(definition_.lastAutonumber, highestAutonumber_);
    }
}

void TableOutput::SetMaps(std::size_t map, const WrittenPages& pages, bool shares) {
    maps_->Set(map, pages.owned);
    if (shares) {
        maps_->Set(map + 1, pages.withRoom);
    }
}

void TableOutput::FinishRows() {
    std::size_t map = firstMap_;
    SetMaps(map, data_->Finish(), true);
    map += 2;
    for (const LongValueMaps& maps : definition_.trailer) {
        const bool shares = !SharesNothing(maps);
        const auto column = longValues_.find(definition_.FindColumn(maps.column));
        if (column != longValues_.end()) {
            SetMaps(map, column->second.Finish(), shares);
        }
        map += shares ? 2 : 1;
    }
    definition_.rowCount = rows_;
    RaiseAutonumber();
    data_.reset();
    longValues_.clear();
}

void TableOutput::EndIndex(std::size_t index, IndexOutput& written) {
    const WrittenIndex result = written.Finish();
    RealIndex& real = definition_.realIndexes[index];
    real.root = result.root;
    real.entriesWhenBuilt = result.entries;
    real.distinctKeys = result.distinctKeys;
    maps_->Set(firstIndexMap_ + index, result.pages);
}

void TableOutput::FinishIndexes() {
    if (ownMaps_) {
        ownMaps_->Finish();
    }
}

void TableOutput::PutDefinition() {
    const ByteVector bytes = BuildTableDefinition(definition_);
    ByteView rest = bytes;
    for (std::size_t i = 0; i < definition_.pages.size(); ++i) {
        const ByteView part = rest.first(std::min(rest.size(), kPartBytes));
        rest = rest.subspan(part.size());
        Page page{};
        page[0] = kPageTypeDefinition;
        page[1] = 1;
        PutU16(page, 2, static_cast<std::uint16_t>(kPartBytes - part.size()));
        PutU32(page, 4, i + 1 < definition_.pages.size() ? definition_.pages[i + 1] : 0);
        std::ranges::copy(part, page.begin() + kHead);
        out_.Put(definition_.pages[i], page);
    }
}

}  // namespace tavrel::jet::compact
