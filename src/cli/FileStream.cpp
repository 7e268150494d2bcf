#include "cli/FileStream.h"

namespace tavrel::cli {

FileStreamBuffer::FileStreamBuffer(std::unique_ptr<platform::File> file) : file_(std::move(file)) {
    setp(held_.data(), held_.data() + held_.size());
}

void FileStreamBuffer::WriteHeld() {
    const auto length = static_cast<std::size_t>(pptr() - pbase());
    file_->WriteAt(offset_, {reinterpret_cast<const std::uint8_t*>(pbase()), length});
    offset_ += length;
    setp(held_.data(), held_.data() + held_.size());
}

FileStreamBuffer::int_type FileStreamBuffer::overflow(int_type c) {
    WriteHeld();
    if (!traits_type::eq_int_type(c, traits_type::eof())) {
        sputc(traits_type::to_char_type(c));
    }
    return traits_type::not_eof(c);
}

int FileStreamBuffer::sync() {
    WriteHeld();
    file_->Sync();
    return 0;
}

}  // namespace tavrel::cli
