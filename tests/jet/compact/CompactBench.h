// Databases before and after compaction.
#pragma once

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include <gmock/gmock.h>

#include "jet/catalog/RowCursor.h"
#include "jet/check/Check.h"
#include "jet/compact/Compact.h"
#include "report/DatabaseDump.h"
#include "support/DatabaseBuilder.h"
#include "support/TemporaryFolder.h"

namespace tavrel::testing {

inline std::unique_ptr<jet::Database> OpenAny(const std::string& path) {
    return jet::Database::Open(path, {.password = {}, .checkPassword = false, .tolerant = true});
}

/// Structure, relations and a digest of all rows.
inline std::string Dump(const std::string& path) {
    std::ostringstream out;
    report::WriteDump(out, *OpenAny(path));
    return out.str();
}

/// What the engine's own check finds, notes too, a line each.
inline std::string FindingsOf(const std::string& path) {
    std::string lines;
    for (const jet::Finding& finding : jet::CheckDatabase(*OpenAny(path)).findings) {
        lines += finding.where + ": " + finding.text + "\n";
    }
    return lines;
}

/// Every object but for its number, with the names of the accounts that may use it, and the queries' lines.
inline std::multiset<std::string> ObjectsOf(const std::string& path) {
    const auto database = OpenAny(path);
    std::map<std::int64_t, std::string> names;
    std::multiset<std::string> lines;
    for (const auto& row : ReadRows(*database, "MSysObjects")) {
        names[std::get<std::int64_t>(row[0])] = std::get<std::string>(row[2]);
    }
    const auto add = [&](const char* table) {
        const auto& definition =
            database->Catalog().Definition(database->Catalog().FindTable(table)->DefinitionPage());
        const auto order = definition.ColumnsInOrder();
        jet::RowCursor cursor(database->Pager(), definition, database->Catalog().OwnerKey());
        while (cursor.Next()) {
            std::string line = table;
            for (const std::size_t place : order) {
                const std::string& column = definition.columns[place].name;
                const auto stored = cursor.Stored(place);
                line += "|" + column + "=";
                if (column == "Id" || column == "ObjectId") {
                    line += names[std::get<std::int64_t>(cursor.Get(place))];
                } else if (stored) {
                    line.append(stored->begin(), stored->end());
                }
            }
            lines.insert(line);
        }
    };
    for (const char* table : {"MSysObjects", "MSysACEs", "MSysQueries"}) {
        add(table);
    }
    return lines;
}

/// Compacts, and expects a sound database with the same content, of the same bytes when it is compacted
/// again. Returns its path.
inline std::string ExpectSameContent(const TemporaryFolder& folder, const std::string& path) {
    const std::string once = folder.File("once.mdb");
    const std::string twice = folder.File("twice.mdb");
    std::filesystem::remove(once);
    std::filesystem::remove(twice);
    const jet::CompactOptions options{.password = {}, .checkPassword = false, .progress = {}};
    const jet::CompactReport report = jet::CompactDatabase(path, once, options);
    EXPECT_FALSE(report.repaired);
    EXPECT_TRUE(report.losses.empty());
    EXPECT_EQ(FindingsOf(once), "");
    EXPECT_EQ(Dump(path), Dump(once));
    EXPECT_EQ(ObjectsOf(path), ObjectsOf(once));
    EXPECT_LE(report.bytesAfter, report.bytesBefore);
    jet::CompactDatabase(once, twice, options);
    EXPECT_EQ(ReadWholeFile(once), ReadWholeFile(twice));
    return once;
}

}  // namespace tavrel::testing
