// A small sound database, and where its parts lie, for tests that damage one thing at a time.
//
//   parents   Id autonumber, primary key; Name required, with a default and a unique index; Note
//   children  2,000 rows: Id primary key (a tree of two levels), ParentId of an enforced relation, Note not
//   compressed;
//             Memo and Picture hold a chain in row 0, a value of one row in row 1, one in the row itself in
//             row 2
#pragma once

#include <fstream>
#include <iterator>

#include <gmock/gmock.h>

#include "jet/catalog/RowCursor.h"
#include "jet/check/Check.h"
#include "jet/database/Database.h"
#include "jet/index/IndexPage.h"
#include "support/DatabaseBuilder.h"
#include "support/MemoryFile.h"
#include "support/TemporaryFolder.h"

namespace tavrel::testing {

using FileBytes = std::vector<std::uint8_t>;

inline void WriteFile(const std::string& path, const FileBytes& bytes) {
    std::ofstream stream(path, std::ios::binary);
    stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

inline FileBytes ReadFile(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

inline std::unique_ptr<jet::Database> OpenBytes(const FileBytes& bytes) {
    return jet::Database::OpenFile(std::make_unique<MemoryFile>(bytes), "sample.mdb",
                                   {.password = {}, .checkPassword = false, .tolerant = true});
}

class SampleDatabase {
  public:
    /// The file, made once.
    static const FileBytes& Sound() {
        static const FileBytes bytes = Make();
        return bytes;
    }

    SampleDatabase() : bytes(Sound()), database_(OpenBytes(bytes)) {}

    // ---- changes
    std::uint8_t& At(std::size_t offset) { return bytes.at(offset); }
    [[nodiscard]] std::uint32_t Get(std::size_t offset, std::size_t size) const {
        std::uint32_t value = 0;
        for (std::size_t i = size; i-- > 0;) {
            value = value << 8 | bytes.at(offset + i);
        }
        return value;
    }
    void Put(std::size_t offset, std::size_t size, std::uint32_t value) {
        for (std::size_t i = 0; i < size; ++i) {
            bytes.at(offset + i) = static_cast<std::uint8_t>(value >> (8 * i));
        }
    }

    // ---- offsets in the file
    static std::size_t Page(jet::PageNumber page) { return std::size_t{page} * jet::kPageSize; }
    std::size_t Definition(const std::string& table) { return Page(DefinitionOf(table).page); }
    /// Of the i-th data page of a table.
    std::size_t DataPage(const std::string& table, std::size_t i = 0) {
        return Page(jet::ReadUsageMap(database_->Pager(), DefinitionOf(table).ownedMap).pages.at(i));
    }
    /// Of the i-th row (row order), of its end, and of a column's stored value in it.
    std::size_t Row(const std::string& table, std::size_t i) { return Locate(table, i, nullptr).offset; }
    std::size_t RowEnd(const std::string& table, std::size_t i) {
        const Place row = Locate(table, i, nullptr);
        return row.offset + row.size;
    }
    std::size_t Value(const std::string& table, std::size_t i, const std::string& column) {
        return Locate(table, i, column.c_str()).offset;
    }
    /// Of the row that a pointer names: a map, a long value.
    std::size_t Target(jet::RowPointer at) {
        const jet::PageRef page = database_->Pager().Read(at.page);
        return Page(at.page) + OffsetIn(page, jet::DataPageView(page).At(at.row).row);
    }
    /// Of the slot of a row pointer.
    static std::size_t SlotOf(jet::RowPointer at) {
        return Page(at.page) + jet::kDataHeader + 2 * std::size_t{at.row};
    }
    /// Sets or clears the bit of a page in an inline map.
    void MapBit(jet::RowPointer map, jet::PageNumber page, bool value) {
        std::uint8_t& byte = At(Target(map) + 5 + page / 8);
        byte = static_cast<std::uint8_t>((byte & ~(1U << page % 8)) | (value ? 1U << page % 8 : 0U));
    }
    /// Replaces a text by one of the same length, where it first stands in UTF-16 behind an offset; `high` is
    /// the high byte of its first character.
    void Rename(std::size_t from, std::string_view text, std::string_view by, std::uint8_t high = 0) {
        auto at = bytes.begin() + static_cast<std::ptrdiff_t>(FindText(from, text));
        *(at + 1) = high;
        for (const char c : by) {
            *at = static_cast<std::uint8_t>(c);
            at += 2;
        }
    }
    /// Of the n-th leaf (from the left) and of the root of an index.
    std::size_t Root(const std::string& table, const std::string& index) {
        return Page(Real(table, index).root);
    }
    std::size_t Leaf(const std::string& table, const std::string& index, std::size_t n = 0) {
        jet::PageNumber page = Real(table, index).root;
        for (jet::IndexPageContent node = ReadIndex(page); !node.leaf; node = ReadIndex(page)) {
            page = node.entries.empty() ? node.tail : jet::NodeChild(node.entries.front());
        }
        for (; n > 0; --n) {
            page = ReadIndex(page).next;
        }
        return Page(page);
    }
    /// Of a text in UTF-16, where it first stands behind an offset.
    [[nodiscard]] std::size_t FindText(std::size_t from, std::string_view text) const {
        FileBytes wanted;
        for (const char c : text) {
            wanted.insert(wanted.end(), {static_cast<std::uint8_t>(c), 0});
        }
        const auto found = std::search(bytes.begin() + static_cast<std::ptrdiff_t>(from), bytes.end(),
                                       wanted.begin(), wanted.end());
        return static_cast<std::size_t>(found - bytes.begin());
    }
    /// A page behind the last one, all zero and in use.
    jet::PageNumber AddPage() {
        const auto page = static_cast<jet::PageNumber>(bytes.size() / jet::kPageSize);
        MapBit({1, 0}, page, false);
        bytes.resize(bytes.size() + jet::kPageSize);
        return page;
    }
    /// Writes a definition over that of its table, on as many more pages as it needs.
    void PutDefinition(const jet::TableDefinition& table) {
        constexpr std::size_t kHead = 8;
        const jet::ByteVector all = jet::BuildTableDefinition(table);
        jet::PageNumber page = table.page;
        for (jet::ByteView rest = all; !rest.empty();) {
            const jet::ByteView part = rest.first(std::min(rest.size(), jet::kPageSize - kHead));
            rest = rest.subspan(part.size());
            const jet::PageNumber next = rest.empty() ? 0 : AddPage();
            Put(Page(page), 2, 0x0102);
            Put(Page(page) + 2, 2, static_cast<std::uint32_t>(jet::kPageSize - kHead - part.size()));
            Put(Page(page) + 4, 4, next);
            std::ranges::copy(part, bytes.begin() + static_cast<std::ptrdiff_t>(Page(page) + kHead));
            page = next;
        }
    }
    /// Of a column's 25-byte record, a real index's 52-byte record, a logical index's 28-byte record.
    std::size_t ColumnRecord(const std::string& table, const std::string& column) {
        const jet::TableDefinition& definition = DefinitionOf(table);
        return Definition(table) + 0x3F + 12 * definition.realIndexes.size() +
               25 * definition.FindColumnByName(column);
    }
    std::size_t RealRecord(const std::string& table, std::size_t real) {
        return RealRecords(table) + 52 * real;
    }
    std::size_t LogicalRecord(const std::string& table, const std::string& index) {
        const jet::TableDefinition& definition = DefinitionOf(table);
        std::size_t place = 0;
        while (definition.logicalIndexes.at(place).name != index) {
            ++place;
        }
        return RealRecords(table) + 52 * definition.realIndexes.size() + 28 * place;
    }

    // ---- what is there
    const jet::TableDefinition& DefinitionOf(const std::string& name) {
        return database_->Catalog().Definition(database_->Catalog().FindTable(name)->DefinitionPage());
    }
    const jet::RealIndex& Real(const std::string& table, const std::string& index) {
        const jet::TableDefinition& definition = DefinitionOf(table);
        for (const jet::LogicalIndex& logical : definition.logicalIndexes) {
            if (logical.name == index) {
                return definition.realIndexes.at(logical.real);
            }
        }
        throw std::out_of_range(index);
    }
    /// Row number in MSysObjects of an object.
    std::size_t ObjectRow(const std::string& name) {
        std::size_t row = 0;
        for (const jet::CatalogObject& object : database_->Catalog().Objects()) {
            if (object.name == name) {
                return row;
            }
            ++row;
        }
        throw std::out_of_range(name);
    }

    FileBytes bytes;

  private:
    static FileBytes Make();

    jet::IndexPageContent ReadIndex(jet::PageNumber page) {
        return jet::ReadIndexPage(database_->Pager().Read(page));
    }

    static std::size_t OffsetIn(const jet::PageRef& page, jet::ByteView part) {
        return static_cast<std::size_t>(part.data() - page.Bytes().data());
    }

    struct Place {
        std::size_t offset;
        std::size_t size;
    };

    Place Locate(const std::string& table, std::size_t row, const char* column) {
        const jet::TableDefinition& definition = DefinitionOf(table);
        jet::RowCursor cursor(database_->Pager(), definition, database_->Catalog().OwnerKey());
        for (std::size_t i = 0; i <= row; ++i) {
            if (!cursor.Next()) {
                throw std::out_of_range(table);
            }
        }
        const jet::PageRef page = database_->Pager().Read(cursor.At().page);
        const jet::ByteView bytesOfRow = jet::DataPageView(page).At(cursor.At().row).row;
        const jet::RowShape shape = definition.Shape();
        const jet::ByteView part =
            column == nullptr
                ? bytesOfRow
                : jet::RowView(shape, bytesOfRow).Field(definition.FindColumnByName(column)).value();
        return {Page(cursor.At().page) + OffsetIn(page, part), part.size()};
    }

    std::size_t RealRecords(const std::string& table) {
        const jet::TableDefinition& definition = DefinitionOf(table);
        std::size_t offset = Definition(table) + 0x3F + 12 * definition.realIndexes.size();
        for (std::size_t i = 0; i < definition.columns.size(); ++i) {
            offset += 25;
        }
        for (std::size_t i = 0; i < definition.columns.size(); ++i) {
            offset += 2 + Get(offset, 2);
        }
        return offset;
    }

    std::unique_ptr<jet::Database> database_;
};

inline FileBytes SampleDatabase::Make() {
    const TemporaryFolder folder;
    jet::CreateOptions options;
    options.sortOrder = jet::kSortGeneral;
    DatabaseBuilder builder(folder.File("sample.mdb"), options);
    Table parents("parents");
    parents.Counter("Id").Text("Name", 50).Required().Default("\"none\"").Text("Note", 40);
    builder.Add(parents.Key({"Id"}).Unique("ByName", {"Name"}));
    Table children("children");
    children.Long("Id").Long("ParentId").Text("Note", 40).Uncompressed().Memo("Memo");
    builder.Add(children.Column("Picture", jet::ColumnType::Ole).Key({"Id"}));

    std::vector<std::vector<jet::Value>> rows;
    for (int i = 1; i <= 20; ++i) {
        rows.push_back({jet::Null{}, "parent " + std::to_string(i), std::string("remark")});
    }
    builder.Rows("parents", rows);
    rows.clear();
    for (const std::size_t length : {10000, 200, 20}) {  // a chain, a row, in the row
        const auto id = static_cast<std::int64_t>(rows.size());
        rows.push_back(
            {id, Int(1), std::string("child"), std::string(length, 'm'), jet::ByteVector(length, 7)});
    }
    for (std::int64_t id = 3; id < 2000; ++id) {
        rows.push_back({id, 1 + id % 20, std::string("child"), jet::Null{}, jet::Null{}});
    }
    builder.Rows("children", rows);

    jet::RelationInfo family{"family", "children", "parents", {"ParentId"}, {"Id"}};
    family.deleteCascade = true;
    builder.Relate(family);
    return ReadFile(builder.Finish());
}

}  // namespace tavrel::testing
