// The helpers that work on result sets which their callers hold.
#include <array>

#include "db/AdoCodes.h"
#include "db/Session.h"
#include "db/SessionFault.h"

namespace tavrel::modDBsub {

namespace {

/// How a failure to open a query is told.  A text that is null is the error's description.
struct OpenFailure {
    std::int32_t number;
    const char* title;
    const char* text;
    bool showsStatement;
};

constexpr std::array kOpenFailures = {
    OpenFailure{91, "MDB 오류", "Data Base MDB가 선언되지 않았습니다.", true},
    OpenFailure{3011, "Query", "Jet Data Base Engine의 식을 확인하세요.", true},
    OpenFailure{3261, "MDB 오류", nullptr, true},
    OpenFailure{
        db::adoNumbers::kErrorsInCommand, "Error",
        "입력된 DB 데이터 중 특수문자 또는 지원하지 않는 언어(일본어, 기타 외국어 등)가 존재하거나, 기타 "
        "실행오류 입니다. ",
        false},
};
constexpr OpenFailure kAnyOther{0, "ERROR", nullptr, true};

const OpenFailure& FailureFor(std::int32_t number) {
    for (const OpenFailure& failure : kOpenFailures) {
        if (failure.number == number) {
            return failure;
        }
    }
    return kAnyOther;
}

void TellFailure(const Error& error, const std::string& statement) {
    const OpenFailure& failure = FailureFor(error.Number());
    std::string text = failure.text != nullptr ? failure.text : error.Description();
    if (failure.showsStatement) {
        text += '\r' + statement;
    }
    ShowMessage(
        {.text = std::move(text), .icon = platform::MessageIcon::Information, .title = failure.title});
}

}  // namespace

void DBCloseRs(std::unique_ptr<db::Recordset>& rs) {
    if (rs && rs->State() == db::adStateOpen) {
        rs->Close();
    }
    rs.reset();
}

std::int32_t DBOpenRs(std::unique_ptr<db::Recordset>& rs, const std::string& statement,
                      std::int32_t cursorType, std::int32_t lockType, std::int32_t options) {
    DBCloseRs(rs);
    rs = std::make_unique<db::Recordset>();
    if (gDBConn) {
        TellListener(StatementKind::Open, statement);
    }
    try {
        InSession([&] { rs->Open(statement, gDBConn.get(), cursorType, lockType, options); });
    } catch (const Error& error) {
        TellFailure(error, statement);
        return -1;
    }
    // A statement without rows leaves the recordset closed, and a closed one has no count to ask for.
    return rs->State() == db::adStateOpen ? rs->RecordCount() : -1;
}

}  // namespace tavrel::modDBsub
