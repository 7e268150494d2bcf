// Invented customers, products and trade for demonstration databases: the same each time.
#pragma once

namespace tavrel::cli {

/// Stands in the remark of the first office: by it the databases are known.
inline constexpr char kOfficeRemark[] = "Tavrel 시연용 데이터베이스";

/// How much of it.
struct BusinessSize {
    int customers;
    int products;
    int sales;
};

/// Fills the session's database of product A, B or B-Pro; every row has the rows that it refers to.  With
/// bill notes the database must stand behind the step that gives them their out-fields.  Throws Error.
void FillTrade(const BusinessSize& size, bool billNotes);

/// Fills the session's database of product C.
void FillNorb(int customers);

}  // namespace tavrel::cli
