#include "Contestant.h"
#include "jet/session/EditSession.h"

namespace tavrel::bench {

namespace {

class TavrelContestant : public Contestant {
  public:
    TavrelContestant(const std::string& path, Safety safety)
        : session_(jet::EditSession::Open(path, {},
                                          safety == Safety::Synced
                                              ? jet::EditSession::Durability::OnMedium
                                              : jet::EditSession::Durability::WrittenOut)) {}

    void Execute(const std::string& statement) override { session_->Execute(statement); }

    std::uint64_t Fetch(const std::string& query) override {
        const jet::sql::ExecuteResult result = session_->Execute(query);
        const std::size_t columns = result.rows->Columns().size();
        std::uint64_t rows = 0;
        for (; result.rows->Next(); ++rows) {
            for (std::size_t column = 0; column < columns; ++column) {
                result.rows->Get(column);
            }
        }
        return rows;
    }

  private:
    std::unique_ptr<jet::EditSession> session_;
};

}  // namespace

std::unique_ptr<Contestant> MakeTavrel(const std::string& path, Safety safety) {
    jet::Database::Create(path)->Flush();
    return std::make_unique<TavrelContestant>(path, safety);
}

}  // namespace tavrel::bench
