#include "Folder.h"

#include <filesystem>
#include <fstream>

#include "support/DatabaseBuilder.h"

namespace tavrel::testing {

namespace fs = std::filesystem;

FolderContent ReadFolder(const std::string& folder) {
    FolderContent content;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            content[entry.path().lexically_relative(folder).generic_string()] =
                ReadWholeFile(entry.path().string());
        }
    }
    return content;
}

void WriteFolder(const std::string& folder, const FolderContent& content) {
    fs::remove_all(folder);
    fs::create_directory(folder);
    for (const auto& [name, bytes] : content) {
        const fs::path path = fs::path(folder) / name;
        fs::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }
}

}  // namespace tavrel::testing
