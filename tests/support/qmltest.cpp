// The Quick Test runner of this project: like qmltestrunner, in a home of its own, built with the
// same compiler flags as the library (a sanitized library can't be loaded by Debian's runner).
#include "support/IsolatedHome.h"
#include "support/QmlTestSetup.h"

#include <QApplication>
#include <QtQuickTest>

int main(int argc, char **argv)
{
    IsolatedHome home;
    QApplication application(argc, argv); // Quick Controls 1 and its dialogs want widgets
    QTEST_SET_MAIN_SOURCE_PATH
    QmlTestSetup setup;
    return quick_test_main_with_setup(argc, argv, "tessaline-qmltest", nullptr, &setup);
}
