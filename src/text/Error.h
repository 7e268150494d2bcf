// The one exception that carries what callers report.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tavrel {

/// A failure with a number and a Korean description, as the database engine and the platform raise it.
/// what() is the description.
class Error : public std::runtime_error {
  public:
    Error(std::int32_t number, const std::string& description)
        : std::runtime_error(description), number_(number) {}

    [[nodiscard]] std::int32_t Number() const { return number_; }
    [[nodiscard]] std::string Description() const { return what(); }

  private:
    std::int32_t number_;
};

/// One line of the table of texts.  "|1", "|2" … stand for the arguments.
struct ErrorText {
    std::int32_t number;
    std::string_view korean;   ///< what users read
    std::string_view english;  ///< the reference text, for those who look the number up
};

/// The table's line for a number; null when the number is not in the table.
const ErrorText* FindErrorText(std::int32_t number);

/// An error with the table's Korean text, "|1" … replaced by the arguments.  A reason that is not empty
/// follows in parentheses: it says what exactly was wrong (a page number, a field).
Error MakeError(std::int32_t number, std::initializer_list<std::string_view> arguments = {},
                std::string_view reason = {});

/// Called from a handler: what is being handled, as an Error.  A lack of memory is 7; what nobody expected is
/// 51, with its reason.
Error PresentError();

// Numbers that the code raises or asks for by name.  Those below 100 are the run-time's, the others the
// engine's.
namespace errors {
inline constexpr std::int32_t kOutOfMemory = 7;
inline constexpr std::int32_t kInternal = 51;
inline constexpr std::int32_t kFileNotFound = 53;
inline constexpr std::int32_t kDeviceFault = 57;
inline constexpr std::int32_t kFileExists = 58;
inline constexpr std::int32_t kDiskFull = 61;
inline constexpr std::int32_t kTooManyFiles = 67;
inline constexpr std::int32_t kPermissionDenied = 70;
inline constexpr std::int32_t kPathAccess = 75;
inline constexpr std::int32_t kPathNotFound = 76;
inline constexpr std::int32_t kTableExists = 3010;
inline constexpr std::int32_t kObjectNotFound = 3011;
inline constexpr std::int32_t kDuplicateKey = 3022;
inline constexpr std::int32_t kDatabaseNotFound = 3024;
inline constexpr std::int32_t kNoDiskSpace = 3026;
inline constexpr std::int32_t kReadOnly = 3027;
inline constexpr std::int32_t kBadPassword = 3031;
inline constexpr std::int32_t kTooManyTransactions = 3094;
inline constexpr std::int32_t kNoTransaction = 3034;
inline constexpr std::int32_t kDatabaseTooLarge = 3036;
inline constexpr std::int32_t kReadFault = 3040;
inline constexpr std::int32_t kOldVersion = 3041;
inline constexpr std::int32_t kNetworkError = 3043;
inline constexpr std::int32_t kBadPath = 3044;
inline constexpr std::int32_t kFileInUse = 3045;
inline constexpr std::int32_t kRecordTooLarge = 3047;
inline constexpr std::int32_t kCannotOpen = 3049;
inline constexpr std::int32_t kNoFilePermission = 3051;
inline constexpr std::int32_t kNullInKey = 3058;
inline constexpr std::int32_t kNoSuchTable = 3078;
inline constexpr std::int32_t kFieldTooSmall = 3163;
inline constexpr std::int32_t kTooManyFields = 3190;
inline constexpr std::int32_t kDuplicateField = 3191;
inline constexpr std::int32_t kChildRecords = 3200;
inline constexpr std::int32_t kNoParentRecord = 3201;
inline constexpr std::int32_t kDatabaseExists = 3204;
inline constexpr std::int32_t kRequiredField = 3314;
inline constexpr std::int32_t kZeroLength = 3315;
inline constexpr std::int32_t kUnrecognizedFormat = 3343;
inline constexpr std::int32_t kOpenedExclusively = 3356;
inline constexpr std::int32_t kRelationExists = 3378;
inline constexpr std::int32_t kDamaged = 3428;
inline constexpr std::int32_t kTypeMismatch = 3464;
inline constexpr std::int32_t kTooManyIndexes = 3626;
inline constexpr std::int32_t kUnknownSortWeight = 3990;  ///< our own: the engine has no such failure
}  // namespace errors

}  // namespace tavrel
