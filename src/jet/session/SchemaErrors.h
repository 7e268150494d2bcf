// Numbers of refused definition changes, beside those of CreateNames.h.
#pragma once

#include <cstdint>

namespace tavrel::jet::schemaErrors {

inline constexpr std::int32_t kColumnIndexed = 3280;
inline constexpr std::int32_t kUsedInRelation = 3281;
inline constexpr std::int32_t kTableHoldsData = 3282;
inline constexpr std::int32_t kInConstraint = 3289;
inline constexpr std::int32_t kColumnInRelation = 3303;
inline constexpr std::int32_t kNoSuchTableToDrop = 3376;
inline constexpr std::int32_t kColumnExists = 3380;
inline constexpr std::int32_t kNoSuchColumn = 3381;
inline constexpr std::int32_t kCannotChangeColumn = 3720;

}  // namespace tavrel::jet::schemaErrors
