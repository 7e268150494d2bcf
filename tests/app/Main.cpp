// Runs the tests with an application that needs no screen, or on the display that on-display makes.
#include <QApplication>
#include <gtest/gtest.h>

#include "app/FormFont.h"
#include "app/KoreanWords.h"

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("TAVREL_TEST_DISPLAY")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    ::testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    QApplication::setFont(tavrel::app::FormFont());
    tavrel::app::InstallKoreanWords();
    return RUN_ALL_TESTS();
}
