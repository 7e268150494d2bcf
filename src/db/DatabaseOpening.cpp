#include "db/DatabaseOpening.h"

#include "text/Error.h"
#include "text/ProcedureError.h"

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
        messages.Say(ProcedureErrorText(error, "MyOpenDB", "Module modCmpDB"));
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
