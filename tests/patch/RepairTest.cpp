// The repair routines on data, and the update log.
#include <gmock/gmock.h>

#include "ExpectedTrace.h"
#include "db/AdoErrors.h"
#include "patch/repair/Repairs.h"
#include "support/DatabaseBuilder.h"

namespace tavrel::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;

// "[받을어음update ]", "[지급어음update ]", "시작: " and "완료: " with a time, in code page 949.
#define TIME_CP949 "(\xBF\xC0\xC0\xFC|\xBF\xC0\xC8\xC4) (0[1-9]|1[0-2]):[0-5][0-9]:[0-5][0-9]\r\n"
constexpr const char* kReceivableHead =
    "\r\n\\[\xB9\xDE\xC0\xBB\xBE\xEE\xC0\xBDupdate \\]\r\n\xBD\xC3\xC0\xDB: " TIME_CP949;
constexpr const char* kPayableHead =
    "\r\n\\[\xC1\xF6\xB1\xDE\xBE\xEE\xC0\xBDupdate \\]\r\n\xBD\xC3\xC0\xDB: " TIME_CP949;
constexpr const char* kEnd = "\xBF\xCF\xB7\xE1: " TIME_CP949;

class BillNotes : public ::testing::Test {
  protected:
    BillNotes() {
        Customer("C00001", "한빛상사");
        Customer("C00002", "O'Neill");
    }

    static void Customer(const std::string& code, const std::string& alias) {
        PatchBench::Run("INSERT INTO customer (code, compalias) VALUES ('" + code + "', \"" + alias + "\")");
    }
    static void Note(const std::string& code, int part) {
        PatchBench::Run("INSERT INTO billnote (code, ccode, part) VALUES ('" + code + "', 'C00001', " +
                        std::to_string(part) + ")");
    }
    static void Payment(const std::string& note, const std::string& customer, const std::string& date) {
        PatchBench::Run("INSERT INTO payment (subcode, ccode, dealdate) VALUES ('" + note + "', '" +
                        customer + "', '" + date + "')");
    }
    static std::string State(const std::string& note) {
        const std::string where = " FROM billnote WHERE code = '" + note + "'";
        return PatchBench::Value("SELECT outtype & '/' & outdate & '/' & outbigo" + where);
    }
    std::string Log() const {
        return std::filesystem::exists(bench_.LogPath()) ? ReadWholeFile(bench_.LogPath()) : "(none)";
    }

    PatchBench bench_{kBrelt, 55};
};

TEST_F(BillNotes, AreMarkedByTheirPayments) {
    Note("받을-1", 1);
    Note("R2", 1);
    Note("R3", 1);  // nobody has paid with it
    Note("P1", 0);
    Note("O1", 2);  // neither kind
    Payment("받을-1", "C00001", "2004-05-06");
    Payment("R2", "C00001", "2004-01-01");
    Payment("R2", "C00001", "2004-02-02");
    Payment("P1", "C00002", "2004-03-03");
    Payment("O1", "C00001", "2004-03-03");
    EXPECT_TRUE(bench_.Patch());
    EXPECT_THAT(bench_.messages, IsEmpty());
    EXPECT_EQ(ExpectedTrace("brelt", 55).DifferenceFrom(bench_.sent), "");
    EXPECT_EQ(State("받을-1"), "2/2004-05-06/한빛상사");
    EXPECT_THAT(State("R2"), MatchesRegex("2/2004-0(1-01|2-02)/한빛상사"));
    EXPECT_EQ(State("R3"), "0//");
    EXPECT_EQ(State("P1"), "2//");
    EXPECT_EQ(State("O1"), "0//");
    // One line for each update, a note with two payments twice.
    EXPECT_THAT(Log(), MatchesRegex(std::string(kReceivableHead) +
                                    "(\xB9\xDE\xC0\xBB-1\r\nR2\r\nR2|R2\r\nR2\r\n\xB9\xDE\xC0\xBB-1)\r\n" +
                                    kEnd + kPayableHead + "P1\r\n" + kEnd));
    // The log grows.
    const std::string before = Log();
    PatchBench again(kBrelt, 55);
    patch::UpdateLog::UseFolder(std::filesystem::path(bench_.LogPath()).parent_path().string());
    Customer("C00001", "");
    Note("P2", 0);
    Payment("P2", "C00001", "2004-03-03");
    EXPECT_TRUE(again.Patch());
    ASSERT_TRUE(Log().starts_with(before));
    EXPECT_THAT(Log().substr(before.size()), MatchesRegex(std::string(kPayableHead) + "P2\r\n" + kEnd));
}

TEST_F(BillNotes, LeaveNoLogWhenThereIsNothingToDo) {
    Note("R1", 1);
    Note("P1", 0);
    EXPECT_TRUE(bench_.Patch());
    EXPECT_EQ(Log(), "(none)");
}

