// The same work on our engine and on SQLite, one after the other, as ratios of the two times.
//
//   tavrel-bench-sql [FOLDER [ROWS [synced|written [WORK]]]]
//
// FOLDER takes the two databases (default: the system's temporary folder), ROWS is the size of the large
// table (default 1,000,000).  Both engines get every statement as text.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <limits>
#include <vector>

#include "Contestant.h"

namespace {

using tavrel::bench::Contestant;

/// Steps that spread the numbers 0 … n-1 over one another, the same ones in every run.
class Shuffled {
  public:
    explicit Shuffled(std::uint64_t count) : count_(count) {}
    [[nodiscard]] std::uint64_t At(std::uint64_t i) const { return i * 2654435761u % count_; }

  private:
    std::uint64_t count_;
};

std::string Number(std::uint64_t value) {
    return std::to_string(value);
}

constexpr const char* kNames[] = {"한빛상사", "대림유통", "Mirae Foods", "서울문구", "가온산업", "Nara"};

std::string NameOf(std::uint64_t i) {
    return std::string(kNames[i % std::size(kNames)]) + " " + Number(i);
}

struct Work {
    const char* name;
    std::function<void(Contestant&)> run;
};

void FillTables(Contestant& engine, std::uint64_t rows) {
    engine.Execute(
        "CREATE TABLE customer (code INTEGER CONSTRAINT pk_customer PRIMARY KEY, cname VARCHAR(40), "
        "area INTEGER)");
    engine.Execute(
        "CREATE TABLE sale (no INTEGER CONSTRAINT pk_sale PRIMARY KEY, ccode INTEGER, price INTEGER, "
        "remark VARCHAR(60))");
    engine.Execute("BEGIN TRANSACTION");
    const std::uint64_t customers = rows / 10;
    for (std::uint64_t i = 0; i < customers; ++i) {
        engine.Execute("INSERT INTO customer VALUES (" + Number(i) + ", '" + NameOf(i) + "', " +
                       Number(i % 17) + ")");
    }
    for (std::uint64_t i = 0; i < rows; ++i) {
        engine.Execute("INSERT INTO sale VALUES (" + Number(i) + ", " + Number(Shuffled(customers).At(i)) +
                       ", " + Number(i % 9973) + ", '" + NameOf(Shuffled(rows).At(i)) + "')");
    }
    engine.Execute("COMMIT");
}

void InsertIndexed(Contestant& engine, std::uint64_t rows) {
    engine.Execute(
        "CREATE TABLE entry (id INTEGER CONSTRAINT pk_entry PRIMARY KEY, ename VARCHAR(40), amount "
        "INTEGER)");
    engine.Execute("CREATE INDEX idx_entry_name ON entry (ename)");
    engine.Execute("CREATE INDEX idx_entry_amount ON entry (amount)");
    engine.Execute("BEGIN TRANSACTION");
    const Shuffled order(rows);
    for (std::uint64_t i = 0; i < rows; ++i) {
        engine.Execute("INSERT INTO entry (id, ename, amount) VALUES (" + Number(order.At(i)) + ", '" +
                       NameOf(i) + "', " + Number(order.At(i) % 1000) + ")");
    }
    engine.Execute("COMMIT");
    engine.Execute("DROP TABLE entry");
}

void LookUp(Contestant& engine, std::uint64_t rows, std::uint64_t times) {
    const Shuffled order(rows);
    for (std::uint64_t i = 0; i < times; ++i) {
        engine.Fetch("SELECT ccode, remark FROM sale WHERE no = " + Number(order.At(i * 7)));
    }
}

std::vector<Work> AllWork(std::uint64_t rows) {
    return {
        {"insert a tenth of the rows, three indexes", [=](Contestant& e) { InsertIndexed(e, rows / 10); }},
        {"update one column of every row",
         [](Contestant& e) { e.Execute("UPDATE sale SET price = price + 1"); }},
        {"add a column and fill it",
         [n = 0](Contestant& e) mutable {
             const std::string column = "boxqnt" + Number(static_cast<std::uint64_t>(n++ / 2));
             e.Execute("ALTER TABLE sale ADD COLUMN " + column + " INTEGER");
             e.Execute("UPDATE sale SET " + column + " = 0 WHERE " + column + " IS NULL");
         }},
        {"look up a tenth of the rows by key", [=](Contestant& e) { LookUp(e, rows, rows / 10); }},
        {"join with a tenth, grouped",
         [](Contestant& e) {
             e.Fetch(
                 "SELECT customer.area, COUNT(*), SUM(sale.price) FROM sale INNER JOIN customer ON "
                 "sale.ccode = customer.code GROUP BY customer.area");
         }},
        {"create and drop an index on a number",
         [](Contestant& e) { e.Execute("CREATE INDEX idx_sale_ccode ON sale (ccode)"); }},
        {"create an index on a text",
         [](Contestant& e) { e.Execute("CREATE INDEX idx_sale_remark ON sale (remark)"); }},
    };
}

double Seconds(const std::function<void()>& run) {
    const auto start = std::chrono::steady_clock::now();
    run();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void Race(const Work& work, Contestant& ours, Contestant& sqlite) {
    const double mine = Seconds([&] { work.run(ours); });
    const double theirs = Seconds([&] { work.run(sqlite); });
    std::printf("%-45s %8.2f s %8.2f s   ratio %.2f\n", work.name, mine, theirs, mine / theirs);
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    using namespace tavrel::bench;
    namespace fs = std::filesystem;
    const fs::path folder = argc > 1 ? fs::path(argv[1]) : fs::temp_directory_path();
    const std::uint64_t rows = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1'000'000;
    const Safety safety = argc > 3 && std::string(argv[3]) == "synced" ? Safety::Synced : Safety::WrittenOut;
    const std::string only = argc > 4 ? argv[4] : "";
    const fs::path mine = folder / "tavrel-bench.mdb";
    const fs::path theirs = folder / "tavrel-bench.sqlite";
    fs::remove(mine);
    fs::remove(theirs);
    {
        const auto ours = MakeTavrel(mine.string(), safety);
        const auto sqlite = MakeSqlite(theirs.string(), safety);
        std::printf("%-45s %10s %10s\n", "work", "Tavrel", "SQLite");
        Race({"fill two tables", [=](Contestant& e) { FillTables(e, rows); }}, *ours, *sqlite);
        for (const Work& work : AllWork(rows)) {
            if (std::string(work.name).find(only) != std::string::npos) {
                Race(work, *ours, *sqlite);
            }
        }
    }
    fs::remove(mine);
    fs::remove(theirs);
    return 0;
}
