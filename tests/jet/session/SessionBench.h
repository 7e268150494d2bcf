// A database and a session on it, for tests that speak SQL.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "jet/check/Check.h"
#include "jet/session/EditSession.h"
#include "support/DatabaseBuilder.h"
#include "support/JetTools.h"
#include "support/MemoryTables.h"
#include "support/TemporaryFolder.h"

namespace tavrel::testing {

class SessionBench {
  public:
    /// On a new, empty database.
    explicit SessionBench(const jet::CreateOptions& options = {}) : path_(folder_.File("session.mdb")) {
        jet::Database::Create(path_, options)->Flush();
        Reopen();
    }

    /// On a session that is open already.
    SessionBench(std::unique_ptr<jet::EditSession> session, std::string path)
        : path_(std::move(path)), session_(std::move(session)) {}

    void Close() { session_.reset(); }
    void Reopen(jet::UnknownWeights unknown = jet::UnknownWeights::Refuse) {
        Close();
        session_ = jet::EditSession::Open(path_, {.password = {}, .checkPassword = false},
                                          jet::EditSession::Durability::WrittenOut, unknown);
    }

    [[nodiscard]] const std::string& Path() const { return path_; }
    jet::EditSession& Session() { return *session_; }
    jet::Database& File() { return session_->File(); }

    /// Rows as a|b;c|d, Null as ~; the number of rows affected for statements without rows.  Throws what the
    /// statement throws.
    std::string Run(std::string_view statement) {
        jet::sql::ExecuteResult result = session_->Execute(statement);
        if (!result.rows) {
            return std::to_string(result.affected);
        }
        std::string text;
        while (result.rows->Next()) {
            text += text.empty() ? "" : ";";
            for (std::size_t i = 0; i < result.rows->Columns().size(); ++i) {
                text += (i == 0 ? "" : "|") + test::Shown(result.rows->Get(i));
            }
        }
        return text;
    }

    /// The number of the error that a statement raises, its rows read; 0 for none.
    std::int32_t Failure(std::string_view statement) {
        return ErrorOf([&] { Run(statement); });
    }

    /// What the engine's own check finds, notes included, a line each.
    std::string Findings() { return FindingsOf(File()); }

    /// What both checkers find; the other one reads the file as it stands on the disk.
    std::string AllFindings() {
        return Findings() + (HaveJetTools() ? StrictFindings(path_) : std::string());
    }

    static std::string FindingsOf(jet::Database& database) {
        std::string lines;
        for (const jet::Finding& finding : jet::CheckDatabase(database).findings) {
            lines += finding.where + ": " + finding.text + "\n";
        }
        return lines;
    }

  private:
    TemporaryFolder folder_;
    std::string path_;
    std::unique_ptr<jet::EditSession> session_;
};

}  // namespace tavrel::testing
