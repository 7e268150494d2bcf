// A file as bytes at offsets: the only way in which the engine touches the disk, so that a test can stand in
// for it and fail, cut or count any single operation.
//
// Failures are tavrel::Error with the run-time's numbers: 53 not found, 57 device fault, 58 exists, 61 disk
// full, 70 in use or no permission, 75 path/file access, 76 folder not found.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "text/Error.h"

namespace tavrel::platform {

class File {
  public:
    virtual ~File() = default;

    /// Length in bytes now.
    virtual std::uint64_t Size() = 0;
    /// Fills `out` whole or throws (57 at the end of the file too).
    virtual void ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) = 0;
    /// Writes all bytes, extending the file when needed, or throws.
    virtual void WriteAt(std::uint64_t offset, std::span<const std::uint8_t> bytes) = 0;
    virtual void Truncate(std::uint64_t size) = 0;
    /// Returns when the data is on the medium.
    virtual void Sync() = 0;
};

enum class FileAccess {
    Read,       ///< no write access is asked for; others may read
    ReadWrite,  ///< nobody else may have the file open through this layer
    CreateNew   ///< like ReadWrite; the file must not exist
};

/// Thrown by OpenFile when somebody else holds the file (number 70), to tell it from a lack of rights.
class FileInUse : public Error {
  public:
    using Error::Error;
};

/// Opens an ordinary file (a folder or device is refused with 75) and holds the lock that fits the access for
/// as long as the object lives: shared for Read, exclusive otherwise.
std::unique_ptr<File> OpenFile(const std::string& path, FileAccess access);

}  // namespace tavrel::platform
