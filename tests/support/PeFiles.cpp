#include "support/PeFiles.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <vector>

#include "support/RunProgram.h"
#include "support/TemporaryFolder.h"

namespace tavrel::testing {

namespace {

const std::string kTools = "x86_64-w64-mingw32-";

void Run(const std::string& tool, const std::vector<std::string>& arguments) {
    const ProgramResult result = RunProgram(kTools + tool, arguments);
    if (result.exitCode != 0) {
        throw std::runtime_error(tool + ": " + result.errors);
    }
}

}  // namespace

bool CanMakePeFiles() {
    static const bool there = RunProgram(kTools + "windres", {"--version"}).exitCode == 0 &&
                              RunProgram(kTools + "ld", {"--version"}).exitCode == 0;
    return there;
}

void MakePeFile(const std::string& path, const std::string& script, PeKind kind) {
    const TemporaryFolder folder;
    std::ofstream(folder.File("a.rc")) << "#pragma code_page(65001)\n" << script;
    // The system's own preprocessor: the one that the tool would take comes with a whole compiler.
    Run("windres", {"--preprocessor=gcc", "--preprocessor-arg=-E", "--preprocessor-arg=-xc-header",
                    folder.File("a.rc"), folder.File("a.o")});
    Run("ld", {"-e", "0", folder.File("a.o"), "-o", folder.File("a.exe")});
    if (kind == PeKind::Bits32) {
        Run("objcopy", {"-I", "pei-x86-64", "-O", "pei-i386", folder.File("a.exe")});
    }
    std::filesystem::copy_file(folder.File("a.exe"), path, std::filesystem::copy_options::overwrite_existing);
}

std::string VersionScript(const std::string& values, const std::string& table) {
    return "1 VERSIONINFO\nFILEVERSION 9,9,9,9\nBEGIN\nBLOCK \"StringFileInfo\"\nBEGIN\nBLOCK \"" + table +
           "\"\nBEGIN\n" + values + "\nEND\nEND\nEND\n";
}

}  // namespace tavrel::testing
