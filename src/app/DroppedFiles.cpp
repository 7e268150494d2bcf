#include "app/DroppedFiles.h"

#include <QDir>
#include <QUrl>

namespace tavrel::app {

QStringList DroppedFiles(const QMimeData& data) {
    QStringList files;
    for (const QUrl& url : data.urls()) {
        if (!url.isLocalFile()) {
            break;
        }
        files.append(QDir::toNativeSeparators(url.toLocalFile()));
    }
    return files;
}

}  // namespace tavrel::app
