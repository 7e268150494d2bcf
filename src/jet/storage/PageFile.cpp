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
    const std::uint64_t pages = old_ ? old_->pageCount : file_->Size() / kPageSize;
    return static_cast<PageNumber>(std::min<std::uint64_t>(pages, std::numeric_limits<std::int32_t>::max()));
}

void PageFile::ReadPage(PageNumber number, Page& out) const {
    const auto old = old_ ? old_->pages.find(number) : decltype(old_->pages)::const_iterator();
    if (old_ && old != old_->pages.end()) {
        out = *old->second;
    } else {
        try {
            file_->ReadAt(std::uint64_t{number} * kPageSize, out);
        } catch (const Error& error) {
            throw MakeError(errors::kReadFault, {}, error.Description());
        }
    }
    if (number != 0 && pageKey_ != 0) {
        Rc4(pageKey_ ^ number, out);
    }
}

Page PageFile::AsStored(PageNumber number, const Page& page) const {
    Page stored = page;
    if (number != 0 && pageKey_ != 0) {
        Rc4(pageKey_ ^ number, stored);
    }
    return stored;
}

void PageFile::WritePage(PageNumber number, const Page& page) {
    try {
        const bool plain = number == 0 || pageKey_ == 0;
        file_->WriteAt(std::uint64_t{number} * kPageSize, plain ? page : AsStored(number, page));
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
