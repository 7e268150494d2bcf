// Real program files with version resources, made by the MinGW toolchain.
#pragma once

#include <string>

namespace tavrel::testing {

/// Whether the tools are there; tests that need them skip without.
bool CanMakePeFiles();

enum class PeKind { Bits64, Bits32 };

/// Links a program of resources alone.  `script` is a resource script in UTF-8.  Throws std::runtime_error
/// when a tool fails.
void MakePeFile(const std::string& path, const std::string& script, PeKind kind = PeKind::Bits64);

/// The script of a version resource with one table of texts; `values` are its VALUE lines.
std::string VersionScript(const std::string& values, const std::string& table = "041204B0");

}  // namespace tavrel::testing
