#include "db/Connection.h"

#include <algorithm>
#include <limits>

#include "db/AdoErrors.h"
#include "db/ConnectionString.h"
#include "db/FetchedRows.h"
#include "db/StatementRunner.h"
#include "text/Case.h"

namespace tavrel::db {

Connection::Connection() = default;
Connection::~Connection() = default;

void Connection::Open(const std::string& connectionString, const std::string& /*user*/,
                      const std::string& /*password*/, std::int32_t /*options*/) {
    if (runner_) {
        throw AdoError(adoErrors::kObjectOpen);
    }
    const ConnectionSettings settings =
        ParseConnectionString(connectionString.empty() ? ConnectionString : connectionString);
    if (!text::EqualIgnoringCase(settings.provider, kJetProvider)) {
        throw AdoError(adoErrors::kProviderNotFound);
    }
    const ChangeOptions options{.onMedium = SyncCommits, .standIns = StandInWeights};
    runner_ = AsProvider(
        [&] { return settings.readOnly ? OpenForReading(settings) : OpenForChanges(settings, options); });
}

Recordset Connection::Execute(const std::string& statement, std::int32_t* recordsAffected,
                              std::int32_t /*options*/) {
    return Run(statement, recordsAffected, FetchedRows::kAll);
}

Recordset Connection::ExecuteFirstRow(const std::string& statement) {
    return Run(statement, nullptr, 1);
}

Recordset Connection::Run(const std::string& statement, std::int32_t* recordsAffected,
                          std::uint64_t maxRows) {
    if (!runner_) {
        throw AdoError(adoErrors::kObjectClosed);
    }
    return AsProvider([&] {
        const jet::sql::ExecuteResult result = runner_->Execute(statement);
        Recordset rows = result.rows ? Recordset(*result.rows, maxRows) : Recordset();
        if (recordsAffected != nullptr) {
            constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
            *recordsAffected = static_cast<std::int32_t>(std::min(result.affected, kMost));
        }
        return rows;
    });
}

unsigned Connection::TransactionDepth() const {
    return runner_ ? runner_->TransactionDepth() : 0;
}

void Connection::Close() {
    if (!runner_) {
        throw AdoError(adoErrors::kObjectClosed);
    }
    runner_.reset();
}

}  // namespace tavrel::db
