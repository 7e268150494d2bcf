// Runs the tests with an application that needs no screen.
#include <QApplication>
#include <gtest/gtest.h>

#include "app/FormFont.h"

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    ::testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    QApplication::setFont(tavrel::app::FormFont());
    return RUN_ALL_TESTS();
}
