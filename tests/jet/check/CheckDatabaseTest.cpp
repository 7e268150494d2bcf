// The check as a whole: sound files have no findings, and what is told of many.
#include <numeric>
#include <sstream>

#include "jet/check/SampleDatabase.h"
#include "support/Corpus.h"
#include "support/RunProgram.h"

namespace tavrel::testing {
namespace {

using jet::CheckDatabase;
using jet::CheckReport;
using jet::Finding;

std::string Describe(const CheckReport& report) {
    return std::accumulate(report.findings.begin(), report.findings.end(), std::string(),
                           [](std::string text, const Finding& finding) {
                               return text + std::string(finding.code) + ": " + finding.where + ": " +
                                      finding.text + "\n";
                           });
}

std::size_t LinesWith(const std::string& text, std::string_view start) {
    std::istringstream lines(text);
    std::size_t count = 0;
    for (std::string line; std::getline(lines, line);) {
        count += line.starts_with(start) ? 1 : 0;
    }
    return count;
}

TEST(CheckDatabaseTest, FindsNothingInASoundDatabaseAndCountsWhatItSaw) {
    const CheckReport report = CheckDatabase(*OpenBytes(SampleDatabase::Sound()));
    EXPECT_TRUE(report.findings.empty()) << Describe(report);
    const auto count = [&](const char* what) { return report.counts.at(what); };
    EXPECT_EQ(count("tables"), 6U);
    EXPECT_EQ(count("relations"), 1U);
    EXPECT_EQ(count("long-values-chain"), 2U);
    EXPECT_EQ(count("keys-compared"), count("index-entries"));
    EXPECT_GT(count("rows"), 2020U);
}

TEST(CheckDatabaseTest, ProgressRisesToTheWhole) {
    std::uint64_t last = 0;
    std::uint64_t total = 0;
    CheckDatabase(*OpenBytes(SampleDatabase::Sound()), [&](std::uint64_t done, std::uint64_t of) {
        EXPECT_GE(done, last);
        last = done;
        total = of;
    });
    EXPECT_EQ(last, total);
    EXPECT_EQ(total * jet::kPageSize, SampleDatabase::Sound().size());
}

TEST(CheckDatabaseTest, OneDamagedTableDoesNotHideAnother) {
    SampleDatabase sample;
    sample.At(sample.Definition("parents")) = 8;
    sample.At(sample.DataPage("children") + 2) ^= 1;
    std::vector<std::string_view> codes;
    for (const Finding& finding : CheckDatabase(*OpenBytes(sample.bytes)).findings) {
        codes.push_back(finding.code);
    }
    EXPECT_THAT(codes, ::testing::IsSupersetOf(
                           {std::string_view("definition-unreadable"), std::string_view("data-page-free")}));
}

TEST(CheckDatabaseTest, KeepsSoManyFindingsOfAKindAndCountsTheRest) {
    SampleDatabase sample;
    sample.At(sample.ColumnRecord("children", "ParentId") + 0x15) = 200;  // outside all of the 2,000 rows
    const CheckReport report = CheckDatabase(*OpenBytes(sample.bytes));
    const auto kept = std::count_if(report.findings.begin(), report.findings.end(),
                                    [](const Finding& finding) { return finding.code == "fixed-outside"; });
    EXPECT_EQ(static_cast<std::size_t>(kept), jet::kFindingsPerKind + 1);
    EXPECT_THAT(report.findings.back().text, ::testing::HasSubstr("1000"));
}

TEST(CheckDatabaseTest, TextsOfFindingsAreWholeUtf8WhateverNamesHold) {
    SampleDatabase sample;
    sample.At(sample.Value("MSysObjects", sample.ObjectRow("parents"), "Name") + 1) =
        0xD8;  // half a surrogate pair
    const CheckReport report = CheckDatabase(*OpenBytes(sample.bytes));
    EXPECT_FALSE(report.findings.empty());
    EXPECT_THAT(Describe(report), ::testing::Not(::testing::HasSubstr("\xED\xA1")));
}

class CorpusCheck : public ::testing::TestWithParam<std::string> {};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(CorpusCheck);

/// Sound samples: no errors; as many notes as the independent checker gives where it can be asked.
TEST_P(CorpusCheck, SaysWhatTheIndependentCheckerSays) {
    const FileBytes bytes = ReadFile(GetParam());
    if (bytes.at(0x14) == 0) {
        EXPECT_THROW(OpenBytes(bytes), Error);
        return;
    }
    const CheckReport report = CheckDatabase(*OpenBytes(bytes));
    EXPECT_EQ(report.Count(Finding::Severity::Error), 0U) << Describe(report);
    const std::string tool = SharedFolder() + "/tools/jet4.py";
    if (std::filesystem::exists(tool)) {
        const ProgramResult other = RunProgram("python3", {tool, "check", GetParam()});
        EXPECT_EQ(report.Count(Finding::Severity::Note), LinesWith(other.output, "note: "))
            << Describe(report);
    }
}

INSTANTIATE_TEST_SUITE_P(Files, CorpusCheck, ::testing::ValuesIn(CorpusFiles()), [](const auto& file) {
    std::string name = std::filesystem::path(file.param).stem().string();
    std::ranges::replace_if(
        name, [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; }, '_');
    return name;
});

}  // namespace
}  // namespace tavrel::testing
