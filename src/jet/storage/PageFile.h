// The file as whole pages, deciphered.  Page 0, the header, is handed out as stored: only the block inside it
// is enciphered (see FileHeader.h).
#pragma once

#include <algorithm>
#include <memory>

#include "jet/storage/Bytes.h"
#include "platform/File.h"

namespace tavrel::jet {

class PageFile {
  public:
    /// `pageKey` 0: pages are plain.
    PageFile(std::unique_ptr<platform::File> file, std::uint32_t pageKey)
        : file_(std::move(file)), pageKey_(pageKey) {}

    /// Whole pages in the file now.
    [[nodiscard]] PageNumber PageCount() const;
    /// Throws 3040 when the page cannot be read.
    void ReadPage(PageNumber number, Page& out) const;
    void WritePage(PageNumber number, const Page& page);
    void Truncate(PageNumber pages);
    void Sync() { file_->Sync(); }
    void SetPageKey(std::uint32_t key) { pageKey_ = key; }

  private:
    std::unique_ptr<platform::File> file_;
    std::uint32_t pageKey_;
};

}  // namespace tavrel::jet
