// Customers, employees, products, departments, warehouses.
#include "cli/demo/DemoTables.h"

namespace tavrel::cli {

namespace {

using jet::ColumnType;
using namespace std::string_literals;

}  // namespace

// One field in the middle is in A only; size, required and zero length differ; the index on the name is gone
// in B.
DemoTable DemoCustomers() {
    return {
        .where = In::Both,
        .name = "거래처",
        .fields = {Field(In::Both, "거래처코드", ColumnType::Text, 8).Required().Described(kDemoDescription),
                   Field(In::A, "거래처명", ColumnType::Text, 40),
                   Field(In::B, "거래처명", ColumnType::Text, 40).Required(),
                   Field(In::A, "팩스", ColumnType::Text, 14), Field(In::A, "전화", ColumnType::Text, 14),
                   Field(In::B, "전화", ColumnType::Text, 20),
                   Field(In::A, "주소", ColumnType::Text, 80).ZeroLength(true),
                   Field(In::B, "주소", ColumnType::Text, 80).ZeroLength(false),
                   Field(In::Both, "비고", ColumnType::Memo)},
        .indexes = {PrimaryKey(In::Both, {"거래처코드"}), PlainIndex(In::A, "거래처명")},
        .rows = {{"C0001"s, "한빛상사"s, "한빛상사"s, "02-555-0102"s, "02-555-0101"s, "02-555-0101"s,
                  "서울시 중구 을지로 12"s, "서울시 중구 을지로 12"s, "매월 말일 결제"s},
                 {"C0002"s, "대성유통"s, "대성유통"s, kNull, "051-333-2210"s, "051-333-2210"s,
                  "부산시 해운대구 센텀로 7"s, "부산시 해운대구 센텀로 7"s, kNull},
                 {"C0003"s, "새봄식품"s, "새봄식품"s, "042-777-0099"s, "042-777-0098"s, "042-777-0098"s,
                  kNull, kNull, "냉장 배송\r\n오전 중 도착"s}}};
}

// The same in both.
DemoTable DemoEmployees() {
    return {.where = In::Both,
            .name = "사원",
            .fields = {Field(In::Both, "사원번호", ColumnType::Long).Autonumber(),
                       Field(In::Both, "이름", ColumnType::Text, 20).Required(),
                       Field(In::Both, "입사일", ColumnType::Date),
                       Field(In::Both, "재직", ColumnType::Boolean).Default("True")},
            .indexes = {PrimaryKey(In::Both, {"사원번호"})},
            .rows = {{kNull, "김하늘"s, jet::Date{38047}, true},
                     {kNull, "이바다"s, jet::Date{39142}, true},
                     {kNull, "박가을"s, jet::Date{37257}, false}}};
}

// A field in front in B only; a type and a default value differ.
DemoTable DemoProducts() {
    return {.where = In::Both,
            .name = "품목",
            .fields = {Field(In::B, "분류코드", ColumnType::Text, 4),
                       Field(In::Both, "품목코드", ColumnType::Text, 10).Required(),
                       Field(In::Both, "품명", ColumnType::Text, 60), Field(In::A, "단가", ColumnType::Long),
                       Field(In::B, "단가", ColumnType::Currency),
                       Field(In::A, "과세", ColumnType::Boolean).Default("False"),
                       Field(In::B, "과세", ColumnType::Boolean).Default("True"),
                       Field(In::Both, "재고수량", ColumnType::Integer).Default("0")},
            .indexes = {PrimaryKey(In::Both, {"품목코드"}), PlainIndex(In::Both, "품명")},
            .rows = {{"식품"s, "P-100"s, "참기름 320ml"s, std::int64_t{7800}, Won(7800), true, true,
                      std::int64_t{120}},
                     {"식품"s, "P-101"s, "천일염 1kg"s, std::int64_t{3200}, Won(3200), true, true,
                      std::int64_t{45}},
                     {"문구"s, "P-200"s, "A4 용지 500매"s, std::int64_t{5500}, Won(5500), true, true,
                      std::int64_t{300}}}};
}

DemoTable DemoDepartments() {
    return {.where = In::A,
            .name = "부서",
            .fields = {Field(In::Both, "부서코드", ColumnType::Text, 4),
                       Field(In::Both, "부서명", ColumnType::Text, 30)},
            .indexes = {PrimaryKey(In::Both, {"부서코드"})},
            .rows = {{"10"s, "영업부"s}, {"20"s, "관리부"s}}};
}

DemoTable DemoWarehouses() {
    return {.where = In::B,
            .name = "창고",
            .fields = {Field(In::Both, "창고코드", ColumnType::Text, 4),
                       Field(In::Both, "창고명", ColumnType::Text, 30),
                       Field(In::Both, "냉장", ColumnType::Boolean)},
            .indexes = {PrimaryKey(In::Both, {"창고코드"})},
            .rows = {{"W1"s, "김포 창고"s, true}, {"W2"s, "이천 창고"s, false}}};
}

}  // namespace tavrel::cli
