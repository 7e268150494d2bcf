// Files that are dropped on the window.
#pragma once

#include <QMimeData>
#include <QStringList>

namespace tavrel::app {

/// Paths of the files that the data begins with, as the platform writes them; none when it carries no list of
/// files.
QStringList DroppedFiles(const QMimeData& data);

}  // namespace tavrel::app
