// Every kind of finding, in one table: machine-readable code, severity, Korean text.
#pragma once

#include <string_view>

#include "jet/check/Check.h"

namespace tavrel::jet::check {

enum class FindingKind {
    // file and pages
    FileLength,
    HeaderConstants,
    Unreadable,
    PageOwnedTwice,
    PageUsedAndFree,
    PageUsedAndPending,
    LeakedPage,
    LeakedMapPage,
    // usage maps
    MapRowShared,
    MapUnreadable,
    MapRowFlags,
    MapOutsideFile,
    MapPageOwner,
    MapRowUnused,
    FreeMapShort,
    FreeMapTail,
    FreeSpaceNotOwned,
    EmptyPageNotFree,
    // data pages
    DataPageType,
    DataPageOwner,
    DataPageReserved,
    DataPageSlots,
    SlotStart,
    SlotFlags,
    SlotEmpty,
    DataPageFree,
    // definitions
    DefinitionUnreadable,
    DefinitionLength,
    DefinitionFree,
    DefinitionTableKind,
    DefinitionConstants,
    AutonumberStep,
    ColumnLimit,
    ColumnNumbers,
    ColumnNames,
    NameDamaged,
    ColumnLength,
    AutonumberColumn,
    LongColumnFixed,
    LongColumnMaps,
    ColumnsOverlap,
    VariableIndexes,
    VariableCounts,
    IndexLimit,
    IndexColumns,
    IndexUnnamed,
    IndexNumbers,
    IndexNames,
    IndexReal,
    PrimaryKeys,
    PrimaryFlags,
    IndexesUnsorted,
    // rows
    RowPointerShort,
    RowPointerTarget,
    MovedRow,
    RowDamaged,
    RowColumnCount,
    RowVariableCount,
    RowOffsets,
    FixedOutside,
    ValueLength,
    TextTooLong,
    TextNotCompressed,
    TextCompression,
    RowCount,
    Autonumber,
    // long values
    LongMapsColumn,
    LongPage,
    LongDescriptor,
    LongOutsideMap,
    LongRow,
    LongChainRows,
    LongChainMark,
    LongLength,
    LongPlace,
    LongUse,
    // indexes
    IndexUnreadable,
    IndexPageOwner,
    IndexPageFree,
    IndexPageReserved,
    IndexTail,
    IndexNodeLinks,
    IndexRange,
    IndexMap,
    IndexDepth,
    IndexLevel,
    IndexLeafLinks,
    IndexOrder,
    EntryWithoutRow,
    RowTwoEntries,
    RowWithoutEntry,
    NullInRequired,
    DuplicateKey,
    KeyDiffers,
    // catalogue
    ObjectId,
    ObjectName,
    ObjectParent,
    TableContainer,
    EngineObject,
    TableKindFlags,
    PropertyBlob,
    PropertyColumn,
    OwnerEngine,
    OwnerForeign,
    AceObject,
    AceAccount,
    AceMissing,
    QueryObject,
    // relations
    RelationObject,
    RelationNoRows,
    RelationRowsDiffer,
    RelationTable,
    RelationColumn,
    RelationNotEnforced,
    RelationChild,
    RelationPartner,
    RelationCascade,
    RelationIndex,
    RelationUnique,
    RelationOrphan
};

struct FindingInfo {
    FindingKind kind;
    Finding::Severity severity;
    std::string_view code;
    std::string_view text;  ///< "|1", "|2" … stand for the arguments
};

const FindingInfo& InfoOf(FindingKind kind);

}  // namespace tavrel::jet::check
