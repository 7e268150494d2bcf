// Comparing with a product: working copies are made and patched, and the two databases stay as they are.
#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>

#include "FakeControls.h"
#include "compare/CopyDatabase.h"
#include "compare/Products.h"
#include "db/Session.h"
#include "jet/database/Database.h"
#include "patch/base/BaseDatabase.h"
#include "platform/FileSystem.h"
#include "support/DatabaseBuilder.h"
#include "support/TemporaryFolder.h"
#include "workbench/PatchedCopies.h"

namespace tavrel::workbench {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::ReadWholeFile;

constexpr const char* kEqual = "두 DB의 구조가 일치 합니다.";

/// A database of product C at version 1, and what statements make of it.
void MakeBase(const std::string& path, const std::vector<std::string>& statements = {},
              const std::string& password = {}) {
    jet::CreateOptions options;
    options.password = password;
    jet::Database::Create(path, options)->Flush();
    modDBsub::DBOpenADO(path, password);
    patch::MakeBaseOfNorb();
    for (const std::string& statement : statements) {
        modDBsub::DBExecute(statement);
    }
    modDBsub::gDBConn.reset();
}

class PatchedCopiesTest : public ::testing::Test {
  protected:
    PatchedCopiesTest() {
        std::filesystem::create_directory(folder_.File("b"));
        window_.paths[0].text = a_;
        window_.paths[1].text = b_;
        window_.controls.AppCode = "norbixII";
    }
    ~PatchedCopiesTest() override { modDBsub::gDBConn.reset(); }

    RunOutcome Run() {
        window_.messages.texts.clear();
        CompareRun run(window_.controls);
        run.cmdComp_Click();
        EXPECT_FALSE(window_.messageField.visible);
        EXPECT_FALSE(window_.pointer.hourglass);
        return run.Outcome();
    }
    /// Runs with both databases made unwritable, and looks whether they are still what they were.
    RunOutcome RunAndLook() {
        using std::filesystem::perms;
        const std::string before = ReadWholeFile(a_) + ReadWholeFile(b_);
        for (const std::string& path : {a_, b_}) {
            std::filesystem::permissions(path, perms::owner_read);
        }
        const RunOutcome outcome = Run();
        EXPECT_TRUE(ReadWholeFile(a_) + ReadWholeFile(b_) == before);
        for (const std::string& path : {a_, b_}) {
            std::filesystem::permissions(path, perms::owner_all);
        }
        return outcome;
    }
    std::string Copy(const char* name) {
        return folder_.File(std::string("dbMaintemp/temp(") + name + ").mdb");
    }

    testing::TemporaryFolder folder_;
    std::string a_ = folder_.File("dbMain.mdb");
    std::string b_ = folder_.File("b/other.mdb");
    FakeWindow window_;
};

TEST_F(PatchedCopiesTest, BringsBothSidesToTheLatestSchema) {
    MakeBase(a_);
    MakeBase(b_, {"ALTER TABLE taxlist_m ADD COLUMN etax LONG DEFAULT 0 NOT NULL",
                  "UPDATE dbversion SET ver = 2 WHERE dbid = 'main'"});
    // Again over the copies of the first run, on one of which the session is still open.
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(RunAndLook(), RunOutcome::Equal);
        EXPECT_THAT(window_.messages.texts, ElementsAre(kEqual));
        EXPECT_EQ(window_.messageField.shown, round + 1);
        EXPECT_EQ(window_.messageField.focused, round + 1);
        EXPECT_EQ(window_.grid.Text(1, grid::kTopHeaderRow), Copy("A"));
        EXPECT_EQ(modDBsub::DBNullToStr(modDBsub::DBGetValue("SELECT ver FROM dbversion")), "14");
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.File("b")), {}), 1);
}

