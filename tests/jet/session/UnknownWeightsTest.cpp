// Characters whose place in a sort order is not known: a file that others work with never gets an index entry
// that they would not find; a working copy gets stand-ins that this engine finds again.
#include <gtest/gtest.h>

#include "jet/session/SessionBench.h"

namespace tavrel::testing {
namespace {

using jet::UnknownWeights;

class UnknownWeightsTest : public ::testing::Test {
  protected:
    UnknownWeightsTest()
        : bench_({.sortOrder = jet::kSortGeneral, .password = {}, .pageKey = 0, .created = {}}) {
        bench_.Run("CREATE TABLE p (k TEXT(20) CONSTRAINT pk PRIMARY KEY, t TEXT(50))");
        bench_.Run("CREATE TABLE c (k TEXT(20), n LONG)");
        bench_.Run("INSERT INTO p VALUES ('plain', '㈜한글')");
    }
    void Fill() {
        bench_.Run("ALTER TABLE c ADD CONSTRAINT f FOREIGN KEY (k) REFERENCES p (k) ON UPDATE CASCADE");
        for (const char* key : {"㈜가", "㈜나", "ab㈜", "zz"}) {
            bench_.Run("INSERT INTO p VALUES ('" + std::string(key) + "', 'x')");
            bench_.Run("INSERT INTO c VALUES ('" + std::string(key) + "', 1)");
        }
    }
    SessionBench bench_;
};

TEST_F(UnknownWeightsTest, AreRefusedInFilesOfOthersAndNothingChanges) {
    const std::string before = ReadWholeFile(bench_.Path());
    EXPECT_EQ(bench_.Failure("INSERT INTO p VALUES ('㈜', NULL)"), errors::kUnknownSortWeight);
    EXPECT_EQ(bench_.Failure("UPDATE p SET k = '㈜'"), errors::kUnknownSortWeight);
    EXPECT_EQ(bench_.Failure("CREATE INDEX i ON p (t)"), errors::kUnknownSortWeight);
    EXPECT_EQ(bench_.Failure("CREATE TABLE ㈜ (a LONG)"), errors::kUnknownSortWeight);
    EXPECT_EQ(ReadWholeFile(bench_.Path()), before);
    EXPECT_EQ(bench_.Run("UPDATE p SET t = '한글' WHERE t = '㈜한글'"), "1");
    EXPECT_EQ(bench_.AllFindings(), "");
}

TEST_F(UnknownWeightsTest, HaveStandInsInWorkingCopies) {
    bench_.Reopen(UnknownWeights::StandIn);
    Fill();
    bench_.Run("CREATE UNIQUE INDEX u ON p (t DESC, k)");
    EXPECT_EQ(bench_.AllFindings(), "");
    EXPECT_EQ(bench_.Session().TablesWithStandIns(), (std::set<std::string>{"c", "p"}));
    EXPECT_EQ(bench_.Failure("INSERT INTO p VALUES ('AB㈜', 'y')"), errors::kDuplicateKey);
    EXPECT_EQ(bench_.Failure("INSERT INTO c VALUES ('㈜다', 2)"), errors::kNoParentRecord);
    EXPECT_EQ(bench_.Run("UPDATE p SET k = 'AB㈜' WHERE k = 'ab㈜'"), "1");  // its own key is no duplicate
    EXPECT_EQ(bench_.Run("UPDATE p SET k = '㈜다' WHERE k = '㈜가'"), "1");
    EXPECT_EQ(bench_.Run("SELECT COUNT(*) FROM c WHERE k = '㈜다'"), "1");
    EXPECT_EQ(bench_.Failure("DELETE FROM p WHERE k = '㈜나'"), errors::kChildRecords);
    EXPECT_EQ(bench_.Run("DELETE FROM c WHERE k >= '㈜'"), "2");
    EXPECT_EQ(bench_.Run("DELETE FROM p WHERE k = '㈜나'"), "1");
    EXPECT_EQ(bench_.Run("SELECT k FROM p ORDER BY k"), "AB㈜;plain;zz;㈜다");
    EXPECT_EQ(bench_.AllFindings(), "");
    // The engine's own tables never get one: others must find an object by its name.
    EXPECT_EQ(bench_.Failure("CREATE TABLE ㈜ (a LONG)"), errors::kUnknownSortWeight);
}

TEST_F(UnknownWeightsTest, EntriesThatAreThereGoWithTheirRows) {
    bench_.Reopen(UnknownWeights::StandIn);
    Fill();
    bench_.Reopen(UnknownWeights::Refuse);
    EXPECT_EQ(bench_.Failure("UPDATE p SET k = 'known' WHERE k = '㈜가'"), 0);
    EXPECT_EQ(bench_.Run("SELECT COUNT(*) FROM c WHERE k = 'known'"), "1");
    EXPECT_EQ(bench_.Failure("DELETE FROM p WHERE k = '㈜나'"), errors::kChildRecords);
    EXPECT_EQ(bench_.Run("DELETE FROM c WHERE k = '㈜나'"), "1");
    EXPECT_EQ(bench_.Run("DELETE FROM p WHERE k = '㈜나'"), "1");
    EXPECT_EQ(bench_.Run("UPDATE p SET t = 'y' WHERE k = 'ab㈜'"), "1");
    EXPECT_EQ(bench_.AllFindings(), "");
}

}  // namespace
}  // namespace tavrel::testing
