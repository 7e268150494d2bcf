// Every index entry of every sample database, computed anew from the row that it names.
#include <map>

#include <gmock/gmock.h>

#include "jet/catalog/RowCursor.h"
#include "jet/database/Database.h"
#include "jet/index/IndexReader.h"
#include "jet/index/KeyEncoder.h"
#include "support/Corpus.h"

namespace tavrel::jet {
namespace {

struct Count {
    std::size_t equal = 0;
    std::size_t unknown = 0;
};

std::optional<ByteVector> KeyOfRow(RowCursor& cursor, const TableDefinition& table, const RealIndex& index) {
    ByteVector key;
    for (const IndexColumn& part : index.columns) {
        const std::size_t column = table.FindColumn(part.number);
        const std::optional<ByteVector> stored = cursor.Stored(column);
        const auto bytes = EncodeKeyColumn(
            table.columns[column], stored ? std::optional<ByteView>(*stored) : std::nullopt, part.ascending);
        if (!bytes) {
            return std::nullopt;
        }
        AppendBytes(key, *bytes);
    }
    return key;
}

void CompareIndex(Database& database, const TableDefinition& table, const RealIndex& index, Count& count) {
    std::map<RowPointer, std::optional<ByteVector>> keys;
    RowCursor cursor(database.Pager(), table, database.Catalog().OwnerKey());
    while (cursor.Next()) {
        keys[cursor.At()] = KeyOfRow(cursor, table, index);
    }
    IndexReader reader(database.Pager(), index.root, table.page);
    for (bool more = reader.First(); more; more = reader.Next()) {
        const auto row = keys.find(reader.Row());
        ASSERT_NE(row, keys.end());
        if (row->second) {
            ASSERT_TRUE(std::ranges::equal(*row->second, reader.Key()));
            ++count.equal;
        } else {
            ++count.unknown;
        }
        keys.erase(row);
    }
    EXPECT_TRUE(keys.empty() || index.IgnoreNulls());
}

TEST(CorpusKeysTest, EveryEntryIsWhatItsRowGives) {
    TAVREL_NEEDS_CORPUS();
    Count count;
    for (const std::string& path : tavrel::testing::CorpusFiles()) {
        SCOPED_TRACE(path);
        std::unique_ptr<Database> database;
        try {
            database = Database::Open(path, {.password = {}, .checkPassword = false, .tolerant = false});
        } catch (const Error& error) {
            ASSERT_EQ(error.Number(), errors::kOldVersion);
            continue;
        }
        for (const CatalogObject& object : database->Catalog().Objects()) {
            if (!object.IsTable()) {
                continue;
            }
            SCOPED_TRACE(object.name);
            const TableDefinition& table = database->Catalog().Definition(object.DefinitionPage());
            for (const RealIndex& index : table.realIndexes) {
                CompareIndex(*database, table, index, count);
                ASSERT_FALSE(HasFatalFailure());
            }
        }
    }
    EXPECT_GT(count.equal, 10'000U);
    EXPECT_LT(count.unknown, count.equal / 100);
}

}  // namespace
}  // namespace tavrel::jet
