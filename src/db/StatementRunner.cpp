#include "db/StatementRunner.h"

#include "jet/session/EditSession.h"
#include "jet/session/ReadSession.h"

namespace tavrel::db {

namespace {

using namespace jet;

OpenOptions OptionsOf(const ConnectionSettings& settings) {
    return {.password = settings.password};
}

template <class Session>
class SessionRunner : public StatementRunner {
  public:
    explicit SessionRunner(std::unique_ptr<Session> session) : session_(std::move(session)) {}
    sql::ExecuteResult Execute(std::string_view statement) override { return session_->Execute(statement); }
    [[nodiscard]] unsigned TransactionDepth() const override { return session_->TransactionDepth(); }

  private:
    std::unique_ptr<Session> session_;
};

}  // namespace

std::unique_ptr<StatementRunner> OpenForChanges(const ConnectionSettings& settings,
                                                const ChangeOptions& options) {
    return std::make_unique<SessionRunner<EditSession>>(EditSession::Open(
        settings.dataSource, OptionsOf(settings),
        options.onMedium ? EditSession::Durability::OnMedium : EditSession::Durability::WrittenOut,
        options.standIns ? UnknownWeights::StandIn : UnknownWeights::Refuse));
}

std::unique_ptr<StatementRunner> OpenForReading(const ConnectionSettings& settings) {
    return std::make_unique<SessionRunner<ReadSession>>(
        ReadSession::Open(settings.dataSource, OptionsOf(settings)));
}

}  // namespace tavrel::db
