#include "support/Mutations.h"

#include <algorithm>
#include <array>

#include "jet/storage/Bytes.h"

namespace tavrel::testing {

namespace {

using jet::kPageSize;

constexpr std::size_t kMaxChanges = 4;
constexpr std::size_t kHeaderBytes = 0x40;  ///< of a page: most of what steers reading stands there

std::string At(std::size_t offset) {
    return std::to_string(offset / kPageSize) + ":" + std::to_string(offset % kPageSize);
}

std::size_t PagesOf(const FileBytes& file) {
    return file.size() / kPageSize;
}

std::span<std::uint8_t> PageOf(FileBytes& file, std::size_t page) {
    return std::span(file).subspan(page * kPageSize, kPageSize);
}

}  // namespace

std::string Mutator::Mutate(FileBytes& file) {
    using Change = std::string (Mutator::*)(FileBytes&);
    // What damages little comes more often: it gets further.
    static constexpr std::array<Change, 12> kChanges = {
        &Mutator::FlipBytes,       &Mutator::FlipBytes,       &Mutator::FlipBytes, &Mutator::OverwriteNumber,
        &Mutator::OverwriteNumber, &Mutator::OverwriteNumber, &Mutator::CrossLink, &Mutator::CrossLink,
        &Mutator::SwapPages,       &Mutator::CopyPage,        &Mutator::FillPage,  &Mutator::Truncate};
    std::string done;
    for (std::uint32_t changes = 1 + Below(kMaxChanges); changes != 0; --changes) {
        done += (this->*kChanges[Below(kChanges.size())])(file) + "; ";
    }
    return done;
}

/// Pages at the front hold the maps and the catalogue: every other pick is one of these.
std::size_t Mutator::PickPage(const FileBytes& file) {
    const std::size_t pages = PagesOf(file);
    return Below(Below(2) == 0 ? std::min<std::size_t>(pages, 8) : pages);
}

std::size_t Mutator::PickUsedByte(const FileBytes& file) {
    const std::size_t page = PickPage(file) * kPageSize;
    if (Below(2) == 0) {
        return page + Below(kHeaderBytes);
    }
    std::size_t offset = page + Below(kPageSize);
    for (int tries = 0; file[offset] == 0 && tries < 50; ++tries) {
        offset = page + Below(kPageSize);
    }
    return offset;
}

std::string Mutator::FlipBytes(FileBytes& file) {
    const std::size_t offset = PickUsedByte(file);
    const std::size_t count = std::min<std::size_t>(1 + Below(4), file.size() - offset);
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t change = Below(2) == 0 ? 1U << Below(8) : random_();
        file[offset + i] ^= static_cast<std::uint8_t>(change);
    }
    return "flip " + At(offset);
}

std::string Mutator::OverwriteNumber(FileBytes& file) {
    static constexpr std::uint32_t kNumbers[] = {
        0,      1,      2,      0x7F,     0xFF,       0x100,      0xFFF,      0x1000,    0x1FFF,
        0x7FFF, 0x8000, 0xFFFF, 0xFFFFFF, 0x3FFFFFFF, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
    const std::size_t offset = std::min(PickUsedByte(file), file.size() - 4);
    const std::uint32_t number = kNumbers[Below(std::size(kNumbers))];
    if (Below(2) == 0) {
        jet::PutU16(file, offset, static_cast<std::uint16_t>(number));
    } else {
        jet::PutU32(file, offset, number);
    }
    return "number " + At(offset) + " = " + std::to_string(number);
}

/// Places in a page whose little-endian number, shifted, is that of another page.
std::vector<std::size_t> Mutator::Links(const FileBytes& file, std::size_t page, unsigned shift) const {
    std::vector<std::size_t> places;
    for (std::size_t offset = page * kPageSize; offset + 4 <= (page + 1) * kPageSize; ++offset) {
        const std::uint32_t target = jet::U32(file, offset) >> shift;
        if (target != 0 && target < PagesOf(file)) {
            places.push_back(offset);
        }
    }
    return places;
}

std::string Mutator::CrossLink(FileBytes& file) {
    const std::size_t page = PickPage(file);
    const unsigned shift = Below(2) == 0 ? 0 : 8;  // a page number, or page and row
    const std::vector<std::size_t> places = Links(file, page, shift);
    if (places.empty()) {
        return "no link in " + std::to_string(page);
    }
    const std::size_t offset = places[Below(places.size())];
    const std::uint32_t row = jet::U32(file, offset) & ((1U << shift) - 1);
    const std::size_t target = Below(4) == 0 ? page : Below(PagesOf(file));
    jet::PutU32(file, offset, static_cast<std::uint32_t>(target) << shift | row);
    return "link " + At(offset) + " -> " + std::to_string(target);
}

std::string Mutator::SwapPages(FileBytes& file) {
    const std::size_t left = PickPage(file);
    const std::size_t right = Below(PagesOf(file));
    std::ranges::swap_ranges(PageOf(file, left), PageOf(file, right));
    return "swap " + std::to_string(left) + " and " + std::to_string(right);
}

std::string Mutator::CopyPage(FileBytes& file) {
    const std::size_t from = PickPage(file);
    const std::size_t to = Below(PagesOf(file));
    if (from != to) {
        std::ranges::copy(PageOf(file, from), PageOf(file, to).begin());
    }
    return "copy " + std::to_string(from) + " to " + std::to_string(to);
}

std::string Mutator::FillPage(FileBytes& file) {
    const std::size_t page = Below(PagesOf(file));
    const std::size_t start = Below(kPageSize);
    std::ranges::fill(PageOf(file, page).subspan(start), static_cast<std::uint8_t>(Below(2) == 0 ? 0 : 0xFF));
    return "fill " + std::to_string(page) + " from " + std::to_string(start);
}

std::string Mutator::Truncate(FileBytes& file) {
    const std::size_t unit = Below(2) == 0 ? 1 : kPageSize;
    const std::size_t size = kPageSize + Below(file.size() - kPageSize + 1) / unit * unit;
    file.resize(size);
    return "cut to " + std::to_string(size);
}

}  // namespace tavrel::testing
