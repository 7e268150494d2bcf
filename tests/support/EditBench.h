// A database open for changing below the level of statements: rows, relations and definitions, each change
// one transaction.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "jet/check/Check.h"
#include "jet/session/SchemaEditor.h"
#include "jet/table/RelationRules.h"
#include "jet/table/TableEdits.h"

namespace tavrel::testing {

class EditBench {
  public:
    explicit EditBench(const std::string& path)
        : database(jet::Database::OpenForChanges(path, {.password = {}, .checkPassword = false})),
          edits(database->Pager(), database->Catalog(), database->Header().ownerKey),
          relations(database->Catalog(),
                    [this](jet::PageNumber page) -> jet::EditedTable& { return edits.Edit(page); }),
          schema(*database, edits) {}

    /// Does the work wholly or not at all; gives back the number of the error that stopped it, 0 when none
    /// did.
    std::int32_t Change(const std::function<void()>& work) {
        jet::Pager& pager = database->Pager();
        pager.BeginTransaction();
        pager.BeginStatement();
        relations.Begin();
        try {
            work();
            edits.Save();
        } catch (const Error& error) {
            pager.RollbackStatement();
            pager.RollbackTransaction();
            edits.Forget();
            lastError = error.Description();
            return error.Number();
        }
        pager.CommitStatement();
        pager.CommitTransaction(false);
        return 0;
    }

    jet::EditedTable& Table(const std::string& name) {
        return edits.Edit(database->Catalog().FindTable(name)->DefinitionPage());
    }

    /// What the engine's own check calls damage, a line each; notes too when `notes` is set.
    std::string Findings(bool notes = false) {
        database->Catalog().Forget();
        std::string lines;
        for (const jet::Finding& finding : jet::CheckDatabase(*database).findings) {
            if (notes || finding.severity == jet::Finding::Severity::Error) {
                lines += finding.where + ": " + finding.text + "\n";
            }
        }
        return lines;
    }

    std::unique_ptr<jet::Database> database;
    jet::TableEdits edits;
    jet::RelationRules relations;
    jet::SchemaEditor schema;
    std::string lastError;
};

}  // namespace tavrel::testing
