#include "jet/check/FindingKind.h"

#include <cstddef>
#include <iterator>

namespace tavrel::jet::check {

namespace {

constexpr auto kError = Finding::Severity::Error;
constexpr auto kNote = Finding::Severity::Note;
using K = FindingKind;

// clang-format off
/// In the order of the enumeration.
constexpr FindingInfo kInfos[] = {
    {K::FileLength, kError, "file-length", "파일 길이가 페이지 크기의 배수가 아님"},
    {K::HeaderConstants, kError, "header-constants", "헤더의 고정 값이 다름"},
    {K::Unreadable, kError, "unreadable", "읽을 수 없음: |1"},
    {K::PageOwnedTwice, kError, "page-owned-twice", "두 곳에서 사용됨: |1, |2"},
    {K::PageUsedAndFree, kError, "page-used-and-free", "사용 중(|1)인데 빈 페이지로 표시됨"},
    {K::PageUsedAndPending, kError, "page-used-and-pending", "사용 중(|1)인데 반환 대기로 표시됨"},
    {K::LeakedPage, kNote, "leaked-page", "종류 |1 페이지가 사용되지도 반환되지도 않음"},
    {K::LeakedMapPage, kNote, "leaked-map-page", "사용 지도 페이지에 테이블이 없음"},

    {K::MapRowShared, kError, "map-row-shared", "사용 지도 |1이(가) 다른 곳에도 쓰임: |2"},
    {K::MapUnreadable, kError, "map-unreadable", "사용 지도를 읽을 수 없음: |1"},
    {K::MapRowFlags, kError, "map-row-flags", "사용 지도 행의 표시가 |1"},
    {K::MapOutsideFile, kError, "map-outside-file", "사용 지도가 파일 밖의 페이지 |1을(를) 가리킴"},
    {K::MapPageOwner, kError, "map-page-owner", "사용 지도 페이지의 소유자 값이 |1"},
    {K::MapRowUnused, kNote, "map-row-unused", "사용 지도 행 |1을(를) 쓰는 곳이 없음"},
    {K::FreeMapShort, kError, "free-map-short", "페이지 |2개 가운데 |1개만 나타냄"},
    {K::FreeMapTail, kNote, "free-map-tail", "파일 끝 뒤의 페이지 |1개가 빈 페이지가 아님 (|2부터)"},
    {K::FreeSpaceNotOwned, kError, "free-space-not-owned", "여유 지도의 페이지 |1이(가) 소유 지도에 없음"},
    {K::EmptyPageNotFree, kError, "empty-page-not-free", "빈 페이지 |1이(가) 여유 지도에 없음"},

    {K::DataPageType, kError, "data-page-type", "데이터 페이지가 아님 (종류 |1)"},
    {K::DataPageOwner, kError, "data-page-owner", "소유자 값이 |1 (|2이어야 함)"},
    {K::DataPageReserved, kError, "data-page-reserved", "예약된 값이 0이 아님"},
    {K::DataPageSlots, kError, "data-page-slots", "행 자리의 수 |1이(가) 불가능함"},
    {K::SlotStart, kError, "slot-start", "행 |1의 시작 위치 |2이(가) 잘못됨"},
    {K::SlotFlags, kError, "slot-flags", "행 |1의 표시 |2이(가) 잘못됨"},
    {K::SlotEmpty, kError, "slot-empty", "행 |1이(가) 비어 있음"},
    {K::DataPageFree, kError, "data-page-free", "여유 바이트가 |1 (|2이어야 함)"},

    {K::DefinitionUnreadable, kError, "definition-unreadable", "테이블 정의를 읽을 수 없음: |1"},
    {K::DefinitionLength, kError, "definition-length", "정의의 길이가 |1 (실제 |2)"},
    {K::DefinitionFree, kError, "definition-free", "정의 페이지 |1의 여유 바이트가 |2 (|3이어야 함)"},
    {K::DefinitionTableKind, kError, "definition-table-kind", "테이블 종류 값이 |1"},
    {K::DefinitionConstants, kError, "definition-constants", "고정 값이 다름: |1"},
    {K::AutonumberStep, kNote, "autonumber-step", "일련 번호 증가 폭이 |1"},
    {K::ColumnLimit, kError, "column-limit", "필드가 |1개로 너무 많아 레코드를 검사하지 않음"},
    {K::ColumnNumbers, kError, "column-numbers", "필드 번호가 잘못됨"},
    {K::ColumnNames, kError, "column-names", "필드 이름이 중복됨: |1"},
    {K::NameDamaged, kError, "name-damaged", "이름이 올바른 유니코드가 아님: |1"},
    {K::ColumnLength, kError, "column-length", "필드 |1의 길이 |2이(가) 잘못됨"},
    {K::AutonumberColumn, kError, "autonumber-column", "일련 번호 필드가 잘못됨: |1"},
    {K::LongColumnFixed, kError, "long-column-fixed", "긴 값 필드 |1이(가) 고정 길이임"},
    {K::LongColumnMaps, kError, "long-column-maps", "필드 |1의 긴 값 지도가 형식과 맞지 않음"},
    {K::ColumnsOverlap, kError, "columns-overlap", "고정 필드가 겹침: |1, |2"},
    {K::VariableIndexes, kError, "variable-indexes", "가변 필드의 순번이 잘못됨"},
    {K::VariableCounts, kError, "variable-counts", "필드 |1: 앞선 가변 필드 수가 |2 (|3이어야 함)"},
    {K::IndexLimit, kError, "index-limit", "인덱스가 |1개로 너무 많음"},
    {K::IndexColumns, kError, "index-columns", "인덱스 |1의 필드를 알 수 없음"},
    {K::IndexUnnamed, kError, "index-unnamed", "인덱스 |1에 이름이 없음"},
    {K::IndexNumbers, kError, "index-numbers", "인덱스 번호가 중복됨"},
    {K::IndexNames, kError, "index-names", "인덱스 이름이 중복됨: |1"},
    {K::IndexReal, kError, "index-real", "인덱스 |1이(가) 없는 트리 |2을(를) 가리킴"},
    {K::PrimaryKeys, kError, "primary-keys", "기본 키가 둘 이상임"},
    {K::PrimaryFlags, kError, "primary-flags", "기본 키 |1이(가) 고유하고 필수인 인덱스가 아님"},
    {K::IndexesUnsorted, kNote, "indexes-unsorted", "인덱스가 이름 순서로 놓이지 않음"},

    {K::RowPointerShort, kError, "row-pointer-short", "옮겨진 레코드의 포인터가 너무 짧음"},
    {K::RowPointerTarget, kError, "row-pointer-target", "포인터가 가리키는 |1이(가) 옮겨진 레코드가 아님"},
    {K::MovedRow, kError, "moved-row", "옮겨진 레코드를 가리키는 포인터가 |1개"},
    {K::RowDamaged, kError, "row-damaged", "레코드를 읽을 수 없음: |1"},
    {K::RowColumnCount, kError, "row-column-count", "필드 수 |1이(가) 잘못됨"},
    {K::RowVariableCount, kError, "row-variable-count", "가변 필드 수 |1이(가) 잘못됨"},
    {K::RowOffsets, kError, "row-offsets", "가변 값의 위치가 오름차순이 아님"},
    {K::FixedOutside, kError, "fixed-outside", "필드 |1이(가) 고정 부분을 벗어남"},
    {K::ValueLength, kError, "value-length", "필드 |1의 값이 |2바이트임"},
    {K::TextTooLong, kError, "text-too-long", "필드 |1의 값 |2바이트가 한도 |3보다 김"},
    {K::TextNotCompressed, kNote, "text-not-compressed", "압축되지 않은 텍스트 |1개 (처음: |2)"},
    {K::TextCompression, kError, "text-compression", "필드 |1의 텍스트 압축이 잘못됨"},
    {K::RowCount, kNote, "row-count", "정의의 레코드 수는 |1, 실제는 |2"},
    {K::Autonumber, kNote, "autonumber", "마지막 일련 번호 |1이(가) 가장 큰 값 |2보다 작음"},

    {K::LongMapsColumn, kError, "long-maps-column", "필드 번호 |1의 긴 값 지도가 잘못됨"},
    {K::LongPage, kError, "long-value-page", "긴 값 페이지가 아님"},
    {K::LongDescriptor, kError, "long-descriptor", "긴 값의 서술자가 잘못됨"},
    {K::LongOutsideMap, kError, "long-outside-map", "긴 값이 필드의 지도 밖인 페이지 |1에 있음"},
    {K::LongRow, kError, "long-row", "긴 값의 행 |1을(를) 쓸 수 없음"},
    {K::LongChainRows, kError, "long-chain-rows", "사슬 페이지 |1의 행 수가 |2"},
    {K::LongChainMark, kError, "long-chain-mark", "페이지 |1의 사슬 표시가 다름"},
    {K::LongLength, kError, "long-length", "긴 값의 길이는 |1, 저장된 것은 |2바이트"},
    {K::LongPlace, kError, "long-place", "|1바이트인 값이 놓일 자리가 아님 (|2)"},
    {K::LongUse, kError, "long-use", "긴 값 |1의 사용 횟수가 |2"},

    {K::IndexUnreadable, kError, "index-unreadable", "인덱스를 읽을 수 없음: |1"},
    {K::IndexPageOwner, kError, "index-page-owner", "페이지 |1의 소유자 값이 |2"},
    {K::IndexPageFree, kError, "index-page-free", "페이지 |1의 여유 바이트가 |2"},
    {K::IndexPageReserved, kError, "index-page-reserved", "페이지 |1의 예약된 값이 0이 아님"},
    {K::IndexTail, kError, "index-tail", "페이지 |1의 꼬리 페이지 |2이(가) 잘못됨"},
    {K::IndexNodeLinks, kError, "index-node-links", "노드 |1의 이웃 |2이(가) 노드가 아님"},
    {K::IndexRange, kError, "index-range", "잎 |1의 항목이 상위 노드의 범위를 벗어남"},
    {K::IndexMap, kError, "index-map", "지도의 페이지와 트리의 페이지가 다름 (페이지 |1)"},
    {K::IndexDepth, kError, "index-depth", "잎의 깊이가 서로 다름"},
    {K::IndexLevel, kError, "index-level", "페이지 |1의 단계 값이 |2"},
    {K::IndexLeafLinks, kError, "index-leaf-links", "잎 |1의 이웃 |2/|3이(가) 잘못됨"},
    {K::IndexOrder, kError, "index-order", "항목의 순서가 어긋남 (|1)"},
    {K::EntryWithoutRow, kError, "entry-without-row", "항목이 가리키는 레코드 |1이(가) 없음"},
    {K::RowTwoEntries, kError, "row-two-entries", "레코드 |1의 항목이 둘 이상임"},
    {K::RowWithoutEntry, kError, "row-without-entry", "레코드 |1의 항목이 없음"},
    {K::NullInRequired, kError, "null-in-required", "필수 인덱스인데 레코드 |1의 값이 Null임"},
    {K::DuplicateKey, kError, "duplicate-key", "고유 인덱스인데 레코드 |1과 |2의 키가 같음"},
    {K::KeyDiffers, kError, "key-differs", "레코드 |1의 키가 값과 다름 (|2)"},

    {K::ObjectId, kError, "object-id", "개체 번호 |1이(가) |2번 나옴"},
    {K::ObjectName, kError, "object-name", "이름 |1이(가) |2번 나옴"},
    {K::ObjectParent, kError, "object-parent", "|1의 상위 개체 |2이(가) 없음"},
    {K::TableContainer, kError, "table-container", "테이블 |1이(가) Tables에 있지 않음"},
    {K::EngineObject, kError, "engine-object", "개체 |1이(가) |2이(가) 아님"},
    {K::TableKindFlags, kError, "table-kind-flags", "테이블 종류 값이 개체의 표시와 맞지 않음"},
    {K::PropertyBlob, kError, "property-blob", "속성을 읽을 수 없음: |1"},
    {K::PropertyColumn, kNote, "property-column", "없는 필드 |1의 속성이 있음"},
    {K::OwnerEngine, kNote, "owner-engine", "|1의 소유자가 엔진이 아님"},
    {K::OwnerForeign, kNote, "owner-foreign", "개체 |1개의 소유자가 Admin이 아님 (처음: |2)"},
    {K::AceObject, kError, "ace-object", "없는 개체 |1의 권한 항목이 있음"},
    {K::AceAccount, kNote, "ace-account", "다른 계정의 권한 항목이 있음: |1"},
    {K::AceMissing, kError, "ace-missing", "|1의 권한 항목이 없음"},
    {K::QueryObject, kError, "query-object", "없는 개체 |1의 쿼리 행이 있음"},

    {K::RelationObject, kError, "relation-object", "관계의 개체가 없음"},
    {K::RelationNoRows, kError, "relation-no-rows", "관계의 행이 없음"},
    {K::RelationRowsDiffer, kError, "relation-rows-differ", "관계의 행들이 서로 맞지 않음"},
    {K::RelationTable, kError, "relation-table", "테이블 |1이(가) 없음"},
    {K::RelationColumn, kError, "relation-column", "필드 |1이(가) 없음"},
    {K::RelationNotEnforced, kError, "relation-not-enforced", "강제하지 않는 관계인데 인덱스 항목이 있음"},
    {K::RelationChild, kError, "relation-child", "하위 테이블의 인덱스 항목이 |1개"},
    {K::RelationPartner, kError, "relation-partner", "두 테이블의 인덱스 항목이 서로를 가리키지 않음"},
    {K::RelationCascade, kError, "relation-cascade", "연쇄 갱신/삭제 값이 관계의 표시와 다름"},
    {K::RelationIndex, kError, "relation-index", "인덱스의 필드가 관계의 필드와 다름"},
    {K::RelationUnique, kError, "relation-unique", "참조되는 필드의 인덱스가 고유하지 않음"},
    {K::RelationOrphan, kError, "relation-orphan", "인덱스 항목 |1의 관계가 없음"},
};
// clang-format on

constexpr bool InOrder() {
    for (std::size_t i = 0; i < std::size(kInfos); ++i) {
        if (static_cast<std::size_t>(kInfos[i].kind) != i) {
            return false;
        }
    }
    return static_cast<std::size_t>(K::RelationOrphan) + 1 == std::size(kInfos);
}
static_assert(InOrder(), "one line for each kind, in the order of the enumeration");

}  // namespace

const FindingInfo& InfoOf(FindingKind kind) {
    return kInfos[static_cast<std::size_t>(kind)];
}

}  // namespace tavrel::jet::check
