#include "jet/check/PageOwners.h"

#include "jet/check/Places.h"

namespace tavrel::jet::check {

namespace {
constexpr std::uint64_t kPagesPerReport = 64;
}

PageOwners::PageOwners(FindingLog& log, PageNumber pages, const ProgressFn& progress)
    : log_(log), progress_(progress), owners_(pages), names_(1) {}

PageOwners::OwnerId PageOwners::Register(std::string what) {
    names_.push_back(std::move(what));
    return static_cast<OwnerId>(names_.size() - 1);
}

bool PageOwners::Claim(PageNumber page, OwnerId owner) {
    if (page >= owners_.size()) {
        return false;
    }
    if (owners_[page] != 0) {
        log_.Add(FindingKind::PageOwnedTwice, PagePlace(page), {OwnerText(page), names_[owner]});
        return false;
    }
    owners_[page] = owner;
    if (++claimed_ % kPagesPerReport == 0 && progress_) {
        progress_(claimed_, owners_.size());
    }
    return true;
}

}  // namespace tavrel::jet::check
