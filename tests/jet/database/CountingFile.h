// A file in memory that counts what is done to it, and fails when told to.
#pragma once

#include <set>

#include "support/MemoryFile.h"

namespace tavrel::testing {

class CountingFile : public MemoryFile {
  public:
    using MemoryFile::MemoryFile;

    void ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) override {
        if (failReads) {
            throw MakeError(errors::kDeviceFault);
        }
        ++reads;
        touched.insert(offset / 4096);
        MemoryFile::ReadAt(offset, out);
    }
    void WriteAt(std::uint64_t offset, std::span<const std::uint8_t> bytes) override {
        ++writes;
        MemoryFile::WriteAt(offset, bytes);
    }

    std::size_t reads = 0;
    std::size_t writes = 0;
    std::set<std::uint64_t> touched;  ///< pages that were read
    bool failReads = false;
};

}  // namespace tavrel::testing
