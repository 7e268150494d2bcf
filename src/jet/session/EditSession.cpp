#include "jet/session/EditSession.h"

#include "jet/catalog/WholeFile.h"
#include "jet/session/SchemaEditor.h"
#include "jet/session/SessionTable.h"
#include "jet/sql/statement/TableChanges.h"

namespace tavrel::jet {

namespace {

/// Rows of one table on their way from the executor to the file.
class SessionChanges : public sql::TableChanges {
  public:
    SessionChanges(EditSession& session, const SessionTable& table, std::span<const std::size_t> updated)
        : relations_(session.Relations()),
          table_(session.Edits().Edit(table.Definition().page)),
          places_(table.Places()),
          values_(places_.size()) {
        for (const std::size_t column : updated) {
            updated_.push_back(places_[column]);
        }
        byPage_ = !updated_.empty() && table_.HoldsAlone(updated_);
    }

    std::optional<std::int32_t> InsertRow(std::span<const Value> values) override {
        for (std::size_t column = 0; column < places_.size(); ++column) {
            values_[places_[column]] = values[column];
        }
        relations_.Insert(table_, values_);
        return table_.LastNumber();
    }

    bool UpdateRow(sql::RowId row, std::span<const Value> values) override {
        if (byPage_) {
            UpdateLater(PointerOf(row), values);
            return true;
        }
        changes_.clear();
        for (std::size_t i = 0; i < updated_.size(); ++i) {
            changes_.push_back(table_.Encode(updated_[i], values[i]));
        }
        return relations_.Update(table_, PointerOf(row), changes_);
    }

    bool DeleteRow(sql::RowId row) override { return relations_.Delete(table_, PointerOf(row)); }
    void Finish() override { UpdatePage(); }

  private:
    /// Rows come page by page: what changes in one is written at once.
    void UpdateLater(RowPointer at, std::span<const Value> values) {
        if (waiting_ > 0 && (at.page != page_ || at.row <= rows_[waiting_ - 1].row)) {
            UpdatePage();
        }
        page_ = at.page;
        if (waiting_ == rows_.size()) {
            rows_.emplace_back();
        }
        RowChange& row = rows_[waiting_++];
        row.row = at.row;
        row.fields.clear();
        for (std::size_t i = 0; i < updated_.size(); ++i) {
            row.fields.push_back(table_.Encode(updated_[i], values[i]));
        }
    }

    void UpdatePage() {
        if (waiting_ > 0) {
            table_.UpdatePage(page_, {rows_.data(), waiting_});
            waiting_ = 0;
        }
    }

