#include <algorithm>
#include <array>
#include <fstream>
#include <vector>

#include <gtest/gtest.h>

#include "db/DatabaseOpening.h"
#include "jet/database/Database.h"
#include "support/Corpus.h"
#include "support/TemporaryFolder.h"
#include "text/Case.h"
#include "text/Error.h"

namespace tavrel {
namespace {

struct Messages : platform::MessageBox {
    std::vector<std::string> texts;
    platform::MessageAnswer Show(const platform::Message& message) override {
        texts.push_back(message.text);
        return platform::MessageAnswer::Ok;
    }
};

jet::NewColumn Column(const std::string& name, jet::ColumnType type) {
    jet::NewColumn column;
    column.name = name;
    column.type = type;
    return column;
}

jet::NewColumn TextColumn(const std::string& name) {
    jet::NewColumn column = Column(name, jet::ColumnType::Text);
    column.size = 40;
    column.defaultValue = "\"x\"";
    column.required = true;
    column.zeroLength = jet::NewColumn::ZeroLength::Allowed;
    return column;
}

void MakeDatabase(const std::string& path, const std::string& password) {
    jet::CreateOptions options;
    options.password = password;
    const auto file = jet::Database::Create(path, options);
    jet::NewIndex key;
    key.name = "pk";
    key.fields = {{"id"}};
    key.primary = key.unique = true;
    for (const char* name : {"beta", "Alpha", "가게"}) {
        file->CreateTable({name, {Column("id", jet::ColumnType::Long), TextColumn("name")}, {key}});
    }
    file->Flush();
}

struct OpenCase {
    const char* name;
    const char* made;   ///< password of the database
    const char* typed;  ///< password given
    int error;          ///< 0 = opens
};

class Opening : public ::testing::TestWithParam<OpenCase> {};

TEST_P(Opening, SucceedsOrSaysWhy) {
    const testing::TemporaryFolder folder;
    const std::string path = folder.File("a.mdb");
    MakeDatabase(path, GetParam().made);
    Messages messages;
    std::unique_ptr<db::Database> db;
    EXPECT_EQ(modCmpDB::MyOpenDB(db, path, 0, GetParam().typed, messages), GetParam().error == 0);
    EXPECT_EQ(db != nullptr, GetParam().error == 0);
    ASSERT_EQ(messages.texts.size(), GetParam().error == 0 ? 0U : 1U);
    if (GetParam().error != 0) {
        const std::string& text = messages.texts.front();
        EXPECT_EQ(text, "Error " + std::to_string(GetParam().error) + " (" +
                            MakeError(GetParam().error).Description() +
                            ") in procedure MyOpenDB of Module modCmpDB");
    }
}

INSTANTIATE_TEST_SUITE_P(
    Passwords, Opening,
    ::testing::Values(OpenCase{"NoneNoneTyped", "", "", 0}, OpenCase{"NoneSomeTyped", "", "typed", 0},
                      OpenCase{"SomeTyped", "a;b =c ", "a;b =c ", 0},
                      OpenCase{"SomeNoneTyped", "secret", "", errors::kBadPassword},
                      OpenCase{"SomeOtherTyped", "secret", "Secret", errors::kBadPassword}),
    [](const auto& info) { return info.param.name; });

TEST(DatabaseOpening, RefusesWhatIsNoDatabase) {
    const testing::TemporaryFolder folder;
    std::ofstream(folder.File("text.mdb")) << std::string(5000, 'x');
    Messages messages;
    std::unique_ptr<db::Database> db;
    EXPECT_FALSE(modCmpDB::MyOpenDB(db, folder.File("missing.mdb"), 0, "", messages));
    EXPECT_FALSE(modCmpDB::MyOpenDB(db, folder.File("text.mdb"), 0, "", messages));
    ASSERT_EQ(messages.texts.size(), 2U);
    EXPECT_TRUE(messages.texts[0].starts_with("Error 3024 ("));
    EXPECT_TRUE(messages.texts[1].starts_with("Error 3343 ("));
    modCmpDB::CloseDatabase(db);
}

TEST(TableDefs, ShowTheStructure) {
    const testing::TemporaryFolder folder;
    MakeDatabase(folder.File("a.mdb"), "");
    const auto db = db::DBEngine::Instance().OpenDatabase(folder.File("a.mdb"));
    std::vector<std::string> names;
    for (db::TableDef& table : db->TableDefs()) {
        if (!table.Name().starts_with("MSys")) {
            names.push_back(table.Name());
        }
        if (table.Name() == "beta") {
            ASSERT_EQ(table.Fields().size(), 2U);
            const db::Field& field = table.Fields()[1];
            EXPECT_EQ(field.Name, "name");
            EXPECT_EQ(field.Type, 10);
            EXPECT_EQ(field.Size, 40);
            EXPECT_EQ(field.DefaultValue, "\"x\"");
            EXPECT_TRUE(field.Required && field.AllowZeroLength);
            ASSERT_EQ(table.Indexes().size(), 1U);
            EXPECT_TRUE(table.Indexes()[0].Primary && !table.Indexes()[0].Foreign);
            EXPECT_EQ(table.Indexes()[0].Fields[0].Name, "id");
        }
    }
    EXPECT_EQ(names, (std::vector<std::string>{"Alpha", "beta", "가게"}));
    EXPECT_GT(db->TableDefs().Count(), 3);
    db->Close();
    db->Close();
    EXPECT_THROW((void)db->TableDefs(), Error);
}

/// Every table of every sample can be asked for its structure, in the order of names.
TEST(TableDefs, ReadEverySample) {
    TAVREL_NEEDS_CORPUS();
    for (const std::string& path : testing::CorpusFiles()) {
        try {
            const auto db = db::DBEngine::Instance().OpenDatabase(path);
            std::string last;
            for (db::TableDef& table : db->TableDefs()) {
                EXPECT_FALSE(text::NameLess(table.Name(), last)) << path << " " << table.Name();
                last = table.Name();
                for (const db::Index& index : table.Indexes()) {
                    for (const db::IndexField& field : index.Fields) {
                        EXPECT_TRUE(std::ranges::any_of(table.Fields(),
                                                        [&](const db::Field& other) {
                                                            return text::EqualIgnoringCase(other.Name,
                                                                                           field.Name);
                                                        }))
                            << path << " " << table.Name() << " " << index.Name;
                    }
                }
            }
        } catch (const Error& error) {
            const std::array<int, 2> refusals = {errors::kBadPassword, errors::kOldVersion};
            EXPECT_TRUE(std::ranges::count(refusals, error.Number()) == 1)
                << path << " " << error.Number() << " " << error.Description();
        }
    }
}

}  // namespace
}  // namespace tavrel
