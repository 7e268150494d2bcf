#include "cli/demo/BusinessData.h"

#include <array>
#include <cstdio>
#include <initializer_list>
#include <random>
#include <string>

#include "db/Session.h"

namespace tavrel::cli {

namespace {

constexpr std::array kSurnames = {"김", "이", "박", "최", "정", "강", "조", "윤", "장", "임", "한", "오"};
constexpr std::array kGivenNames = {"하늘", "바다", "가을", "민수", "영희",
                                    "지훈", "서연", "도윤", "은지", "철수"};
constexpr std::array kFirstWords = {"한빛", "대성", "새봄", "동아", "금강", "백두", "태평", "우리",
                                    "신라", "고려", "서해", "남산", "푸른", "으뜸", "참"};
constexpr std::array kLastWords = {"상사", "유통", "식품", "마트", "물산",
                                   "산업", "무역", "슈퍼", "상회", "문구"};
constexpr std::array kTowns = {"서울시 중구 을지로",   "부산시 해운대구 센텀로", "대구시 수성구 달구벌대로",
                               "인천시 연수구 송도로", "광주시 서구 상무대로",   "수원시 팔달구 정조로"};
constexpr std::array kGoods = {"참기름", "천일염", "고추장",  "된장", "간장", "식용유", "밀가루", "설탕",
                               "국수",   "김",     "A4 용지", "볼펜", "공책", "봉투",   "풀"};
constexpr std::array kNorms = {"320ml", "1kg", "500g", "10개입", "1박스", "대", "소"};
constexpr std::array kClasses = {"식품", "조미료", "문구", "잡화", "음료"};

std::mt19937 dice;

int Up(int end) {
    return static_cast<int>(dice() % static_cast<unsigned>(end));
}

template <class Words>
std::string OneOf(const Words& words) {
    return words[static_cast<std::size_t>(Up(static_cast<int>(words.size())))];
}

std::string Digits(int number, int width) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "%0*d", width, number);
    return text.data();
}

std::string Person() {
    return OneOf(kSurnames) + OneOf(kGivenNames);
}

std::string Phone(const char* area) {
    return std::string(area) + "-" + Digits(200 + Up(700), 3) + "-" + Digits(Up(10000), 4);
}

std::string Day() {
    return std::to_string(2003 + Up(3)) + "-" + Digits(1 + Up(12), 2) + "-" + Digits(1 + Up(28), 2);
}

std::string Quoted(const std::string& text) {
    return "'" + text + "'";
}

/// A row; values as they stand in the statement.
void Insert(const char* table, const char* columns, std::initializer_list<std::string> values) {
    std::string list;
    for (const std::string& value : values) {
        list += (list.empty() ? "" : ",") + value;
    }
    modDBsub::DBExecute(std::string("INSERT INTO ") + table + " (" + columns + ") VALUES (" + list + ")");
}

std::string CustomerCode(int number) {
    return Quoted("C" + Digits(number, 5));
}
std::string ProductCode(int number) {
    return Quoted("P" + Digits(number, 5));
}

void FillOffices() {
    Insert("office", "code, compname, ceoname, telno, hpno, addr1, bigo",
           {"1", "'한빛종합상사'", "'김한빛'", "'02-555-0100'", "'010-555-0100'", "'서울시 중구 을지로 12'",
            Quoted(kOfficeRemark)});
    Insert("office", "code, compname, ceoname, telno",
           {"2", "'한빛종합상사 부산지점'", "'이부산'", "'051-333-2200'"});
}

void FillUsers() {
    for (int i = 0; i < 5; ++i) {
        Insert("local_user", "code, name, loginid, loginpwd",
               {Quoted(Digits(i, 2)), Quoted(Person()), Quoted("user" + std::to_string(i)), "'1234'"});
    }
}

void FillCustomers(int count) {
    for (int i = 1; i <= count; ++i) {
        const std::string name = OneOf(kFirstWords) + OneOf(kLastWords);
        Insert(
            "customer",
            "code, compname, compalias, compsn, ceoname, telno, hpno, email, addr1, addr2, charge, regdate",
            {CustomerCode(i), Quoted(name), Quoted(name.substr(0, 6)),
             Quoted(Digits(100 + Up(900), 3) + "-" + Digits(Up(100), 2) + "-" + Digits(Up(100000), 5)),
             Quoted(Person()), Quoted(Phone("02")), Quoted(Phone("010")),
             Quoted("c" + std::to_string(i) + "@example.kr"),
             Quoted(OneOf(kTowns) + " " + std::to_string(1 + Up(200))),
             Quoted(std::to_string(1 + Up(9)) + "층"), Quoted(Digits(Up(5), 2)), Quoted(Day())});
    }
}

/// Classes behind those that are there, and products in them.
void FillProducts(int count) {
    std::array<std::string, kClasses.size()> codes;
    for (std::size_t i = 0; i < kClasses.size(); ++i) {
        codes[i] = Quoted(modDBsub::DBNextCode("pclass", "code", 4, "", false));
        Insert("pclass", "code, name", {codes[i], Quoted(kClasses[i])});
    }
    for (int i = 1; i <= count; ++i) {
        Insert("product_m", "code, name, norm, unit, pccode, bcode, boxcount, regdate",
               {ProductCode(i), Quoted(OneOf(kGoods)), Quoted(OneOf(kNorms)), "'개'", OneOf(codes),
                Quoted("880" + Digits(i, 10)), std::to_string(1 + Up(24)), Quoted(Day())});
        const int price = 100 * (5 + Up(200));
        Insert("product_d", "ocode, pcode, buyprice, saleprice, safeqnt",
               {"1", ProductCode(i), std::to_string(price * 7 / 10), std::to_string(price),
                std::to_string(Up(20))});
    }
}

