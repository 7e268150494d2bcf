#include "db/TableDefs.h"

#include "db/DBEngine.h"
#include "jet/database/Database.h"

namespace tavrel::db {

namespace {

Field FieldOf(const jet::FieldInfo& info) {
    return {.Name = info.name,
            .Type = static_cast<std::int16_t>(info.daoType),
            .Size = static_cast<std::int32_t>(info.size),
            .DefaultValue = info.defaultValue,
            .Required = info.required,
            .AllowZeroLength = info.allowZeroLength};
}

Index IndexOf(const jet::IndexInfo& info) {
    Index index{.Name = info.name, .Primary = info.primary, .Foreign = info.foreign, .Fields = {}};
    for (const jet::IndexFieldInfo& field : info.fields) {
        index.Fields.push_back({field.name});
    }
    return index;
}

}  // namespace

TableDef::TableDef(Database& database, const jet::CatalogObject& object)
    : database_(&database), object_(object.IsLinked() ? nullptr : &object), name_(object.name) {}

const std::vector<Field>& TableDef::Fields() {
    return Read().fields;
}

const std::vector<Index>& TableDef::Indexes() {
    return Read().indexes;
}

const TableDef::Structure& TableDef::Read() {
    jet::Database& file = database_->File();
    if (!structure_) {
        Structure read;
        if (object_ != nullptr) {
            const jet::TableInfo info = file.Describe(*object_);
            for (const jet::FieldInfo& field : info.fields) {
                read.fields.push_back(FieldOf(field));
            }
            for (const jet::IndexInfo& index : info.indexes) {
                read.indexes.push_back(IndexOf(index));
            }
        }
        structure_ = std::move(read);
    }
    return *structure_;
}

}  // namespace tavrel::db