    RelationRules& relations_;
    EditedTable& table_;
    const std::vector<std::size_t>& places_;  ///< in the definition, by column in the order that users see
    std::vector<std::size_t> updated_;        ///< the same of the updated columns
    std::vector<Value> values_;               ///< by place
    std::vector<FieldChange> changes_;
    bool byPage_ = false;  ///< updates touch nothing but their rows
    PageNumber page_ = 0;
    std::vector<RowChange> rows_;  ///< of that page, the first `waiting_` of them to be changed
    std::size_t waiting_ = 0;
};

}  // namespace

std::unique_ptr<EditSession> EditSession::Open(const std::string& path, const OpenOptions& options,
                                               Durability durability, UnknownWeights unknown) {
    return On(Database::OpenForChanges(path, options), durability, unknown);
}

std::unique_ptr<EditSession> EditSession::On(std::unique_ptr<Database> database, Durability durability,
                                             UnknownWeights unknown) {
    return std::unique_ptr<EditSession>(new EditSession(std::move(database), durability, unknown));
}

EditSession::EditSession(std::unique_ptr<Database> database, Durability durability, UnknownWeights unknown)
    : database_(std::move(database)),
      durability_(durability),
      edits_(database_->Pager(), database_->Catalog(), database_->Header().ownerKey),
      relations_(database_->Catalog(), [this](PageNumber page) -> EditedTable& { return edits_.Edit(page); }),
      texts_(database_->Header().sortOrder),
      schema_(std::make_unique<SchemaEditor>(*database_, edits_)),
      workspace_(std::make_unique<sql::Workspace>(sql::Workspace{.tables = *this,
                                                                 .schema = *schema_,
                                                                 .transactions = *this,
                                                                 .texts = texts_,
                                                                 .now = {},
                                                                 .identity = {}})) {
    edits_.Context().unknown = unknown;
}

EditSession::~EditSession() {
    UndoStatement();
    while (database_->Pager().InTransaction()) {
        database_->Pager().RollbackTransaction();
    }
}

sql::ExecuteResult EditSession::Execute(std::string_view statement) {
    return sql::Execute(statement, *workspace_);
}

std::shared_ptr<sql::TableAccess> EditSession::Find(std::string_view name) {
    if (catalogEdition_ != database_->Catalog().Edition()) {
        tables_.clear();
        catalogEdition_ = database_->Catalog().Edition();
    }
    const CatalogObject* object = database_->Catalog().FindTable(name);
    if (object == nullptr) {
        return nullptr;
    }
    std::shared_ptr<SessionTable>& table = tables_[object->DefinitionPage()];
    if (table == nullptr) {
        table = std::make_shared<SessionTable>(*database_, *object);
    }
    return table;
}

std::unique_ptr<sql::TableChanges> EditSession::Change(sql::TableAccess& table,
                                                       std::span<const std::size_t> updated) {
    const CatalogObject* object = database_->Catalog().FindTable(table.Name());
    if (object == nullptr || object->IsSystem()) {
        throw MakeError(errors::kReadOnly, {}, table.Name());
    }
    return std::make_unique<SessionChanges>(*this, dynamic_cast<SessionTable&>(table), updated);
}

// ---- statements and transactions

void EditSession::Begin() {
    if (transactions_ == kMaxTransactions) {
        throw MakeError(errors::kTooManyTransactions);
    }
    database_->Pager().BeginTransaction();
    ++transactions_;
}

void EditSession::Commit() {
    if (transactions_ == 0) {
        throw MakeError(errors::kNoTransaction);
    }
    if (transactions_ > 1) {
        database_->Pager().CommitTransaction(false);
        --transactions_;
        return;
    }
    transactions_ = 0;
    WriteOut();
}

void EditSession::Rollback() {
    if (transactions_ == 0) {
        throw MakeError(errors::kNoTransaction);
    }
    --transactions_;
    database_->Pager().RollbackTransaction();
    edits_.Forget();
}

void EditSession::BeginStatement() {
    if (!isWhole_) {
        RequireWholeFile(database_->Pager(), database_->Catalog());
        isWhole_ = true;
    }
    if (transactions_ == 0) {
        database_->Pager().BeginTransaction();
    }
    database_->Pager().BeginStatement();
    relations_.Begin();
}

void EditSession::EndStatement() {
    edits_.Save();
    database_->Pager().CommitStatement();
    if (transactions_ == 0) {
        WriteOut();
    }
}

/// Ends the transaction.  When that fails everything is as before it.
void EditSession::WriteOut() {
    Pager& pager = database_->Pager();
    try {
        CountCommit();
        pager.CommitTransaction(durability_ == Durability::OnMedium);
    } catch (...) {
        if (pager.InTransaction()) {
            pager.RollbackTransaction();
        }
        edits_.Forget();
        throw;
    }
}

/// Tells other sessions that something has changed: the counter of user slot 0 in the header page.
void EditSession::CountCommit() {
    constexpr std::size_t kCounters = 0xE00;
    Page& header = database_->Pager().Write(0);
    PutU16(header, kCounters, static_cast<std::uint16_t>(U16(header, kCounters) + 1));
}

void EditSession::UndoStatement() noexcept {
    Pager& pager = database_->Pager();
    if (pager.InStatement()) {
        pager.RollbackStatement();
    }
    if (transactions_ == 0 && pager.InTransaction()) {
        pager.RollbackTransaction();
    }
    edits_.Forget();
}

}  // namespace tavrel::jet
