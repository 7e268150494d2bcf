#include "jet/compact/PageOutput.h"

#include <algorithm>

#include "jet/storage/Rc4.h"

namespace tavrel::jet::compact {

namespace {

constexpr PageNumber kMaxPages = 0x80000000 / kPageSize;  // two gigabytes
constexpr PageNumber kWindowPages = 128;

[[noreturn]] void ThrowWriteError(const Error& cause) {
    const bool full = cause.Number() == errors::kDiskFull;
    throw MakeError(full ? errors::kNoDiskSpace : errors::kNetworkError, {}, cause.Description());
}

}  // namespace

PageOutput::PageOutput(platform::File& file, std::uint32_t pageKey)
    : file_(file), pageKey_(pageKey), window_(kWindowPages * kPageSize), filled_(kWindowPages) {}

PageNumber PageOutput::Take() {
    if (useReserve_ && reserved_ < reserveEnd_) {
        return reserved_++;
    }
    if (next_ == kMaxPages) {
        throw MakeError(errors::kDatabaseTooLarge);
    }
    return next_++;
}

void PageOutput::Reserve(PageNumber pages) {
    reserved_ = next_;
    next_ += pages;
    reserveEnd_ = next_;
}

void PageOutput::Rewind(const Position& position) {
    next_ = position.next;
    reserved_ = position.reserved;
    useReserve_ = position.useReserve;
    if (windowStart_ > next_) {
        WriteWindow();
        windowStart_ = next_;
    }
    for (PageNumber place = next_ - windowStart_; place < kWindowPages; ++place) {
        filled_[place] = false;
    }
}

void PageOutput::Put(PageNumber number, const Page& page) {
    Page enciphered;
    const Page* stored = &page;
    if (pageKey_ != 0 && number != 0) {
        enciphered = page;
        Rc4(pageKey_ ^ number, enciphered);
        stored = &enciphered;
    }
    if (number < windowStart_) {
        WriteBytes(number, *stored);
        return;
    }
    if (number >= windowStart_ + kWindowPages) {
        WriteWindow();
        windowStart_ = number;
    }
    const PageNumber place = number - windowStart_;
    std::ranges::copy(*stored, window_.begin() + static_cast<std::ptrdiff_t>(place * kPageSize));
    filled_[place] = true;
}

void PageOutput::WriteWindow() {
    const std::span<const std::uint8_t> bytes(window_);
    for (PageNumber place = 0; place < kWindowPages;) {
        if (!filled_[place]) {
            ++place;
            continue;
        }
        PageNumber end = place;
        while (end < kWindowPages && filled_[end]) {
            filled_[end++] = false;
        }
        WriteBytes(windowStart_ + place, bytes.subspan(place * kPageSize, (end - place) * kPageSize));
        place = end;
    }
}

void PageOutput::WriteBytes(PageNumber first, std::span<const std::uint8_t> bytes) {
    try {
        file_.WriteAt(std::uint64_t{first} * kPageSize, bytes);
    } catch (const Error& error) {
        ThrowWriteError(error);
    }
}

void PageOutput::Finish() {
    for (; reserved_ < reserveEnd_; ++reserved_) {
        Put(reserved_, Page{});
    }
    WriteWindow();
    try {
        const std::uint64_t bytes = std::uint64_t{next_} * kPageSize;
        if (file_.Size() > bytes) {
            file_.Truncate(bytes);  // somebody used the room behind the end
        }
        file_.Sync();
    } catch (const Error& error) {
        ThrowWriteError(error);
    }
}

}  // namespace tavrel::jet::compact
