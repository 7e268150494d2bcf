// Takes any text as statements, a line each, and carries them out over a database in memory: an answer or an
// error, nothing else.  What stands there afterwards must be sound.
//
//   fuzz-sql -max_len=4000 -timeout=20 FOLDER_WITH_STATEMENTS
#include <cstdlib>
#include <filesystem>
#include <string_view>

#include "jet/check/Check.h"
#include "jet/session/EditSession.h"
#include "platform/FileSystem.h"
#include "support/MemoryFile.h"

using tavrel::Error;
namespace jet = tavrel::jet;

namespace {

constexpr int kMostRows = 200;

constexpr const char* kSetup[] = {
    "CREATE TABLE t (a COUNTER PRIMARY KEY, b TEXT(20) DEFAULT 'x', c DOUBLE, d DATETIME, e MEMO)",
    "CREATE TABLE u (a LONG, b TEXT(20), CONSTRAINT r FOREIGN KEY (a) REFERENCES t (a) ON DELETE CASCADE)",
    "CREATE INDEX i ON t (b, c DESC)",
    "INSERT INTO t (b, c, d, e) VALUES ('one', 1.5, #2001-02-03#, 'memo')",
    "INSERT INTO t (b, c) VALUES ('two', -2)",
    "INSERT INTO u VALUES (1, '가나다')",
};

/// A new database with two tables, as bytes.
jet::ByteVector SmallDatabase() {
    const std::string path =
        (std::filesystem::temp_directory_path() / ("fuzz-sql-" + std::to_string(std::rand()) + ".mdb"))
            .string();
    tavrel::platform::DeleteFileIfThere(path);
    jet::Database::Create(path)->Flush();
    const auto session = jet::EditSession::Open(path, {}, jet::EditSession::Durability::WrittenOut);
    for (const char* statement : kSetup) {
        session->Execute(statement);
    }
    jet::ByteVector bytes;
    for (jet::PageNumber page = 0; page < session->File().Pager().PageCount(); ++page) {
        jet::AppendBytes(bytes, session->File().Pager().Read(page).Bytes());
    }
    tavrel::platform::DeleteFileIfThere(path);
    return bytes;
}

void CarryOut(jet::EditSession& session, std::string_view statement) {
    try {
        const jet::sql::ExecuteResult result = session.Execute(statement);
        for (int row = 0; result.rows && row < kMostRows && result.rows->Next(); ++row) {
            for (std::size_t column = 0; column < result.rows->Columns().size(); ++column) {
                (void)result.rows->Get(column);
            }
        }
    } catch (const Error&) {
        // The statement is refused, as most of them are.
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const jet::ByteVector empty = SmallDatabase();
    auto database = jet::Database::OpenFile(std::make_unique<tavrel::testing::MemoryFile>(empty), "memory");
    const auto session = jet::EditSession::On(std::move(database), jet::EditSession::Durability::WrittenOut);
    session->LimitRowVisits(100'000);
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        CarryOut(*session, rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    if (jet::CheckDatabase(session->File()).Count(jet::Finding::Severity::Error) != 0) {
        std::abort();
    }
    return 0;
}
