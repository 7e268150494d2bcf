#include "cli/Output.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "cli/FileStream.h"
#include "platform/Console.h"
#include "platform/FileSystem.h"
#include "platform/UnusedName.h"

namespace tavrel::cli {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kWidestCellOnTerminal = 40;

fs::path PathOf(const std::string& utf8) {
    return fs::path(std::u8string(utf8.begin(), utf8.end()));
}

std::string TextOf(const fs::path& path) {
    const std::u8string utf8 = path.u8string();
    return {utf8.begin(), utf8.end()};
}

/// A link is followed: what it points to is replaced, not the link.
std::string Destination(const std::string& path) {
    std::error_code
        ignored;  // a path that cannot be looked at fails where it is opened, with the right number
    if (fs::is_symlink(PathOf(path), ignored)) {
        const fs::path target = fs::weakly_canonical(PathOf(path), ignored);
        return ignored ? path : TextOf(target);
    }
    return path;
}

std::unique_ptr<std::streambuf> OpenDevice(const std::string& path) {
    auto device = std::make_unique<std::filebuf>();
    if (device->open(PathOf(path), std::ios::out | std::ios::binary) == nullptr) {
        throw MakeError(errors::kPathAccess, {}, path);
    }
    return device;
}

}  // namespace

std::ostream& StandardOutput() {
    static const bool prepared = [] {
        std::ios_base::sync_with_stdio(false);
        // A message on standard error must not stumble over output that failed.
        std::cerr.tie(nullptr);
        std::cout.exceptions(std::ios_base::badbit | std::ios_base::failbit);
        return true;
    }();
    static_cast<void>(prepared);
    return std::cout;
}

report::TextStyle StyleOfStandardOutput() {
    if (!platform::IsTerminal(platform::Stream::Output)) {
        return {};
    }
    const char* noColour = std::getenv("NO_COLOR");
    const bool colours = noColour == nullptr || *noColour == '\0';
    return {.colours = colours, .widestCell = kWidestCellOnTerminal};
}

ReportFile::ReportFile(const std::string& path) : path_(Destination(path)) {
    if (platform::FolderExists(path_)) {
        throw MakeError(errors::kPathAccess, {}, path);
    }
    if (platform::IsDevice(path_)) {
        buffer_ = OpenDevice(path_);
    } else {
        std::string beside = platform::UnusedNameBeside(path_);
        buffer_ =
            std::make_unique<FileStreamBuffer>(platform::OpenFile(beside, platform::FileAccess::CreateNew));
        temporary_ = std::move(beside);
    }
    stream_ = std::make_unique<std::ostream>(buffer_.get());
    stream_->exceptions(std::ios_base::badbit);
}

ReportFile::~ReportFile() {
    stream_.reset();
    buffer_.reset();
    if (!temporary_.empty()) {
        try {
            platform::DeleteFileIfThere(temporary_);
        } catch (...) {
            // The failure that brought us here is the one to report.
        }
    }
}

void ReportFile::Commit() {
    stream_->flush();
    stream_.reset();
    buffer_.reset();
    if (!temporary_.empty()) {
        platform::ReplaceFile(temporary_, path_);
        temporary_.clear();
    }
}

}  // namespace tavrel::cli
