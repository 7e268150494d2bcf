#include "jet/compact/MapRows.h"

#include <algorithm>

#include "jet/storage/DataPage.h"
#include "jet/storage/UsageMap.h"

namespace tavrel::jet::compact {

namespace {

constexpr PageNumber kGlobalMapsPage = 1;
constexpr std::size_t kInlineHead = 5;  ///< kind and first page, before the bits
constexpr PageNumber kInlinePages = (kMapRowBytes - kInlineHead) * 8;
constexpr std::size_t kRowsPerPage = (kPageSize - kDataHeader) / (kMapRowBytes + 2);
/// The free map grows by 4 bytes at a time; two rows of the same length must fit page 1.
constexpr std::size_t kGrowth = 4;
constexpr std::size_t kLongestGlobalRow =
    ((kPageSize - kDataHeader) / 2 - 2 - kInlineHead) / 4 * 4 + kInlineHead;

void SetBit(std::span<std::uint8_t> bits, std::size_t bit) {
    bits[bit / 8] = static_cast<std::uint8_t>(bits[bit / 8] | 1U << (bit % 8));
}

Page EmptyBitmap(std::uint8_t fill) {
    Page page;
    page.fill(fill);
    PutU32(page, 0, kPageTypeMap | 0x100);
    return page;
}

ByteVector InlineRow(const std::vector<PageNumber>& pages, PageNumber first) {
    ByteVector row(kMapRowBytes, 0);
    PutU32(row, 1, first);
    for (const PageNumber page : pages) {
        SetBit(std::span(row).subspan(kInlineHead), page - first);
    }
    return row;
}

ByteVector BitmapRow(PageOutput& out, const std::vector<PageNumber>& pages) {
    ByteVector row(kMapRowBytes, 0);
    row[0] = 1;
    for (auto page = pages.begin(); page != pages.end();) {
        const PageNumber k = *page / kMapPagesPerBitmap;
        Page bitmap = EmptyBitmap(0);
        for (; page != pages.end() && *page / kMapPagesPerBitmap == k; ++page) {
            SetBit(std::span(bitmap).subspan(4), *page % kMapPagesPerBitmap);
        }
        const PageNumber number = out.Take();
        out.Put(number, bitmap);
        PutU32(row, 1 + 4 * std::size_t{k}, number);
    }
    return row;
}

/// The free map of a file too large for an inline one.
ByteVector FreeBitmapRow(PageOutput& out) {
    std::vector<PageNumber> bitmaps;
    while (bitmaps.size() * kMapPagesPerBitmap < out.Count()) {
        bitmaps.push_back(out.Take());
    }
    ByteVector row(kMapRowBytes, 0);
    row[0] = 1;
    for (std::size_t k = 0; k < bitmaps.size(); ++k) {
        Page bitmap = EmptyBitmap(0);
        const std::size_t base = k * kMapPagesPerBitmap;
        for (std::size_t bit = out.Count() > base ? out.Count() - base : 0; bit < kMapPagesPerBitmap; ++bit) {
            SetBit(std::span(bitmap).subspan(4), bit);
        }
        out.Put(bitmaps[k], bitmap);
        PutU32(row, 1 + 4 * k, bitmaps[k]);
    }
    return row;
}

ByteVector FreeRow(PageOutput& out) {
    const std::size_t bits = (out.Count() + 8 * kGrowth) / (8 * kGrowth) * kGrowth;
    const std::size_t length = std::max(kMapRowBytes, kInlineHead + bits);
    if (length > kLongestGlobalRow) {
        return FreeBitmapRow(out);
    }
    ByteVector row(length, 0);
    for (std::size_t page = out.Count(); page < 8 * (length - kInlineHead); ++page) {
        SetBit(std::span(row).subspan(kInlineHead), page);
    }
    return row;
}

}  // namespace

ByteVector BuildMapRow(PageOutput& out, const std::vector<PageNumber>& pages) {
    if (pages.empty() || pages.back() < kInlinePages) {
        return InlineRow(pages, 0);
    }
    const PageNumber first = pages.front() / 8 * 8;
    return pages.back() - first < kInlinePages ? InlineRow(pages, first) : BitmapRow(out, pages);
}

void PutGlobalMaps(PageOutput& out) {
    const ByteVector free = FreeRow(out);
    Page page;
    DataPageEditor editor(page);
    editor.Format(kGlobalMapsPage);
    editor.Append(free);
    editor.Append(ByteVector(free.size(), 0));
    out.Put(kGlobalMapsPage, page);
}

MapRows::MapRows(PageOutput& out, std::size_t count) : out_(out), rows_(count) {
    for (std::size_t done = 0; done < count; done += kRowsPerPage) {
        pages_.push_back(out_.Take());
    }
}

RowPointer MapRows::At(std::size_t index) const {
    return {pages_[index / kRowsPerPage], static_cast<std::uint8_t>(index % kRowsPerPage)};
}

void MapRows::Finish() {
    for (std::size_t i = 0; i < pages_.size(); ++i) {
        Page page;
        DataPageEditor editor(page);
        editor.Format(0);
        const std::size_t end = std::min(rows_.size(), (i + 1) * kRowsPerPage);
        for (std::size_t row = i * kRowsPerPage; row < end; ++row) {
            editor.Append(rows_[row].empty() ? ByteVector(kMapRowBytes, 0) : rows_[row]);
        }
        out_.Put(pages_[i], page);
    }
}

}  // namespace tavrel::jet::compact
