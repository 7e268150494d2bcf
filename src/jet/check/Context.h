// What every part of the check works with.
#pragma once

#include "jet/check/FindingLog.h"
#include "jet/check/PageOwners.h"
#include "jet/check/PageSet.h"
#include "jet/check/UsageMapCheck.h"
#include "jet/storage/FileHeader.h"
#include "jet/storage/Pager.h"

namespace tavrel::jet::check {

struct Context {
    Context(Pager& pages, const FileHeader& fileHeader, const ProgressFn& progress)
        : pager(pages),
          header(fileHeader),
          owners(log, pages.PageCount(), progress),
          maps(pages, log, owners),
          walkedIndexPages(pages.PageCount()) {}

    Pager& pager;
    const FileHeader& header;
    FindingLog log;
    PageOwners owners;
    UsageMapCheck maps;
    PageSet walkedIndexPages;  ///< each is read once in the whole check, however many trees claim it
};

}  // namespace tavrel::jet::check
