#include "jet/index/IndexPageEditor.h"

#include <algorithm>
#include <bit>

#include "jet/storage/DataPage.h"

namespace tavrel::jet {

namespace {

constexpr std::size_t kTail = 0x14;
constexpr std::size_t kPrefix = 0x18;
constexpr std::size_t kChildBytes = 4;
constexpr std::size_t kRowBytes = 4;

/// std::popcount calls a function where the processor to be built for has no instruction of its own.
unsigned CountBits(std::uint64_t word) {
    word -= word >> 1 & 0x5555555555555555;
    word = (word & 0x3333333333333333) + (word >> 2 & 0x3333333333333333);
    word = (word + (word >> 4)) & 0x0F0F0F0F0F0F0F0F;
    return static_cast<unsigned>(word * 0x0101010101010101 >> 56);
}

}  // namespace

EntryTable::EntryTable(ByteView page) {
    if (page.size() != kPageSize || (page[0] != kPageTypeLeaf && page[0] != kPageTypeNode)) {
        ThrowDamaged("인덱스 페이지가 아님");
    }
    leaf_ = page[0] == kPageTypeLeaf;
    prefix_ = U16(page, kPrefix);
    mask_ = EntryMask(page);
    CountEnds(0);
    used_ = mask_.Highest();
    CheckEnds();
}

/// Counts the ends in the words from `from` on.
void EntryTable::CountEnds(std::size_t from) {
    for (std::size_t i = from; i < EntryMask::kWords; ++i) {
        before_[i + 1] = static_cast<std::uint16_t>(before_[i] + CountBits(mask_.Word(i)));
    }
}

void EntryTable::Insert(unsigned at, std::size_t length) {
    const unsigned start = Start(at);
    mask_.MoveUp(start, length);
    mask_.Set(start + length);
    used_ += static_cast<unsigned>(length);
    CountEnds(start / 64);
}

/// Every entry holds its row pointer, and in a node its child, which no prefix may swallow.
void EntryTable::CheckEnds() const {
    const unsigned whole = leaf_ ? kRowBytes : kRowBytes + kChildBytes;
    const unsigned own = leaf_ ? 1 : kChildBytes;
    if (Count() > 0 && (used_ > kIndexRoom || mask_.Lowest() < std::max(whole, prefix_ + own))) {
        ThrowDamaged("인덱스 페이지의 항목이 잘못됨");
    }
    if (mask_.Crowded(std::max(own, whole > prefix_ ? whole - prefix_ : 0))) {
        ThrowDamaged("인덱스 항목이 너무 짧음");
    }
}

unsigned EntryTable::End(unsigned entry) const {
    std::size_t word = 0;
    for (std::size_t step = 32; step != 0; step /= 2) {
        if (word + step < EntryMask::kWords && before_[word + step] <= entry) {
            word += step;
        }
    }
    std::uint64_t bits = mask_.Word(word);
    for (unsigned skip = entry - before_[word]; skip != 0; --skip) {
        bits &= bits - 1;
    }
    return static_cast<unsigned>(64 * word) + static_cast<unsigned>(std::countr_zero(bits));
}

/// How many entries end at a place or before it.
unsigned EntryTable::EndsUpTo(unsigned place) const {
    const std::size_t word = place / 64;
    return before_[word] + CountBits(mask_.Word(word) << (63 - place % 64));
}

ByteVector EntryTable::Entry(ByteView page, unsigned entry) const {
    const ByteView entries = page.subspan(kIndexEntries);
    ByteVector whole;
    whole.reserve(prefix_ + End(entry) - Start(entry));
    if (entry > 0) {
        AppendBytes(whole, entries.first(prefix_));
    }
    AppendBytes(whole, entries.subspan(Start(entry), End(entry) - Start(entry)));
    return whole;
}

void EntryTable::AppendTo(EntryList& list, ByteView page) const {
    const ByteView entries = page.subspan(kIndexEntries);
    list.Reserve(Count() + 1, used_ + std::size_t{Count()} * prefix_);
    for (unsigned start = 0; start < used_;) {
        const unsigned end = mask_.Above(start);
        list.Add(start == 0 ? ByteView() : entries.first(prefix_), entries.subspan(start, end - start));
        start = end;
    }
}

PageNumber EntryTable::Child(ByteView page, unsigned entry) const {
    return entry == Count() ? U32(page, kTail) : U32Be(page, kIndexEntries + End(entry) - kChildBytes);
}

/// Compares the entry that starts at a place with a bound whose first `skip` bytes are known to be equal to
/// the page's prefix.
int EntryTable::Compare(ByteView page, unsigned start, ByteView bound, unsigned skip) const {
    const std::size_t length = mask_.Above(start) - start - (leaf_ ? 0 : kChildBytes);
    const ByteView stored = page.subspan(kIndexEntries + start, length).subspan(start == 0 ? skip : 0);
    return CompareBytes(stored, bound.subspan(skip));
}

unsigned EntryTable::LowerBound(ByteView page, ByteView bound) const {
    unsigned skip = 0;
    if (prefix_ > 0 && Count() > 0) {
        // All entries begin with the prefix: a bound that does not stands before or behind all of them.
        const ByteView prefix = page.subspan(kIndexEntries, prefix_);
        const int order = CompareBytes(prefix, bound.first(std::min<std::size_t>(prefix_, bound.size())));
        if (order != 0 || bound.size() < prefix_) {
            return order < 0 ? Count() : 0;
        }
        skip = prefix_;
    }
    // Halves the bytes, not the entries: where an entry starts is found faster from a place than from its
    // number.  `low` and `high` are always starts, or the end of all entries.
    if (Count() == 0) {
        return 0;
    }
    unsigned low = 0;
    unsigned high = mask_.AtOrBelow(used_ - 1);
    if (Compare(page, high, bound, skip) < 0) {
        return Count();  // growing numbers end here
    }
    while (low < high) {
        const unsigned start = mask_.AtOrBelow((low + high) / 2);
        if (Compare(page, start, bound, skip) < 0) {
            low = mask_.Above(start);
        } else {
            high = start;
        }
    }
    return EndsUpTo(low);
}

void IndexPageEditor::Format(PageNumber owner, unsigned level) {
    page_.fill(0);
    page_[0] = level == 0 ? kPageTypeLeaf : kPageTypeNode;
    page_[1] = 1;
    page_[0x1A] = static_cast<std::uint8_t>(level);
    PutU32(page_, 0x04, owner);
    SetUsed(0);
}

void IndexPageEditor::SetEntries(Entries entries, std::size_t prefix) {
    EntryMask mask;
    PutU16(page_, kPrefix, static_cast<std::uint16_t>(entries.empty() ? 0 : prefix));
    std::size_t used = 0;
    for (const ByteView entry : entries) {
        const auto from = entry.begin() + static_cast<std::ptrdiff_t>(used == 0 ? 0 : prefix);
        std::copy(from, entry.end(), page_.begin() + static_cast<std::ptrdiff_t>(kIndexEntries + used));
        used += static_cast<std::size_t>(entry.end() - from);
        mask.Set(used);
    }
    mask.Store(page_);
    std::fill(page_.begin() + static_cast<std::ptrdiff_t>(kIndexEntries + used), page_.end(),
              std::uint8_t{0});
    SetUsed(used);
}

bool IndexPageEditor::TryInsert(EntryTable& table, unsigned at, ByteView entry) {
    const unsigned prefix = table.Prefix();
    if (prefix > 0 && (at == 0 || entry.size() <= prefix ||
                       std::memcmp(entry.data(), page_.data() + kIndexEntries, prefix) != 0)) {
        return false;
    }
    const ByteView stored = entry.subspan(at == 0 ? 0 : prefix);
    if (table.Used() + stored.size() > kIndexRoom) {
        return false;
    }
    const unsigned start = at == 0 ? 0 : table.End(at - 1);
    std::uint8_t* place = page_.data() + kIndexEntries + start;
    std::memmove(place + stored.size(), place, table.Used() - start);
    std::memcpy(place, stored.data(), stored.size());
    table.Insert(at, stored.size());
    table.Mask().Store(page_);
    SetUsed(table.Used());
    return true;
}

void IndexPageEditor::Remove(const EntryTable& table, unsigned at) {
    const unsigned start = table.Start(at);
    unsigned keep = 0;  // bytes that the next entry, becoming the first, takes over
    if (at == 0 && table.Count() > 1) {
        keep = table.Prefix();
    }
    const unsigned end = table.End(at);
    const unsigned gone = end - start - keep;
    std::uint8_t* place = page_.data() + kIndexEntries + start + keep;
    std::memmove(place, place + gone, table.Used() - end);
    EntryMask mask = table.Mask();
    mask.MoveDown(start, end, gone);
    mask.Store(page_);
    if (table.Count() == 1) {
        PutU16(page_, kPrefix, 0);
    }
    SetUsed(table.Used() - gone);
}

void IndexPageEditor::SetChild(const EntryTable& table, unsigned at, PageNumber child) {
    if (at == table.Count()) {
        SetTail(child);
        return;
    }
    const std::size_t place = kIndexEntries + table.End(at) - kChildBytes;
    for (std::size_t i = 0; i < kChildBytes; ++i) {
        page_[place + i] = static_cast<std::uint8_t>(child >> (8 * (kChildBytes - 1 - i)));
    }
}

}  // namespace tavrel::jet
