// A file that lives in memory.
#pragma once

#include <algorithm>
#include <vector>

#include "platform/File.h"

namespace tavrel::testing {

class MemoryFile : public platform::File {
  public:
    MemoryFile() = default;
    explicit MemoryFile(std::vector<std::uint8_t> bytes) : bytes_(std::move(bytes)) {}

    std::uint64_t Size() override { return bytes_.size(); }
    void ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) override {
        if (offset > bytes_.size() || out.size() > bytes_.size() - offset) {
            throw MakeError(errors::kDeviceFault);
        }
        std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(offset), out.size(), out.begin());
    }
    void WriteAt(std::uint64_t offset, std::span<const std::uint8_t> bytes) override {
        bytes_.resize(std::max<std::size_t>(bytes_.size(), offset + bytes.size()));
        std::ranges::copy(bytes, bytes_.begin() + static_cast<std::ptrdiff_t>(offset));
    }
    void Truncate(std::uint64_t size) override { bytes_.resize(size); }
    void Sync() override {}

  private:
    std::vector<std::uint8_t> bytes_;
};

}  // namespace tavrel::testing
