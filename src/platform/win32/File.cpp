#include "platform/File.h"

#include <algorithm>

#include "platform/win32/SystemError.h"
#include "platform/win32/Windows.h"

namespace tavrel::platform {
namespace {

/// Longest piece that one call moves; the calls count in 32 bits.
constexpr std::size_t kPiece = std::size_t{1} << 30;

class WindowsFile final : public File {
  public:
    WindowsFile(HANDLE handle, std::string path) : handle_(handle), path_(std::move(path)) {}
    WindowsFile(const WindowsFile&) = delete;
    WindowsFile& operator=(const WindowsFile&) = delete;
    ~WindowsFile() override { ::CloseHandle(handle_); }

    std::uint64_t Size() override {
        LARGE_INTEGER size = {};
        Check(::GetFileSizeEx(handle_, &size));
        return static_cast<std::uint64_t>(size.QuadPart);
    }

    void ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) override {
        while (!out.empty()) {
            OVERLAPPED place = Place(offset);
            DWORD done = 0;
            // The end of the file is a failure here (ERROR_HANDLE_EOF), not a short read.
            Check(::ReadFile(handle_, out.data(), Piece(out.size()), &done, &place));
            if (done == 0) {
                throw MakeError(errors::kDeviceFault, {}, path_ + ": 파일의 끝");
            }
            out = out.subspan(done);
            offset += done;
        }
    }

    void WriteAt(std::uint64_t offset, std::span<const std::uint8_t> bytes) override {
        while (!bytes.empty()) {
            OVERLAPPED place = Place(offset);
            DWORD done = 0;
            Check(::WriteFile(handle_, bytes.data(), Piece(bytes.size()), &done, &place));
            bytes = bytes.subspan(done);
            offset += done;
        }
    }

    void Truncate(std::uint64_t size) override {
        FILE_END_OF_FILE_INFO end = {};
        end.EndOfFile.QuadPart = static_cast<LONGLONG>(size);
        Check(::SetFileInformationByHandle(handle_, FileEndOfFileInfo, &end, sizeof end));
    }

    void Sync() override { Check(::FlushFileBuffers(handle_)); }

  private:
    void Check(BOOL succeeded) const {
        if (!succeeded) {
            throw LastSystemError(path_);
        }
    }

    static DWORD Piece(std::size_t size) { return static_cast<DWORD>(std::min(size, kPiece)); }

    static OVERLAPPED Place(std::uint64_t offset) {
        OVERLAPPED place = {};
        place.Offset = static_cast<DWORD>(offset);
        place.OffsetHigh = static_cast<DWORD>(offset >> 32);
        return place;
    }

    HANDLE handle_;
    std::string path_;
};

struct OpenMode {
    DWORD access;
    DWORD sharing;
    DWORD disposition;
};

OpenMode ModeOf(FileAccess access) {
    switch (access) {
        case FileAccess::Read:
            return {GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING};
        case FileAccess::ReadWrite:
            return {GENERIC_READ | GENERIC_WRITE, 0, OPEN_EXISTING};
        case FileAccess::CreateNew:
            // It may be given its name while it is open.
            return {GENERIC_READ | GENERIC_WRITE, FILE_SHARE_DELETE, CREATE_NEW};
    }
    return {};
}

/// A folder cannot be opened as a file, and the code says no more than "access denied".
void RefuseFolder(const std::wstring& widePath, const std::string& path) {
    const DWORD attributes = ::GetFileAttributesW(widePath.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        throw SystemError(ERROR_DIRECTORY, path);
    }
}

[[noreturn]] void ThrowOpenError(DWORD code, const std::wstring& widePath, const std::string& path) {
    if (code == ERROR_SHARING_VIOLATION || code == ERROR_LOCK_VIOLATION) {
        const Error inUse = SystemError(code, path);
        throw FileInUse(inUse.Number(), inUse.Description());
    }
    RefuseFolder(widePath, path);
    throw SystemError(code, path);
}

}  // namespace

std::unique_ptr<File> OpenFile(const std::string& path, FileAccess access) {
    const std::wstring widePath = WidePath(path);
    const OpenMode mode = ModeOf(access);
    const HANDLE handle = ::CreateFileW(widePath.c_str(), mode.access, mode.sharing, nullptr,
                                        mode.disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        ThrowOpenError(::GetLastError(), widePath, path);
    }
    auto file = std::make_unique<WindowsFile>(handle, path);
    if (::GetFileType(handle) != FILE_TYPE_DISK) {
        throw MakeError(errors::kPathAccess, {}, path + ": 일반 파일이 아님");
    }
    return file;
}

}  // namespace tavrel::platform
