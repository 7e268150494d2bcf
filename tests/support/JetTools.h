// The independent checker of Jet 4 files, which stands outside the project.  Tests that use it skip where it
// is missing.
#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "support/RunProgram.h"

namespace tavrel::testing {

/// The checker and a Python that runs it are there.
bool HaveJetTools();

/// What a strict check finds; empty when the file is sound.
std::string StrictFindings(const std::string& file);

/// The structure as the checker reads it.
nlohmann::json DumpOf(const std::string& file, const std::string& password = {});

/// A table of a dump; a null value when it is not there.
nlohmann::json TableOf(const nlohmann::json& dump, const std::string& name);

/// The rows of a table, one object each, in storage order.
std::vector<nlohmann::json> RowsOf(const std::string& file, const std::string& table);

}  // namespace tavrel::testing

/// Skips the test when the checker cannot be run.
#define TAVREL_NEEDS_JET_TOOLS()                                                       \
    if (!tavrel::testing::HaveJetTools()) {                                            \
        GTEST_SKIP() << "python3 or the checker in the tools folder is not available"; \
    }                                                                                  \
    static_assert(true)
