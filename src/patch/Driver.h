// What the drivers of the four modules have in common: the version gate round a list.
#pragma once

#include <cstdint>

namespace tavrel::patch {

/// Runs a module's list, given the stored version; true when every step ran.
using List = bool (*)(std::int16_t version);

/// Brings the session's database to version `target`: reads the stored version, runs the list unless it is
/// the target already, and stores the target.  False when the list has reported a failure, and after any
/// Error, which is reported here; the stored version is then as before.
bool RunDriver(std::int16_t target, List list);

/// The version in the session's database: 0 when there is none.  Throws the provider's Error, and 6 when the
/// number does not fit into 16 bits.
std::int16_t StoredVersion();

}  // namespace tavrel::patch
