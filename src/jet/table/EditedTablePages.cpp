// Changes that touch nothing but their rows, a page at a time.
#include <algorithm>

#include "jet/storage/RowPatch.h"
#include "jet/table/EditedTable.h"

namespace tavrel::jet {

bool EditedTable::HoldsAlone(std::span<const std::size_t> columns) const {
    return std::ranges::none_of(columns, [this](std::size_t place) {
        return IsLong(definition_.columns[place].type) ||
               std::ranges::any_of(indexes_,
                                   [place](const Index& index) { return bool{index.columns[place]}; });
    });
}

namespace {

void ListFields(const RowChange& change, std::vector<FieldBytes>& fields) {
    fields.clear();
    for (const FieldChange& field : change.fields) {
        fields.push_back({field.place, field.bytes ? &*field.bytes : nullptr});
    }
}

/// The new bytes of a page's rows, and which of the rows have to leave it.
class PageChanges {
  public:
    void Add(const RowShape& shape, const Slot& slot, const RowChange& change) {
        ListFields(change, fields_);
        const RowView row(shape, slot.row);
        if (FitsInPlace(shape, row, fields_)) {
            inPlace_.push_back(&change);
            return;
        }
        const std::size_t begin = bytes_.size();
        AppendPatchedRow(shape, row, slot.row, fields_, bytes_);
        rows_.push_back({change.row, begin, bytes_.size(), slot.row.size()});
        growth_ += rows_.back().Growth();
    }

    /// Writes the rows that need not be built anew.
    void PutInPlace(const RowShape& shape, Page& page) {
        const DataPageView view(page);
        for (const RowChange* change : inPlace_) {
            const ByteView row = view.At(change->row).row;
            ListFields(*change, fields_);
            PatchInPlace(
                shape,
                std::span(page).subspan(static_cast<std::size_t>(row.data() - page.data()), row.size()),
                fields_);
        }
    }

    /// The last rows leave until the others fit.  REQUIRES: no row is added any more.
    template <typename MoveOut>
    std::vector<SlotContent> Fit(std::ptrdiff_t room, MoveOut moveOut) {
        std::vector<SlotContent> slots(rows_.size());
        pointers_.resize(4 * rows_.size());
        for (std::size_t i = rows_.size(); i-- > 0;) {
            const Patched& row = rows_[i];
            slots[i] = {row.slot, ByteView(bytes_).subspan(row.begin, row.end - row.begin), 0};
            if (growth_ > room) {
                const std::span<std::uint8_t> pointer = std::span(pointers_).subspan(4 * i, 4);
                PutU32(pointer, 0, moveOut(slots[i].bytes).ToU32());
                growth_ += 4 - static_cast<std::ptrdiff_t>(row.end - row.begin);
                slots[i] = {row.slot, pointer, kSlotMoved};
            }
        }
        return slots;
    }

  private:
    struct Patched {
        std::uint8_t slot;
        std::size_t begin, end;  ///< in bytes_
        std::size_t before;      ///< length of the old row

        [[nodiscard]] std::ptrdiff_t Growth() const {
            return static_cast<std::ptrdiff_t>(end - begin) - static_cast<std::ptrdiff_t>(before);
        }
    };

    std::vector<const RowChange*> inPlace_;
    std::vector<Patched> rows_;
    std::vector<FieldBytes> fields_;
    ByteVector bytes_;
    ByteVector pointers_;
    std::ptrdiff_t growth_ = 0;
};

}  // namespace

void EditedTable::UpdatePage(PageNumber page, std::span<const RowChange> rows) {
    PageChanges changes;
    std::vector<const RowChange*> moved;
    std::ptrdiff_t room = 0;
    {
        const PageRef held = context_.pager.Read(page);
        const DataPageView view(held);
        if (view.Owner() != definition_.page) {
            ThrowDamaged(name_ + "의 행이 다른 테이블의 페이지에 있음");
        }
        room = DataPageEditor::RoomAfterTidy(view);
        for (const RowChange& change : rows) {
            const Slot slot = view.At(change.row);
            if (slot.flags == 0) {
                changes.Add(shape_, slot, change);
            } else {
                moved.push_back(&change);
            }
        }
    }
    const auto slots = changes.Fit(room, [&](ByteView row) { return rows_.MoveOut(row, page); });
    if (moved.size() < rows.size()) {
        Page& written = context_.pager.Write(page);
        changes.PutInPlace(shape_, written);
        DataPageEditor(written).ReplaceMany(slots);
    }
    for (const RowChange* change : moved) {
        Update({page, change->row}, change->fields);
    }
}

}  // namespace tavrel::jet
