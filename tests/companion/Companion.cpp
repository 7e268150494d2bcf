// What the start-up update starts, where a script of the shell is no program: does what the lines of the file
// beside it say, whose name is its own and ".script".
//
//   wait              a fifth of a second
//   write FILE TEXT   into its working folder; in TEXT %n is the number of its arguments, %1 the first, %d
//   its folder home              its working folder is its own from here
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <sstream>
#include <string>
#include <thread>

namespace {

namespace fs = std::filesystem;

std::string Filled(const std::string& pattern, int count, wchar_t** words) {
    std::string text;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] != '%' || i + 1 == pattern.size()) {
            text += pattern[i];
            continue;
        }
        const char what = pattern[++i];
        text += what == 'n'   ? std::to_string(count - 1)
                : what == 'd' ? fs::current_path().string()
                : count > 1   ? fs::path(words[1]).string()
                              : std::string();
    }
    return text;
}

}  // namespace

int wmain(int count, wchar_t** words) {
    const fs::path self(words[0]);
    std::ifstream script(self.string() + ".script");
    for (std::string line; std::getline(script, line);) {
        std::istringstream parts(line);
        std::string verb;
        std::string file;
        std::string text;
        parts >> verb >> file >> std::quoted(text, '\'');
        if (verb == "wait") {
            std::this_thread::sleep_for(std::chrono::milliseconds(200));
        } else if (verb == "home") {
            fs::current_path(self.parent_path());
        } else if (verb == "write") {
            // Whole or not at all: somebody waits for it.
            std::ofstream(file + ".part", std::ios::binary) << Filled(text, count, words);
            fs::rename(file + ".part", file);
        }
    }
    return 0;
}
