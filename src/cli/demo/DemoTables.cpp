#include "cli/demo/DemoTables.h"

namespace tavrel::cli {

DemoField Field(In where, std::string name, jet::ColumnType type, unsigned size) {
    DemoField field{.where = where, .column = {}};
    field.column.name = std::move(name);
    field.column.type = type;
    field.column.size = size;
    return field;
}

DemoIndex PrimaryKey(In where, const std::vector<std::string>& fields) {
    DemoIndex primary{.where = where, .index = {}};
    primary.index.name = "PrimaryKey";
    primary.index.primary = true;
    primary.index.unique = true;
    for (const std::string& field : fields) {
        primary.index.fields.push_back({.name = field});
    }
    return primary;
}

DemoIndex PlainIndex(In where, const std::string& field, bool descending) {
    DemoIndex plain{.where = where, .index = {}};
    plain.index.name = field;
    plain.index.fields.push_back({.name = field, .descending = descending});
    return plain;
}

std::vector<DemoTable> DemoTables() {
    return {DemoCustomers(),   DemoEmployees(),  DemoProducts(), DemoOrders(),   DemoOrderLines(),
            DemoDepartments(), DemoWarehouses(), DemoVersion(),  DemoEveryType()};
}

namespace {

/// One field of a table refers to one of another.
DemoRelation Relation(In where, std::string name, std::string table, std::string field,
                      std::string referencedTable, std::string referencedField) {
    DemoRelation relation{.where = where, .relation = {}};
    relation.relation.name = std::move(name);
    relation.relation.table = std::move(table);
    relation.relation.referencedTable = std::move(referencedTable);
    relation.relation.columns = {std::move(field)};
    relation.relation.referencedColumns = {std::move(referencedField)};
    return relation;
}

}  // namespace

std::vector<DemoRelation> DemoRelations() {
    DemoRelation ofCustomer = Relation(In::Both, "거래처주문", "주문", "거래처코드", "거래처", "거래처코드");
    ofCustomer.relation.updateCascade = true;
    DemoRelation ofOrder = Relation(In::Both, "주문주문상세", "주문상세", "주문번호", "주문", "주문번호");
    ofOrder.relation.deleteCascade = true;
    // Only the newer version knows who took an order: the field is a foreign key in B alone.
    DemoRelation ofEmployee = Relation(In::B, "사원주문", "주문", "담당사원", "사원", "사원번호");
    return {std::move(ofCustomer), std::move(ofOrder), std::move(ofEmployee)};
}

}  // namespace tavrel::cli