TEST_F(BillNotes, StopAtAnApostrophe) {
    Note("P1", 0);
    Note("R1", 1);
    Payment("P1", "C00001", "2004-03-03");
    Payment("R1", "C00002", "2004-03-03");
    EXPECT_TRUE(bench_.Patch());
    EXPECT_THAT(bench_.messages,
                ElementsAre(MatchesRegex("Error -2147217900 \\(.*\\) in procedure BillNoteSubRtn of "
                                         "Module modMain_dbPatch")));
    EXPECT_EQ(State("R1"), "0//");
    EXPECT_EQ(State("P1"), "0//");
    EXPECT_THAT(Log(), MatchesRegex(kReceivableHead));
    EXPECT_EQ(PatchBench::Value("SELECT ver FROM dbversion"), std::to_string(kBrelt.target));
}

TEST_F(BillNotes, GoOnWithTheOtherPartWhenAQueryCannotBeOpened) {
    Note("P1", 0);
    Payment("P1", "C00001", "2004-03-03");
    PatchBench::Run("ALTER TABLE customer DROP COLUMN compalias");
    EXPECT_FALSE(bench_.Patch());  // a later step needs the column
    EXPECT_EQ(bench_.messages.size(), 2U);
    EXPECT_EQ(State("P1"), "2//");
    EXPECT_THAT(Log(), MatchesRegex(std::string(kPayableHead) + "P1\r\n" + kEnd));
}

TEST_F(BillNotes, ReportALogThatCannotBeWritten) {
    std::filesystem::create_directory(bench_.LogPath());
    Note("P1", 0);
    Payment("P1", "C00001", "2004-03-03");
    EXPECT_TRUE(bench_.Patch());
    EXPECT_THAT(bench_.messages,
                ElementsAre(MatchesRegex(
                    "Error [0-9]+ \\(.*\\) in procedure BillNoteSubRtn of Module modMain_dbPatch")));
}

TEST(OfficeStore, HoldsEveryPair) {
    for (const int stores : {3, 0}) {
        PatchBench bench(kBrelt, 86);
        for (int office = 1; office <= 2; ++office) {
            PatchBench::Run("INSERT INTO office (code) VALUES (" + std::to_string(office) + ")");
        }
        for (int store = 1; store <= stores; ++store) {
            PatchBench::Run("INSERT INTO storehouse (code) VALUES (" + std::to_string(store) + ")");
        }
        EXPECT_TRUE(bench.Patch());
        EXPECT_EQ(ExpectedTrace("brelt", 86).DifferenceFrom(bench.sent), "");
        EXPECT_EQ(PatchBench::Value("SELECT COUNT(*) FROM office_store"), std::to_string(2 * stores));
    }
}

// Product C has offices but no storehouses.
TEST(OfficeStore, FailsWithoutStorehouses) {
    PatchBench bench(kNorb, 1);
    EXPECT_EQ(ErrorOf(patch::CreateTBL_office_store), db::adoErrors::kObjectClosed);
    EXPECT_EQ(PatchBench::Value("SELECT COUNT(*) FROM office_store"), "0");
}

TEST(LoginPasswords, StayAsTheyAre) {
    PatchBench bench(kBrelt, 118);
    PatchBench::Run("INSERT INTO local_user (code, loginid, loginpwd) VALUES ('01', 'kim', '비밀12')");
    PatchBench::Run("INSERT INTO local_user (code, loginid, loginpwd) VALUES ('02', '', 'unused')");
    EXPECT_TRUE(bench.Patch());
    EXPECT_EQ(ExpectedTrace("brelt", 118).DifferenceFrom(bench.sent), "");
    EXPECT_EQ(PatchBench::Value("SELECT loginpwd & loginpwd2 FROM local_user WHERE code = '01'"),
              "비밀12비밀12");
    EXPECT_EQ(PatchBench::Value("SELECT loginpwd & '/' & loginpwd2 FROM local_user WHERE code = '02'"),
              "unused/");
}

TEST(Classes, GetTheNextFreeCodes) {
    struct Case {
        const char* codes;
        const char* first;
        const char* second;
    };
    for (const Case& c : {Case{"0007 AB12 999", "0008", "0009"}, Case{"", "0001", "0002"},
                          Case{"0098 0099", "0100", "0101"}}) {
        PatchBench bench(kBrelt, 15);
        std::istringstream codes(c.codes);
        for (std::string code; codes >> code;) {
            PatchBench::Run("INSERT INTO pclass (code, name) VALUES ('" + code + "', '')");
        }
        EXPECT_TRUE(bench.Patch());
        EXPECT_EQ(PatchBench::Value("SELECT code FROM pclass WHERE name = '기본 대분류' AND plevel = 0"),
                  c.first);
        EXPECT_EQ(PatchBench::Value("SELECT code FROM pclass WHERE fullpath = '01010000' AND plevel = 1"),
                  c.second);
        EXPECT_EQ(
            PatchBench::Value("SELECT COUNT(*) FROM pclass WHERE plevel = 2 AND fullpath <> '0101' & code"),
            "0");
    }
}

TEST(TimeText, HasTwelveHours) {
    EXPECT_EQ(patch::TimeText(0, 0, 0), "오전 12:00:00");
    EXPECT_EQ(patch::TimeText(9, 5, 7), "오전 09:05:07");
    EXPECT_EQ(patch::TimeText(12, 0, 59), "오후 12:00:59");
    EXPECT_EQ(patch::TimeText(23, 59, 1), "오후 11:59:01");
}

}  // namespace
}  // namespace tavrel::testing
