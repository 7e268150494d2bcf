// Takes any bytes as a database file and changes it: each statement is carried out or refused with an error,
// whatever the pages hold.
//
//   fuzz-edit -max_len=300000 -rss_limit_mb=1024 -timeout=20 FOLDER_WITH_DATABASES
#include "jet/session/EditSession.h"
#include "support/MemoryFile.h"

using tavrel::Error;
namespace jet = tavrel::jet;

namespace {

constexpr std::size_t kMostTables = 8;

/// A value that every column takes, but for a few types.
constexpr const char* kValue = "'7'";

void CarryOut(jet::EditSession& session, const std::string& statement) {
    try {
        session.Execute(statement);
    } catch (const Error&) {
        // The file is damaged, or the value does not fit.
    }
}

void ChangeTable(jet::EditSession& session, const jet::CatalogObject& object) {
    const std::string name = "[" + object.name + "]";
    const jet::TableInfo table = session.File().Describe(object);
    if (table.fields.empty()) {
        return;
    }
    const std::string& first = table.fields.front().name;
    const std::string& last = table.fields.back().name;
    CarryOut(session, "INSERT INTO " + name + " ([" + last + "]) VALUES (" + kValue + ")");
    CarryOut(session,
             "INSERT INTO " + name + " ([" + first + "], [" + last + "]) VALUES (8, " + kValue + ")");
    CarryOut(session, "UPDATE " + name + " SET [" + last + "] = " + kValue);
    CarryOut(session, "UPDATE " + name + " SET [" + first + "] = [" + first + "] + 1");
    CarryOut(session, "DELETE FROM " + name + " WHERE [" + first + "] > 5");
}

void ChangeTables(jet::EditSession& session) {
    std::size_t tables = 0;
    const std::vector<jet::CatalogObject> objects = session.File().Catalog().Objects();
    for (const jet::CatalogObject& object : objects) {
        if (!object.IsTable() || object.IsSystem() || ++tables > kMostTables) {
            continue;
        }
        try {
            ChangeTable(session, object);
        } catch (const Error&) {
            // Its definition cannot be read.
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        auto database = jet::Database::OpenFile(
            std::make_unique<tavrel::testing::MemoryFile>(std::vector<std::uint8_t>(data, data + size)),
            "memory", {.password = {}, .checkPassword = false});
        const auto session =
            jet::EditSession::On(std::move(database), jet::EditSession::Durability::WrittenOut);
        session->LimitRowVisits(100'000);
        ChangeTables(*session);
        CarryOut(*session, "CREATE TABLE fuzzed (a COUNTER PRIMARY KEY, b TEXT(20))");
        CarryOut(*session, "INSERT INTO fuzzed (b) VALUES ('x')");
        CarryOut(*session, "DROP TABLE fuzzed");
    } catch (const Error&) {
        // It does not open.
    }
    return 0;
}
