// Databases of random structure, and what random changes make of it.  All rows hold the numbers 1, 2, 3 in
// whatever type their columns have: most keys and relations that anybody thinks of are good on them.
#pragma once

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "support/DatabaseBuilder.h"

namespace tavrel::testing {

struct Structure {
    std::vector<jet::NewTable> tables;
    std::vector<jet::RelationInfo> relations;
};

class StructureMaker {
  public:
    explicit StructureMaker(unsigned seed) : random_(seed) {}

    Structure Make() {
        Structure made;
        for (const char* name : {"고객", "order", "Order Details", "a'b;c", "x\"y", "주문 -- 상세"}) {
            if (Chance(2)) {
                made.tables.push_back(MakeTable(name));
            }
        }
        Relate(made);
        return made;
    }

    /// Some tables gone, some new, columns and indexes other than they were.
    Structure Changed(const Structure& structure) {
        Structure changed = Make();
        for (const jet::NewTable& table : structure.tables) {
            if (Chance(6)) {
                continue;
            }
            std::erase_if(changed.tables, [&](const auto& other) { return other.name == table.name; });
            changed.tables.push_back(Chance(3) ? table : ChangedTable(table));
        }
        changed.relations = structure.relations;
        std::erase_if(changed.relations, [&](const auto&) { return Chance(4); });
        std::erase_if(changed.relations, [&](const auto& relation) { return !Fits(relation, changed); });
        Relate(changed);
        return changed;
    }

    void Write(const Structure& structure, const std::string& path, bool withRows) {
        DatabaseBuilder builder(path);
        for (const jet::NewTable& table : structure.tables) {
            builder.Add(table);
            if (withRows && !Chance(5)) {
                builder.Rows(table.name, RowsFor(table));
            }
        }
        for (const jet::RelationInfo& relation : structure.relations) {
            ErrorOf([&] { builder.Relate(relation); });  // rows that do not fit it: then there is none
        }
        builder.Finish();
    }

  private:
    int Below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }
    bool Chance(int outOf) { return Below(outOf) == 0; }

    jet::NewColumn MakeColumn(const std::string& name) {
        using enum jet::ColumnType;
        static constexpr jet::ColumnType kTypes[] = {Boolean, Byte,   Integer, Long,   Long,   Currency,
                                                     Single,  Double, Date,    Binary, Text,   Text,
                                                     Text,    Ole,    Memo,    Guid,   Numeric};
        static const char* const kDefaults[] = {"0",  "\"a;b\"", "'--'", "Now()", "=Now()", "GenUniqueID()",
                                                "No", "1+1",     "= 3 "};
        jet::NewColumn column;
        column.name = name;
        column.type = kTypes[Below(std::size(kTypes))];
        column.size = column.type == Text || column.type == Binary ? 4U + static_cast<unsigned>(Below(4)) : 0;
        column.fixedLength = column.type == Text && Chance(6);
        column.precision = static_cast<std::uint8_t>(4 + Below(20));
        column.scale = static_cast<std::uint8_t>(Below(3));
        column.required = Chance(4);
        column.compressed = Chance(2);
        column.autonumber = (column.type == Long || column.type == Guid) && Chance(4);
        column.zeroLength = static_cast<jet::NewColumn::ZeroLength>(Below(3));
        if (Chance(3) && !column.autonumber) {
            column.defaultValue = kDefaults[Below(std::size(kDefaults))];
        }
        return column;
    }

    void AddColumns(jet::NewTable& table, int chance) {
        for (const char* name : {"번호", "Name", "select", "이 름", "b-c", "d#", "e", "f", "g"}) {
            if (Below(chance) != 0 ||
                std::ranges::any_of(table.columns, [&](const auto& c) { return c.name == name; })) {
                continue;
            }
            table.columns.insert(table.columns.begin() + Below(static_cast<int>(table.columns.size()) + 1),
                                 MakeColumn(name));
        }
        if (table.columns.empty()) {
            table.columns.push_back(MakeColumn("e"));
        }
        bool counted = false;
        for (jet::NewColumn& column : table.columns) {
            column.autonumber = column.autonumber && (column.type == jet::ColumnType::Guid || !counted);
            counted = counted || (column.autonumber && column.type == jet::ColumnType::Long);
        }
    }

    void AddIndexes(jet::NewTable& table) {
        for (const char* name : {"PrimaryKey", "ix", "index", "찾기 1"}) {
            jet::NewIndex index;
            index.name = name;
            for (const jet::NewColumn& column : table.columns) {
                if (column.type != jet::ColumnType::Ole && column.type != jet::ColumnType::Boolean &&
                    Chance(3)) {
                    index.fields.push_back({column.name, Chance(4)});
                }
            }
            index.fields.resize(std::min<std::size_t>(index.fields.size(), 2));
            std::shuffle(index.fields.begin(), index.fields.end(), random_);
            index.primary = table.indexes.empty() && Chance(2);
            index.unique = index.primary || Chance(2);
            index.required = index.primary || Chance(4);
            index.ignoreNulls = !index.primary && Chance(4);
            if (!index.fields.empty() && Chance(2)) {
                table.indexes.push_back(index);
            }
        }
    }

    jet::NewTable MakeTable(const std::string& name) {
        jet::NewTable table{.name = name, .columns = {}, .indexes = {}};
        AddColumns(table, 2);
        AddIndexes(table);
        return table;
    }

