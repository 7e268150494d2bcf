#include "jet/check/IndexEntries.h"

#include <algorithm>

#include "jet/check/Places.h"
#include "jet/index/IndexPage.h"
#include "jet/index/KeyEncoder.h"
#include "jet/storage/LongValue.h"
#include "text/Format.h"

namespace tavrel::jet::check {

namespace {

constexpr std::uint8_t kNotNull = 0x7F;
constexpr std::uint8_t kNotNullDescending = 0x80;
/// Entries that wait, in bytes of memory.
constexpr std::size_t kWaitingBytes = std::size_t{4} << 20;

}  // namespace

IndexEntries::IndexEntries(Context& context, const std::string& where, const TableDefinition& table,
                           const RealIndex& index, const RowShape& shape, const RowList& rows)
    : context_(context),
      log_(context.log),
      where_(where),
      table_(table),
      index_(index),
      shape_(shape),
      rows_(rows),
      reader_(context.pager),
      columns_(KeyColumns(table, index)),
      seen_(rows.Slots().Size()),
      longBudget_(std::uint64_t{context.pager.PageCount()} * kPageSize) {}

void IndexEntries::Add(ByteView entry) {
    const RowPointer slot = LeafRow(entry);
    const ByteView key = LeafKey(entry);
    // Entries come in key order, so equal keys are neighbours.
    const bool same = lastRow_.page != 0 && std::ranges::equal(key, lastKey_);
    waiting_.push_back({slot, index_.Unique() && same ? lastRow_ : RowPointer{}, keys_.size(), key.size()});
    AppendBytes(keys_, key);
    if (!same) {
        lastKey_.assign(key.begin(), key.end());
    }
    lastRow_ = slot;
    if (keys_.size() + waiting_.size() * sizeof(Waiting) > kWaitingBytes) {
        Finish();
    }
}

void IndexEntries::Finish() {
    std::ranges::stable_sort(waiting_, {}, &Waiting::slot);
    for (const Waiting& entry : waiting_) {
        const std::size_t row = rows_.Find(entry.slot);
        if (row == RowList::npos) {
            log_.Add(FindingKind::EntryWithoutRow, where_, {PointerText(entry.slot)});
            continue;
        }
        if (seen_[row]) {
            log_.Add(FindingKind::RowTwoEntries, where_, {PointerText(entry.slot)});
            continue;
        }
        seen_[row] = true;
        if (rows_.IsReadable(row)) {
            Guard(
                log_, FindingKind::RowDamaged, [&] { return RowPlaceText(where_, entry.slot); },
                [&] { CheckEntry(entry); });
        }
    }
    waiting_.clear();
    keys_.clear();
}

void IndexEntries::CheckEntry(const Waiting& entry) {
    const RowView view(shape_, reader_.Read(entry.slot));
    const KeyNulls nulls = NullsOf(view);
    if (index_.Required() && nulls.any) {
        log_.Add(FindingKind::NullInRequired, where_, {PointerText(entry.slot)});
    }
    if (entry.duplicate.page != 0 && !nulls.any) {
        log_.Add(FindingKind::DuplicateKey, where_, {PointerText(entry.duplicate), PointerText(entry.slot)});
    }
    CheckKey(entry.slot, view, ByteView(keys_).subspan(entry.start, entry.length));
}

KeyNulls IndexEntries::NullsOf(const RowView& view) const {
    KeyNulls nulls;
    for (const KeyColumn& column : columns_) {
        nulls.Add(!view.Field(column.place));
    }
    return nulls;
}

/// The key is computed again from the row.  A text with a character of unknown weight ends the comparison, as
/// does one that makes the key longer than is known: only its flag byte is.
void IndexEntries::CheckKey(RowPointer slot, const RowView& view, ByteView key) {
    std::size_t at = 0;
    for (const KeyColumn& keyColumn : columns_) {
        const Column& column = table_.columns[keyColumn.place];
        std::optional<ByteView> value = view.Field(keyColumn.place);
        std::optional<ByteVector> fetched;
        if (value && IsLong(column.type)) {
            fetched = FetchLong(value);
            value = fetched ? std::optional<ByteView>(*fetched) : std::nullopt;
            if (!fetched) {
                return;
            }
        }
        std::optional<ByteVector> wanted = EncodeKeyColumn(column, value, keyColumn.ascending);
        const bool known = wanted && at + wanted->size() <= kLongestKnownKey;
        if (!known) {
            wanted = ByteVector{keyColumn.ascending ? kNotNull : kNotNullDescending};
        }
        const ByteView rest = key.subspan(at);
        if (rest.size() < wanted->size() || !std::equal(wanted->begin(), wanted->end(), rest.begin())) {
            log_.Add(FindingKind::KeyDiffers, where_, {PointerText(slot), text::Hex(key)});
            return;
        }
        if (!known) {
            ++unknownKeys_;
            return;
        }
        at += wanted->size();
    }
    ++comparedKeys_;
    if (at != key.size()) {
        log_.Add(FindingKind::KeyDiffers, where_, {PointerText(slot), text::Hex(key)});
    }
}

/// Rows of a damaged file may all name one huge value; what is fetched stays within the size of the file.
std::optional<ByteVector> IndexEntries::FetchLong(std::optional<ByteView> descriptor) {
    const std::uint64_t length = LongValueLength(*descriptor);
    if (length > longBudget_) {
        return std::nullopt;
    }
    longBudget_ -= length;
    return ReadLongValue(context_.pager, *descriptor);
}

void IndexEntries::ReportCounts(FindingLog& log, std::uint64_t compared, std::uint64_t unknown) {
    log.Count("keys-compared", compared);
    log.Count("keys-with-unknown-weights", unknown);
}

void IndexEntries::CheckRowsWithoutEntry() {
    const SlotNumbers& slots = rows_.Slots();
    std::size_t missing = 0;
    for (std::size_t place = 0; place < slots.Pages().size(); ++place) {
        const std::size_t first = slots.First(place);
        for (std::size_t number = first; number < slots.First(place + 1); ++number) {
            if (!rows_.Has(number) || seen_[number] || !rows_.IsReadable(number)) {
                continue;
            }
            if (missing == kFindingsPerKind) {
                return;
            }
            const RowPointer slot{slots.Pages()[place], static_cast<std::uint8_t>(number - first)};
            missing += CheckRowWithoutEntry(slot) ? 0 : 1;
        }
    }
}

/// False when it is missing.
bool IndexEntries::CheckRowWithoutEntry(RowPointer slot) {
    bool right = true;
    Guard(
        log_, FindingKind::RowDamaged, [&] { return RowPlaceText(where_, slot); },
        [&] {
            const KeyNulls nulls = NullsOf(RowView(shape_, reader_.Read(slot)));
            if (index_.Required() && nulls.any) {
                log_.Add(FindingKind::NullInRequired, where_, {PointerText(slot)});
            }
            right = index_.IgnoreNulls() && nulls.all;
            if (!right) {
                log_.Add(FindingKind::RowWithoutEntry, where_, {PointerText(slot)});
            }
        });
    return right;
}

}  // namespace tavrel::jet::check
