#include "support/Corpus.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace tavrel::testing {

std::string SharedFolder() {
    const char* chosen = std::getenv("TAVREL_SHARED_DIR");
    return chosen != nullptr ? chosen : TAVREL_SHARED_DIR;
}

std::vector<std::string> CorpusFiles() {
    std::vector<std::string> files;
    std::error_code missing;
    const std::filesystem::path folder = std::filesystem::path(SharedFolder()) / "corpus";
    for (const auto& entry : std::filesystem::directory_iterator(folder, missing)) {
        if (entry.path().extension() == ".mdb") {
            files.push_back(entry.path().string());
        }
    }
    std::ranges::sort(files);
    return files;
}

}  // namespace tavrel::testing
