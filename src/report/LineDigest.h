// SHA-256 over lines in byte order, however many there are: what does not fit into memory waits, sorted, in
// temporary files.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/TemporaryFile.h"

namespace tavrel::report {

class LineDigest {
  public:
    /// `memoryLimit` in bytes: lines beyond it go to a temporary file.
    explicit LineDigest(std::size_t memoryLimit = std::size_t{256} << 20);

    void Add(std::string line);
    [[nodiscard]] std::uint64_t Count() const { return count_; }

    /// Lower-case digits of the hash over the lines, sorted as byte strings, each followed by 0A.  Throws 61
    /// or 57 when the temporary files cannot be written or read.  The object takes no more lines afterwards.
    std::string HexDigest();

  private:
    void Spill();

    std::size_t memoryLimit_;
    std::size_t bytes_ = 0;
    std::uint64_t count_ = 0;
    std::vector<std::string> lines_;
    std::vector<platform::TemporaryFile> runs_;
};

}  // namespace tavrel::report
