#include "jet/compact/SourceSurvey.h"

#include <algorithm>
#include <optional>

#include "jet/compact/LostPages.h"
#include "jet/index/IndexPage.h"
#include "jet/storage/DataPage.h"
#include "jet/storage/UsageMap.h"

namespace tavrel::jet::compact {

void LossLog::Add(std::string where, const Error& error) {
    std::string text = error.Description();
    const ErrorText* general = FindErrorText(error.Number());
    constexpr std::string_view kOpen = " (";
    const std::string front = general != nullptr ? std::string(general->korean).append(kOpen) : std::string();
    if (!front.empty() && text.starts_with(front) && text.ends_with(')')) {
        text = text.substr(front.size(), text.size() - front.size() - 1);
    }
    Add(std::move(where), std::move(text));
}

void LossLog::Append(LossLog&& other) {
    std::ranges::move(other.losses_, std::back_inserter(losses_));
    other.losses_.clear();
}

SourceSurvey::SourceSurvey(SourcePages& source)
    : source_(source), types_(source.Count()), owners_(source.Count()), free_(FreePages(source.Cache())) {
    for (PageNumber number = 0; number < source_.Count(); ++number) {
        try {
            const PageRef page = source_.Read(number);
            types_[number] = page.Bytes()[0];
            owners_[number] = U32(page, 4);
        } catch (const Error& error) {
            RequireDamage(error);
            types_[number] = 0xFF;  // cannot be read
        }
    }
}

std::vector<SourceSurvey::Entry> SourceSurvey::EntriesOn(const std::vector<PageNumber>& pages,
                                                         PageNumber table) const {
    std::vector<Entry> entries;
    for (const PageNumber number : pages) {
        if (number >= types_.size() || types_[number] != kPageTypeLeaf || owners_[number] != table) {
            continue;
        }
        try {
            for (const ByteVector& entry : ReadIndexPage(source_.Read(number)).entries) {
                const ByteView key = LeafKey(entry);
                entries.push_back({ByteVector(key.begin(), key.end()), LeafRow(entry)});
            }
        } catch (const Error& error) {
            RequireDamage(error);
            // The entries of that page are lost; its rows are not.
        }
    }
    return entries;
}

bool SourceSurvey::AnyIndexNames(const TableDefinition& table, std::uint64_t rows) const {
    return std::ranges::any_of(table.realIndexes, [&](const RealIndex& index) {
        try {
            const auto pages = ReadUsageMap(source_.Cache(), index.map).pages;
            return !index.IgnoreNulls() && EntriesOn(pages, table.page).size() == rows;
        } catch (const Error& error) {
            RequireDamage(error);
            return false;  // a map that cannot be read says nothing of the rows
        }
    });
}

std::set<PageNumber> SourceSurvey::NamedByIndexes(PageNumber table) const {
    std::vector<PageNumber> leaves;
    for (PageNumber number = 0; number < types_.size(); ++number) {
        if (types_[number] == kPageTypeLeaf && owners_[number] == table && !free_[number]) {
            leaves.push_back(number);
        }
    }
    std::set<PageNumber> named;
    for (const Entry& entry : EntriesOn(leaves, table)) {
        named.insert(entry.row.page);
    }
    return named;
}

std::uint64_t SourceSurvey::LiveRowsOn(const std::vector<PageNumber>& pages, PageNumber table) const {
    std::uint64_t rows = 0;
    for (const PageNumber page : pages) {
        rows += LiveRows(source_.Read(page), table);
    }
    return rows;
}

std::vector<PageNumber> SourceSurvey::DefinitionPages() const {
    std::vector<PageNumber> pages;
    for (PageNumber number = 0; number < types_.size(); ++number) {
        if (types_[number] == kPageTypeDefinition && !free_[number]) {
            pages.push_back(number);
        }
    }
    return pages;
}

std::uint64_t SourceSurvey::RowsOf(PageNumber table) const {
    std::vector<PageNumber> pages;
    for (PageNumber number = 0; number < types_.size(); ++number) {
        if (types_[number] == kPageTypeData && owners_[number] == table && !free_[number]) {
            pages.push_back(number);
        }
    }
    return LiveRowsOn(pages, table);
}

/// Pages that a map names and a file that was cut off no longer has.
void SourceSurvey::DropPagesBehindEnd(std::vector<PageNumber>& mapped, const std::string& name,
                                      LossLog& losses) const {
    const std::size_t behind = std::erase_if(mapped, [&](PageNumber page) { return page >= types_.size(); });
    if (behind > 0) {
        losses.Add("테이블 " + name, "파일 끝 뒤의 페이지 " + std::to_string(behind) + "개와 그 행을 잃음");
    }
}

std::vector<PageNumber> SourceSurvey::PagesOf(const TableDefinition& table, const std::string& name,
                                              LossLog& losses) const {
    std::optional<std::vector<PageNumber>> mapped;
    try {
        mapped = ReadUsageMap(source_.Cache(), table.ownedMap, kEveryPage).pages;
        DropPagesBehindEnd(*mapped, name, losses);
    } catch (const Error& error) {
        RequireDamage(error);
        // Then the pages themselves tell.
    }
    const auto belongs = [&](PageNumber page) {
        return types_[page] == kPageTypeData && owners_[page] == table.page;
    };
    std::vector<PageNumber> pages;
    std::set<PageNumber> inMap;
    for (const PageNumber page : mapped.value_or(std::vector<PageNumber>())) {
        inMap.insert(page);
        if (belongs(page)) {
            pages.push_back(page);
        } else {
            losses.Add("테이블 " + name + " 페이지 " + std::to_string(page), "페이지와 그 행을 읽을 수 없음");
        }
    }
    std::vector<PageNumber> others;
    for (PageNumber page = 0; page < types_.size(); ++page) {
        if (belongs(page) && !inMap.contains(page) && !free_[page]) {
            others.push_back(page);
        }
    }
    const std::uint64_t otherRows = LiveRowsOn(others, table.page);
    const bool counted = LiveRowsOn(pages, table.page) + otherRows <= table.rowCount;
    const std::set<PageNumber> named = others.empty() ? std::set<PageNumber>() : NamedByIndexes(table.page);
    for (const PageNumber page : others) {
        if (!mapped || counted || named.contains(page)) {
            pages.push_back(page);
        } else if (const std::uint64_t rows = LiveRowsOn({page}, table.page); rows > 0) {
            losses.Add("테이블 " + name + " 페이지 " + std::to_string(page),
                       "버려진 페이지의 행 " + std::to_string(rows) + "개를 옮기지 않음");
        }
    }
    if (const std::uint64_t found = LiveRowsOn(pages, table.page); !mapped && found < table.rowCount) {
        losses.Add("테이블 " + name, "지도를 읽을 수 없고 행 " + std::to_string(table.rowCount) + "개 중 " +
                                         std::to_string(found) + "개만 찾음");
    }
    std::ranges::sort(pages);
    return pages;
}

}  // namespace tavrel::jet::compact
