#include "jet/define/EngineObjects.h"

namespace tavrel::jet {

namespace {

constexpr std::uint32_t kEngineFlags = 0x80000000;
constexpr std::int32_t kDatabaseId = 0x10000000;
constexpr std::int32_t kObjects = kObjectsPage;
constexpr std::int32_t kAces = kAcesPage;
constexpr std::int32_t kQueries = kQueriesPage;
constexpr std::int32_t kRelationships = kRelationshipsPage;

struct EngineObject {
    std::int32_t id;
    std::int32_t parentId;
    std::string_view name;
    ObjectType type;
    const ByteVector* owner;
};

constexpr EngineObject kObjectRows[] = {
    {kTablesContainer, kRootContainer, "Tables", ObjectType::Container, &accounts::kEngine},
    {kDatabasesContainer, kRootContainer, "Databases", ObjectType::Container, &accounts::kEngine},
    {kRelationshipsContainer, kRootContainer, "Relationships", ObjectType::Container, &accounts::kEngine},
    {kDatabaseId, kDatabasesContainer, "MSysDb", ObjectType::Database, &accounts::kAdmin},
    {kObjects, kTablesContainer, "MSysObjects", ObjectType::Table, &accounts::kEngine},
    {kAces, kTablesContainer, "MSysACEs", ObjectType::Table, &accounts::kEngine},
    {kQueries, kTablesContainer, "MSysQueries", ObjectType::Table, &accounts::kEngine},
    {kRelationships, kTablesContainer, "MSysRelationships", ObjectType::Table, &accounts::kEngine},
};

constexpr Permission kPermissionRows[] = {
    {kObjects, &accounts::kAdmin, 0x60000},
    {kAces, &accounts::kAdmin, 0x60000},
    {kQueries, &accounts::kAdmin, 0x60000},
    {kRelationships, &accounts::kAdmin, 0xE0000},
    {kTablesContainer, &accounts::kCreator, 0xF00FE, true},
    {kTablesContainer, &accounts::kAdmin, 0xFFEFF, true},
    {kRelationshipsContainer, &accounts::kCreator, 0xF00FE, true},
    {kRelationshipsContainer, &accounts::kAdmin, 0x60001},
    {kDatabasesContainer, &accounts::kAdmin, 0x60000},
    {kDatabaseId, &accounts::kAdmin, 0x6000E},
    {kDatabaseId, &accounts::kUsers, 0xE},
    {kDatabaseId, &accounts::kAdmins, 0x6000E},
    {kObjects, &accounts::kAdmins, 0x60054},
    {kAces, &accounts::kAdmins, 0x60054},
    {kQueries, &accounts::kAdmins, 0x60014},
    {kQueries, &accounts::kUsers, 0x14},
    {kRelationships, &accounts::kAdmins, 0x60014},
    {kRelationships, &accounts::kUsers, 0x14},
    {kObjects, &accounts::kUsers, 0x14},
    {kTablesContainer, &accounts::kAdmins, 0xFFEFF, true},
    {kTablesContainer, &accounts::kUsers, 0xFFEFF, true},
    {kRelationshipsContainer, &accounts::kAdmins, 0xFFFFF, true},
    {kRelationshipsContainer, &accounts::kUsers, 0xFFFFF, true},
};

}  // namespace

std::vector<NewObject> EngineObjects(double created) {
    std::vector<NewObject> objects;
    for (const EngineObject& row : kObjectRows) {
        objects.push_back(
            {row.id, row.parentId, std::string(row.name), row.type, kEngineFlags, *row.owner, created, {}});
    }
    return objects;
}

std::vector<Permission> EnginePermissions() {
    return {std::begin(kPermissionRows), std::end(kPermissionRows)};
}

}  // namespace tavrel::jet
