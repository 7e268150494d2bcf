#include "report/LineDigest.h"

#include <algorithm>

#include <queue>

#include "text/Error.h"
#include "text/Sha256.h"

namespace tavrel::report {

namespace {

constexpr std::size_t kLineOverhead = sizeof(std::string) + 16;

void WriteLine(std::FILE* file, const std::string& line) {
    const std::uint64_t length = line.size();
    if (std::fwrite(&length, sizeof length, 1, file) != 1 ||
        std::fwrite(line.data(), 1, line.size(), file) != line.size()) {
        throw MakeError(errors::kDiskFull);
    }
}

/// False at the end of the run.
bool ReadLine(std::FILE* file, std::string& line) {
    std::uint64_t length = 0;
    if (std::fread(&length, sizeof length, 1, file) != 1) {
        if (std::ferror(file) != 0) {
            throw MakeError(errors::kDeviceFault);
        }
        return false;
    }
    line.resize(length);
    if (std::fread(line.data(), 1, line.size(), file) != line.size()) {
        throw MakeError(errors::kDeviceFault);
    }
    return true;
}

void Hash(text::Sha256& hash, const std::string& line) {
    hash.Update(line);
    hash.Update("\n");
}

/// The next line of one run.
struct Head {
    std::string line;
    std::FILE* run;
};

struct Later {
    bool operator()(const Head& a, const Head& b) const { return a.line > b.line; }
};

}  // namespace

LineDigest::LineDigest(std::size_t memoryLimit) : memoryLimit_(memoryLimit) {}

void LineDigest::Add(std::string line) {
    bytes_ += line.capacity() + kLineOverhead;
    lines_.push_back(std::move(line));
    ++count_;
    if (bytes_ > memoryLimit_) {
        Spill();
    }
}

void LineDigest::Spill() {
    platform::TemporaryFile file = platform::OpenTemporaryFile();
    std::sort(lines_.begin(), lines_.end());
    for (const std::string& line : lines_) {
        WriteLine(file.get(), line);
    }
    if (std::fflush(file.get()) != 0) {
        throw MakeError(errors::kDiskFull);
    }
    std::rewind(file.get());
    runs_.push_back(std::move(file));
    lines_.clear();
    bytes_ = 0;
}

std::string LineDigest::HexDigest() {
    text::Sha256 hash;
    if (!runs_.empty() && !lines_.empty()) {
        Spill();
    }
    std::sort(lines_.begin(), lines_.end());
    for (const std::string& line : lines_) {
        Hash(hash, line);
    }
    std::priority_queue<Head, std::vector<Head>, Later> heads;
    for (const platform::TemporaryFile& run : runs_) {
        Head head{.line = {}, .run = run.get()};
        if (ReadLine(head.run, head.line)) {
            heads.push(std::move(head));
        }
    }
    while (!heads.empty()) {
        Head head = heads.top();
        heads.pop();
        Hash(hash, head.line);
        if (ReadLine(head.run, head.line)) {
            heads.push(std::move(head));
        }
    }
    return hash.HexDigest();
}

}  // namespace tavrel::report
