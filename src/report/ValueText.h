// A stored value as text: the canonical form that row digests are made of, JSON, and CSV.
#pragma once

#include <string>

#include "jet/catalog/TableDefinition.h"
#include "jet/catalog/Value.h"
#include "report/JsonWriter.h"

namespace tavrel::report {

/// The value as row digests take it, null "N":
///
/// | type                 | text                                                              |
/// |----------------------|-------------------------------------------------------------------|
/// | Boolean              | 1 or 0                                                            |
/// | Byte, Integer, Long  | decimal                                                           |
/// | Currency             | the stored 64-bit integer, decimal                                |
/// | Single, Double, Date | the stored bytes from last to first, hexadecimal                  |
/// | Text, Memo           | in quotes; backslash, bar and LF as \\, \p and \n                 |
/// | GUID                 | {XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}                            |
/// | Numeric              | decimal with exactly `scale` decimals                             |
/// | Binary, OLE          | hexadecimal                                                       |
///
/// `stored` are the bytes that `value` was decoded from.
std::string CanonicalText(jet::ByteView stored, const jet::Value& value);

/// Numbers as numbers, Currency and Numeric as text with their decimals, Date as days since 1899-12-30, bytes
/// as
/// {"hex": …}.
void WriteJsonValue(JsonWriter& json, const jet::Value& value);

/// Dates as 2004-01-31 09:30:00, Booleans as true or false, bytes in hexadecimal; null is empty.
std::string PlainText(const jet::Value& value);

/// "2004-01-31 09:30:00", to the nearest second; the number itself when no calendar day of the years 100 to
/// 9999 fits. Before 1899-12-30 the fraction counts forward from the day, too.
std::string DateText(double days);

}  // namespace tavrel::report