TEST_F(PatchedCopiesTest, EndsWhereADriverFails) {
    MakeBase(a_, {"ALTER TABLE taxlist_m ADD COLUMN etax LONG"});
    MakeBase(b_);
    EXPECT_EQ(RunAndLook(), RunOutcome::Stopped);
    ASSERT_EQ(window_.messages.texts.size(), 1U);
    EXPECT_THAT(window_.messages.texts[0], HasSubstr(") in procedure ChkDBpatch of Module modMain_dbPatch"));
    EXPECT_EQ(window_.pointer.turnedOn, 0);
    // B's copy was made but not touched.
    EXPECT_TRUE(ReadWholeFile(Copy("B")) == ReadWholeFile(b_));
}

TEST_F(PatchedCopiesTest, UsesThePasswordsOfBothSides) {
    MakeBase(a_, {}, "가나다");
    MakeBase(b_, {}, "b;2");
    window_.passwords[0].text = "가나다";
    window_.passwords[1].text = "b;2";
    EXPECT_EQ(RunAndLook(), RunOutcome::Equal);
    window_.passwords[1].text = "wrong";
    EXPECT_EQ(RunAndLook(), RunOutcome::Stopped);
    ASSERT_EQ(window_.messages.texts.size(), 1U);
    EXPECT_THAT(window_.messages.texts[0], HasSubstr(Copy("B")));
}

TEST_F(PatchedCopiesTest, SaysWhenNoFolderOrCopyCanBeMade) {
    MakeBase(a_);
    MakeBase(b_);
    std::ofstream(folder_.File("dbMaintemp")) << "a file of that name";
    EXPECT_EQ(RunAndLook(), RunOutcome::Stopped);
    EXPECT_THAT(window_.messages.texts, ElementsAre(AllOf(HasSubstr("작업 폴더를 만들 수 없습니다."),
                                                          HasSubstr("같은 이름이 이미 있음"))));
    std::filesystem::remove(folder_.File("dbMaintemp"));

    std::filesystem::create_directories(Copy("B"));
    EXPECT_EQ(RunAndLook(), RunOutcome::Stopped);
    EXPECT_THAT(window_.messages.texts, ElementsAre(HasSubstr("DB B의 작업 사본을 만들 수 없습니다.")));
    std::filesystem::remove(Copy("B"));
    EXPECT_EQ(RunAndLook(), RunOutcome::Equal);
}

TEST_F(PatchedCopiesTest, KeepsOtherRunsOutOfItsFolder) {
    MakeBase(a_);
    MakeBase(b_);
    WorkbenchControls other = window_.controls;
    auto first = std::make_unique<PatchedCopies>();
    std::string pathA = a_;
    std::string pathB = b_;
    ASSERT_TRUE(first->Prepare(other, pathA, pathB));
    const std::string copy = ReadWholeFile(Copy("A"));
    EXPECT_EQ(RunAndLook(), RunOutcome::Stopped);
    EXPECT_THAT(
        window_.messages.texts,
        ElementsAre(AllOf(HasSubstr("Error 70 ("), HasSubstr("다른 비교가 이 작업 폴더를 쓰고 있음"))));
    EXPECT_TRUE(ReadWholeFile(Copy("A")) == copy);
    first.reset();
    EXPECT_EQ(RunAndLook(), RunOutcome::Equal);
}

#ifndef _WIN32
TEST_F(PatchedCopiesTest, AreAsPrivateAsTheDatabases) {
    using std::filesystem::perms;
    MakeBase(a_);
    MakeBase(b_);
    std::filesystem::permissions(a_, perms::owner_read);
    std::filesystem::permissions(b_, perms::owner_all | perms::group_read);
    EXPECT_EQ(Run(), RunOutcome::Equal);
    const auto permissionsOf = [](const std::string& path) {
        return std::filesystem::status(path).permissions();
    };
    EXPECT_EQ(permissionsOf(Copy("A")), perms::owner_read | perms::owner_write);
    EXPECT_EQ(permissionsOf(Copy("B")), perms::owner_all | perms::group_read);
    EXPECT_EQ(permissionsOf(folder_.File("dbMaintemp")), perms::owner_all);
}
#endif

