#include "jet/check/Check.h"

#include "jet/check/CatalogCheck.h"
#include "jet/check/Context.h"
#include "jet/check/Places.h"
#include "jet/check/PropertyCheck.h"
#include "jet/check/RelationCheck.h"
#include "jet/check/TableCheck.h"
#include "jet/database/Database.h"
#include "jet/storage/DataPage.h"
#include "jet/storage/Journal.h"
#include "platform/FileSystem.h"

namespace tavrel::jet {

namespace {

using namespace check;

void CheckFile(Context& context, const std::string& path) {
    // Beside a journal the length is that of an unfinished transaction, and goes with it.
    if (platform::FileExists(path) && platform::FileSize(path) % kPageSize != 0 &&
        !platform::FileExists(JournalPath(path))) {
        context.log.Add(FindingKind::FileLength, "파일");
    }
    if (!context.header.constantsRight) {
        context.log.Add(FindingKind::HeaderConstants, "헤더");
    }
    context.owners.Claim(0, context.owners.Register("헤더"));
    context.owners.Claim(1, context.owners.Register("전역 지도"));
    context.maps.ReadGlobalMaps();
}

/// Takes the pages of a definition.  A chain that runs into somebody else's page is not read: however the
/// chains of a damaged file are knotted, each page is read for one table.
void ClaimDefinition(Context& context, PageNumber first, const std::string& table) {
    const PageOwners::OwnerId owner = context.owners.Register(TablePlace(table) + " 정의");
    for (PageNumber page = first; page != 0;) {
        const PageRef bytes = context.pager.Read(page);
        if (U8(bytes, 0) != kPageTypeDefinition) {
            return;  // reading the definition tells
        }
        if (!context.owners.Claim(page, owner)) {
            ThrowDamaged("페이지 " + Number(page) + "이(가) 다른 곳에 속함");
        }
        page = U32(bytes, 4);
    }
}

std::vector<CheckedTable> ReadDefinitions(Context& context, const std::vector<CatalogObject>& objects) {
    std::vector<CheckedTable> tables;
    for (const CatalogObject& object : objects) {
        if (object.IsTable()) {
            Guard(context.log, FindingKind::DefinitionUnreadable, TablePlace(object.name), [&] {
                ClaimDefinition(context, object.DefinitionPage(), object.name);
                tables.push_back({&object, ReadTableDefinition(context.pager, object.DefinitionPage())});
            });
        }
    }
    return tables;
}

void CheckObjects(Context& context) {
    const std::vector<CatalogObject> objects = ReadObjects(context);
    const std::vector<CheckedTable> tables = ReadDefinitions(context, objects);
    for (const CheckedTable& table : tables) {
        TableCheck(context, table.object->name, table.definition, table.object->IsSystem()).Run();
    }
    context.maps.CheckMapPages();
    context.maps.CheckUnownedPages();
    const auto guard = [&](const char* where, auto&& step) {
        Guard(context.log, FindingKind::Unreadable, where, step);
    };
    guard("MSysObjects", [&] { CatalogCheck(context, objects).Run(tables); });
    guard("MSysObjects", [&] { CheckProperties(context, objects, tables); });
    guard("MSysRelationships", [&] { RelationCheck(context, objects, tables).Run(); });
}

}  // namespace

CheckReport CheckDatabase(Database& database, const ProgressFn& progress) {
    Context context(database.Pager(), database.Header(), progress);
    Guard(context.log, FindingKind::Unreadable, "파일", [&] { CheckFile(context, database.Path()); });
    Guard(context.log, FindingKind::Unreadable, "MSysObjects", [&] { CheckObjects(context); });
    const std::uint64_t pages = database.Pager().PageCount();
    if (progress) {
        progress(pages, pages);
    }
    context.log.Count("pages", pages);
    return context.log.Finish();
}

}  // namespace tavrel::jet
