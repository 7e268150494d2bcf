// A database that is open for changing by statements.
//
// Every statement is all or nothing, in memory and, through the journal, in the file.  Nobody else has the
// file open meanwhile.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "jet/database/Database.h"
#include "jet/sql/statement/Execute.h"
#include "jet/sql/values/TextComparer.h"
#include "jet/table/RelationRules.h"
#include "jet/table/TableEdits.h"

namespace tavrel::jet {

class SessionTable;

class EditSession : public sql::Tables, public sql::Transactions {
  public:
    /// What a finished transaction is worth when the power fails; being killed never harms.
    enum class Durability {
        OnMedium,   ///< each is on the medium when its statement returns: the rule, and right for every file
                    ///< that somebody wants to keep
        WrittenOut  ///< the system brings them there when it likes, in any order: a power failure may leave
                    ///< no database at all.  For working copies alone, which can be made anew
    };

    /// Opens an existing database for changing, after undoing what an unfinished transaction has left.  The
    /// first change throws 3428 when the end of the file is missing (WholeFile.h). `unknown`: stand-in
    /// weights are for copies that nobody works with afterwards, see the README. Throws what Database::Open
    /// throws, and 3045 when anybody has the file open.
    static std::unique_ptr<EditSession> Open(const std::string& path, const OpenOptions& options = {},
                                             Durability durability = Durability::OnMedium,
                                             UnknownWeights unknown = UnknownWeights::Refuse);
    /// The same on a database that is open already, by a file that is held for writing; its pager keeps its
    /// journal where SetJournal has said.
    static std::unique_ptr<EditSession> On(std::unique_ptr<Database> database, Durability durability,
                                           UnknownWeights unknown = UnknownWeights::Refuse);
    /// Rolls an open transaction back.
    ~EditSession() override;
    EditSession(const EditSession&) = delete;
    EditSession& operator=(const EditSession&) = delete;

    [[nodiscard]] Database& File() { return *database_; }
    sql::ExecuteResult Execute(std::string_view statement);
    /// Statements that look at more rows fail with 3035; 0 = no limit.
    void LimitRowVisits(std::uint64_t rows) { workspace_->maxRowVisits = rows; }
    /// Tables with an index to which this session has given stand-in weights.
    [[nodiscard]] const std::set<std::string>& TablesWithStandIns() { return edits_.Context().standIns; }

    // ---- sql::Tables
    std::shared_ptr<sql::TableAccess> Find(std::string_view name) override;
    std::unique_ptr<sql::TableChanges> Change(sql::TableAccess& table,
                                              std::span<const std::size_t> updated) override;

    /// Transactions that statements have begun and not ended, one inside the other: 0 to 5.
    [[nodiscard]] unsigned TransactionDepth() const { return transactions_; }

    // ---- sql::Transactions
    /// Throws 3094 for a sixth transaction inside five others.
    void Begin() override;
    void Commit() override;
    void Rollback() override;
    void BeginStatement() override;
    void EndStatement() override;
    void UndoStatement() noexcept override;

    // ---- for those who change rows and definitions
    [[nodiscard]] TableEdits& Edits() { return edits_; }
    [[nodiscard]] RelationRules& Relations() { return relations_; }

  private:
    static constexpr unsigned kMaxTransactions = 5;

    EditSession(std::unique_ptr<Database> database, Durability durability, UnknownWeights unknown);
    void CountCommit();
    void WriteOut();

    std::unique_ptr<Database> database_;
    Durability durability_;
    TableEdits edits_;
    RelationRules relations_;
    std::unordered_map<PageNumber, std::shared_ptr<SessionTable>>
        tables_;  ///< met since the last change of definitions
    std::uint64_t catalogEdition_ = 0;
    bool isWhole_ = false;       ///< the end of the file is there, as far as anybody has looked
    unsigned transactions_ = 0;  ///< begun by statements, one inside the other
    sql::TextComparer texts_;
    std::unique_ptr<sql::SchemaChanges> schema_;
    std::unique_ptr<sql::Workspace> workspace_;
};

}  // namespace tavrel::jet
