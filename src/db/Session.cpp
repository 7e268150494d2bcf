#include "db/Session.h"

#include <algorithm>

#include "db/AdoCodes.h"
#include "db/AdoErrors.h"
#include "db/ConnectionString.h"
#include "db/NextCode.h"
#include "db/SessionFault.h"
#include "jet/sql/syntax/PlainName.h"
#include "jet/sql/values/Values.h"
#include "text/ProcedureError.h"

namespace tavrel::modDBsub {

std::unique_ptr<db::Connection> gDBConn;

namespace {

constexpr std::int32_t kUseClient = 3;
constexpr std::int32_t kTimeoutSeconds = 30;
constexpr std::int32_t kInvalidCall = 5;

/// The session, about to be sent a statement.
db::Connection& SessionFor(StatementKind kind, const std::string& statement) {
    if (!gDBConn) {
        throw db::AdoError(db::adoErrors::kObjectNotSet);
    }
    TellListener(kind, statement);
    return *gDBConn;
}

jet::Value FirstValue(StatementKind kind, const std::string& statement) {
    const db::Recordset rows =
        InSession([&] { return SessionFor(kind, statement).ExecuteFirstRow(statement); });
    if (rows.Eof()) {
        return std::string();
    }
    jet::Value value = rows.Fields(0).Value;
    return jet::IsNull(value) ? jet::Value(std::string()) : value;
}

/// The provider's errors for a column, a statement or a table that makes no sense to it.
bool MeansMissing(const Error& error) {
    using namespace db::adoNumbers;
    constexpr std::int32_t kNumbers[] = {kParameterMissing, kErrorsInCommand, kNoTable};
    return std::ranges::find(kNumbers, error.Number()) != std::end(kNumbers);
}

}  // namespace

bool DBOpenADO(const std::string& path, const std::string& password, SessionFile file) {
    ForgetFault();
    gDBConn = std::make_unique<db::Connection>();
    gDBConn->ConnectionString = db::ConnectionStringFor(path, password);
    gDBConn->ConnectionTimeout = kTimeoutSeconds;
    gDBConn->CursorLocation = kUseClient;
    gDBConn->SyncCommits = file == SessionFile::OnMedium;
    gDBConn->StandInWeights = file == SessionFile::WorkingCopy;
    gDBConn->Open("", "", "", -1);
    return true;
}

jet::Value DBGetValue(const std::string& statement) {
    return FirstValue(StatementKind::Value, statement);
}

std::string DBNullToStr(const jet::Value& value) {
    if (jet::IsNull(value)) {
        return {};
    }
    if (const bool* truth = std::get_if<bool>(&value)) {
        return *truth ? "True" : "False";
    }
    if (std::holds_alternative<jet::ByteVector>(value)) {
        throw db::AdoError(db::adoErrors::kTypeMismatch);
    }
    return jet::sql::ValueText(value);
}

std::int32_t DBExecute(const std::string& statement) {
    constexpr std::string_view kTruncate = "TRUNCATE ";
    const std::string sent =
        statement.starts_with(kTruncate) ? "DELETE FROM " + statement.substr(kTruncate.size()) : statement;
    std::int32_t affected = 0;
    InSession([&] { return SessionFor(StatementKind::Execute, sent).Execute(sent, &affected, -1); });
    return affected;
}

std::int32_t DBCount(const std::string& table, const std::string& condition) {
    std::string statement = "SELECT COUNT(*) FROM " + table;
    if (!condition.empty()) {
        statement += " WHERE " + condition;
    }
    const jet::Value count = FirstValue(StatementKind::Count, statement);
    return db::AsProvider([&] { return jet::sql::LongOf(count); });
}

std::string DBNextCode(const std::string& table, const std::string& column, std::int16_t codeLength,
                       const std::string& extraCondition, bool prefixMode) {
    const int width = prefixMode ? codeLength - 1 : codeLength;
    const std::string code = prefixMode ? "LEFT(" + column + ", " + std::to_string(width) + ")" : column;
    std::string statement = "SELECT MAX(" + code + ") FROM " + table + " WHERE LEN(" + column +
                            ") = " + std::to_string(codeLength) + " AND ISNUMERIC(" + column + ")";
    if (!extraCondition.empty()) {
        statement += " AND " + extraCondition;
    }
    // A table without rows has Null for its highest code; that reads as 0, so that the first code is 1.
    return db::CodeBehind(DBNullToStr(DBGetValue(statement)), width);
}

bool DBChkExistence(std::int32_t kind, const std::string& table, const std::string& column) {
    if (kind != kTableKind && kind != kColumnKind) {
        throw MakeError(kInvalidCall);
    }
    const std::string what = kind == kTableKind ? "*" : column;
    try {
        DBGetValue("SELECT " + what + " FROM " + table);
    } catch (const Error& error) {
        if (MeansMissing(error)) {
            return false;
        }
        ShowMessage({.text = ProcedureErrorText(error, "DBChkExistence", "Module modDBUpdate_ADO")});
        return true;
    }
    // "a b" runs where there is a column a, and answers nothing about one of that name.
    return jet::sql::IsTableName(table) && (kind == kTableKind || jet::sql::IsColumnName(column));
}

}  // namespace tavrel::modDBsub
