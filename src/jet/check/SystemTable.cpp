#include "jet/check/SystemTable.h"

#include <algorithm>

#include "jet/check/DataPageCheck.h"
#include "jet/check/RowScan.h"
#include "jet/storage/Rc4.h"
#include "jet/storage/TextCoding.h"
#include "jet/storage/UsageMap.h"

namespace tavrel::jet::check {

SystemTable::SystemTable(Pager& pager, PageNumber definitionPage, std::uint32_t ownerKey)
    : pager_(pager),
      ownerKey_(ownerKey),
      definition_(ReadTableDefinition(pager, definitionPage)),
      shape_(definition_.Shape()) {}

void SystemTable::ForEach(const Visitor& visitor) {
    FindingLog unheard;
    SlotNumbers slots;
    for (const PageNumber page : ReadUsageMap(pager_, definition_.ownedMap).pages) {
        Guard(unheard, FindingKind::Unreadable, "", [&] {
            const PageRef bytes = pager_.Read(page);
            if (CheckDataPage(unheard, bytes, page, definition_.page)) {
                slots.AddPage(page, DataPageView(bytes).SlotCount());
            }
        });
    }
    RowScan(pager_, unheard, {}, slots).Run([&](RowPointer slot, ByteView row) {
        visitor(slot, Row(*this, row));
        return true;
    });
}

ByteVector SystemTable::Row::Bytes(std::string_view column) const {
    const std::vector<Column>& columns = table_.definition_.columns;
    const auto place =
        std::find_if(columns.begin(), columns.end(), [column](const Column& c) { return c.name == column; });
    if (place == columns.end()) {
        ThrowDamaged("시스템 테이블에 필드 " + std::string(column) + "이(가) 없음");
    }
    const std::optional<ByteView> value = view_.Field(static_cast<std::size_t>(place - columns.begin()));
    return value ? ByteVector(value->begin(), value->end()) : ByteVector();
}

std::int32_t SystemTable::Row::Long(std::string_view column) const {
    const ByteVector bytes = Bytes(column);
    switch (bytes.size()) {
        case 0:
            return 0;
        case 2:
            return static_cast<std::int16_t>(U16(bytes, 0));
        default:
            return static_cast<std::int32_t>(U32(bytes, 0));
    }
}

std::string SystemTable::Row::Text(std::string_view column) const {
    return DecodeText(Bytes(column));
}

ByteVector SystemTable::Row::Deciphered(std::string_view column) const {
    ByteVector bytes = Bytes(column);
    Rc4(table_.ownerKey_, bytes);
    return bytes;
}

}  // namespace tavrel::jet::check
