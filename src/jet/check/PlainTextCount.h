// Texts that could have been compressed: one note for each column.
#pragma once

#include <string>

#include "jet/check/FindingLog.h"
#include "jet/check/Places.h"

namespace tavrel::jet::check {

class PlainTextCount {
  public:
    void Add(RowPointer row) {
        if (number_++ == 0) {
            first_ = row;
        }
    }
    void Report(FindingLog& log, const std::string& where) const {
        if (number_ > 0) {
            log.Add(FindingKind::TextNotCompressed, where, {Number(number_), PointerText(first_)});
        }
    }

  private:
    std::uint64_t number_ = 0;
    RowPointer first_{};
};

}  // namespace tavrel::jet::check
