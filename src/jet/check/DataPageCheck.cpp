#include "jet/check/DataPageCheck.h"

#include "jet/check/Places.h"

namespace tavrel::jet::check {

namespace {

constexpr std::uint16_t kStartMask = 0x1FFF;
constexpr std::uint16_t kFlagMask = 0xE000;

/// Starts never ascend and stay between the row table and the page end.  Gives the lowest start, nothing when
/// a start is impossible.
std::optional<std::size_t> CheckSlots(FindingLog& log, ByteView page, const std::string& where,
                                      unsigned slots) {
    std::size_t low = kPageSize;
    for (unsigned row = 0; row < slots; ++row) {
        const std::uint16_t slot = U16(page, kDataHeader + 2 * row);
        const std::size_t start = slot & kStartMask;
        const unsigned flags = slot & kFlagMask;
        if (start > low || start < kDataHeader + 2 * slots) {
            log.Add(FindingKind::SlotStart, where, {Number(row), Number(start)});
            return std::nullopt;
        }
        if (flags != 0 && flags != kSlotMoved && flags != kSlotHidden && flags != kSlotDeleted) {
            log.Add(FindingKind::SlotFlags, where, {Number(row), Hex8(flags)});
        }
        if (flags == 0 && start == low) {
            log.Add(FindingKind::SlotEmpty, where, {Number(row)});
        }
        low = start;
    }
    return low;
}

bool CheckHead(FindingLog& log, ByteView page, const std::string& where, std::optional<std::uint32_t> owner) {
    if (U8(page, 0) != kPageTypeData || U8(page, 1) != 1) {
        log.Add(FindingKind::DataPageType, where, {Number(U8(page, 0))});
        return false;
    }
    if (owner && U32(page, 4) != *owner) {
        log.Add(FindingKind::DataPageOwner, where, {Number(U32(page, 4)), Number(*owner)});
        return false;
    }
    if (U32(page, 4) != kOwnerLongValues && U32(page, 8) != 0) {
        log.Add(FindingKind::DataPageReserved, where);
    }
    return true;
}

}  // namespace

bool CheckDataPage(FindingLog& log, ByteView page, PageNumber number, std::optional<std::uint32_t> owner) {
    const std::string where = PagePlace(number);
    if (!CheckHead(log, page, where, owner)) {
        return false;
    }
    const unsigned slots = U16(page, 0x0C);
    if (slots > kMaxSlots) {
        log.Add(FindingKind::DataPageSlots, where, {Number(slots)});
        return false;
    }
    const std::optional<std::size_t> low = CheckSlots(log, page, where, slots);
    if (!low) {
        return false;
    }
    const std::size_t room = *low - kDataHeader - 2 * slots;
    if (U16(page, 2) != room) {
        log.Add(FindingKind::DataPageFree, where, {Number(U16(page, 2)), Number(room)});
    }
    log.Count("data-pages");
    return true;
}

}  // namespace tavrel::jet::check
