// Thousands of random changes against a simple model, and on copies of real files.
#include <filesystem>
#include <map>
#include <random>

#include <gtest/gtest.h>

#include "jet/catalog/RowCursor.h"
#include "support/Corpus.h"
#include "support/DatabaseBuilder.h"
#include "support/EditBench.h"
#include "support/JetTools.h"
#include "support/TemporaryFolder.h"

namespace tavrel::testing {
namespace {

using jet::Null;
using jet::Value;

using Row = std::vector<Value>;

/// Two related tables and what should be in them: parent (id, name, memo), child (no, parent id, note).
class Model {
  public:
    explicit Model(const std::string& path, bool cascade) : cascade_(cascade) {
        DatabaseBuilder builder(
            path, {.sortOrder = jet::kSortGeneral, .password = {}, .pageKey = 0, .created = {}});
        builder.Add(
            Table("parent").Long("id").Text("name", 60).Memo("memo").Key({"id"}).Index("byName", {"name"}));
        builder.Add(Table("child")
                        .Counter("no")
                        .Long("parent")
                        .Text("note", 255)
                        .Key({"no"})
                        .Unique("note", {"note"})
                        .IgnoreNulls());
        builder.Relate({.name = "link",
                        .table = "child",
                        .referencedTable = "parent",
                        .columns = {"parent"},
                        .referencedColumns = {"id"},
                        .updateCascade = cascade,
                        .deleteCascade = cascade});
        builder.Finish();
        bench_ = std::make_unique<EditBench>(path);
    }

    EditBench& Bench() { return *bench_; }

    void Step() {
        switch (random_() % 9) {
            case 0:
            case 1:
                return InsertParent();
            case 2:
            case 3:
            case 4:
                return InsertChild();
            case 5:
                return UpdateParentText();
            case 6:
                return ChangeParentKey();
            case 7:
                return DeleteChild();
            default:
                return DeleteParent();
        }
    }

    void ExpectEqual() {
        EXPECT_EQ(bench_->Findings(true), "");
        EXPECT_EQ(Sorted("parent"), Values(parents_));
        EXPECT_EQ(Sorted("child"), Values(children_));
    }

  private:
    using Rows = std::map<std::int64_t, std::pair<jet::RowPointer, Row>>;

    static std::map<std::int64_t, Row> Values(const Rows& rows) {
        std::map<std::int64_t, Row> values;
        for (const auto& [key, row] : rows) {
            values[key] = row.second;
        }
        return values;
    }

    std::map<std::int64_t, Row> Sorted(const std::string& table) {
        std::map<std::int64_t, Row> rows;
        for (const Row& row : ReadRows(*bench_->database, table)) {
            EXPECT_TRUE(rows.emplace(std::get<std::int64_t>(row[0]), row).second);
        }
        return rows;
    }

    std::string RandomText(std::size_t longest) {
        std::string text;
        for (std::size_t length = random_() % longest; text.size() < length;) {
            text += static_cast<char>('a' + random_() % 20);
        }
        return text;
    }
    Value RandomMemo() {
        static constexpr std::size_t kLengths[] = {1, 40, 300, 2500, 9000};
        return random_() % 4 == 0 ? Value{Null{}} : Value{RandomText(kLengths[random_() % 5] + 1)};
    }
    Rows::iterator Any(Rows& rows) {
        auto found = rows.lower_bound(static_cast<std::int64_t>(random_() % 4000));
        return found == rows.end() ? rows.begin() : found;
    }

    void InsertParent() {
        const auto id = static_cast<std::int64_t>(random_() % 4000);
        const Row row = {id, RandomText(60), RandomMemo()};
        jet::RowPointer at{};
        const auto error =
            bench_->Change([&] { at = bench_->relations.Insert(bench_->Table("parent"), row); });
        ASSERT_EQ(error, parents_.contains(id) ? errors::kDuplicateKey : 0) << bench_->lastError;
        if (error == 0) {
            parents_[id] = {at, row};
        }
    }

    void InsertChild() {
        const auto parent = static_cast<std::int64_t>(random_() % 4000);
        Row row = {Null{}, random_() % 10 == 0 ? Value{Null{}} : Value{parent},
                   random_() % 3 == 0 ? Value{Null{}} : Value{RandomText(jet::kLongestKnownKey - 2)}};
        jet::RowPointer at{};
        const auto error =
            bench_->Change([&] { at = bench_->relations.Insert(bench_->Table("child"), row); });
        const bool orphan = !jet::IsNull(row[1]) && !parents_.contains(parent);
        const bool twice = !jet::IsNull(row[2]) && std::ranges::any_of(children_, [&](const auto& other) {
            return other.second.second[2] == row[2];
        });
        ASSERT_EQ(error, twice ? errors::kDuplicateKey : orphan ? errors::kNoParentRecord : 0);
        if (error == 0) {
            row[0] = std::int64_t{*bench_->Table("child").LastNumber()};
            children_[std::get<std::int64_t>(row[0])] = {at, row};
        }
    }

    void UpdateParentText() {
        if (parents_.empty()) {
            return;
        }
        auto& [at, row] = Any(parents_)->second;
        const Value name = RandomText(60);
        const Value memo = RandomMemo();
        ASSERT_EQ(bench_->Change([&] {
            jet::EditedTable& table = bench_->Table("parent");
            const jet::FieldChange changes[] = {table.Encode(1, name), table.Encode(2, memo)};
            bench_->relations.Update(table, at, changes);
        }),
                  0)
            << bench_->lastError;
        row[1] = name;
        row[2] = memo;
    }