/// Lines of sale or buy.
void FillTradeLines(const char* table, const char* prefix, int lines, const BusinessSize& size) {
    for (int i = 1; i <= lines; ++i) {
        const int quantity = 1 + Up(30);
        const int price = 100 * (5 + Up(200));
        const int amount = quantity * price;
        Insert(table,
               "code, ocode, scode, ccode, pcode, seq, qnt, price, amount, tax, total, dealdate, regucode",
               {Quoted(prefix + Digits(i, 8)), std::to_string(1 + Up(2)), std::to_string(1 + Up(3)),
                CustomerCode(1 + Up(size.customers)), ProductCode(1 + Up(size.products)), "1",
                std::to_string(quantity), std::to_string(price), std::to_string(amount),
                std::to_string(amount / 10), std::to_string(amount + amount / 10), Quoted(Day()),
                Quoted(Digits(Up(5), 2))});
    }
}

void FillMoney(const char* table, int rows, const BusinessSize& size) {
    for (int i = 0; i < rows; ++i) {
        Insert(table, "ocode, ccode, amount, type, dealdate, regucode",
               {"1", CustomerCode(1 + Up(size.customers)), std::to_string(1000 * (1 + Up(900))),
                std::to_string(Up(3)), Quoted(Day()), Quoted(Digits(Up(5), 2))});
    }
}

/// Notes received (part 1) and given (part 0); with every second one something was paid.
void FillBillNotes(int count, const BusinessSize& size) {
    for (int i = 1; i <= count; ++i) {
        const std::string code = Quoted("자가" + Digits(Up(1000000), 6) + Digits(i, 3));
        const std::string customer = CustomerCode(1 + Up(size.customers));
        const std::string amount = std::to_string(10000 * (1 + Up(300)));
        const bool paid = i % 2 == 0;
        const bool received = i % 4 < 2;
        const std::string day = Quoted(Day());
        const std::string alias = modDBsub::DBNullToStr(
            modDBsub::DBGetValue("SELECT compalias FROM customer WHERE code = " + customer));
        Insert("billnote",
               "code, part, ocode, ccode, amount, bankname, issuedate, expiredate, outtype, outdate, outbigo",
               {code, received ? "1" : "0", "1", customer, amount, "'국민은행'", Quoted(Day()), Quoted(Day()),
                paid ? "2" : "0", paid && received ? day : "''", paid && received ? Quoted(alias) : "''"});
        if (paid) {
            Insert("payment", "ocode, ccode, amount, type, subcode, dealdate, regucode",
                   {"1", customer, amount, "3", code, day, "'01'"});
        }
    }
}

void FillOrders(int count, const BusinessSize& size) {
    for (int i = 1; i <= count; ++i) {
        const std::string code = Quoted("O" + Digits(i, 8));
        Insert("ordbook_m", "code, ocode, ccode, dealdate, dlvdate, ucode, bigo",
               {code, "1", CustomerCode(1 + Up(size.customers)), Quoted(Day()), Quoted(Day()), "'01'",
                "'오전 중 도착'"});
        for (int seq = 1; seq <= 3; ++seq) {
            Insert("ordbook_d", "code, seq, parentseq, pcode, qnt, price",
                   {code, std::to_string(seq), std::to_string(seq), ProductCode(1 + Up(size.products)),
                    std::to_string(1 + Up(50)), std::to_string(100 * (5 + Up(200)))});
        }
    }
}

/// Everything that happens in here is one transaction.
template <class Work>
void InOneTransaction(Work work) {
    dice.seed(std::mt19937::default_seed);
    modDBsub::DBExecute("BEGIN TRANSACTION");
    work();
    modDBsub::DBExecute("COMMIT TRANSACTION");
}

}  // namespace

void FillTrade(const BusinessSize& size, bool billNotes) {
    InOneTransaction([&] {
        FillOffices();
        for (const char* store : {"(1,'본사 창고')", "(2,'김포 창고')", "(3,'부산 창고')"}) {
            modDBsub::DBExecute(std::string("INSERT INTO storehouse (code, name) VALUES ") + store);
        }
        FillUsers();
        FillCustomers(size.customers);
        FillProducts(size.products);
        FillTradeLines("sale", "S", size.sales, size);
        FillTradeLines("buy", "B", size.sales / 3, size);
        FillMoney("receive", size.customers, size);
        FillMoney("payment", size.customers / 3, size);
        if (billNotes) {
            FillBillNotes(40, size);
            FillOrders(20, size);
        }
    });
}

void FillNorb(int customers) {
    InOneTransaction([&] {
        FillOffices();
        FillUsers();
        for (int i = 1; i <= customers; ++i) {
            Insert(
                "customer", "code, compname, ceoname, telno, hpno, email",
                {CustomerCode(i), Quoted(OneOf(kFirstWords) + OneOf(kLastWords)), Quoted(Person()),
                 Quoted(Phone("02")), Quoted(Phone("010")), Quoted("c" + std::to_string(i) + "@example.kr")});
        }
    });
}

}  // namespace tavrel::cli
