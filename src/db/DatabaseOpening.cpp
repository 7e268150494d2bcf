#include "db/DatabaseOpening.h"

#include "db/ErrorMessage.h"
#include "text/Error.h"

namespace tavrel::modCmpDB {

bool MyOpenDB(std::unique_ptr<db::Database>& db, const std::string& path, std::int16_t options,
              const std::string& password, platform::MessageBox& messages) {
    db.reset();
    try {
        db::DBEngine& engine = db::DBEngine::Instance();
        db = password.empty() ? engine.OpenDatabase(path, options)
                              : engine.OpenDatabase(path, options, false, ";pwd=" + password);
        return true;
    } catch (const Error& error) {
        messages.Say(db::ProcedureErrorText(error, "MyOpenDB", "Module modCmpDB"));
        return false;
    }
}

void CloseDatabase(std::unique_ptr<db::Database>& db) {
    if (db) {
        db->Close();
        db.reset();
    }
}

}  // namespace tavrel::modCmpDB