    void ChangeParentKey() {
        if (parents_.empty()) {
            return;
        }
        const auto from = Any(parents_);
        const auto to = static_cast<std::int64_t>(random_() % 4000);
        const std::int64_t id = from->first;
        const auto error = bench_->Change([&] {
            jet::EditedTable& table = bench_->Table("parent");
            const jet::FieldChange change = table.Encode(0, Value{to});
            bench_->relations.Update(table, from->second.first, {&change, 1});
        });
        const bool used = HasChildren(id) && to != id;
        const bool taken = parents_.contains(to) && to != id;
        ASSERT_EQ(error, used && !cascade_ ? errors::kChildRecords : taken ? errors::kDuplicateKey : 0);
        if (error == 0) {
            auto node = parents_.extract(id);
            node.key() = to;
            node.mapped().second[0] = to;
            parents_.insert(std::move(node));
            for (auto& [no, child] : children_) {
                child.second[1] = child.second[1] == Value{id} ? Value{to} : child.second[1];
            }
        }
    }

    void DeleteChild() {
        if (children_.empty()) {
            return;
        }
        const auto gone = Any(children_);
        ASSERT_EQ(
            bench_->Change([&] { bench_->relations.Delete(bench_->Table("child"), gone->second.first); }), 0);
        children_.erase(gone);
    }

    void DeleteParent() {
        if (parents_.empty()) {
            return;
        }
        const auto gone = Any(parents_);
        const std::int64_t id = gone->first;
        const auto error =
            bench_->Change([&] { bench_->relations.Delete(bench_->Table("parent"), gone->second.first); });
        ASSERT_EQ(error, HasChildren(id) && !cascade_ ? errors::kChildRecords : 0);
        if (error == 0) {
            parents_.erase(gone);
            std::erase_if(children_, [&](const auto& child) { return child.second.second[1] == Value{id}; });
        }
    }

    bool HasChildren(std::int64_t id) const {
        return std::ranges::any_of(children_,
                                   [&](const auto& child) { return child.second.second[1] == Value{id}; });
    }

    bool cascade_;
    std::mt19937 random_{1999};
    std::unique_ptr<EditBench> bench_;
    Rows parents_;
    Rows children_;
};

class RandomEdits : public ::testing::TestWithParam<bool> {};

TEST_P(RandomEdits, LeaveWhatASimpleModelSays) {
    TemporaryFolder folder;
    const std::string path = folder.File("edits.mdb");
    {
        Model model(path, GetParam());
        for (int i = 0; i < 3000; ++i) {
            ASSERT_NO_FATAL_FAILURE(model.Step());
            if (i % 500 == 499) {
                ASSERT_NO_FATAL_FAILURE(model.ExpectEqual());
            }
        }
    }
    if (HaveJetTools()) {
        EXPECT_EQ(StrictFindings(path), "");
    }
}

INSTANTIATE_TEST_SUITE_P(Relations, RandomEdits, ::testing::Bool(),
                         [](const auto& info) { return info.param ? "Cascading" : "Refusing"; });

/// A third of the rows goes, another third is written again, in every user table.
void Shake(EditBench& bench, std::mt19937& random) {
    for (const jet::CatalogObject& object : std::vector(bench.database->Catalog().Objects())) {
        if (!object.IsTable() || object.IsSystem()) {
            continue;
        }
        const jet::TableDefinition definition = bench.database->Catalog().Definition(object.DefinitionPage());
        std::vector<std::pair<jet::RowPointer, Row>> rows;
        for (jet::RowCursor cursor(bench.database->Pager(), definition, 0); cursor.Next();) {
            Row row;
            for (std::size_t place = 0; place < definition.columns.size(); ++place) {
                row.push_back(cursor.Get(place));
            }
            rows.emplace_back(cursor.At(), std::move(row));
        }
        for (const auto& [at, row] : rows) {
            const auto error = bench.Change([&] {
                jet::EditedTable& table = bench.edits.Edit(object.DefinitionPage());
                if (random() % 3 == 0) {
                    bench.relations.Delete(table, at);
                } else if (random() % 2 == 0) {
                    std::vector<jet::FieldChange> changes;
                    const Row& other = rows[random() % rows.size()].second;
                    for (std::size_t place = 0; place < row.size(); ++place) {
                        if (random() % 4 == 0 && !definition.columns[place].Autonumber()) {
                            changes.push_back(table.Encode(place, other[place]));
                        }
                    }
                    bench.relations.Update(table, at, changes);
                } else if (random() % 4 == 0) {
                    Row copy = row;
                    for (std::size_t place = 0; place < row.size(); ++place) {
                        copy[place] = definition.columns[place].Autonumber() ? Value{Null{}} : row[place];
                    }
                    bench.relations.Insert(table, copy);
                }
            });
            const bool refused = error == 0 || error == errors::kDuplicateKey ||
                                 error == errors::kChildRecords || error == errors::kNoParentRecord ||
                                 error == errors::kNullInKey || error == errors::kUnknownSortWeight ||
                                 error == errors::kRequiredField || error == errors::kZeroLength;
            ASSERT_TRUE(refused) << object.name << ": " << bench.lastError;
        }
    }
}

TEST(RandomEdits, RealFilesSurviveBeingWrittenTo) {
    TAVREL_NEEDS_CORPUS();
    TemporaryFolder folder;
    std::mt19937 random(4711);
    for (const std::string& file : CorpusFiles()) {
        if (file.find("jet3") != std::string::npos) {
            continue;
        }
        SCOPED_TRACE(file);
        const std::string copy = folder.File("copy.mdb");
        std::filesystem::copy_file(file, copy, std::filesystem::copy_options::overwrite_existing);
        std::filesystem::permissions(copy, std::filesystem::perms::owner_all);
        EditBench bench(copy);
        ASSERT_NO_FATAL_FAILURE(Shake(bench, random));
        EXPECT_EQ(bench.Findings(), "");
    }
}

}  // namespace
}  // namespace tavrel::testing
