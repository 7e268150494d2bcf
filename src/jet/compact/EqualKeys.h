// Entries of an index with equal keys stand in the order of their rows, which is another one in the new file.
#pragma once

#include <vector>

#include "jet/compact/IndexOutput.h"

namespace tavrel::jet::compact {

class EqualKeys {
  public:
    /// `pages`: all rows lie below this page.
    EqualKeys(IndexOutput& out, PageNumber pages) : out_(out), pages_(pages) {}

    /// Keys must not descend.
    void Add(ByteView key, RowPointer row);
    void Finish();

  private:
    void Write();
    void WriteEntry(std::uint32_t row);
    void UseBits();

    IndexOutput& out_;
    PageNumber pages_;
    ByteVector key_;
    ByteVector entry_;
    bool any_ = false;
    std::vector<std::uint32_t> rows_;
    std::vector<bool> bits_;  ///< the rows by page and slot, when they are very many
};

}  // namespace tavrel::jet::compact
