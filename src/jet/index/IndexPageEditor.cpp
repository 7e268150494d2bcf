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
    CountEnds();
    used_ = mask_.Highest();
    CheckEnds();
}

void EntryTable::CountEnds() {
    for (std::size_t i = 0; i < EntryMask::kWords; ++i) {
        before_[i + 1] = static_cast<std::uint16_t>(before_[i] + CountBits(mask_.Word(i)));
    }
}

void EntryTable::Insert(unsigned at, std::size_t length) {
    const unsigned start = Start(at);
    mask_.MoveUp(start, length);
    mask_.Set(start + length);
    used_ += static_cast<unsigned>(length);
    CountEnds();
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

ByteVector EntryTable::Entry(ByteView page, unsigned entry) const {
    const ByteView entries = page.subspan(kIndexEntries);
    ByteVector whole;
    if (entry > 0) {
        AppendBytes(whole, entries.first(prefix_));
    }
    AppendBytes(whole, entries.subspan(Start(entry), End(entry) - Start(entry)));
    return whole;
}

PageNumber EntryTable::Child(ByteView page, unsigned entry) const {
    return entry == Count() ? U32(page, kTail) : U32Be(page, kIndexEntries + End(entry) - kChildBytes);
}

/// Compares an entry with a bound whose first `skip` bytes are known to be equal to the page's prefix.
int EntryTable::Compare(ByteView page, unsigned entry, ByteView bound, unsigned skip) const {
    const std::size_t childBytes = leaf_ ? 0 : kChildBytes;
    const ByteView stored = page.subspan(kIndexEntries + Start(entry), End(entry) - Start(entry) - childBytes)
                                .subspan(entry == 0 ? skip : 0);
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
    unsigned low = 0;
    unsigned high = Count();
    while (low < high) {
        const unsigned middle = (low + high) / 2;
        if (Compare(page, middle, bound, skip) < 0) {
            low = middle + 1;
        } else {
            high = middle;
        }
    }
    return low;
}

std::size_t PackedSize(const std::vector<ByteVector>& entries, std::size_t prefix) {
    std::size_t size = 0;
    for (const ByteVector& entry : entries) {
        size += entry.size() - prefix;
    }
    return entries.empty() ? 0 : size + prefix;
}

std::size_t CommonPrefix(const std::vector<ByteVector>& entries) {
    if (entries.empty()) {
        return 0;
    }
    // The list is sorted: what the first and the last share, all share.
    const ByteVector& first = entries.front();
    const ByteVector& last = entries.back();
    const std::size_t most = std::min(first.size(), last.size()) - kRowBytes;
    std::size_t length = 0;
    while (length < most && first[length] == last[length]) {
        ++length;
    }
    return length;
}

void IndexPageEditor::Format(PageNumber owner, unsigned level) {
    page_.fill(0);
    page_[0] = level == 0 ? kPageTypeLeaf : kPageTypeNode;
    page_[1] = 1;
    page_[0x1A] = static_cast<std::uint8_t>(level);
    PutU32(page_, 0x04, owner);
    SetUsed(0);
}

void IndexPageEditor::SetEntries(const std::vector<ByteVector>& entries, std::size_t prefix) {
    EntryMask mask;
    PutU16(page_, kPrefix, static_cast<std::uint16_t>(entries.empty() ? 0 : prefix));
    std::size_t used = 0;
    for (const ByteVector& entry : entries) {
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
