// The patch modules of the four products.
//
// ChkDBpatch brings the database of the open session to the product's latest version: true when it stands
// there (already, or after patching), false after a failure that has been reported.
#pragma once

#include <cstdint>

#include "patch/Script.h"

/// Product A.
namespace tavrel::modDBPatch_BRELT {
inline constexpr std::int16_t kTarget = 141;
bool ChkDBpatch();
/// The list, from a stored version on.  Reports its own errors; false after one.
bool ChkDBpatch_SUB(std::int16_t version);
const patch::Script& Steps();
const patch::Script& Procedures();
}  // namespace tavrel::modDBPatch_BRELT

/// Product B.
namespace tavrel::modDBPatch_KILM {
inline constexpr std::int16_t kTarget = 135;
bool ChkDBpatch();
/// The list, from a stored version on.  Throws the Error of the first item that fails.
bool ChkDBpatch_SUB(std::int16_t version);
const patch::Script& Steps();
const patch::Script& Procedures();
}  // namespace tavrel::modDBPatch_KILM

/// Product B-Pro.
namespace tavrel::modDBPatch_KILMPRO {
inline constexpr std::int16_t kTarget = 70;
bool ChkDBpatch();
/// The list, from a stored version on.  Throws the Error of the first item that fails.
bool ChkDBpatch_SUB(std::int16_t version);
const patch::Script& Steps();
const patch::Script& Procedures();
}  // namespace tavrel::modDBPatch_KILMPRO

/// Product C; its steps stand inside the driver.
namespace tavrel::modDBPatch_NORB {
inline constexpr std::int16_t kTarget = 14;
bool ChkDBpatch();
const patch::Script& Steps();
const patch::Script& Procedures();
}  // namespace tavrel::modDBPatch_NORB
