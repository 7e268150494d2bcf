// Sample databases that stand outside the project.  Tests that use them skip where the folder is missing.
#pragma once

#include <string>
#include <vector>

namespace tavrel::testing {

/// The folder that holds corpus/ and tools/: environment TAVREL_SHARED_DIR, else the one the build was given.
std::string SharedFolder();

/// Paths of the sample databases, by name; none when there is no corpus.
std::vector<std::string> CorpusFiles();

}  // namespace tavrel::testing

/// Skips the test when there is no corpus.
#define TAVREL_NEEDS_CORPUS()                                                                      \
    if (tavrel::testing::CorpusFiles().empty()) {                                                  \
        GTEST_SKIP() << "no sample databases in " << tavrel::testing::SharedFolder() << "/corpus"; \
    }                                                                                              \
    static_assert(true)
