// The same rows in both formats.
#pragma once

#include <string>

namespace tavrel::bench {

/// Keys in the order in which the rows are stored.
enum class KeyOrder { Ascending, Random };

/// Two files of one content; `rows` of some 150 bytes, a primary key and two further indexes.
void MakeMdb(const std::string& path, int rows, KeyOrder order);
void MakeSqlite(const std::string& path, int rows, KeyOrder order);

}  // namespace tavrel::bench
