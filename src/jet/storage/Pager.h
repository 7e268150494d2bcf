// The page cache: every page that the engine reads or changes goes through here.
//
// Nested units guard changes: a statement, which is all or nothing, inside a transaction, which reaches the
// file as a whole; transactions nest, and only the outermost one reaches the file.  A new file, which nobody
// has yet, is written without any.
//
// Rules (tests cite the numbers):
//  1. A page that someone holds (PageRef) keeps its content for as long as it is held, even when the page is
//     changed or leaves the cache meanwhile.
//  2. While a statement or a transaction is open no changed page reaches the file; rolling back puts every page
//     and the page count back.
//  3. Outside both changed pages may be written at any time; Flush writes all of them.
//  4. The cache holds at most its limit of unchanged pages.
//  5. Pages come into being and go only through PageAllocator.
//  6. CommitTransaction writes the old content of the pages to the journal before it overwrites the first of them.
//  7. Rolling back asks for no memory: it is what is left to do when there is none.
#pragma once

#include <algorithm>
#include <list>
#include <memory>
#include <unordered_map>
#include <vector>

#include "jet/storage/Bytes.h"
#include "jet/storage/Journal.h"
#include "jet/storage/PageFile.h"
#include "jet/storage/PagePool.h"

namespace tavrel::jet {

/// A page's content, unchanging while held.
class PageRef {
  public:
    explicit PageRef(std::shared_ptr<const Page> page) : page_(std::move(page)) {}
    [[nodiscard]] ByteView Bytes() const { return *page_; }
    operator ByteView() const { return *page_; }  // NOLINT(google-explicit-constructor): a page is its bytes

  private:
    std::shared_ptr<const Page> page_;
};

class Pager {
  public:
    /// `cachePages` limits the unchanged pages that are kept.
    explicit Pager(std::unique_ptr<PageFile> file, std::size_t cachePages = 4096);
    ~Pager();
    Pager(const Pager&) = delete;
    Pager& operator=(const Pager&) = delete;

    /// Pages of the file, those not yet written included.
    [[nodiscard]] PageNumber PageCount() const { return pageCount_; }
    [[nodiscard]] const PageFile& File() const { return *file_; }
    [[nodiscard]] PageFile& File() { return *file_; }

    /// Throws 3428 when there is no such page.
    PageRef Read(PageNumber number);

    /// A number that no earlier content of the page had: what was learnt from the page holds as long as it
    /// stays.  REQUIRES: the page was read or written just now.
    [[nodiscard]] std::uint64_t Edition(PageNumber number) const {
        return frames_.find(number)->second.edition;
    }

    /// The page for changing.  The reference is good until the next call of any member.
    Page& Write(PageNumber number);

    /// The page for changing, all zero whatever it held; one page behind the end extends the file.
    Page& Fresh(PageNumber number);

    /// REQUIRES: no statement is open.
    void BeginStatement() { statement_.Begin(pageCount_, ++units_); }
    void CommitStatement();
    void RollbackStatement() { RollBack(statement_); }
    [[nodiscard]] bool InStatement() const { return statement_.open; }

    /// Inside another transaction, or as the outermost one.  Throws 3027 once a failed commit could not be
    /// taken back: the journal that holds the old pages must not be replaced by another one; whoever opens
    /// the file next puts them back.  REQUIRES: no statement is open.
    void BeginTransaction();
    /// The innermost transaction becomes part of the one round it; the outermost one's changed pages are
    /// written, all of them or, when the program is killed meanwhile, none.  `sync`: they are on the medium
    /// when the call returns.  A failure of any call rolls the transaction back, in memory and in the file.
    /// REQUIRES: no statement is open.
    void CommitTransaction(bool sync);
    /// The innermost one.  REQUIRES: no statement is open.
    void RollbackTransaction();
    [[nodiscard]] bool InTransaction() const { return !transactions_.empty(); }
    /// Where CommitTransaction keeps the old pages; without it a transaction is not safe against being
    /// killed.
    void SetJournal(JournalFiles journal) { journal_ = std::move(journal); }

    /// Writes every changed page and syncs.  REQUIRES: neither a statement nor a transaction is open.
    void Flush();

  private:
    struct Frame {
        std::shared_ptr<Page> page;
        bool dirty = false;
        std::uint64_t edition = 0;
        std::uint64_t keptIn = 0;               ///< the last unit that has kept what the page was
        std::list<PageNumber>::iterator place;  ///< in changed_ or recent_
    };

    Frame& Load(PageNumber number);
    Frame& Insert(PageNumber number, std::shared_ptr<Page> page, bool dirty);
    void Remember(PageNumber number, Frame& frame);
    void MarkDirty(Frame& frame);
    void MarkClean(Frame& frame);
    void MakeRoom();
    void WriteDirty();

    std::unique_ptr<PageFile> file_;
    std::size_t limit_;
    PageNumber pageCount_;
    PagePool pool_;
    std::unordered_map<PageNumber, Frame> frames_;
    std::list<PageNumber> recent_;   ///< unchanged pages, the most recently used first
    std::list<PageNumber> changed_;  ///< the others: a page goes from one list to the other as it is
    std::uint64_t editions_ = 0;
    std::uint64_t units_ = 0;

    struct BeforeImage {
        std::shared_ptr<Page> page;  ///< null: the page did not exist
        bool dirty = false;
    };
    /// What the pages were when a unit began.
    struct Unit {
        bool open = false;
        std::uint64_t number = 0;  ///< no other unit has it
        PageNumber pageCount = 0;
        std::unordered_map<PageNumber, BeforeImage> before;

        void Begin(PageNumber count, std::uint64_t unit);
        void End();
        /// An inner unit that ends becomes part of this one: what this one has kept is older, and stays.
        /// Without the memory for it neither of them has changed.
        void TakeOver(Unit& inner);
        void Keep(PageNumber number, const BeforeImage& image) { before.try_emplace(number, image); }
    };
    /// The innermost unit that is open; null when there is none.
    Unit* Innermost();
    void RollBack(Unit& unit);

    /// How far a commit has come.
    enum class Stage { WritingJournal, WritingPages, JournalRemoved };
    void WriteOut(bool sync, Stage& stage);
    void WriteJournal(bool sync);
    void PutBack(bool sync, Stage stage) noexcept;

    bool torn_ = false;  ///< a commit has failed and the file could not be given its old pages
    Unit statement_;
    std::vector<Unit> transactions_;  ///< the outermost one first
    std::optional<JournalFiles> journal_;
};

}  // namespace tavrel::jet
