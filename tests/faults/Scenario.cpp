#include "Scenario.h"

namespace tavrel::testing {

namespace {

// Enough rows that an index has several pages, and a memo that has pages of its own.
constexpr char kDoubled[] = "INSERT INTO t (name, note) SELECT name & 'x', note FROM t";

std::vector<std::string> Made(const std::string& file) {
    return {"sql",
            file,
            "CREATE TABLE t (id AUTOINCREMENT PRIMARY KEY, name TEXT(60), note MEMO)",
            "CREATE INDEX byName ON t (name)",
            "INSERT INTO t (name, note) VALUES ('가나다', '" + std::string(3000, 'n') + "')",
            kDoubled,
            kDoubled,
            kDoubled,
            kDoubled,
            "CREATE TABLE u (a LONG, b TEXT(10))"};
}

}  // namespace

const std::vector<Scenario>& Scenarios() {
    static const std::vector<std::vector<std::string>> kMade = {{"create", "@a.mdb"}, Made("@a.mdb")};
    static const std::vector<Scenario> kScenarios = {
        {"Create", {}, {"create", "@new.mdb"}},
        {"Demo", {}, {"demo", "@demo"}, "", 1, 1, 20},
        {"Insert",
         kMade,
         {"sql", "@a.mdb", "INSERT INTO t (name, note) VALUES ('새', '" + std::string(9000, 'v') + "')"}},
        {"Statements",
         kMade,
         {"sql", "@a.mdb", "UPDATE t SET name = name & '!' WHERE id > 3",
          "ALTER TABLE u ADD COLUMN c CURRENCY", "DROP TABLE t"},
         "",
         3},
        {"Transaction",
         kMade,
         {"sql", "@a.mdb",
          "BEGIN; DELETE FROM t WHERE id < 9; CREATE INDEX byA ON u (a); INSERT INTO u VALUES (1, '둘'); "
          "COMMIT"}},
        {"CompactInPlace", kMade, {"compact", "@a.mdb"}},
        {"CompactToFile", kMade, {"compact", "@a.mdb", "-o", "@b.mdb"}},
        {"Patch",
         {{"demo", "@demo"}},
         {"patch", "--product", "pellamii", "@demo/pellamii-1.mdb"},
         "demo/pellamii"},
        {"CompareProduct",
         {{"demo", "@demo"}},
         {"compare", "@demo/pellamii-1.mdb", "@demo/pellamii-1.mdb", "--product", "pellamii"},
         "demo/pellamii"},
        {"Report", kMade, {"compare", "@a.mdb", "@a.mdb", "--format", "html", "-o", "@report.html"}},
    };
    return kScenarios;
}

}  // namespace tavrel::testing
