// Opening a database to read its structure, with the failure told to the user.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "db/DBEngine.h"
#include "platform/Dialogs.h"

namespace tavrel::modCmpDB {

/// Opens `path` into `db`.  The password goes to the engine as typed.  False when that fails: the message box
/// has shown the engine's number and text, and `db` is empty.
bool MyOpenDB(std::unique_ptr<db::Database>& db, const std::string& path, std::int16_t options,
              const std::string& password, platform::MessageBox& messages);

/// Closes the database and empties `db`; nothing when it is empty already.
void CloseDatabase(std::unique_ptr<db::Database>& db);

}  // namespace tavrel::modCmpDB
