// Names of objects that are about to be made, and the engine's refusals around them.
#pragma once

#include <string_view>

#include "jet/storage/Bytes.h"

namespace tavrel::jet {

// Refusals of a definition that has mistakes (beside those in text/Error.h).
namespace definitionErrors {
inline constexpr std::int32_t kTooManyAutonumbers = 3090;
inline constexpr std::int32_t kInvalidName = 3125;
inline constexpr std::int32_t kFieldOfItself = 3206;
inline constexpr std::int32_t kTableInUse = 3211;
inline constexpr std::int32_t kNoFields = 3264;
inline constexpr std::int32_t kTooManyIndexFields = 3277;
inline constexpr std::int32_t kSecondPrimaryKey = 3283;
inline constexpr std::int32_t kFieldsDiffer = 3368;
inline constexpr std::int32_t kNoTableOrConstraint = 3371;
inline constexpr std::int32_t kNoPrimaryKey = 3373;
inline constexpr std::int32_t kIndexExists = 3375;
inline constexpr std::int32_t kDataViolatesRelation = 3379;
inline constexpr std::int32_t kFieldSizeTooLong = 3382;
inline constexpr std::int32_t kInvalidFieldDefinition = 3409;
inline constexpr std::int32_t kNoUniqueIndex = 3609;
}  // namespace definitionErrors

inline constexpr std::size_t kMaxNameUnits = 64;

/// Throws 3125 unless the name has 1 to 64 characters (UTF-16 units), none of them a control character, a . !
/// ` [ or ], and does not begin with a space.
void CheckName(std::string_view name);

/// The key of an object's name in the indexes of the system tables.  Throws 3990 for a name with a character
/// of unknown weight: an object under it could not be found again.
ByteVector NameKey(std::string_view name, std::uint16_t sortOrder);

}  // namespace tavrel::jet
