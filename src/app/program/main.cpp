// The program: one window.  The command line is not read.
#include <QApplication>

#include "app/Form1.h"
#include "app/FormFont.h"
#include "app/KoreanWords.h"
#include "platform/Settings.h"
#include "update/StartUp.h"
#include "workbench/PatchedCopies.h"

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tavrel"));
    QApplication::setDesktopFileName(QStringLiteral("kr.ardel.Tavrel"));
    QApplication::setFont(tavrel::app::FormFont());
    tavrel::app::InstallKoreanWords();
    tavrel::workbench::PatchedCopies copies;
    tavrel::app::Form1 form({.settings = tavrel::platform::UserSettings(),
                             .copies = &copies,
                             .runAutoUpdate = tavrel::update::RunStartUpUpdate});
    if (!form.Form_Load()) {
        return 0;
    }
    form.show();
    return QApplication::exec();
}
