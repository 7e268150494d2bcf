// tavrel-picture PNG [SCALE [PRODUCT]]: the window as a picture, with the comparison of the two databases
// that the settings name, the product of that list text chosen.  Draws without a screen unless one is asked
// for by QT_QPA_PLATFORM.
#include <cstdio>

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QPixmap>

#include "app/Form1.h"
#include "app/FormFont.h"
#include "app/KoreanWords.h"
#include "platform/Settings.h"
#include "workbench/PatchedCopies.h"

namespace {

/// Messages go to the standard output; every question is answered with its default.
class PrintedMessages : public tavrel::platform::MessageBox {
  public:
    tavrel::platform::MessageAnswer Show(const tavrel::platform::Message& message) override {
        std::printf("%s\n", message.text.c_str());
        using tavrel::platform::MessageAnswer;
        if (message.buttons == tavrel::platform::MessageButtons::Ok) {
            return MessageAnswer::Ok;
        }
        return message.defaultButton == 1 ? MessageAnswer::Yes : MessageAnswer::No;
    }
};

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2 || argc > 4) {
        std::fprintf(stderr, "tavrel-picture PNG [SCALE [PRODUCT]]\n");
        return 2;
    }
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    if (argc >= 3) {
        qputenv("QT_SCALE_FACTOR", argv[2]);
    }
    const QString target = QDir::current().absoluteFilePath(QString::fromLocal8Bit(argv[1]));
    QApplication application(argc, argv);
    QApplication::setFont(tavrel::app::FormFont());
    tavrel::app::InstallKoreanWords();
    PrintedMessages messages;
    tavrel::workbench::PatchedCopies copies;
    tavrel::app::Form1 form(
        {.settings = tavrel::platform::UserSettings(), .messages = &messages, .copies = &copies});
    form.Form_Load();
    form.show();
    QApplication::processEvents();
    if (argc == 4) {
        form.findChild<QComboBox*>(QStringLiteral("cmbApp"))->setCurrentText(QString::fromUtf8(argv[3]));
    }
    form.Form_KeyDown(tavrel::app::keys::kF5, 0);
    QApplication::processEvents();
    if (!form.grab().save(target)) {
        std::fprintf(stderr, "cannot write %s\n", argv[1]);
        return 1;
    }
    return 0;
}
