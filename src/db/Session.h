// The SQL session: one connection, and the helpers through which everything talks to it.  One thread only.
//
// Who traps what: DBOpenRs tells the user every failure by itself and answers -1; DBChkExistence takes a
// missing object for an answer and tells the user any other failure; everything else lets the provider's
// Error through to its caller.  Error 91 is raised when no connection was ever opened, 3704 when the latest
// could not be.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "db/Connection.h"
#include "db/Recordset.h"
#include "db/SessionHooks.h"
#include "jet/catalog/Value.h"

namespace tavrel::modDBsub {

/// The session's connection.  Only DBOpenADO sets it; the last one lives until the program ends.
extern std::unique_ptr<db::Connection> gDBConn;

/// What a session's file is to the one who owns it.
enum class SessionFile : std::uint8_t {
    Written,      ///< written out after each statement; the system brings it to the medium when it likes
    OnMedium,     ///< somebody's only copy: on the medium when a statement or a transaction has ended
    WorkingCopy,  ///< nobody keeps it: like Written, and characters of unknown sort weight get stand-ins
};

/// Opens a database as the session.  The session before it is closed first, whether this one can be opened or
/// not. Returns true; throws the provider's Error, and the session is then one that is not open.
bool DBOpenADO(const std::string& path, const std::string& password, SessionFile file = SessionFile::Written);

/// First column of the first row; the empty text when there is no row or the value is Null.  Rows behind the
/// first are not read.  Throws Error: the provider's, and 3704 when the statement is no query.
jet::Value DBGetValue(const std::string& statement);

/// The empty text for Null, else the value as text: numbers in plain decimal, dates yyyy-mm-dd hh:nn:ss,
/// Booleans True and False.  Throws Error 13 for bytes.
std::string DBNullToStr(const jet::Value& value);

/// Runs a statement; returns the number of rows affected.  "TRUNCATE " at the very beginning, in exactly this
/// form, is sent as "DELETE FROM ".  Throws the provider's Error.
std::int32_t DBExecute(const std::string& statement);

/// Closes the result set when it is open, and empties the handle.
void DBCloseRs(std::unique_ptr<db::Recordset>& rs);

/// Opens a query into `rs`, closing what it held; returns the number of rows.  Traps every Error: a message,
/// -1, and `rs` holds a result set that is not open.  A statement that is no query is run and gives -1
/// without a message. Callers pass cursor type 0, lock type 1, options 1.
std::int32_t DBOpenRs(std::unique_ptr<db::Recordset>& rs, const std::string& statement,
                      std::int32_t cursorType, std::int32_t lockType, std::int32_t options);

/// Number of rows of a table, of those that meet the condition when it is not empty.  Throws the provider's
/// Error.
std::int32_t DBCount(const std::string& table, const std::string& condition);

/// The next free code of a column of numeric texts of one length: the highest plus one, in as many digits as
/// the length (prefix mode: one less, over all but the last characters) or as it needs.  An empty extra
/// condition adds nothing.  Throws the provider's Error, and 6 when the highest is no finite number.
std::string DBNextCode(const std::string& table, const std::string& column, std::int16_t codeLength,
                       const std::string& extraCondition, bool prefixMode);

/// Kinds of objects that DBChkExistence knows.
inline constexpr std::int32_t kTableKind = 1;
inline constexpr std::int32_t kColumnKind = 2;

/// Whether a table (kind 1) or a column of it (kind 2) can be selected from; names go into the query as they
/// are.  At most one row is read.  False when the provider says that there is no such thing or that it makes
/// no sense; any other failure is told to the user and counts as existing.  Throws Error 5 for another kind.
bool DBChkExistence(std::int32_t kind, const std::string& table, const std::string& column);

}  // namespace tavrel::modDBsub
