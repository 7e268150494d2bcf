// A session on a database in memory, statements of every kind for it, and all that it says.
#pragma once

#include "jet/session/SessionBench.h"
#include "jet/storage/Disk.h"

namespace tavrel::testing {

using jet::Disk;
using jet::DiskFile;

inline constexpr const char* kSetup[] = {
    "CREATE TABLE p (id LONG CONSTRAINT pk PRIMARY KEY, name TEXT(40), memo MEMO)",
    "CREATE TABLE c (no COUNTER CONSTRAINT ck PRIMARY KEY, pid LONG, t TEXT(60))",
    "CREATE INDEX it ON c (t)",
    "ALTER TABLE c ADD CONSTRAINT r FOREIGN KEY (pid) REFERENCES p (id) ON DELETE CASCADE ON UPDATE CASCADE",
};
inline constexpr const char* kStatements[] = {
    "INSERT INTO p VALUES (1000, 'new', 'memo text')",
    "UPDATE p SET memo = name & memo & memo & memo & memo & memo WHERE id < 20",
    "UPDATE c SET t = t & 'longer than it was before by far'",
    "UPDATE p SET id = id + 5000 WHERE id > 30",
    "DELETE FROM p WHERE id > 20",
    "ALTER TABLE p ADD COLUMN extra MEMO DEFAULT 'x' NOT NULL",
    "ALTER TABLE c ALTER COLUMN t MEMO",
    "ALTER TABLE c ALTER COLUMN t TEXT(30)",
    "CREATE UNIQUE INDEX iu ON p (id, name DESC)",
    "DROP INDEX it ON c",
    "ALTER TABLE c DROP CONSTRAINT r",
    "ALTER TABLE c DROP COLUMN t",
    "CREATE TABLE x (a COUNTER CONSTRAINT xk PRIMARY KEY, b LONG, CONSTRAINT xr FOREIGN KEY (b) REFERENCES p "
    "(id))",
    "DROP TABLE x",
    "DROP TABLE c",
};

inline std::unique_ptr<jet::EditSession> SessionOn(Disk& disk) {
    auto database = jet::Database::OpenFile(std::make_unique<DiskFile>(disk, false), "disk");
    database->Pager().SetJournal(jet::FilesOf(disk));
    return jet::EditSession::On(std::move(database), jet::EditSession::Durability::OnMedium);
}

inline std::string Shown(const jet::TableInfo& table) {
    std::string text = table.name + ":";
    for (const jet::FieldInfo& field : table.fields) {
        text += " " + field.name + "/" + std::to_string(field.daoType) + field.defaultValue;
    }
    for (const jet::IndexInfo& index : table.indexes) {
        text += " [" + index.name + "]";
    }
    return text + "\n";
}

/// All that the database says, which must be sound.
inline std::string Content(Disk& disk) {
    const auto database =
        jet::Database::OpenFile(std::make_unique<DiskFile>(disk, false), "disk", {}, jet::OldPagesOf(disk));
    EXPECT_EQ(SessionBench::FindingsOf(*database), "");
    std::string text;
    for (const jet::CatalogObject& object : database->Catalog().Objects()) {
        if (object.IsTable() && !object.IsSystem()) {
            text += Shown(database->Describe(object));
            for (const auto& row : ReadRows(*database, object.name)) {
                for (const jet::Value& value : row) {
                    text += test::Shown(value) + "|";
                }
                text += "\n";
            }
        }
    }
    return text;
}

inline Disk FilledDisk() {
    SessionBench bench;
    for (const char* statement : kSetup) {
        bench.Run(statement);
    }
    bench.Run("BEGIN TRANSACTION");
    for (int i = 0; i < 40; ++i) {
        const std::string n = std::to_string(i);
        bench.Run("INSERT INTO p VALUES (" + n + ", 'name " + n + "', '" + std::string(30 * (i % 7), 'm') +
                  "')");
        bench.Run("INSERT INTO c (pid, t) VALUES (" + n + ", 'text " + n + "')");
    }
    bench.Run("COMMIT");
    bench.Close();
    const std::string bytes = ReadWholeFile(bench.Path());
    Disk disk;
    disk.database.assign(bytes.begin(), bytes.end());
    return disk;
}

}  // namespace tavrel::testing
