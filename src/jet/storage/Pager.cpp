#include "jet/storage/Pager.h"

#include <cassert>
#include <string>

namespace tavrel::jet {

Pager::Pager(std::unique_ptr<PageFile> file, std::size_t cachePages)
    : file_(std::move(file)), limit_(cachePages), pageCount_(file_->PageCount()) {}

Pager::~Pager() = default;

PageRef Pager::Read(PageNumber number) {
    return PageRef(Load(number).page);
}

Page& Pager::Write(PageNumber number) {
    Frame& frame = Load(number);
    if (inStatement_) {
        Remember(number, frame.page);
    }
    if (frame.page.use_count() > 1) {
        frame.page = std::make_shared<Page>(*frame.page);  // rule 1: holders keep what they hold
    }
    if (!frame.dirty) {
        frame.dirty = true;
        ++dirtyCount_;
    }
    return *frame.page;
}

Page& Pager::Fresh(PageNumber number) {
    if (number > pageCount_) {
        ThrowDamaged("페이지 " + std::to_string(number) + "이(가) 파일 끝에서 떨어져 있음");
    }
    if (number == pageCount_) {
        if (inStatement_) {
            before_.try_emplace(number);
        }
        ++pageCount_;
        return *Insert(number, std::make_shared<Page>(Page{}), true).page;
    }
    Page& page = Write(number);
    page.fill(0);
    return page;
}

Pager::Frame& Pager::Load(PageNumber number) {
    const auto found = frames_.find(number);
    if (found != frames_.end()) {
        recent_.splice(recent_.begin(), recent_, found->second.place);
        return found->second;
    }
    if (number >= pageCount_) {
        ThrowDamaged("페이지 " + std::to_string(number) + "이(가) 파일 밖에 있음");
    }
    auto page = std::make_shared<Page>();
    file_->ReadPage(number, *page);
    return Insert(number, std::move(page), false);
}

Pager::Frame& Pager::Insert(PageNumber number, std::shared_ptr<Page> page, bool dirty) {
    MakeRoom();
    recent_.push_front(number);
    dirtyCount_ += dirty ? 1 : 0;
    return frames_.insert_or_assign(number, Frame{std::move(page), dirty, recent_.begin()}).first->second;
}

/// Keeps what the page was when the statement began.
void Pager::Remember(PageNumber number, const std::shared_ptr<Page>& before) {
    const auto [entry, fresh] = before_.try_emplace(number);
    if (fresh) {
        entry->second = {before, frames_.at(number).dirty};
    }
}

/// Drops the least recently used unchanged pages beyond the limit.  Changed pages stay while a statement is
/// open (rule 2); outside one they are written when they are too many.
void Pager::MakeRoom() {
    if (!inStatement_ && dirtyCount_ >= limit_) {
        WriteDirty();
    }
    auto place = recent_.end();
    while (frames_.size() >= limit_ + dirtyCount_ && place != recent_.begin()) {
        --place;
        const auto frame = frames_.find(*place);
        if (!frame->second.dirty) {
            frames_.erase(frame);
            place = recent_.erase(place);
        }
    }
}

void Pager::WriteDirty() {
    std::vector<PageNumber> numbers;
    for (const auto& [number, frame] : frames_) {
        if (frame.dirty) {
            numbers.push_back(number);
        }
    }
    std::sort(numbers.begin(), numbers.end());
    for (const PageNumber number : numbers) {
        Frame& frame = frames_.at(number);
        file_->WritePage(number, *frame.page);
        frame.dirty = false;
        --dirtyCount_;
    }
}

void Pager::BeginStatement() {
    assert(!inStatement_);
    inStatement_ = true;
    statementPageCount_ = pageCount_;
}

void Pager::CommitStatement() {
    assert(inStatement_);
    inStatement_ = false;
    before_.clear();
}

void Pager::RollbackStatement() {
    assert(inStatement_);
    inStatement_ = false;
    for (auto& [number, image] : before_) {
        Frame& frame = frames_.at(number);
        dirtyCount_ -= frame.dirty ? 1 : 0;
        if (image.page) {
            frame.page = image.page;
            frame.dirty = image.dirty;
            dirtyCount_ += frame.dirty ? 1 : 0;
        } else {
            recent_.erase(frame.place);
            frames_.erase(number);
        }
    }
    before_.clear();
    pageCount_ = statementPageCount_;
}

void Pager::Flush() {
    assert(!inStatement_);
    WriteDirty();
    file_->Sync();
}

}  // namespace tavrel::jet
