#include "jet/check/UsageMapCheck.h"

#include <algorithm>
#include <limits>
#include <set>

#include "jet/check/DataPageCheck.h"
#include "jet/check/PageSet.h"
#include "jet/check/Places.h"
#include "jet/storage/DataPage.h"

namespace tavrel::jet::check {

namespace {

constexpr RowPointer kFreeMap{1, 0};
constexpr RowPointer kPendingMap{1, 1};
constexpr const char* kFreeMapText = "빈 페이지 지도";
constexpr const char* kPendingMapText = "반환 대기 지도";
constexpr std::uint64_t kNoLimit = std::numeric_limits<PageNumber>::max();

}  // namespace

void UsageMapCheck::ReadGlobalMaps() {
    free_ = ReadMap(kFreeMap, kFreeMapText);
    pending_ = ReadMap(kPendingMap, kPendingMapText);
}

std::vector<PageNumber> UsageMapCheck::Read(RowPointer at, const std::string& what) {
    UsageMap map = ReadMap(at, what);
    const auto outside = std::lower_bound(map.pages.begin(), map.pages.end(), pager_.PageCount());
    if (outside != map.pages.end()) {
        log_.Add(FindingKind::MapOutsideFile, what, {Number(*outside)});
        map.pages.erase(outside, map.pages.end());
    }
    return std::move(map.pages);
}

UsageMap UsageMapCheck::ReadMap(RowPointer at, const std::string& what) {
    UsageMap map;
    Guard(log_, FindingKind::MapUnreadable, what, [&] {
        if (ClaimRow(at, what) && ClaimBitmaps(at, what)) {
            map = ReadUsageMap(pager_, at, kNoLimit);
        }
    });
    return map;
}

bool UsageMapCheck::ClaimRow(RowPointer at, const std::string& what) {
    const auto [user, first] = rows_.emplace(at.ToU32(), what);
    if (!first) {
        log_.Add(FindingKind::MapRowShared, what, {PointerText(at), user->second});
        return false;
    }
    const PageRef page = pager_.Read(at.page);
    const Slot slot = DataPageView(page).At(at.row);
    if (slot.flags != 0) {
        log_.Add(FindingKind::MapRowFlags, what, {Hex8(slot.flags)});
    }
    return slot.flags == 0;
}

/// A bitmap page that somebody owns already is not read again: however many maps name it, the work stays
/// bounded.
bool UsageMapCheck::ClaimBitmaps(RowPointer at, const std::string& what) {
    const ByteVector row = ReadRowAt(pager_, at);
    if (U8(row, 0) != 1) {
        return true;
    }
    const PageOwners::OwnerId owner = owners_.Register(what);
    for (std::size_t offset = 1; offset + 4 <= row.size(); offset += 4) {
        const PageNumber bitmap = U32(row, offset);
        if (bitmap != 0 && !owners_.Claim(bitmap, owner)) {
            ThrowDamaged("비트맵 페이지 " + Number(bitmap));
        }
    }
    return true;
}

void UsageMapCheck::CheckMapPages() {
    std::map<PageNumber, std::vector<bool>> used;
    for (const auto& [raw, user] : rows_) {
        const RowPointer at = RowPointer::FromU32(raw);
        std::vector<bool>& slots = used[at.page];
        slots.resize(kMaxSlots + 1);
        slots[at.row] = true;
    }
    const PageOwners::OwnerId owner = owners_.Register("사용 지도");
    for (const auto& [page, slots] : used) {
        if (page == kFreeMap.page || page >= pager_.PageCount()) {
            continue;  // claimed already; reading the map has said so
        }
        owners_.Claim(page, owner);
        Guard(log_, FindingKind::Unreadable, PagePlace(page),
              [&, at = page, &rows = slots] { CheckMapPage(at, rows); });
    }
    Guard(log_, FindingKind::Unreadable, PagePlace(kFreeMap.page),
          [&] { CheckDataPage(log_, pager_.Read(kFreeMap.page), kFreeMap.page, std::nullopt); });
}

void UsageMapCheck::CheckMapPage(PageNumber page, const std::vector<bool>& used) {
    const PageRef bytes = pager_.Read(page);
    if (U32(bytes, 4) != 0) {
        log_.Add(FindingKind::MapPageOwner, PagePlace(page), {Number(U32(bytes, 4))});
    }
    if (!CheckDataPage(log_, bytes, page, std::nullopt)) {
        return;
    }
    const DataPageView view(bytes);
    for (unsigned row = 0; row < view.SlotCount(); ++row) {
        if ((view.At(row).flags & kSlotHidden) == 0 && !used[row]) {
            log_.Add(FindingKind::MapRowUnused, PagePlace(page), {Number(row)});
        }
    }
}

void UsageMapCheck::CheckUnownedPages() {
    Guard(log_, FindingKind::Unreadable, kFreeMapText, [&] { CheckFreeMapReach(); });
    const PageNumber pages = pager_.PageCount();
    PageSet isFree(pages);
    PageSet isPending(pages);
    std::for_each(free_.pages.begin(), free_.pages.end(), [&](PageNumber page) { isFree.Insert(page); });
    std::for_each(pending_.pages.begin(), pending_.pages.end(),
                  [&](PageNumber page) { isPending.Insert(page); });
    for (PageNumber page = 0; page < pages; ++page) {
        const bool owned = owners_.IsOwned(page);
        if (owned && isFree.Has(page)) {
            log_.Add(FindingKind::PageUsedAndFree, PagePlace(page), {owners_.OwnerText(page)});
        }
        if (owned && isPending.Has(page)) {
            log_.Add(FindingKind::PageUsedAndPending, PagePlace(page), {owners_.OwnerText(page)});
        }
        if (!owned && !isFree.Has(page) && !isPending.Has(page)) {
            Guard(log_, FindingKind::Unreadable, PagePlace(page), [&] { CheckUnownedPage(page); });
        }
    }
}

/// An inline free map must reach over the whole file, and pages behind the end are free.
void UsageMapCheck::CheckFreeMapReach() {
    const std::uint64_t pages = pager_.PageCount();
    const ByteVector row = ReadRowAt(pager_, kFreeMap);
    if (U8(row, 0) != 0) {
        return;
    }
    if (free_.capacity < pages) {
        log_.Add(FindingKind::FreeMapShort, kFreeMapText, {Number(free_.capacity), Number(pages)});
        return;
    }
    std::set<PageNumber> behind;
    for (const UsageMap* map : {&free_, &pending_}) {
        std::copy_if(map->pages.begin(), map->pages.end(), std::inserter(behind, behind.end()),
                     [&](PageNumber page) { return page >= pages && page < free_.capacity; });
    }
    const std::uint64_t lost = free_.capacity - pages - behind.size();
    if (lost > 0) {
        PageNumber first = static_cast<PageNumber>(pages);
        while (behind.count(first) != 0) {
            ++first;
        }
        log_.Add(FindingKind::FreeMapTail, kFreeMapText, {Number(lost), Number(first)});
    }
}

void UsageMapCheck::CheckUnownedPage(PageNumber page) {
    const PageRef bytes = pager_.Read(page);
    const unsigned type = U8(bytes, 0);
    if (type == kPageTypeData && U32(bytes, 4) == 0) {
        log_.Add(FindingKind::LeakedMapPage, PagePlace(page));
    } else {
        log_.Add(FindingKind::LeakedPage, PagePlace(page), {Number(type)});
    }
}

}  // namespace tavrel::jet::check
