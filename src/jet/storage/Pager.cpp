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
    std::list<PageNumber> place{number};
    Frame& frame =
        frames_.emplace(number, Frame{std::move(page), false, ++editions_, 0, place.begin()}).first->second;
    recent_.splice(recent_.begin(), place);
    if (dirty) {
        MarkDirty(frame);
    }
    return frame;
}

void Pager::MarkDirty(Frame& frame) {
    if (!frame.dirty) {
        frame.dirty = true;
        changed_.splice(changed_.begin(), recent_, frame.place);
    }
}

void Pager::MarkClean(Frame& frame) {
    if (frame.dirty) {
        frame.dirty = false;
        recent_.splice(recent_.begin(), changed_, frame.place);
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
    if (Innermost() == nullptr && changed_.size() >= limit_ && !torn_) {
        WriteDirty();
    }
    while (recent_.size() >= limit_ && !recent_.empty()) {
        frames_.erase(recent_.back());
        recent_.pop_back();
    }
}

void Pager::WriteDirty() {
    changed_.sort();
    while (!changed_.empty()) {
        Frame& frame = frames_.find(changed_.front())->second;
        file_->WritePage(changed_.front(), *frame.page);
        MarkClean(frame);
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

void Pager::Unit::TakeOver(Unit& inner) {
    const std::size_t pages = before.size() + inner.before.size();
    if (static_cast<float>(pages) > before.max_load_factor() * static_cast<float>(before.bucket_count())) {
        before.reserve(2 * pages);  // merging would lose pages if it ran out of memory on its way
    }
    before.merge(inner.before);
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
        // What a torn file holds is not what it should: its old pages stay here, like changed ones.
        if (image.page && (image.dirty || torn_)) {
            MarkDirty(frame);
        } else {
            MarkClean(frame);
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
    if (torn_) {
        throw MakeError(errors::kReadOnly, {}, "앞선 쓰기를 되돌리지 못함: 데이터베이스를 다시 열어야 함");
    }
    assert(!statement_.open && (InTransaction() || changed_.empty()));
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
    writer.Finish();
    if (sync) {
        file->Sync();
        journal_->syncFolder();
    }
}

void Pager::WriteOut(bool sync, Stage& stage) {
    if (journal_) {
        WriteJournal(sync);
    }
    stage = Stage::WritingPages;
    WriteDirty();
    if (sync) {
        file_->Sync();
    }
    if (journal_) {
        journal_->remove();
        stage = Stage::JournalRemoved;
        if (sync) {
            journal_->syncFolder();
        }
    }
}

void Pager::CommitTransaction(bool sync) {
    assert(InTransaction() && !statement_.open);
    if (transactions_.size() > 1) {
        transactions_[transactions_.size() - 2].TakeOver(transactions_.back());
    } else if (!changed_.empty()) {
        Stage stage = Stage::WritingJournal;
        try {
            WriteOut(sync, stage);
        } catch (...) {
            PutBack(sync, stage);
            RollbackTransaction();
            throw;
        }
    }
    transactions_.pop_back();
}

void Pager::RollbackTransaction() {
    assert(InTransaction());
    RollBack(transactions_.back());
    transactions_.pop_back();
}

/// A commit has failed half-way: the file gets its old pages again, a journal beside it all the while.  The
/// first failure is the one that is reported.  Where this fails too, the journal stays, and whoever opens the
/// file next reads it as it was.
void Pager::PutBack(bool sync, Stage stage) noexcept {
    try {
        if (stage == Stage::JournalRemoved) {
            WriteJournal(sync);
        }
        if (stage != Stage::WritingJournal) {
            const Unit& transaction = transactions_.front();
            for (const auto& [number, image] : transaction.before) {
                if (image.page) {
                    file_->WritePage(number, *image.page);
                }
            }
            file_->Truncate(transaction.pageCount);  // a part of a page behind the end goes, too
            if (sync) {
                file_->Sync();
            }
        }
    } catch (...) {
        torn_ = true;
        return;
    }
    try {
        if (journal_) {
            journal_->remove();
            if (sync) {
                journal_->syncFolder();
            }
        }
    } catch (...) {
        // It says what the file says.  The next transaction has to remove it before it begins its own.
    }
}

void Pager::Flush() {
    assert(Innermost() == nullptr);
    WriteDirty();
    file_->Sync();
}

}  // namespace tavrel::jet
