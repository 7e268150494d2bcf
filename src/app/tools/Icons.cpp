// tavrel-icons FOLDER NAME: writes FOLDER/<size>x<size>/apps/NAME.png in every size.  For the build; needs no
// screen.
#include <cstdio>

#include <QDir>

#include "app/AppIcon.h"

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "tavrel-icons FOLDER NAME\n");
        return 2;
    }
    for (const int size : tavrel::app::kIconSizes) {
        const QDir folder(QString::fromLocal8Bit(argv[1]) + QStringLiteral("/%1x%1/apps").arg(size));
        const QString file = folder.filePath(QString::fromLocal8Bit(argv[2]) + QStringLiteral(".png"));
        if (!folder.mkpath(QStringLiteral(".")) || !tavrel::app::IconImage(size).save(file)) {
            std::fprintf(stderr, "cannot write %s\n", qPrintable(file));
            return 1;
        }
    }
    return 0;
}
