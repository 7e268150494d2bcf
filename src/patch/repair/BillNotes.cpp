#include "patch/log/Report.h"
#include "patch/log/UpdateLog.h"
#include "patch/repair/Query.h"
#include "patch/repair/Repairs.h"

namespace tavrel::patch {

namespace {

// Texts go between apostrophes as they were read.  One that holds an apostrophe breaks its statement; the
// routine then reports that and stops.

constexpr const char* kReceivable =
    "SELECT b.code, p.dealdate, c.compalias"
    " FROM billnote AS b, payment AS p, customer AS c"
    " WHERE p.subcode = b.code AND p.ccode = c.code"
    " AND b.part = 1"
    " AND b.outtype = 0";

std::string ReceivableUpdate(const Query& note) {
    return "UPDATE billnote SET outtype = 2,outdate = '" + note.Text(1) + "',outbigo = '" + note.Text(2) +
           "' WHERE code = '" + note.Text(0) + "'";
}

constexpr const char* kPayable =
    "SELECT b.code"
    " FROM billnote AS b, payment AS p"
    " WHERE p.subcode = b.code"
    " AND b.part = 0"
    " AND b.outtype = 0";

std::string PayableUpdate(const Query& note) {
    return "UPDATE billnote SET outtype = 2 WHERE code = '" + note.Text(0) + "'";
}

/// One part: the notes of a query, the update of each, a block in the log when there are any.
void UpdateNotes(const char* statement, const char* header, std::string (*update)(const Query&)) {
    Query notes(statement);
    if (!notes.HasRows()) {
        return;
    }
    UpdateLog log;
    log.Line("");
    log.Line(header);
    log.Line("시작: " + TimeText());
    for (; !notes.AtEnd(); notes.MoveNext()) {
        if (modDBsub::DBExecute(update(notes)) > 0) {
            log.Line(notes.Text(0));
        }
    }
    log.Line("완료: " + TimeText());
}

}  // namespace

void BillNoteSubRtn() {
    try {
        UpdateNotes(kReceivable, "[받을어음update ]", ReceivableUpdate);
        UpdateNotes(kPayable, "[지급어음update ]", PayableUpdate);
    } catch (const Error& error) {
        ReportFailure(error, "BillNoteSubRtn", kPatchModule);
    }
}

}  // namespace tavrel::patch
