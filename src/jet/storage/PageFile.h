// The file as whole pages, deciphered.  Page 0, the header, is handed out as stored: only the block inside it
// is enciphered (see FileHeader.h).
#pragma once

#include <algorithm>
#include <memory>

#include "jet/storage/Bytes.h"
#include "jet/storage/Journal.h"
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
    /// The page's bytes as they stand in the file: enciphered when the pages are.
    [[nodiscard]] Page AsStored(PageNumber number, const Page& page) const;
    /// From now on the file reads as it was before an unfinished transaction.
    void SetOldPages(OldPages old) { old_ = std::move(old); }
    void Truncate(PageNumber pages);
    void Sync() { file_->Sync(); }

  private:
    std::unique_ptr<platform::File> file_;
    std::uint32_t pageKey_;
    std::optional<OldPages> old_;
};

}  // namespace tavrel::jet
