// The engine as DAO shows it: open a database and look at its structure.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "db/TableDefs.h"
#include "jet/compact/Compact.h"

namespace tavrel::db {

/// An open database.  Closed by Close or when the object goes.
class Database {
  public:
    explicit Database(std::unique_ptr<jet::Database> file);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// Read once and kept.  Throws Error when the catalog cannot be read, or after Close.
    [[nodiscard]] db::TableDefs& TableDefs();
    /// Gives the file back; closing twice is harmless.
    void Close();

    /// The file below; throws Error (91) after Close.
    [[nodiscard]] jet::Database& File();

  private:
    std::unique_ptr<jet::Database> file_;
    std::optional<db::TableDefs> tableDefs_;
};

/// One per process, made on first use and kept.
class DBEngine {
  public:
    static DBEngine& Instance();

    /// Opens a file for reading; neither the options (0 = shared) nor the read-only flag makes it more than
    /// that. In the connect text what follows ";pwd=" is the password, to the end.  Throws Error with the
    /// engine's number.
    std::unique_ptr<Database> OpenDatabase(const std::string& path, std::int16_t options = 0,
                                           std::optional<bool> readOnly = {},
                                           const std::optional<std::string>& connect = {});

    /// Writes a compacted copy, repaired where the source is damaged.  The destination must not exist.  The
    /// locale of the destination and the options change nothing; of the source's locale ";pwd=" and the
    /// password behind it count.  Throws Error with the engine's number; there is then no destination.
    jet::CompactReport CompactDatabase(const std::string& source, const std::string& destination,
                                       const std::optional<std::string>& destinationLocale = {},
                                       const std::optional<std::int32_t>& options = {},
                                       const std::optional<std::string>& sourceLocale = {});

    DBEngine(const DBEngine&) = delete;
    DBEngine& operator=(const DBEngine&) = delete;

  private:
    DBEngine() = default;
};

}  // namespace tavrel::db
