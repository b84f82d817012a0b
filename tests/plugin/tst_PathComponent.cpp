#include "plugin/PathComponent.h"
#include "support/IsolatedHome.h"

#include <QTest>

class tst_PathComponent : public QObject
{
    Q_OBJECT

private slots:
    void namesThatStayInTheFolder_data();
    void namesThatStayInTheFolder();
};

void tst_PathComponent::namesThatStayInTheFolder_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("stays");

    QTest::newRow("empty") << "" << true;
    QTest::newRow("item id") << "5f1c9d0e6b3a4c2d8e7f6a5b4c3d2e1f" << true;
    QTest::newRow("file name") << "my map (1).tpk" << true;
    QTest::newRow("hidden") << ".hidden" << true;
    QTest::newRow("three dots") << "..." << true;
    QTest::newRow("dots inside") << "a..b" << true;
    QTest::newRow("backslash") << "a\\b" << true;
    QTest::newRow("variable") << "~" << true;
    QTest::newRow("colon inside") << "a:b" << true;
    QTest::newRow("this folder") << "." << false;
    QTest::newRow("folder above") << ".." << false;
    QTest::newRow("path up") << "../x" << false;
    QTest::newRow("path down") << "a/b" << false;
    QTest::newRow("slash at the end") << "a/" << false;
    QTest::newRow("absolute") << "/x" << false;
    QTest::newRow("resource") << ":x" << false;
    QTest::newRow("NUL at the end") << QString::fromLatin1("a\0", 2) << false;
    QTest::newRow("NUL only") << QString(QChar()) << false;
}

void tst_PathComponent::namesThatStayInTheFolder()
{
    QFETCH(QString, name);
    QTEST(staysInFolder(name), "stays");
}

TESSALINE_TEST_MAIN(tst_PathComponent)
#include "tst_PathComponent.moc"
