// The header, row table and free field of a page of rows.
#pragma once

#include <optional>

#include "jet/check/FindingLog.h"
#include "jet/storage/DataPage.h"

namespace tavrel::jet::check {

/// Reports what is wrong with a page.  `owner`: the owner field that it must have; nothing = whichever.  True
/// when its rows can be read.
bool CheckDataPage(FindingLog& log, ByteView page, PageNumber number, std::optional<std::uint32_t> owner);

}  // namespace tavrel::jet::check
