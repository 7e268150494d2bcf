#include "Sample.h"

#include <algorithm>
#include <iterator>

namespace tavrel::bench {

namespace {

constexpr const char* kNames[] = {"한빛상사", "대림유통", "Mirae Foods", "서울문구", "가온산업", "Nara"};
constexpr std::uint64_t kProducts = 1000;
constexpr std::uint64_t kStorehouses = 3;

std::string Number(std::uint64_t value) {
    return std::to_string(value);
}

std::string Code(std::uint64_t value, std::size_t digits) {
    const std::string text = Number(value);
    return std::string(digits - std::min(digits, text.size()), '0') + text;
}

/// A date of one of ten years.
std::string Day(std::uint64_t i) {
    return Number(2010 + i % 10) + "-" + Code(1 + i / 10 % 12, 2) + "-" + Code(1 + i / 120 % 28, 2);
}

/// A number below `count`, spread over them; the same ones in every run.
std::uint64_t Spread(std::uint64_t i, std::uint64_t count) {
    return i * 2654435761U % count;
}

std::string CustomerRow(std::uint64_t i) {
    const std::string name = std::string(kNames[i % std::size(kNames)]) + " " + Number(i);
    return "INSERT INTO customer (code, compname, compalias, ceoname, addr1, telno, hpno, email, regdate) "
           "VALUES ('" +
           Code(i, 6) + "', '" + name + "', '" + name + "', '김" + Number(i % 997) + "', '서울시 중구 " +
           Number(i % 313) + "', '02-555-" + Code(i % 10000, 4) + "', '010-1234-" + Code(i % 10000, 4) +
           "', 'c" + Number(i) + "@example.com', '" + Day(i) + "')";
}

std::string SaleRow(std::uint64_t i, std::uint64_t customers) {
    const std::uint64_t price = 100 + i % 9973;
    const std::uint64_t quantity = 1 + i % 7;
    const std::string amount = Number(price * quantity);
    return "INSERT INTO sale (code, ocode, scode, ccode, pcode, seq, qnt, price, amount, total, dealdate, "
           "regucode, bigo) VALUES ('" +
           Code(i, 12) + "', 1, " + Number(1 + i % kStorehouses) + ", '" + Code(Spread(i, customers), 6) +
           "', '" + Code(Spread(i, kProducts), 6) + "', 1, " + Number(quantity) + ", " + Number(price) +
           ", " + amount + ", " + amount + ", '" + Day(i) + "', '01', '비고 " + Number(i % 101) + "')";
}

}  // namespace

void FillTables(std::uint64_t sales, const std::function<void(const std::string&)>& execute) {
    const std::uint64_t customers = std::max<std::uint64_t>(1, sales / 5);
    execute("INSERT INTO office (code, compname) VALUES (1, '본점')");
    execute("INSERT INTO local_user (code, name, loginid) VALUES ('01', '관리자', 'admin')");
    execute("INSERT INTO pclass (code, name) VALUES ('0001', '기본')");
    for (std::uint64_t i = 1; i <= kStorehouses; ++i) {
        execute("INSERT INTO storehouse (code, name) VALUES (" + Number(i) + ", '창고 " + Number(i) + "')");
    }
    for (std::uint64_t i = 0; i < kProducts; ++i) {
        execute("INSERT INTO product_m (code, name, pccode) VALUES ('" + Code(i, 6) + "', '상품 " +
                Number(i) + "', '0001')");
    }
    for (std::uint64_t i = 0; i < customers; ++i) {
        execute(CustomerRow(i));
    }
    for (std::uint64_t i = 0; i < sales; ++i) {
        execute(SaleRow(i, customers));
    }
}

}  // namespace tavrel::bench
