// The contents of the two demonstration databases: an order book in an older (A) and a newer (B) version.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "jet/catalog/Schema.h"
#include "jet/catalog/Value.h"

namespace tavrel::cli {

inline constexpr jet::Null kNull;

/// An amount of money in whole won.
inline jet::Value Won(std::int64_t amount) {
    return jet::Currency{amount * 10000};
}

/// Which of the two databases something is in.
enum class In { Both, A, B };

/// True when something marked `where` belongs into database A (`a`) or B.
inline bool IsIn(In where, bool a) {
    return where == In::Both || (where == In::A) == a;
}

/// A field that differs has one line for A and one for B.
struct DemoField {
    In where;
    jet::NewColumn column;

    DemoField Default(std::string expression) && {
        column.defaultValue = std::move(expression);
        return std::move(*this);
    }
    DemoField Required() && {
        column.required = true;
        return std::move(*this);
    }
    DemoField ZeroLength(bool allowed) && {
        column.zeroLength =
            allowed ? jet::NewColumn::ZeroLength::Allowed : jet::NewColumn::ZeroLength::Refused;
        return std::move(*this);
    }
    DemoField Autonumber() && {
        column.autonumber = true;
        return std::move(*this);
    }
    DemoField Scale(std::uint8_t scale) && {
        column.scale = scale;
        return std::move(*this);
    }
    DemoField Described(std::string description) && {
        column.description = std::move(description);
        return std::move(*this);
    }
};

DemoField Field(In where, std::string name, jet::ColumnType type, unsigned size = 0);

struct DemoIndex {
    In where;
    jet::NewIndex index;
};

DemoIndex PrimaryKey(In where, const std::vector<std::string>& fields);
/// An index on one field, under the field's name.
DemoIndex PlainIndex(In where, const std::string& field, bool descending = false);

struct DemoTable {
    In where;
    std::string name;
    std::vector<DemoField> fields;
    std::vector<DemoIndex> indexes;
    /// One value for each line of `fields`; those of the other database are left out.
    std::vector<std::vector<jet::Value>> rows;
};

struct DemoRelation {
    In where;
    jet::RelationInfo relation;
};

/// In the order in which they must be filled: a table before those that refer to it.
std::vector<DemoTable> DemoTables();
std::vector<DemoRelation> DemoRelations();

// The tables, one function each.
DemoTable DemoCustomers();
DemoTable DemoEmployees();
DemoTable DemoProducts();
DemoTable DemoOrders();
DemoTable DemoOrderLines();
DemoTable DemoDepartments();
DemoTable DemoWarehouses();
DemoTable DemoVersion();
DemoTable DemoEveryType();

/// Stands in the description of the first field of the first table of every demonstration database: by it
/// they are known.
inline constexpr char kDemoDescription[] = "Tavrel 시연용 데이터베이스";

}  // namespace tavrel::cli
