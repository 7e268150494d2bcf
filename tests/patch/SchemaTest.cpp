// What the lists leave behind, against the independent reading, cell by cell.
#include <map>

#include <gmock/gmock.h>

#include "ExpectedTrace.h"
#include "support/DatabaseBuilder.h"

namespace tavrel::testing {
namespace {

/// The structure as lines like those of the expected files, by what they are about.
using Structure = std::map<std::string, std::string>;

std::string Flag(bool value) {
    return value ? "1" : "0";
}

std::string Joined(const std::vector<std::string>& fields, std::size_t from, std::size_t to) {
    std::string text;
    for (std::size_t i = from; i < to; ++i) {
        text += fields.at(i) + "|";
    }
    return text;
}

void DescribeTable(Structure& lines, const jet::TableInfo& table) {
    int place = 0;
    for (const jet::FieldInfo& field : table.fields) {
        lines["column " + table.name + "." + field.name] =
            std::to_string(field.daoType) + "|" + std::to_string(field.size) + "|" + Flag(field.required) +
            "|" + Flag(field.allowZeroLength) + "|" + field.defaultValue + "|" + Flag(field.autonumber);
        lines["place " + table.name + "." + field.name] = std::to_string(place++);
    }
    for (const jet::IndexInfo& index : table.indexes) {
        std::string columns;
        for (const jet::IndexFieldInfo& field : index.fields) {
            columns += (columns.empty() ? "" : ",") + field.name;
        }
        lines["index " + table.name + "." + (index.primary ? "*" : index.name)] =
            columns + "|" + Flag(index.primary) + "|" + Flag(index.unique) + "|" + Flag(index.foreign);
    }
}

Structure StructureOf(const std::string& path) {
    Structure lines;
    const auto database = jet::Database::Open(path);
    for (const jet::CatalogObject& object : database->Catalog().Objects()) {
        if (object.IsTable() && !object.IsSystem()) {
            DescribeTable(lines, database->Describe(object));
        }
    }
    for (const jet::RelationInfo& relation : database->Relations()) {
        lines["relation " + relation.name] =
            relation.table + "|" + relation.columns.at(0) + "|" + relation.referencedTable + "|" +
            relation.referencedColumns.at(0) + "|" + Flag(relation.deleteCascade) + "|" +
            Flag(relation.updateCascade);
    }
    return lines;
}

/// Replays one line of an expected file: kind, then what that kind has.
void Replay(Structure& lines, const std::vector<std::string>& fields, bool ofProcedure) {
    const std::string& kind = fields[0];
    if (kind == "drop") {
        std::erase_if(lines, [&](const auto& line) {
            return line.first.find(" " + fields[1] + ".") != std::string::npos;
        });
    } else if (kind == "relation") {
        lines["relation " + fields[1]] = Joined(fields, 2, 7) + fields.at(7);
    } else if (kind == "index") {
        lines["index " + fields[1] + "." + fields[2]] = Joined(fields, 3, 6) + fields.at(6);
    } else {
        std::string& line = lines["column " + fields[1] + "." + fields[2]];
        std::string zeroLength = fields[6];
        if (zeroLength == "-") {  // as it was before: all text columns here allow it
            zeroLength = fields[3] == "10" || fields[3] == "12" ? "1" : "0";
        }
        line =
            Joined(fields, 3, 6) + zeroLength + "|" + fields.at(7) + "|" + (ofProcedure ? fields.at(8) : "0");
    }
}

Structure ExpectedStructure(const std::string& product) {
    Structure lines;
    std::ifstream tables(ExpectedFile("tables.txt"));
    for (std::string line; std::getline(tables, line);) {
        std::vector<std::string> fields = FieldsOf(line);
        if (!line.starts_with("#") &&
            (" " + fields[0] + " ").find(" " + product + " ") != std::string::npos) {
            fields.erase(fields.begin());
            Replay(lines, fields, true);
        }
    }
    std::ifstream rest(ExpectedFile("schema-" + product + ".txt"));
    for (std::string line; std::getline(rest, line);) {
        if (!line.starts_with("#")) {
            Replay(lines, FieldsOf(line), false);
        }
    }
    return lines;
}

class Schema : public ::testing::TestWithParam<const ProductUnderTest*> {};

TEST_P(Schema, IsTheOneThatTheListLeavesBehind) {
    const ProductUnderTest& product = *GetParam();
    PatchBench bench(product, 0);
    ASSERT_TRUE(bench.Patch());
    EXPECT_EQ(bench.Findings(), "");
    const Structure actual = StructureOf(bench.Path());
    const Structure expected = ExpectedStructure(product.name);
    EXPECT_GT(expected.size(), 20U);
    for (const auto& [what, line] : expected) {
        const auto found = actual.find(what);
        EXPECT_EQ(found == actual.end() ? "(missing)" : found->second, line) << what;
    }
    // Nothing but the base's own stands beside it.
    PatchBench base(product, 1);
    base.Findings();
    const Structure before = StructureOf(base.Path());
    for (const auto& [what, line] : actual) {
        EXPECT_TRUE(what.starts_with("place ") || expected.contains(what) || before.contains(what))
            << what << line;
    }
}

// From any version on, the same structure: columns in the same places too.
TEST_P(Schema, IsTheSameFromEveryVersion) {
    const ProductUnderTest& product = *GetParam();
    PatchBench whole(product, 1);
    ASSERT_TRUE(whole.Patch());
    whole.Findings();
    const Structure wanted = StructureOf(whole.Path());
    for (const int version : {product.target / 3, product.target - 1}) {
        PatchBench bench(product, version);
        ASSERT_TRUE(bench.Patch());
        EXPECT_EQ(bench.Findings(), "");
        EXPECT_TRUE(StructureOf(bench.Path()) == wanted) << "from version " << version;
    }
}

INSTANTIATE_TEST_SUITE_P(Products, Schema, ::testing::Values(&kBrelt, &kKilm, &kKilmPro, &kNorb),
                         [](const auto& info) { return info.param->name; });

}  // namespace
}  // namespace tavrel::testing
