// One kind of damage at a time: the check names it, and the independent checker sees that something is wrong.
#pragma once

#include <algorithm>

#include "jet/check/SampleDatabase.h"
#include "support/Corpus.h"
#include "support/RunProgram.h"

namespace tavrel::testing {

struct DamageCase {
    const char* code;  ///< that the check must give
    const char* what;  ///< tells apart cases with the same code
    void (*damage)(SampleDatabase& sample);
};

class DamageTest : public ::testing::TestWithParam<DamageCase> {
  protected:
    void SetUp() override { GetParam().damage(sample_); }

    /// The expected finding is there; a whole check of a sound file has none.
    void ExpectFinding() {
        ASSERT_NE(sample_.bytes, SampleDatabase::Sound());
        const std::string path = folder_.File("damaged.mdb");
        WriteFile(path, sample_.bytes);
        const auto database =
            jet::Database::Open(path, {.password = {}, .checkPassword = true, .tolerant = true});
        std::vector<std::string_view> codes;
        for (const jet::Finding& finding : jet::CheckDatabase(*database).findings) {
            codes.push_back(finding.code);
        }
        EXPECT_THAT(codes, ::testing::Contains(std::string_view(GetParam().code)));
    }

    /// The independent checker finds errors where ours does, and no errors where ours only has notes.
    void ExpectAgreement() {
        const std::string tool = SharedFolder() + "/tools/jet4.py";
        if (!std::filesystem::exists(tool)) {
            GTEST_SKIP() << "no independent checker at " << tool;
        }
        const std::string path = folder_.File("damaged.mdb");
        WriteFile(path, sample_.bytes);
        const jet::CheckReport report = jet::CheckDatabase(*OpenBytes(sample_.bytes));
        const ProgramResult other = RunProgram("python3", {tool, "check", path});
        const bool fileLength =
            sample_.bytes.size() % jet::kPageSize != 0;  // seen only where there is a file
        EXPECT_EQ(report.Count(jet::Finding::Severity::Error) != 0 || fileLength, other.exitCode != 0)
            << other.output;
        EXPECT_NE(other.output, "ok\n");
    }

    TemporaryFolder folder_;
    SampleDatabase sample_;
};

inline std::string CaseName(const ::testing::TestParamInfo<DamageCase>& info) {
    std::string name = std::string(info.param.code) + "_" + info.param.what;
    std::ranges::replace_if(
        name, [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; }, '_');
    return name;
}

}  // namespace tavrel::testing

/// Both tests of a group of cases.
#define TAVREL_DAMAGE_TESTS(Group, cases)     \
    class Group : public DamageTest {};       \
    TEST_P(Group, IsFound) {                  \
        ExpectFinding();                      \
    }                                         \
    TEST_P(Group, IndependentCheckerAgrees) { \
        ExpectAgreement();                    \
    }                                         \
    INSTANTIATE_TEST_SUITE_P(Cases, Group, ::testing::ValuesIn(cases), CaseName)
