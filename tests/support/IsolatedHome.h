#pragma once

#include <QGuiApplication>
#include <QString>
#include <QTemporaryDir>
#include <QTest>

// A fresh home for one test process: HOME, the XDG folders and XDG_RUNTIME_DIR point into a folder
// that goes when the object goes. Make it before the application object.
class IsolatedHome
{
public:
    IsolatedHome();

    QString path() const { return m_dir.path(); }

private:
    QTemporaryDir m_dir;
};

// Runs the test class in a GUI application with a home of its own.
template <typename TestClass, typename Application = QGuiApplication>
int runIsolatedTest(int argc, char **argv)
{
    IsolatedHome home;
    Application application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Zemrik Tests"));
    QCoreApplication::setApplicationName(
        QString::fromLatin1(TestClass::staticMetaObject.className()));
    TestClass test;
    return QTest::qExec(&test, argc, argv);
}

#define TESSALINE_TEST_MAIN(TestClass) \
    int main(int argc, char **argv) \
    { \
        return runIsolatedTest<TestClass>(argc, argv); \
    }

// For tests that use QTest's mouse and keyboard: where the widgets are linked, those take the
// application for a QApplication. Include <QApplication> for it.
#define TESSALINE_INPUT_TEST_MAIN(TestClass) \
    int main(int argc, char **argv) \
    { \
        return runIsolatedTest<TestClass, QApplication>(argc, argv); \
    }