    jet::NewTable ChangedTable(jet::NewTable table) {
        std::erase_if(table.columns, [&](const auto&) { return Chance(8); });
        for (jet::NewColumn& column : table.columns) {
            if (Chance(4)) {
                column = MakeColumn(column.name);
            } else if (Chance(4) && column.type == jet::ColumnType::Text) {
                column.size = 4U + static_cast<unsigned>(Below(5));
            }
        }
        if (Chance(4)) {
            std::shuffle(table.columns.begin(), table.columns.end(), random_);
        }
        AddColumns(table, 8);
        std::erase_if(table.indexes, [&](const jet::NewIndex& index) {
            return Chance(4) || std::ranges::any_of(index.fields, [&](const auto& field) {
                       const jet::NewColumn* column = Column(table, field.name);
                       return column == nullptr || column->type == jet::ColumnType::Ole;
                   });
        });
        if (Chance(3)) {
            table.indexes.clear();
            AddIndexes(table);
        }
        return table;
    }

    static const jet::NewColumn* Column(const jet::NewTable& table, const std::string& name) {
        const auto found = std::ranges::find(table.columns, name, &jet::NewColumn::name);
        return found == table.columns.end() ? nullptr : &*found;
    }

    static bool Fits(const jet::RelationInfo& relation, const Structure& structure) {
        const jet::NewColumn* ends[2] = {nullptr, nullptr};
        bool keyed = false;
        for (const jet::NewTable& table : structure.tables) {
            if (table.name == relation.table) {
                ends[0] = Column(table, relation.columns.front());
            }
            if (table.name == relation.referencedTable) {
                ends[1] = Column(table, relation.referencedColumns.front());
                keyed = std::ranges::any_of(table.indexes, [&](const jet::NewIndex& index) {
                    return index.unique && index.fields.size() == 1 &&
                           index.fields.front().name == relation.referencedColumns.front();
                });
            }
        }
        return keyed && ends[0] != nullptr && ends[0] != ends[1] && ends[0]->type == ends[1]->type &&
               (ends[0]->type != jet::ColumnType::Numeric || ends[0]->scale == ends[1]->scale);
    }

    void Relate(Structure& structure) {
        for (const char* name : {"r1", "관계 2", "foreign"}) {
            if (structure.tables.empty() ||
                std::ranges::any_of(structure.relations, [&](const auto& r) { return r.name == name; })) {
                continue;
            }
            for (int attempt = 0; attempt < 20; ++attempt) {
                const jet::NewTable& child =
                    structure.tables[Below(static_cast<int>(structure.tables.size()))];
                const jet::NewTable& parent =
                    structure.tables[Below(static_cast<int>(structure.tables.size()))];
                jet::RelationInfo relation;
                relation.name = name;
                relation.table = child.name;
                relation.referencedTable = parent.name;
                relation.columns = {child.columns[Below(static_cast<int>(child.columns.size()))].name};
                relation.referencedColumns = {
                    parent.columns[Below(static_cast<int>(parent.columns.size()))].name};
                relation.updateCascade = Chance(2);
                relation.deleteCascade = Chance(2);
                relation.deleteSetsNull = !relation.deleteCascade && Chance(3);
                relation.enforced = !Chance(8);
                if (Fits(relation, structure)) {
                    structure.relations.push_back(relation);
                    break;
                }
            }
        }
    }

    static jet::Value ValueOf(const jet::NewColumn& column, int number) {
        using enum jet::ColumnType;
        switch (column.type) {
            case Boolean:
                return number % 2 == 0;
            case Currency:
                return jet::Currency{number * 10000};
            case Single:
                return static_cast<float>(number);
            case Double:
                return static_cast<double>(number);
            case Date:
                return jet::Date{static_cast<double>(number)};
            case Binary:
            case Ole:
                return jet::ByteVector(1, static_cast<std::uint8_t>(number));
            case Text:
                return column.fixedLength ? std::to_string(number) + std::string(column.size - 1, ' ')
                                          : std::to_string(number);
            case Memo:
                return std::to_string(number);
            case jet::ColumnType::Guid: {
                jet::Guid guid{};
                guid.bytes[0] = static_cast<std::uint8_t>(number);
                return guid;
            }
            case Numeric:
                return DecimalOf(static_cast<std::uint32_t>(number), column.scale);
            default:
                return std::int64_t{number};
        }
    }

    static jet::Value DecimalOf(std::uint32_t number, std::uint8_t scale) {
        for (int i = 0; i < scale; ++i) {
            number *= 10;
        }
        return jet::Decimal{.words = {0, 0, 0, number}, .negative = false, .scale = scale};
    }

    std::vector<std::vector<jet::Value>> RowsFor(const jet::NewTable& table) {
        std::vector<std::vector<jet::Value>> rows(3);
        for (const jet::NewColumn& column : table.columns) {
            const bool indexed = std::ranges::any_of(table.indexes, [&](const jet::NewIndex& index) {
                return std::ranges::any_of(index.fields,
                                           [&](const auto& f) { return f.name == column.name; });
            });
            const bool nulls = !indexed && !column.required && !column.autonumber && Chance(6);
            for (int i = 0; i < 3; ++i) {
                rows[static_cast<std::size_t>(i)].push_back(
                    column.autonumber || (nulls && column.type != jet::ColumnType::Boolean)
                        ? jet::Value(jet::Null{})
                        : ValueOf(column, i + 1));
            }
            if (column.type == jet::ColumnType::Text && !indexed && !column.autonumber && !nulls) {
                rows[2].back() = std::string(column.size, 'x');
            }
        }
        return rows;
    }

    std::mt19937 random_;
};

}  // namespace tavrel::testing
