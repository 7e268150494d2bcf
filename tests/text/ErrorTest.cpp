#include <set>

#include <gtest/gtest.h>

#include "text/Error.h"
#include "text/ErrorTable.h"

namespace tavrel {
namespace {

/// The places "|1" … that a text has.
std::set<char> Places(std::string_view text) {
    std::set<char> places;
    for (std::size_t at = text.find('|'); at != std::string_view::npos; at = text.find('|', at + 1)) {
        places.insert(at + 1 < text.size() ? text[at + 1] : '?');
    }
    return places;
}

TEST(ErrorTable, BothLanguagesTakeTheSameArguments) {
    for (const ErrorText& line : ErrorTable()) {
        EXPECT_FALSE(line.korean.empty()) << line.number;
        EXPECT_EQ(Places(line.korean), Places(line.english)) << line.number;
    }
}

TEST(MakeError, FillsInArgumentsAndReason) {
    const Error error = MakeError(3380, {"전화", "고객"}, "12쪽");
    EXPECT_EQ(error.Number(), 3380);
    EXPECT_EQ(error.Description(), "'전화' 필드가 '고객' 테이블에 이미 있습니다. (12쪽)");
    EXPECT_EQ(MakeError(3381, {"전화", "고객"}).Description(),
              "'고객' 테이블에 이름이 '전화'인 필드가 없습니다.");
}

TEST(MakeError, TakesNamesAsTheyAre) {
    EXPECT_EQ(MakeError(3380, {"a|2b", "|"}).Description(), "'a|2b' 필드가 '|' 테이블에 이미 있습니다.");
    EXPECT_EQ(MakeError(3380, {"a"}).Description(), "'a' 필드가 '' 테이블에 이미 있습니다.");
}

TEST(MakeError, AnUnlistedNumberStillIsAnError) {
    const Error error = MakeError(-2147467259, {}, "이유");
    EXPECT_EQ(error.Number(), -2147467259);
    EXPECT_FALSE(error.Description().empty());
    EXPECT_EQ(FindErrorText(-2147467259), nullptr);
}

TEST(FindErrorText, KnowsEveryNumberThatTheCodeNames) {
    using namespace errors;
    for (const std::int32_t number :
         {kFileNotFound,     kDeviceFault,      kFileExists,         kDiskFull,          kTooManyFiles,
          kPermissionDenied, kPathAccess,       kPathNotFound,       kTableExists,       kObjectNotFound,
          kDuplicateKey,     kDatabaseNotFound, kNoDiskSpace,        kReadOnly,          kBadPassword,
          kDatabaseTooLarge, kReadFault,        kOldVersion,         kBadPath,           kFileInUse,
          kRecordTooLarge,   kCannotOpen,       kNoFilePermission,   kNullInKey,         kNoSuchTable,
          kFieldTooSmall,    kTooManyFields,    kDuplicateField,     kNoParentRecord,    kDatabaseExists,
          kRequiredField,    kZeroLength,       kUnrecognizedFormat, kOpenedExclusively, kRelationExists,
          kDamaged,          kTypeMismatch,     kTooManyIndexes,     kUnknownSortWeight}) {
        const ErrorText* line = FindErrorText(number);
        ASSERT_NE(line, nullptr) << number;
        EXPECT_EQ(line->number, number);
    }
}

}  // namespace
}  // namespace tavrel
