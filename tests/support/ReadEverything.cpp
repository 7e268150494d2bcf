#include <functional>

#include "jet/catalog/RowCursor.h"
#include "jet/check/Check.h"
#include "jet/database/Database.h"
#include "jet/index/IndexReader.h"
#include "support/MemoryFile.h"
#include "support/Mutations.h"

namespace tavrel::testing {

namespace {

class Reader {
  public:
    explicit Reader(Exercise& exercise) : exercise_(exercise) {}

    void Read(const FileBytes& file, bool tolerant) {
        std::unique_ptr<jet::Database> database;
        Guarded([&] {
            const jet::OpenOptions options{.password = {}, .checkPassword = false, .tolerant = tolerant};
            database = jet::Database::OpenFile(std::make_unique<MemoryFile>(file), "mutation.mdb", options);
        });
        if (database == nullptr) {
            return;
        }
        Guarded([&] { ReadObjects(*database); });
        Guarded([&] { exercise_.answers += database->Relations().size(); });
        Guarded([&] { exercise_.findings += jet::CheckDatabase(*database).findings.size(); });
    }

  private:
    /// An Error is one of the answers that damage may get.
    void Guarded(const std::function<void()>& part) {
        try {
            part();
        } catch (const Error&) {
            ++exercise_.errors;
        }
    }

    void ReadObjects(jet::Database& database) {
        for (const jet::CatalogObject& object : database.Catalog().Objects()) {
            Guarded([&] { exercise_.answers += database.Catalog().Properties(object).Owners().size(); });
            if (object.IsTable()) {
                Guarded([&] { exercise_.answers += database.Describe(object).fields.size(); });
                Guarded([&] { ReadTable(database, object); });
            }
        }
    }

    void ReadTable(jet::Database& database, const jet::CatalogObject& object) {
        const jet::TableDefinition& table = database.Catalog().Definition(object.DefinitionPage());
        Guarded([&] { ReadRows(database, table); });
        for (const jet::RealIndex& index : table.realIndexes) {
            Guarded([&] {
                jet::IndexReader reader(database.Pager(), index.root, table.page);
                for (bool more = reader.First(); more; more = reader.Next()) {
                    ++exercise_.answers;
                }
            });
        }
    }

    void ReadRows(jet::Database& database, const jet::TableDefinition& table) {
        jet::RowCursor cursor(database.Pager(), table, database.Catalog().OwnerKey());
        while (cursor.Next()) {
            ++exercise_.answers;
            for (std::size_t column = 0; column < table.columns.size(); ++column) {
                Guarded([&] { static_cast<void>(cursor.Get(column)); });
            }
        }
    }

    Exercise& exercise_;
};

}  // namespace

Exercise ReadEverything(const FileBytes& file) {
    Exercise exercise;
    for (const bool tolerant : {false, true}) {
        Reader(exercise).Read(file, tolerant);
    }
    return exercise;
}

}  // namespace tavrel::testing
