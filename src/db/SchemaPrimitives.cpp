#include "db/SchemaPrimitives.h"

#include <algorithm>
#include <array>

#include "db/Session.h"
#include "jet/sql/values/NumberText.h"

namespace tavrel::modDBsub_ADO {

namespace {

/// What a type code stands for in statements.
struct TypeLine {
    ColType type;
    const char* name;
    bool sized;         ///< "(size)" follows the name
    bool fillsEmpty;    ///< the fill is the empty text, else the default
    bool quotesEmpty;   ///< a default that is nothing but double quotes becomes two of them
    bool altersColumn;  ///< DBAlterColumn knows it
};

constexpr std::array kTypes = {
    TypeLine{ColType::SmallInt, "SMALLINT", false, false, false, true},
    TypeLine{ColType::Long, "LONG", false, false, false, true},
    TypeLine{ColType::Double, "DOUBLE", false, false, false, true},
    TypeLine{ColType::VarChar, "VARCHAR", true, true, true, true},
    TypeLine{ColType::Text, "TEXT", false, true, true, true},
    TypeLine{ColType::Date, "DATE", false, true, false, false},
    TypeLine{ColType::TinyInt, "TINYINT", false, false, false, false},
};

const TypeLine* FindType(ColType type) {
    const auto* line = std::ranges::find(kTypes, type, &TypeLine::type);
    return line != kTypes.end() ? line : nullptr;
}

std::string TypeText(const TypeLine& type, std::int32_t size) {
    constexpr std::int32_t kWidest = 255;
    return type.sized ? type.name + ("(" + std::to_string(size == 0 ? kWidest : size) + ")") : type.name;
}

bool IsNull(const ColumnDefault& value) {
    return std::holds_alternative<jet::Null>(value);
}

std::string DefaultText(const ColumnDefault& value) {
    if (const auto* whole = std::get_if<std::int32_t>(&value)) {
        return std::to_string(*whole);
    }
    if (const auto* number = std::get_if<double>(&value)) {
        return jet::sql::DoubleText(*number);
    }
    const auto* text = std::get_if<std::string>(&value);
    return text != nullptr ? *text : std::string();
}

/// The default as the DEFAULT clause shows it; `ofNull` is what Null reads as.
std::string ClauseText(const TypeLine* type, const ColumnDefault& value, const char* ofNull) {
    if (IsNull(value)) {
        return ofNull;
    }
    std::string text = DefaultText(value);
    const bool nothing = text.find_first_not_of('"') == std::string::npos;
    return type != nullptr && type->quotesEmpty && nothing ? "\"\"" : text;
}

std::string FillText(const TypeLine* type, const ColumnDefault& value) {
    if (type == nullptr) {
        return {};
    }
    if (type->fillsEmpty) {
        return "''";
    }
    return IsNull(value) ? "NULL" : DefaultText(value);
}

std::string ColumnStatement(const std::string& table, const char* verb, const std::string& column,
                            const std::string& type, const std::string& defaultText) {
    return "ALTER TABLE `" + table + "` " + " " + verb + " COLUMN `" + column + "`" + " " + type +
           " DEFAULT " + defaultText + " NOT NULL";
}

/// Runs `work`; a failure is told to the user and makes the answer false.
template <typename Work>
bool OrTell(Work work) {
    try {
        return work();
    } catch (const Error& error) {
        modDBsub::ShowMessage({.text = "오류번호 : " + std::to_string(error.Number()) +
                                       "\r\n오류내용 : " + error.Description()});
        return false;
    }
}

const char* CascadeText(std::int32_t mode) {
    switch (mode) {
        case 1:
            return " ON DELETE CASCADE";
        case 2:
            return " ON UPDATE CASCADE";
        case 3:
            return " ON DELETE CASCADE ON UPDATE CASCADE";
        default:
            return "";
    }
}

}  // namespace

bool DBAddColumn(const std::string& table, const std::string& column, ColType type, std::int32_t size,
                 const ColumnDefault& columnDefault, const std::string& followUp) {
    if (modDBsub::DBChkExistence(modDBsub::kColumnKind, table, column)) {
        return true;
    }
    const TypeLine* line = FindType(type);
    modDBsub::DBExecute(ColumnStatement(table, "ADD", column, line != nullptr ? TypeText(*line, size) : "",
                                        ClauseText(line, columnDefault, "NULL")));
    if (followUp == kDefUpdate) {
        modDBsub::DBExecute("UPDATE `" + table + "` SET `" + column + "` = " + FillText(line, columnDefault) +
                            " WHERE `" + column + "` IS NULL");
    } else if (!followUp.empty()) {
        modDBsub::DBExecute(followUp);
    }
    return true;
}

bool DBAlterColumn(const std::string& table, const std::string& column, ColType type, std::int32_t size,
                   const ColumnDefault& columnDefault) {
    const TypeLine* line = FindType(type);
    const std::string typeText = line != nullptr && line->altersColumn ? TypeText(*line, size) : "";
    modDBsub::DBExecute(
        ColumnStatement(table, "ALTER", column, typeText, ClauseText(line, columnDefault, "")));
    return true;
}

bool DBAddRelation(const std::string& name, const std::string& parent, const std::string& child,
                   const std::string& parentColumn, const std::string& childColumn, std::int32_t cascade) {
    const std::string childKey = child + "." + childColumn;
    const std::string parentKey = parent + "." + parentColumn;
    return OrTell([&] {
        std::unique_ptr<db::Recordset> orphans;
        const std::int32_t count = modDBsub::DBOpenRs(
            orphans,
            "SELECT " + childKey + " FROM " + child + " LEFT JOIN " + parent + " ON " + childKey + " = " +
                parentKey + " WHERE " + parentKey + " IS NULL GROUP BY " + childKey,
            0, 1, 1);
        if (count > 0) {
            return false;  // They are the user's rows: no migration deletes them.
        }
        // A count of -1 may mean that the query could not be opened; reading it then fails and ends the work.
        static_cast<void>(orphans->Eof());
        modDBsub::DBExecute("ALTER TABLE " + child + " ADD CONSTRAINT " + name + " FOREIGN KEY (" +
                            childColumn + ") REFERENCES " + parent + " (" + parentColumn + ")" +
                            CascadeText(cascade));
        modDBsub::DBCloseRs(orphans);
        return true;
    });
}

bool DBAddIndex(const std::string& table, const std::string& columns, const std::string& name, bool unique) {
    return OrTell([&] {
        modDBsub::DBExecute(std::string("CREATE") + (unique ? " UNIQUE" : "") + " INDEX " + name + " ON " +
                            table + "(" + columns + ")");
        return true;
    });
}

}  // namespace tavrel::modDBsub_ADO
