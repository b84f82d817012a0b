#include "plugin/LocalPath.h"

#include <QTest>

class tst_LocalPath : public QObject
{
    Q_OBJECT

private slots:
    void isWhatTheSystemTakes_data();
    void isWhatTheSystemTakes();
};

void tst_LocalPath::isWhatTheSystemTakes_data()
{
    QTest::addColumn<QString>("path");

    QTest::newRow("empty") << QString();
    QTest::newRow("plain") << "/tmp/a b.txt";
    QTest::newRow("umlaut at the end") << QString::fromUtf8("/tmp/Maß");
    QTest::newRow("beyond 16 bits") << QString::fromUtf8("/tmp/\xf0\x9f\x93\x81/x");
    QTest::newRow("long") << QString(5000, 'p');
    QTest::newRow("long with an umlaut") << QString(5000, 'p') + QString::fromUtf8("ö/x");
}

void tst_LocalPath::isWhatTheSystemTakes()
{
    QFETCH(QString, path);
    QCOMPARE(QByteArray(LocalPath(path).constData()), QFile::encodeName(path));
}

QTEST_GUILESS_MAIN(tst_LocalPath)

#include "tst_LocalPath.moc"
