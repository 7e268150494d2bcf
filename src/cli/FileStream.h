// An output stream's buffer over a platform file.
#pragma once

#include <array>
#include <memory>
#include <streambuf>

#include "platform/File.h"

namespace tavrel::cli {

/// Failures are thrown as Error; the stream above must let them through (exceptions(badbit)).
class FileStreamBuffer : public std::streambuf {
  public:
    explicit FileStreamBuffer(std::unique_ptr<platform::File> file);

  protected:
    int_type overflow(int_type c) override;
    /// Writes what is held and waits until it is on the medium.
    int sync() override;

  private:
    void WriteHeld();

    std::unique_ptr<platform::File> file_;
    std::uint64_t offset_ = 0;
    std::array<char, 1 << 16> held_;
};

}  // namespace tavrel::cli