// What a migration does to an indexed text needs weights that nobody knows for every character.
TEST_F(PatchedCopiesTest, TakeAnyCharacter) {
    MakeBase(a_);
    MakeBase(b_, {"CREATE TABLE t (x TEXT(10))", "INSERT INTO t VALUES ('★㈜')"});
    EXPECT_EQ(Run(), RunOutcome::Different);
    EXPECT_NO_THROW(modDBsub::DBExecute("CREATE INDEX ix ON t (x)"));
}

TEST_F(PatchedCopiesTest, SaysWhichNameLeavesNoPlaceForAFolder) {
    a_ = window_.paths[0].text = folder_.File("X.MDB");
    MakeBase(a_);
    MakeBase(b_);
    EXPECT_EQ(RunAndLook(), RunOutcome::Stopped);
    EXPECT_THAT(window_.messages.texts,
                ElementsAre(AllOf(HasSubstr("Error 58 ("), HasSubstr("소문자 \".mdb\""))));
}

TEST_F(PatchedCopiesTest, NeverCopiesOverADatabaseThatIsCompared) {
    MakeBase(a_);
    std::filesystem::create_directory(folder_.File("dbMaintemp"));
    b_ = window_.paths[1].text = Copy("A");
    MakeBase(b_);
    EXPECT_EQ(RunAndLook(), RunOutcome::Stopped);
    EXPECT_THAT(window_.messages.texts, ElementsAre(HasSubstr("DB A의 작업 사본을 만들 수 없습니다.")));
}

TEST(WorkingPaths, ReplaceEveryExtension) {
    const std::string slash(1, platform::kPathSeparator);
    struct Case {
        const char* path;
        std::string folder;
        std::string copyA;
    };
    for (const Case& c :
         {Case{"dbMain.mdb", "dbMaintemp", "dbMaintemp" + slash + "temp(A).mdb"},
          Case{"x.mdb.mdb", "xtemptemp", "xtemp" + slash + "temp(A).mdbtemp" + slash + "temp(A).mdb"},
          Case{"x.MDB", "x.MDB", "x.MDB"}}) {
        EXPECT_EQ(WorkingPaths(c.path).folder, c.folder);
        EXPECT_EQ(WorkingPaths(c.path).copyA, c.copyA);
    }
}

// A journal that an unfinished transaction has left belongs to the database; one beside the old copy does
// not.
TEST(CopyDatabase, TakesTheJournalAlong) {
    const testing::TemporaryFolder folder;
    const auto write = [&](const char* name, const char* text) { std::ofstream(folder.File(name)) << text; };
    write("a", "new");
    write("copy", "a longer old content");
    write("copy-journal", "stale");
    compare::CopyDatabase(folder.File("a"), folder.File("copy"));
    EXPECT_EQ(ReadWholeFile(folder.File("copy")), "new");
    EXPECT_FALSE(std::filesystem::exists(folder.File("copy-journal")));
    write("a-journal", "old pages");
    compare::CopyDatabase(folder.File("a"), folder.File("copy"));
    EXPECT_EQ(ReadWholeFile(folder.File("copy-journal")), "old pages");
    std::filesystem::create_hard_link(folder.File("a"), folder.File("same"));
    EXPECT_EQ(testing::ErrorOf([&] { compare::CopyDatabase(folder.File("a"), folder.File("same")); }),
              errors::kFileExists);
}

TEST(Products, AreFoundByCodeAndByName) {
    EXPECT_STREQ(compare::ProductOfCode("KilmPro")->item.data(), "VintrelPro");
    EXPECT_EQ(compare::ProductOfCode("kilmpro"), nullptr);
    for (const compare::Product& product : compare::Products()) {
        EXPECT_EQ(compare::ProductNamed(product.code), &product);
        EXPECT_EQ(compare::ProductNamed(product.item), &product);
    }
    EXPECT_EQ(compare::ProductNamed("dalvorii"), compare::ProductOfCode("breltII"));
    EXPECT_EQ(compare::ProductNamed(""), nullptr);
}

}  // namespace
}  // namespace tavrel::workbench
