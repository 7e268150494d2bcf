#include "jet/storage/PageFile.h"

#include <limits>
#include <string>

#include "jet/storage/Rc4.h"

namespace tavrel::jet {

namespace {

/// The engine's number for a write that the platform refused.
[[noreturn]] void ThrowWriteError(const Error& cause) {
    const bool full = cause.Number() == errors::kDiskFull;
    throw MakeError(full ? errors::kNoDiskSpace : errors::kNetworkError, {}, cause.Description());
}

}  // namespace

PageNumber PageFile::PageCount() const {
    const std::uint64_t pages = file_->Size() / kPageSize;
    return static_cast<PageNumber>(std::min<std::uint64_t>(pages, std::numeric_limits<std::int32_t>::max()));
}

void PageFile::ReadPage(PageNumber number, Page& out) const {
    try {
        file_->ReadAt(std::uint64_t{number} * kPageSize, out);
    } catch (const Error& error) {
        throw MakeError(errors::kReadFault, {}, error.Description());
    }
    if (number != 0 && pageKey_ != 0) {
        Rc4(pageKey_ ^ number, out);
    }
}

void PageFile::WritePage(PageNumber number, const Page& page) {
    try {
        if (number != 0 && pageKey_ != 0) {
            Page enciphered = page;
            Rc4(pageKey_ ^ number, enciphered);
            file_->WriteAt(std::uint64_t{number} * kPageSize, enciphered);
        } else {
            file_->WriteAt(std::uint64_t{number} * kPageSize, page);
        }
    } catch (const Error& error) {
        ThrowWriteError(error);
    }
}

void PageFile::Truncate(PageNumber pages) {
    try {
        file_->Truncate(std::uint64_t{pages} * kPageSize);
    } catch (const Error& error) {
        ThrowWriteError(error);
    }
}

}  // namespace tavrel::jet
