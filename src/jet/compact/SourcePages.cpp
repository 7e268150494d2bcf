#include "jet/compact/SourcePages.h"

namespace tavrel::jet::compact {

PageRef SourcePages::Read(PageNumber number) {
    PageRef page = pager_.Read(number);
    Mark(number);
    return page;
}

void SourcePages::Mark(PageNumber number) {
    constexpr std::uint64_t kPagesPerReport = 256;
    if (!met_[number]) {
        met_[number] = true;
        if (++done_ % kPagesPerReport == 0 && progress_) {
            progress_(done_, met_.size());
        }
    }
}

void SourcePages::Finish() {
    if (progress_) {
        progress_(met_.size(), met_.size());
    }
}

}  // namespace tavrel::jet::compact
