// Orders, the version row, and a table with every type.
#include "cli/demo/DemoTables.h"

namespace tavrel::cli {

namespace {

using jet::ColumnType;
using namespace std::string_literals;

jet::Value Number(std::int64_t value) {
    return value;
}

}  // namespace

// The one who took the order is a foreign key in B only.
DemoTable DemoOrders() {
    return {.where = In::Both,
            .name = "주문",
            .fields = {Field(In::Both, "주문번호", ColumnType::Long).Autonumber(),
                       Field(In::Both, "거래처코드", ColumnType::Text, 8).Required(),
                       Field(In::Both, "주문일", ColumnType::Date).Default("Date()"),
                       Field(In::Both, "담당사원", ColumnType::Long),
                       Field(In::Both, "합계", ColumnType::Currency).Default("0")},
            .indexes = {PrimaryKey(In::Both, {"주문번호"}), PlainIndex(In::Both, "주문일", true)},
            .rows = {{kNull, "C0001"s, jet::Date{39449.375}, Number(1), Won(20000)},
                     {kNull, "C0003"s, jet::Date{39450.604166666664}, Number(2), Won(7800)},
                     {kNull, "C0001"s, jet::Date{39455}, kNull, Won(0)}}};
}

// The line number belongs to the primary key in A, the product to that in B; the last field is in B only.
DemoTable DemoOrderLines() {
    return {.where = In::Both,
            .name = "주문상세",
            .fields = {Field(In::Both, "주문번호", ColumnType::Long).Required(),
                       Field(In::Both, "순번", ColumnType::Byte).Required(),
                       Field(In::Both, "품목코드", ColumnType::Text, 10).Required(),
                       Field(In::Both, "수량", ColumnType::Integer),
                       Field(In::Both, "금액", ColumnType::Currency),
                       Field(In::B, "할인", ColumnType::Integer).Default("0")},
            .indexes = {PrimaryKey(In::A, {"주문번호", "순번"}), PrimaryKey(In::B, {"주문번호", "품목코드"})},
            .rows = {{Number(1), Number(1), "P-100"s, Number(1), Won(7800), Number(0)},
                     {Number(1), Number(2), "P-101"s, Number(2), Won(6400), Number(100)},
                     {Number(2), Number(1), "P-100"s, Number(1), Won(7800), Number(0)}}};
}

// Names that differ in letter case only: no difference.
DemoTable DemoVersion() {
    return {.where = In::Both,
            .name = "dbversion",
            .fields = {Field(In::A, "DBID", ColumnType::Text, 10), Field(In::B, "dbid", ColumnType::Text, 10),
                       Field(In::A, "Ver", ColumnType::Integer), Field(In::B, "ver", ColumnType::Integer)},
            .indexes = {},
            .rows = {{"main"s, "main"s, Number(1), Number(2)}}};
}

// A type as a number in the listing (Single) against one with a name (Double).
DemoTable DemoEveryType() {
    const jet::Guid guid{{0x78, 0x56, 0x34, 0x12, 0xBC, 0x9A, 0xF0, 0xDE, 1, 2, 3, 4, 5, 6, 7, 8}};
    return {
        .where = In::Both,
        .name = "자료형",
        .fields = {Field(In::Both, "예아니오", ColumnType::Boolean),
                   Field(In::Both, "바이트", ColumnType::Byte), Field(In::Both, "정수", ColumnType::Integer),
                   Field(In::Both, "긴정수", ColumnType::Long), Field(In::Both, "통화", ColumnType::Currency),
                   Field(In::A, "실수", ColumnType::Single), Field(In::B, "실수", ColumnType::Double),
                   Field(In::Both, "배정도", ColumnType::Double), Field(In::Both, "날짜", ColumnType::Date),
                   Field(In::Both, "이진", ColumnType::Binary, 16),
                   Field(In::Both, "글자", ColumnType::Text, 50), Field(In::Both, "그림", ColumnType::Ole),
                   Field(In::Both, "긴글", ColumnType::Memo), Field(In::Both, "고유번호", ColumnType::Guid),
                   Field(In::Both, "십진수", ColumnType::Numeric).Scale(4)},
        .indexes = {},
        .rows = {{true, Number(255), Number(-32768), Number(2147483647), jet::Currency{-12345}, 1.5F, 1.5,
                  3.141592653589793, jet::Date{39449.5}, jet::ByteVector{1, 2, 3}, "가나다 ABC 漢字"s,
                  jet::ByteVector(5000, 0xAB), std::string(3000, 'x') + "끝", guid,
                  jet::Decimal{.words = {0, 0, 0, 1234567}, .negative = true, .scale = 4}},
                 {false, kNull, kNull, kNull, kNull, kNull, kNull, kNull, kNull, kNull, kNull, kNull, kNull,
                  kNull, kNull}}};
}

}  // namespace tavrel::cli
