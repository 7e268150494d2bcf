// A database file copied whole.
#pragma once

#include <string>

namespace tavrel::compare {

/// Copies a database over whatever stands at `to`, with what an unfinished transaction has left beside it.
/// `from` is opened for reading only, and nobody can change it meanwhile.  The copy has its permissions, and
/// its owner may change it.  Throws Error, 58 when both are the same file.
void CopyDatabase(const std::string& from, const std::string& to);

}  // namespace tavrel::compare
