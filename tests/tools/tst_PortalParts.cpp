#include "support/IsolatedHome.h"

#include <portal/Accounts.h>
#include <portal/ZipFolder.h>

#include <QFile>
#include <QTemporaryDir>

// Parts of the portal where its answers don't show what they do.
class tst_PortalParts : public QObject
{
    Q_OBJECT

private slots:
    void datesInAnArchive_data();
    void datesInAnArchive();
    void whatIsPacked();
    void theTokenThatExpiresFirstMakesRoom();
};

namespace {

void write(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write("text") != 4)
        qFatal("Can't write %s", qPrintable(path));
}

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The time and date of the first entry, as its header has them: two bytes each.
QByteArray storedTime(const QDateTime &time)
{
    const auto number = [](int value) {
        return QByteArray(1, static_cast<char>(value & 0xff)) + static_cast<char>(value >> 8);
    };
    const QDate day = time.date();
    const QTime clock = time.time();
    return number((clock.hour() << 11) | (clock.minute() << 5) | (clock.second() / 2))
           + number(((day.year() - 1980) << 9) | (day.month() << 5) | day.day());
}

} // namespace

void tst_PortalParts::datesInAnArchive_data()
{
    QTest::addColumn<QDateTime>("modified");
    QTest::addColumn<QDateTime>("stored");
    const QDateTime usual(QDate(2026, 2, 28), QTime(13, 14, 16));
    const QDateTime first(QDate(1980, 1, 1), QTime(0, 0));
    const QDateTime last(QDate(2107, 12, 31), QTime(23, 59, 58));
    QTest::newRow("usual") << usual << usual;
    QTest::newRow("first") << first << first;
    QTest::newRow("last") << last << last;
    QTest::newRow("before") << QDateTime(QDate(1979, 12, 31), QTime(23, 59, 58)) << first;
    QTest::newRow("long before") << QDateTime(QDate(1970, 1, 2), QTime(3, 4, 6)) << first;
    QTest::newRow("after") << QDateTime(QDate(2108, 1, 1), QTime(0, 0)) << last;
    QTest::newRow("long after") << QDateTime(QDate(2200, 5, 6), QTime(7, 8, 10)) << last;
}

void tst_PortalParts::datesInAnArchive()
{
    QFETCH(QDateTime, modified);
    QFETCH(QDateTime, stored);
    QTemporaryDir dir;
    QDir(dir.path()).mkdir("in");
    const QString path = dir.filePath("in/a.txt");
    write(path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(modified, QFileDevice::FileModificationTime));
    file.close();
    QCOMPARE(QFileInfo(path).lastModified(), modified);
    QVERIFY(zipFolder(dir.filePath("in"), dir.filePath("a.zip")));
    QCOMPARE(read(dir.filePath("a.zip")).mid(10, 4).toHex(), storedTime(stored).toHex());
}

void tst_PortalParts::whatIsPacked()
{
    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkpath("in/empty"));
    QVERIFY(QDir(dir.path()).mkpath("in/sub"));
    QVERIFY(QDir(dir.path()).mkpath("in/.git"));
    for (const char *name : {"in/plain", "in/sub/below", "in/.hidden", "in/.git/config"})
        write(dir.filePath(name));
    QVERIFY(QFile::link("plain", dir.filePath("in/linked")));
    QVERIFY(QFile::link("sub", dir.filePath("in/linkedsub")));
    QVERIFY(zipFolder(dir.filePath("in"), dir.filePath("a.zip")));
    const QByteArray archive = read(dir.filePath("a.zip"));
    QVERIFY(archive.contains("plain"));
    QVERIFY(archive.contains("sub/below"));
    for (const char *name : {"empty", "hidden", "config", "linked"})
        QVERIFY2(!archive.contains(name), name);
}

void tst_PortalParts::theTokenThatExpiresFirstMakesRoom()
{
    const int maximum = 10000;
    Accounts accounts;
    QStringList tokens;
    for (int i = 0; i < maximum; ++i)
        tokens.append(accounts.makeToken("jo", i == 5000 ? 1000000 : 2000000).text);
    QCOMPARE(accounts.userOfToken(tokens.at(5000)), QString("jo"));
    tokens.append(accounts.makeToken("jo", 3000000).text);
    QStringList gone;
    for (const QString &token : tokens) {
        if (accounts.userOfToken(token).isEmpty())
            gone.append(token);
    }
    QCOMPARE(gone, QStringList(tokens.at(5000)));
}

TESSALINE_TEST_MAIN(tst_PortalParts)
#include "tst_PortalParts.moc"
