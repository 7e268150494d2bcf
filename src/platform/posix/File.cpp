#include "platform/File.h"

#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <sys/stat.h>

#include "platform/FileSystem.h"
#include "platform/posix/Descriptor.h"
#include "platform/posix/FileLock.h"
#include "platform/posix/SystemError.h"

namespace tavrel::platform {
namespace {

class PosixFile final : public File {
  public:
    PosixFile(Descriptor descriptor, std::string path)
        : descriptor_(std::move(descriptor)), path_(std::move(path)) {}

    std::uint64_t Size() override {
        struct stat status = {};
        Check(::fstat(descriptor_.Number(), &status));
        return static_cast<std::uint64_t>(status.st_size);
    }

    void ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) override {
        while (!out.empty()) {
            const ssize_t count = ::pread(descriptor_.Number(), out.data(), out.size(), Position(offset));
            if (count == 0) {
                throw MakeError(errors::kDeviceFault, {}, path_ + ": 파일의 끝");
            }
            const std::size_t done = Progress(count);
            out = out.subspan(done);
            offset += done;
        }
    }

    void WriteAt(std::uint64_t offset, std::span<const std::uint8_t> bytes) override {
        while (!bytes.empty()) {
            const std::size_t done =
                Progress(::pwrite(descriptor_.Number(), bytes.data(), bytes.size(), Position(offset)));
            bytes = bytes.subspan(done);
            offset += done;
        }
    }

    void Truncate(std::uint64_t size) override { Check(::ftruncate(descriptor_.Number(), Position(size))); }

    void Sync() override { Check(::fsync(descriptor_.Number())); }

  private:
    void Check(int result) const {
        if (result != 0) {
            throw LastSystemError(path_);
        }
    }

    /// Bytes that a read or write got through; 0 when a signal cut it short.
    [[nodiscard]] std::size_t Progress(ssize_t count) const {
        if (count < 0 && errno != EINTR) {
            throw LastSystemError(path_);
        }
        return count < 0 ? 0 : static_cast<std::size_t>(count);
    }

    [[nodiscard]] off_t Position(std::uint64_t offset) const {
        if (offset > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max())) {
            throw SystemError(EOVERFLOW, path_);
        }
        return static_cast<off_t>(offset);
    }

    Descriptor descriptor_;
    std::string path_;
};

int OpenFlags(FileAccess access) {
    // O_NONBLOCK: a pipe must be refused, not waited for.  It means nothing to an ordinary file.
    constexpr int kAlways = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    switch (access) {
        case FileAccess::Read:
            return kAlways | O_RDONLY;
        case FileAccess::ReadWrite:
            return kAlways | O_RDWR;
        case FileAccess::CreateNew:
            return kAlways | O_RDWR | O_CREAT | O_EXCL;
    }
    return kAlways;
}

Descriptor OpenDescriptor(const std::string& path, FileAccess access) {
    while (true) {
        Descriptor descriptor(::open(path.c_str(), OpenFlags(access), 0666));
        if (descriptor.IsOpen()) {
            return descriptor;
        }
        if (errno != EINTR) {
            throw LastSystemError(path);
        }
    }
}

void RequireOrdinaryFile(const Descriptor& descriptor, const std::string& path) {
    struct stat status = {};
    if (::fstat(descriptor.Number(), &status) != 0) {
        throw LastSystemError(path);
    }
    if (!S_ISREG(status.st_mode)) {
        throw MakeError(errors::kPathAccess, {}, path + ": 일반 파일이 아님");
    }
}

std::unique_ptr<File> LockedFile(Descriptor descriptor, const std::string& path, FileAccess access) {
    RequireOrdinaryFile(descriptor, path);
    if (!TryLock(descriptor, access == FileAccess::Read ? LockKind::Shared : LockKind::Exclusive)) {
        const Error inUse = MakeError(errors::kPermissionDenied, {}, path + ": 사용 중");
        throw FileInUse(inUse.Number(), inUse.Description());
    }
    return std::make_unique<PosixFile>(std::move(descriptor), path);
}

}  // namespace

std::unique_ptr<File> OpenFile(const std::string& path, FileAccess access) {
    Descriptor descriptor = OpenDescriptor(path, access);
    try {
        return LockedFile(std::move(descriptor), path, access);
    } catch (...) {
        if (access == FileAccess::CreateNew) {
            ::unlink(path.c_str());  // nobody else's: it has just been made
        }
        throw;
    }
}

}  // namespace tavrel::platform
