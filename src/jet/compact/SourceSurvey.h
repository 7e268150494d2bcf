// What every page of a damaged database says of itself, so that rows are found even where the maps are wrong.
#pragma once

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "jet/catalog/TableDefinition.h"
#include "jet/compact/Compact.h"
#include "jet/compact/SourcePages.h"

namespace tavrel::jet::compact {

/// Collects what is lost.
class LossLog {
  public:
    void Add(std::string where, std::string text) { losses_.push_back({std::move(where), std::move(text)}); }
    /// What went wrong, without the engine's general sentence.
    void Add(std::string where, const Error& error);
    void Append(LossLog&& other);
    [[nodiscard]] std::vector<CompactLoss> Take() { return std::move(losses_); }
    [[nodiscard]] std::size_t Count() const { return losses_.size(); }
    /// True when something at that place, or at a part of it, has been told.
    [[nodiscard]] bool TellsOf(std::string_view where) const {
        return std::ranges::any_of(losses_, [where](const CompactLoss& loss) {
            return loss.where == where || loss.where.starts_with(std::string(where) + " ");
        });
    }

  private:
    std::vector<CompactLoss> losses_;
};

class SourceSurvey {
  public:
    /// Reads every page once.
    explicit SourceSurvey(SourcePages& source);

    /// Pages with rows of a table, ascending: those that its map names, and those that no map names when the
    /// map cannot be read, when index entries lead to them, or when the table's record count says that they
    /// belong to it.  What is left out is told.
    [[nodiscard]] std::vector<PageNumber> PagesOf(const TableDefinition& table, const std::string& name,
                                                  LossLog& losses) const;
    /// Pages that may begin a table definition.
    [[nodiscard]] std::vector<PageNumber> DefinitionPages() const;
    /// Number of live rows on the pages that say they belong to the table at a definition page.
    [[nodiscard]] std::uint64_t RowsOf(PageNumber table) const;
    /// True when the entries of an index that has one for each row lead to that many.
    [[nodiscard]] bool AnyIndexNames(const TableDefinition& table, std::uint64_t rows) const;
    /// The entries of all readable leaves among the pages.
    struct Entry {
        ByteVector key;
        RowPointer row;
    };
    [[nodiscard]] std::vector<Entry> EntriesOn(const std::vector<PageNumber>& pages, PageNumber table) const;

  private:
    void DropPagesBehindEnd(std::vector<PageNumber>& mapped, const std::string& name, LossLog& losses) const;
    [[nodiscard]] std::set<PageNumber> NamedByIndexes(PageNumber table) const;
    [[nodiscard]] std::uint64_t LiveRowsOn(const std::vector<PageNumber>& pages, PageNumber table) const;

    SourcePages& source_;
    std::vector<std::uint8_t> types_;
    std::vector<PageNumber> owners_;  ///< of data and index pages
    std::vector<bool> free_;
};

}  // namespace tavrel::jet::compact
