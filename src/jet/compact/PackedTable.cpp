#include "jet/compact/PackedTable.h"

#include <algorithm>
#include <numeric>

#include "jet/storage/DataPage.h"

namespace tavrel::jet::compact {

namespace {

unsigned FixedBytes(const Column& column) {
    return column.Fixed() && column.type != ColumnType::Boolean ? column.length : 0U;
}

/// True when no column was ever dropped, so that the columns can stay as they are: numbers, fixed places and
/// variable indexes follow one another.
bool HasNoGaps(const TableDefinition& table, const std::vector<std::size_t>& byNumber) {
    std::size_t fixedBytes = 0;
    std::size_t variables = 0;
    for (std::size_t i = 0; i < byNumber.size(); ++i) {
        const Column& column = table.columns[byNumber[i]];
        const bool inPlace = column.Fixed() ? FixedBytes(column) == 0 || column.fixedOffset == fixedBytes
                                            : column.variableIndex == variables;
        if (column.number != i || !inPlace) {
            return false;
        }
        fixedBytes += FixedBytes(column);
        variables += column.Fixed() ? 0 : 1;
    }
    return byNumber.size() == table.columnNumbers && variables == table.variableNumbers;
}

}  // namespace

PackedTable::PackedTable(const TableDefinition& source) : packed_(source), byNumber_(source.columns.size()) {
    std::iota(byNumber_.begin(), byNumber_.end(), std::size_t{0});
    std::ranges::stable_sort(byNumber_, {}, [&](std::size_t place) { return source.columns[place].number; });
    std::ranges::transform(source.columns, std::back_inserter(oldNumbers_), &Column::number);
    if (!HasNoGaps(source, byNumber_)) {
        renumbered_ = true;
        Renumber(source);
    }
    for (const std::size_t place : byNumber_) {
        fixedEnds_.push_back(static_cast<std::uint16_t>(fixedEnds_.empty() ? 0 : fixedEnds_.back()));
        fixedEnds_.back() =
            static_cast<std::uint16_t>(fixedEnds_.back() + FixedBytes(packed_.columns[place]));
    }
}

void PackedTable::Renumber(const TableDefinition& source) {
    std::uint16_t variables = 0;
    std::uint16_t offset = 0;
    for (std::size_t i = 0; i < byNumber_.size(); ++i) {
        Column& column = packed_.columns[byNumber_[i]];
        column.number = static_cast<std::uint16_t>(i);
        column.variableIndex = variables;
        if (column.Fixed()) {
            column.fixedOffset = offset;
            offset = static_cast<std::uint16_t>(offset + FixedBytes(column));
        } else {
            column.fixedOffset = 0;
            ++variables;
        }
    }
    packed_.columnNumbers = static_cast<std::uint16_t>(byNumber_.size());
    packed_.variableNumbers = variables;
    const auto renumber = [&](std::uint16_t& number, std::string_view what) {
        const std::size_t place = source.FindColumn(number);
        if (place == TableDefinition::npos) {
            ThrowDamaged(std::string(what) + " 열 " + std::to_string(number) + "이(가) 없음");
        }
        number = packed_.columns[place].number;
    };
    for (RealIndex& index : packed_.realIndexes) {
        for (IndexColumn& column : index.columns) {
            renumber(column.number, "인덱스의");
        }
    }
    for (LongValueMaps& maps : packed_.trailer) {
        renumber(maps.column, "긴 값 지도의");
    }
}

/// No column was dropped and the variable values stand one after the other up to the offset table.
bool PackedTable::Keeps(const RowView& row) const {
    if (renumbered_) {
        return false;
    }
    return !row.HasOffsets() || row.VariableOffset(row.VariableCount()) == row.OffsetTable();
}

void PackedTable::Convert(const RowShape& sourceShape, ByteView row, ByteVector& out) const {
    const RowView view(sourceShape, row);
    if (Keeps(view)) {
        out.assign(row.begin(), row.end());
    } else {
        Build(view, out);
    }
}

void PackedTable::Build(const RowView& row, ByteVector& out) const {
    const auto has = [&](std::size_t place) { return oldNumbers_[place] < row.ColumnCount(); };
    const auto count = static_cast<std::size_t>(std::ranges::count_if(byNumber_, has));
    out.assign(2 + std::size_t{count == 0 ? 0U : fixedEnds_[count - 1]}, 0);
    PutU16(out, 0, static_cast<std::uint16_t>(count));
    ByteVector mask((count + 7) / 8, 0);
    std::vector<std::uint16_t> offsets;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t place = byNumber_[i];
        const Column& column = packed_.columns[place];
        const std::optional<ByteView> field = row.Field(place);
        const bool boolean = column.type == ColumnType::Boolean;
        if (!column.Fixed()) {
            offsets.push_back(static_cast<std::uint16_t>(out.size()));
        }
        if (!field || (boolean && (*field)[0] == 0)) {
            continue;
        }
        mask[i / 8] = static_cast<std::uint8_t>(mask[i / 8] | 1U << (i % 8));
        if (!column.Fixed()) {
            AppendBytes(out, *field);
        } else if (!boolean) {
            std::ranges::copy(*field, out.begin() + 2 + column.fixedOffset);
        }
    }
    if (!offsets.empty()) {
        AppendU16(out, static_cast<std::uint16_t>(out.size()));
        for (auto offset = offsets.rbegin(); offset != offsets.rend(); ++offset) {
            AppendU16(out, *offset);
        }
        AppendU16(out, static_cast<std::uint16_t>(offsets.size()));
    }
    AppendBytes(out, mask);
    if (out.size() > kMaxRowBytes) {
        ThrowDamaged("행이 너무 김");
    }
}

}  // namespace tavrel::jet::compact
