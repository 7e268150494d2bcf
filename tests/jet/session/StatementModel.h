// What a database should hold after a sequence of statements, kept in the simplest way that can be right.
#pragma once

#include <cmath>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "jet/catalog/ColumnType.h"
#include "jet/catalog/Value.h"
#include "text/Error.h"
#include "text/Utf.h"

namespace tavrel::testing {

using jet::ColumnType;
using jet::Null;
using jet::Value;

struct ModelColumn {
    std::string name;
    ColumnType type = ColumnType::Long;
    unsigned size = 0;  ///< Text: characters
    bool required = false;
    bool counter = false;
    std::string defaultText;
    Value defaultValue;
};

struct ModelIndex {
    std::string name;
    std::vector<std::string> columns;
    bool unique = false;
    bool primary = false;
};

using ModelRow = std::map<std::string, Value>;  ///< by column

struct ModelTable {
    std::vector<ModelColumn> columns;
    std::vector<ModelIndex> indexes;
    std::vector<ModelRow> rows;
    int numbers = 0;  ///< column numbers used up, at most

    [[nodiscard]] const ModelColumn& Column(const std::string& name) const {
        return *std::ranges::find(columns, name, &ModelColumn::name);
    }
    [[nodiscard]] bool IsIndexed(const std::string& column) const {
        return std::ranges::any_of(indexes, [&](const ModelIndex& index) {
            return std::ranges::find(index.columns, column) != index.columns.end();
        });
    }
};

struct ModelRelation {
    std::string name, child, childColumn, parent, parentColumn;
    bool cascadesUpdate = false, cascadesDelete = false;
};

/// A value as equal ones of an index have it: letter case and blanks at the end do not count.
inline Value Folded(const Value& value) {
    const auto* text = std::get_if<std::string>(&value);
    if (text == nullptr) {
        return value;
    }
    std::string folded = text->substr(0, text->find_last_not_of(' ') + 1);
    std::ranges::transform(folded, folded.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return folded;
}

struct Model {
    std::map<std::string, ModelTable> tables;
    std::vector<ModelRelation> relations;

    [[nodiscard]] bool InRelation(const std::string& table, const std::string& column) const {
        return std::ranges::any_of(relations, [&](const ModelRelation& r) {
            return (r.child == table && r.childColumn == column) ||
                   (r.parent == table && r.parentColumn == column);
        });
    }

    /// The numbers of all errors that a change leading to this state deserves.  `required`: the written rows.
    [[nodiscard]] std::set<std::int32_t> Violations() const {
        std::set<std::int32_t> found;
        for (const auto& [name, table] : tables) {
            for (const ModelIndex& index : table.indexes) {
                AddIndexViolations(table, index, found);
            }
        }
        for (const ModelRelation& relation : relations) {
            std::vector<Value> parents;
            for (const ModelRow& row : tables.at(relation.parent).rows) {
                parents.push_back(Folded(row.at(relation.parentColumn)));
            }
            for (const ModelRow& row : tables.at(relation.child).rows) {
                const Value key = Folded(row.at(relation.childColumn));
                if (!jet::IsNull(key) && std::ranges::find(parents, key) == parents.end()) {
                    found.insert({errors::kChildRecords, errors::kNoParentRecord, 3379});
                }
            }
        }
        return found;
    }

    /// Rows whose key in a parent has changed, or gone, take their children along where relations say so.
    void CascadeUpdate(const std::string& parent, const std::string& column, const Value& from,
                       const Value& to) {
        for (const ModelRelation& r : relations) {
            if (r.parent == parent && r.parentColumn == column && r.cascadesUpdate && from != to &&
                !jet::IsNull(from)) {
                for (ModelRow& row : tables.at(r.child).rows) {
                    if (Folded(row.at(r.childColumn)) == Folded(from)) {
                        const Value before = row.at(r.childColumn);
                        row.at(r.childColumn) = to;
                        CascadeUpdate(r.child, r.childColumn, before, to);
                    }
                }
            }
        }
    }
    void Delete(const std::string& table, const std::function<bool(const ModelRow&)>& wanted) {
        std::vector<ModelRow> gone;
        std::erase_if(tables.at(table).rows, [&](const ModelRow& row) {
            if (wanted(row)) {
                gone.push_back(row);
                return true;
            }
            return false;
        });
        for (const ModelRelation& r : relations) {
            for (const ModelRow& parent : gone) {
                const Value key =
                    Folded(parent.contains(r.parentColumn) ? parent.at(r.parentColumn) : Null{});
                if (r.parent == table && r.cascadesDelete && !jet::IsNull(key)) {
                    Delete(r.child,
                           [&](const ModelRow& row) { return Folded(row.at(r.childColumn)) == key; });
                }
            }
        }
    }

  private:
    static void AddIndexViolations(const ModelTable& table, const ModelIndex& index,
                                   std::set<std::int32_t>& found) {
        std::set<std::string> keys;
        for (const ModelRow& row : table.rows) {
            nlohmann::json key = nlohmann::json::array();
            bool hasNull = false;
            for (const std::string& column : index.columns) {
                const Value value = Folded(row.at(column));
                hasNull = hasNull || jet::IsNull(value);
                key.push_back(JsonOf(value));
            }
            if (hasNull && index.primary) {
                found.insert(errors::kNullInKey);
            }
            if (!hasNull && index.unique && !keys.insert(key.dump()).second) {
                found.insert(errors::kDuplicateKey);
            }
        }
    }

  public:
    /// A value as the independent reader of files prints it.
    static nlohmann::json JsonOf(const Value& value) {
        if (const auto* number = std::get_if<std::int64_t>(&value)) {
            return *number;
        }
        if (const auto* boolean = std::get_if<bool>(&value)) {
            return *boolean;
        }
        if (const auto* real = std::get_if<double>(&value)) {
            return *real;
        }
        if (const auto* date = std::get_if<jet::Date>(&value)) {
            return date->days;
        }
        if (const auto* text = std::get_if<std::string>(&value)) {
            return *text;
        }
        return nullptr;
    }

    /// Every row as a line, sorted.
    static std::vector<std::string> Lines(const ModelTable& table) {
        std::vector<std::string> lines;
        for (const ModelRow& row : table.rows) {
            nlohmann::json line = nlohmann::json::array();
            for (const ModelColumn& column : table.columns) {
                line.push_back(JsonOf(row.at(column.name)));
            }
            lines.push_back(line.dump());
        }
        std::ranges::sort(lines);
        return lines;
    }
};

/// What a value becomes in a column of another type; Null where it cannot be had.
inline Value Converted(const Value& value, ColumnType type, unsigned size) {
    if (jet::IsNull(value)) {
        return value;
    }
    const auto* text = std::get_if<std::string>(&value);
    const auto* number = std::get_if<std::int64_t>(&value);
    const auto* real = std::get_if<double>(&value);
    const std::size_t sign = text != nullptr && text->starts_with('-') ? 1 : 0;
    const bool digits = text != nullptr && text->size() > sign &&
                        text->find_first_not_of("0123456789", sign) == std::string::npos;
    switch (type) {
        case ColumnType::Text:
        case ColumnType::Memo: {
            std::u16string units =
                text::Utf16FromUtf8(text != nullptr ? *text : std::to_string(*number));  // no reals to text
            units.resize(type == ColumnType::Text ? std::min<std::size_t>(units.size(), size) : units.size());
            return text::Utf8FromUtf16(units);
        }
        case ColumnType::Double:
            return text != nullptr ? (digits ? Value{std::stod(*text)} : Value{Null{}})
                                   : Value{number != nullptr ? static_cast<double>(*number) : *real};
        default: {
            if (text != nullptr && !digits) {
                return Null{};
            }
            const auto whole =
                static_cast<std::int64_t>(std::nearbyint(text != nullptr     ? std::stod(*text)
                                                         : number != nullptr ? static_cast<double>(*number)
                                                                             : *real));
            const std::int64_t limit = type == ColumnType::Integer ? 0x7FFF : 0x7FFFFFFF;
            return whole >= -limit - 1 && whole <= limit ? Value{whole} : Value{Null{}};
        }
    }
}

}  // namespace tavrel::testing
