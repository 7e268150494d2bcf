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
    Remember(number, frame);
    if (frame.page.use_count() > 1) {
        frame.page = pool_.Copy(*frame.page);  // rule 1: holders keep what they hold
    }
    MarkDirty(frame);
    frame.edition = ++editions_;
    return *frame.page;
}

Page& Pager::Fresh(PageNumber number) {
    if (number > pageCount_) {
        ThrowDamaged("페이지 " + std::to_string(number) + "이(가) 파일 끝에서 떨어져 있음");
    }
    if (number == pageCount_) {
        if (Unit* unit = Innermost()) {
            unit->Keep(number, {});
        }
        ++pageCount_;
        return *Insert(number, pool_.Copy(Page{}), true).page;
    }
    Page& page = Write(number);
    page.fill(0);
    return page;
}

Pager::Frame& Pager::Load(PageNumber number) {
    const auto found = frames_.find(number);
    if (found != frames_.end()) {
        if (!found->second.dirty) {
            recent_.splice(recent_.begin(), recent_, found->second.place);
        }
        return found->second;
    }
    if (number >= pageCount_) {
        ThrowDamaged("페이지 " + std::to_string(number) + "이(가) 파일 밖에 있음");
    }
    std::shared_ptr<Page> page = pool_.Take();
    file_->ReadPage(number, *page);
    return Insert(number, std::move(page), false);
}

Pager::Frame& Pager::Insert(PageNumber number, std::shared_ptr<Page> page, bool dirty) {
    MakeRoom();
    recent_.push_front(number);
    Frame& frame =
        frames_.insert_or_assign(number, Frame{std::move(page), false, ++editions_, 0, recent_.begin()})
            .first->second;
    if (dirty) {
        MarkDirty(frame);
    }
    return frame;
}

void Pager::MarkDirty(Frame& frame) {
    if (!frame.dirty) {
        frame.dirty = true;
        ++dirtyCount_;
        recent_.erase(frame.place);
    }
}

void Pager::MarkClean(PageNumber number, Frame& frame) {
    if (frame.dirty) {
        frame.dirty = false;
        --dirtyCount_;
        recent_.push_front(number);
        frame.place = recent_.begin();
    }
}

/// Keeps what the page was when the innermost unit began; the outer one takes it over when that ends.
void Pager::Remember(PageNumber number, Frame& frame) {
    Unit* unit = Innermost();
    if (unit != nullptr && frame.keptIn != unit->number) {
        unit->Keep(number, {frame.page, frame.dirty});
        frame.keptIn = unit->number;
    }
}

Pager::Unit* Pager::Innermost() {
    if (statement_.open) {
        return &statement_;
    }
    return transactions_.empty() ? nullptr : &transactions_.back();
}

/// Drops the least recently used unchanged pages beyond the limit.  Changed pages stay while a statement is
/// open (rule 2); outside one they are written when they are too many.
void Pager::MakeRoom() {
    if (Innermost() == nullptr && dirtyCount_ >= limit_) {
        WriteDirty();
    }
    while (frames_.size() >= limit_ + dirtyCount_ && !recent_.empty()) {
        frames_.erase(recent_.back());
        recent_.pop_back();
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
        MarkClean(number, frame);
    }
}

void Pager::Unit::Begin(PageNumber count, std::uint64_t unit) {
    assert(!open);
    open = true;
    number = unit;
    pageCount = count;
}

void Pager::Unit::End() {
    constexpr std::size_t kLarge = 1024;
    open = false;
    if (before.bucket_count() > kLarge) {
        before = {};  // clearing costs as much as there were pages once
    } else {
        before.clear();
    }
}

void Pager::CommitStatement() {
    assert(statement_.open);
    if (InTransaction()) {
        transactions_.back().TakeOver(statement_);
    }
    statement_.End();
}

void Pager::RollBack(Unit& unit) {
    assert(unit.open && &unit == Innermost());
    for (auto& [number, image] : unit.before) {
        const auto found = frames_.find(number);
        if (found == frames_.end()) {
            continue;  // came and went within the unit
        }
        Frame& frame = found->second;
        if (image.page && image.dirty) {
            MarkDirty(frame);
        } else {
            MarkClean(number, frame);
        }
        if (image.page) {
            frame.page = image.page;
            frame.edition = ++editions_;
        } else {
            recent_.erase(frame.place);
            frames_.erase(found);
        }
    }
    pageCount_ = unit.pageCount;
    unit.End();
}

void Pager::BeginTransaction() {
    assert(!statement_.open && (InTransaction() || dirtyCount_ == 0));
    transactions_.emplace_back().Begin(pageCount_, ++units_);
}

/// Rule 6.  Before the transaction every page was as in the file, so that its before-image is what stands
/// there.
void Pager::WriteJournal(bool sync) {
    const std::unique_ptr<platform::File> file = journal_->create();
    const Unit& transaction = transactions_.front();
    JournalWriter writer(*file, transaction.pageCount);
    for (const auto& [number, image] : transaction.before) {
        if (image.page) {
            writer.Add(number, file_->AsStored(number, *image.page));
        }
    }
    writer.Finish(sync);
}

void Pager::CommitTransaction(bool sync) {
    assert(InTransaction() && !statement_.open);
    if (transactions_.size() > 1) {
        Unit inner = std::move(transactions_.back());
        transactions_.pop_back();
        transactions_.back().TakeOver(inner);
        return;
    }
    if (dirtyCount_ > 0) {
        try {
            if (journal_) {
                WriteJournal(sync);
            }
            WriteDirty();
            if (sync) {
                file_->Sync();
            }
        } catch (...) {
            PutBack();
            RollbackTransaction();
            throw;
        }
        if (journal_) {
            journal_->remove();
        }
    }
    transactions_.pop_back();
}

void Pager::RollbackTransaction() {
    assert(InTransaction());
    RollBack(transactions_.back());
    transactions_.pop_back();
}

/// A commit has failed half-way: the file gets its old pages again.  Where that fails too, the journal stays,
/// and whoever opens the file next reads it as it was.
void Pager::PutBack() {
    try {
        const Unit& transaction = transactions_.front();
        for (const auto& [number, image] : transaction.before) {
            if (image.page) {
                file_->WritePage(number, *image.page);
            }
        }
        if (file_->PageCount() > transaction.pageCount) {
            file_->Truncate(transaction.pageCount);
        }
        if (journal_) {
            journal_->remove();
        }
    } catch (const Error&) {
        // The first failure is the one that is reported; the journal holds what could not be put back.
    }
}

void Pager::Flush() {
    assert(Innermost() == nullptr);
    WriteDirty();
    file_->Sync();
}

}  // namespace tavrel::jet
