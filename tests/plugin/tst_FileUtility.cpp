#include "plugin/FileUtility.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <optional>
#include <sys/stat.h>
#include <thread>
#include <utime.h>

// HOME is in the environment of every test process, and TEMP and the variables named here are not.
class tst_FileUtility : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_home = QString::fromLocal8Bit(qgetenv("HOME")); }
    void init();
    void cleanup() { init(); }

    void pathWithoutPrefixComesBackShared_data();
    void pathWithoutPrefixComesBackShared();
    void prefixIsReplaced_data();
    void prefixIsReplaced();
    void prefixWithoutANameWarns_data();
    void prefixWithoutANameWarns();
    void unknownVariableWarnsAndIsReplacedByNothing_data();
    void unknownVariableWarnsAndIsReplacedByNothing();
    void resolvedPathWithoutTheSystem();
    void resolvedPathOfAUrl_data();
    void resolvedPathOfAUrl();

    void pathUrl_data();
    void pathUrl();
    void resolvedPathUrl();
    void resourcePathUrl();

    void pathVariableComesFromTheFirstPlaceThatHasOne();
    void pathVariableWithoutTheSystem();
    void pathVariableWithAnEmptyName();
    void unsetPathVariableIsEmptyNotTheDefault();
    void pathVariableNamesAreExact();
    void valueInTheSettingsIsTrimmedOthersAreNot();
    void pathVariableOfOtherTypes();
    void environmentIsUtf8();
    void builtInDefaultIsPinned();
    void builtInDefaults();
    void setPathVariableSetsAndRemoves();
    void setPathVariableWithAnEmptyName();
    void setPathVariableLeavesTheSettingsAlone();
    void pathVariableType();
    void pathVariableNamesAreThoseOfTheApplication();
    void pathVariablesMap();
    void pathPropertyName();
    void setHomePath();

    void mkpath();
    void mkpathFails();
    void setHiddenDoesNothing();
    void dirEntryListIsAllFilesOfATree();
    void dirEntryListOfNothing();
    void dirEntryListBelowARelativePath();
    void dirEntryListFollowsLinksButNotInCircles();

    void filesRoundTrip_data();
    void filesRoundTrip();
    void readFileOfNothing();
    void readFileOfAFolderOnDisk();
    void readFileBeyondWhatIsReadAtOnce();
    void readFileWithoutASize();
    void readFileOfTooMuch();
    void readFileOfAPipeLosesNoWriter();
    void namesWithANulAreRefused();
    void writeFileTruncates();
    void writeFileFails_data();
    void writeFileFails();

    void copyDateTime();
    void copyDateTimeOfMissingFiles();
    void lastModified_data();
    void lastModified();
    void setDateTimeIsInWholeSeconds();
    void setDateTimeBeyond32Bits_data();
    void setDateTimeBeyond32Bits();
    void setDateTimeFails();

private:
    QString m_home;
};

namespace {

const char category[] = "Zemrik.Runtime.Utility";
const char group[] = "Zemrik/Runtime/pathVariables/";

void setInSettings(const QString &name, const QVariant &value)
{
    QSettings().setValue(group + name, value);
}

bool writeBytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

bool writeTree(const QString &root, const QStringList &files)
{
    for (const QString &file : files) {
        const QString path = root + '/' + file;
        if (!QDir().mkpath(QFileInfo(path).path()) || !writeBytes(path, "x"))
            return false;
    }
    return true;
}

struct stat statOf(const QString &path)
{
    struct stat result = {};
    ::stat(QFile::encodeName(path).constData(), &result);
    return result;
}

} // namespace

void tst_FileUtility::init()
{
    for (const QByteArray &name : QCoreApplication::instance()->dynamicPropertyNames())
        QCoreApplication::instance()->setProperty(name.constData(), QVariant());
    QSettings().clear();
    for (const char *name : {"TEMP", "A", "B", "A\\b", "bob", "MYDATA"})
        qunsetenv(name);
    qputenv("HOME", m_home.toLocal8Bit());
}

void tst_FileUtility::pathWithoutPrefixComesBackShared_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("absolute") << "/a/$HOME/~";
    QTest::newRow("relative") << "a/b";
    QTest::newRow("URL in text form") << "file:///~/a";
    QTest::newRow("resource") << ":/a";
    QTest::newRow("space in front") << " ~/a";
}

void tst_FileUtility::pathWithoutPrefixComesBackShared()
{
    QFETCH(QString, path);
    LogCapture log;
    const QString resolved = FileUtility::resolvedPath(path, true);
    QCOMPARE(resolved, path);
    QCOMPARE(resolved.constData(), path.constData()); // the same text, not a copy of it
    QCOMPARE(FileUtility::resolvedPath(QString(""), true), QString(""));
    QVERIFY(FileUtility::resolvedPath(QString(), true).isNull());
    QCOMPARE(log.messages().size(), 0);
}

void tst_FileUtility::prefixIsReplaced_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("resolved");
    QTest::newRow("~") << "~"
                       << "<home>";
    QTest::newRow("~/") << "~/"
                        << "<home>/";
    QTest::newRow("~/x") << "~/x/y"
                         << "<home>/x/y";
    QTest::newRow("~\\x") << "~\\x"
                          << "<home>\\x";
    QTest::newRow("$HOME") << "$HOME"
                           << "<home>";
    QTest::newRow("$HOME/x") << "$HOME/x"
                             << "<home>/x";
    QTest::newRow("~HOME/x") << "~HOME/x"
                             << "<home>/x";
    QTest::newRow("variable") << "$A/x"
                              << "value of A/x";
    QTest::newRow("variable alone") << "$A"
                                    << "value of A";
    QTest::newRow("variable by tilde") << "~A/x"
                                       << "value of A/x";
    QTest::newRow("variable up to a backslash") << "$A\\x"
                                                << "value of A\\x";
    QTest::newRow("slash wins over an earlier backslash") << "$A\\b/c"
                                                          << "backslash/c";
    QTest::newRow("backslash behind the slash") << "$A/b\\c"
                                                << "value of A/b\\c";
    QTest::newRow("later prefixes stay") << "$A/$A/~"
                                         << "value of A/$A/~";
    QTest::newRow("only one prefix character") << "$$A/x"
                                               << "dollar/x";
    QTest::newRow("value is not resolved again") << "$B/x"
                                                 << "$A/x";
}

void tst_FileUtility::prefixIsReplaced()
{
    QFETCH(QString, path);
    QFETCH(QString, resolved);
    FileUtility::setPathVariable("A", "value of A");
    FileUtility::setPathVariable("A\\b", "backslash");
    FileUtility::setPathVariable("$A", "dollar");
    FileUtility::setPathVariable("B", "$A");
    LogCapture log;
    QCOMPARE(FileUtility::resolvedPath(path, true), resolved.replace("<home>", m_home));
    QCOMPARE(log.messages().size(), 0);
}

void tst_FileUtility::prefixWithoutANameWarns_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("resolved");
    QTest::newRow("$") << "$"
                       << "";
    QTest::newRow("$/x") << "$/x"
                         << "/x";
    QTest::newRow("$\\x") << "$\\x"
                          << "\\x";
}

void tst_FileUtility::prefixWithoutANameWarns()
{
    QFETCH(QString, path);
    QFETCH(QString, resolved);
    LogCapture log;
    QCOMPARE(FileUtility::resolvedPath(path, true), resolved);
    QCOMPARE(log.count(QtWarningMsg, category, "Path variable name not specified"), 1);
    QCOMPARE(log.messages().size(), 1);
}

void tst_FileUtility::unknownVariableWarnsAndIsReplacedByNothing_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("resolved");
    QTest::newRow("$NOPE/x") << "$NOPE/x"
                             << "NOPE"
                             << "/x";
    QTest::newRow("$NOPE") << "$NOPE"
                           << "NOPE"
                           << "";
    QTest::newRow("~bob/x is no user's home") << "~bob/x"
                                              << "bob"
                                              << "/x";
    QTest::newRow("other case") << "$home/x"
                                << "home"
                                << "/x";
}

void tst_FileUtility::unknownVariableWarnsAndIsReplacedByNothing()
{
    QFETCH(QString, path);
    QFETCH(QString, name);
    QFETCH(QString, resolved);
    LogCapture log;
    QCOMPARE(FileUtility::resolvedPath(path, true), resolved);
    QCOMPARE(log.count(QtWarningMsg, category, "Nonexistent Path variable \"" + name + '"'), 1);
    QCOMPARE(log.messages().size(), 1);
}

void tst_FileUtility::resolvedPathWithoutTheSystem()
{
    qputenv("A", "environment");
    setInSettings("B", "settings");
    LogCapture log;
    QCOMPARE(FileUtility::resolvedPath(QString("$A/x"), false), QString("/x"));
    QCOMPARE(FileUtility::resolvedPath(QString("$B/x"), false), QString("/x"));
    QCOMPARE(log.count(QtWarningMsg, category, "Nonexistent Path variable"), 2);
    QCOMPARE(FileUtility::resolvedPath(QString("$A/x"), true), QString("environment/x"));
    QCOMPARE(FileUtility::resolvedPath(QString("$B/x"), true), QString("settings/x"));
    QCOMPARE(log.count(QtWarningMsg), 2);
}

void tst_FileUtility::resolvedPathOfAUrl_data()
{
    QTest::addColumn<QUrl>("url");
    QTest::addColumn<QString>("resolved");
    QTest::newRow("qrc") << QUrl("qrc:///a/b") << ":/a/b";
    QTest::newRow("qrc with an encoded character") << QUrl("qrc:///a%20b%23") << ":/a b#";
    QTest::newRow("file") << QUrl("file:///a/b") << "/a/b";
    QTest::newRow("file with an encoded character") << QUrl("file:///a%20b") << "/a b";
    QTest::newRow("file with a host") << QUrl("file://host/a") << "//host/a";
    QTest::newRow("web") << QUrl("http://host/a/b%20c?q#f") << "/a/b c";
    QTest::newRow("web without a path") << QUrl("http://host") << "";
    QTest::newRow("relative with a variable") << QUrl("$A/x") << "value of A/x";
    QTest::newRow("empty") << QUrl() << "";
}

void tst_FileUtility::resolvedPathOfAUrl()
{
    QFETCH(QUrl, url);
    QFETCH(QString, resolved);
    FileUtility::setPathVariable("A", "value of A");
    LogCapture log;
    QCOMPARE(FileUtility::resolvedPath(url, true), resolved);
    QCOMPARE(log.messages().size(), 0);
}

void tst_FileUtility::pathUrl_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QUrl>("url");
    const QString thumbnail = ":/images/defaultThumbnail.png";
    QTest::newRow("file") << "/proc/self/status" << QUrl("file:///proc/self/status");
    QTest::newRow("folder") << "/" << QUrl("file:///");
    QTest::newRow("resource") << thumbnail << QUrl("qrc:///images/defaultThumbnail.png");
    QTest::newRow("missing file") << "/no/such file" << QUrl("file:///no/such%20file");
    QTest::newRow("missing resource") << ":/a" << QUrl("qrc:///a");
    QTest::newRow("missing relative") << "a" << QUrl::fromLocalFile("a");
    QTest::newRow("colon without a slash") << ":a" << QUrl::fromLocalFile(":a");
}

void tst_FileUtility::pathUrl()
{
    QFETCH(QString, path);
    QFETCH(QUrl, url);
    QCOMPARE(FileUtility::pathUrl(path), url);
    if (path.startsWith('/') || path.startsWith(":/"))
        QCOMPARE(FileUtility::resolvedPath(url, true), path);
}

void tst_FileUtility::resolvedPathUrl()
{
    QCOMPARE(FileUtility::resolvedPathUrl("~/a b", true), QUrl::fromLocalFile(m_home + "/a b"));
    QCOMPARE(FileUtility::resolvedPathUrl(":/a", true), QUrl("qrc:///a"));
    FileUtility::setPathVariable("A", ":/b");
    QCOMPARE(FileUtility::resolvedPathUrl("$A/c", true), QUrl("qrc:///b/c"));
}

void tst_FileUtility::resourcePathUrl()
{
    QCOMPARE(FileUtility::resourcePathUrl(":/a/b"), QUrl("qrc:///a/b"));
    QCOMPARE(FileUtility::resourcePathUrl("xya"), QUrl("qrc:///a")); // assumed, not tested
}

void tst_FileUtility::pathVariableComesFromTheFirstPlaceThatHasOne()
{
    qputenv("A", "environment");
    QCOMPARE(FileUtility::pathVariable("A", QString(), true), QString("environment"));
    setInSettings("A", "settings");
    QCOMPARE(FileUtility::pathVariable("A", QString(), true), QString("settings"));
    FileUtility::setPathVariable("A", "application");
    QCOMPARE(FileUtility::pathVariable("A", QString(), true), QString("application"));

    setInSettings("HOME", "/settings");
    QCOMPARE(FileUtility::pathVariable("HOME", QString(), true), QString("/settings"));
    QCOMPARE(FileUtility::homePath(), QString("/settings"));
}

void tst_FileUtility::pathVariableWithoutTheSystem()
{
    qputenv("A", "environment");
    setInSettings("A", "settings");
    QCOMPARE(FileUtility::pathVariable("A", QString(), false), QString());
    FileUtility::setPathVariable("A", "application");
    QCOMPARE(FileUtility::pathVariable("A", QString(), false), QString("application"));
}

void tst_FileUtility::pathVariableWithAnEmptyName()
{
    LogCapture log;
    QCOMPARE(FileUtility::pathVariable(QString(), "default", true), QString("default"));
    QCOMPARE(log.count(QtWarningMsg, category, "Empty name"), 1);
    QCOMPARE(log.messages().size(), 1);
}

void tst_FileUtility::unsetPathVariableIsEmptyNotTheDefault()
{
    LogCapture log;
    QCOMPARE(FileUtility::pathVariable("A", "default", true), QString());
    QCOMPARE(log.messages().size(), 0);
}

void tst_FileUtility::pathVariableNamesAreExact()
{
    FileUtility::setPathVariable("A", "upper");
    QCOMPARE(FileUtility::pathVariable("a", QString(), true), QString());
    QCOMPARE(FileUtility::pathVariable("home", QString(), true), QString());
    QCOMPARE(FileUtility::pathVariable("temp", QString(), true), QString());
}

void tst_FileUtility::valueInTheSettingsIsTrimmedOthersAreNot()
{
    setInSettings("A", " settings \n");
    QCOMPARE(FileUtility::pathVariable("A", QString(), true), QString("settings"));
    setInSettings("A", "  "); // as good as none
    qputenv("A", " environment ");
    QCOMPARE(FileUtility::pathVariable("A", QString(), true), QString(" environment "));
    FileUtility::setPathVariable("A", " application ");
    QCOMPARE(FileUtility::pathVariable("A", QString(), true), QString(" application "));
}

void tst_FileUtility::pathVariableOfOtherTypes()
{
    const QByteArray name = FileUtility::pathPropertyName("A");
    QCoreApplication::instance()->setProperty(name.constData(), 5);
    QCOMPARE(FileUtility::pathVariable("A", QString(), true), QString("5"));
    QCOMPARE(FileUtility::pathVariableType("A", true), 1);
    QCoreApplication::instance()->setProperty(name.constData(),
                                              QVariant(QString())); // valid, but null
    qputenv("A", "environment");
    QCOMPARE(FileUtility::pathVariable("A", QString(), true), QString("environment"));
    QCOMPARE(FileUtility::pathVariableType("A", true), 3);
    setInSettings("B", 12);
    QCOMPARE(FileUtility::pathVariable("B", QString(), true), QString("12"));
}

void tst_FileUtility::environmentIsUtf8()
{
    qputenv("A", "\xc3\xa4");
    QCOMPARE(FileUtility::pathVariable("A", QString(), true), QStringLiteral("ä"));
    qputenv("A", "");
    QCOMPARE(FileUtility::pathVariable("A", QString(), true), QString());
    QCOMPARE(FileUtility::pathVariableType("A", true), 0);
}

void tst_FileUtility::builtInDefaultIsPinned()
{
    LogCapture log;
    const QString temp = QDir::tempPath();
    QCOMPARE(FileUtility::pathVariableType("TEMP", true), 0);
    QCOMPARE(FileUtility::resolvedPath(QString("$TEMP/x"), true), temp + "/x");
    QCOMPARE(log.count(QtDebugMsg, category, "Setting default \"TEMP\" = \"" + temp + '"'), 1);
    QCOMPARE(FileUtility::pathVariableType("TEMP", true), 1);
    QCOMPARE(FileUtility::pathVariableNames(), QStringList("TEMP"));

    // It outlives later changes of the system's own value, and is set once.
    setInSettings("TEMP", "/settings");
    qputenv("TMPDIR", "/elsewhere");
    QCOMPARE(FileUtility::pathVariable("TEMP", QString(), true), temp);
    qunsetenv("TMPDIR");
    QCOMPARE(log.messages().size(), 1);

    // HOME is in the environment, so only a look that leaves it out falls back on the default.
    QCOMPARE(FileUtility::pathVariable("HOME", QString(), true), m_home);
    QCOMPARE(log.messages().size(), 1);
    QCOMPARE(FileUtility::pathVariable("HOME", QString(), false), m_home);
    QCOMPARE(log.count(QtDebugMsg, category, "Setting default \"HOME\" = \"" + m_home + '"'), 1);
}

void tst_FileUtility::builtInDefaults()
{
    QCOMPARE(FileUtility::defaultPathVariable("HOME"), QDir::homePath());
    QCOMPARE(FileUtility::defaultPathVariable("TEMP"), QDir::tempPath());
    QCOMPARE(FileUtility::defaultPathVariable("home"), QString());
    QCOMPARE(FileUtility::defaultPathVariable(QString()), QString());
    QCOMPARE(FileUtility::defaultHomePath(), QDir::homePath());
    QCOMPARE(FileUtility::defaultTempPath(), QDir::tempPath());
}

void tst_FileUtility::setPathVariableSetsAndRemoves()
{
    const QByteArray name = "Zemrik/Runtime/pathVariables.A";
    qputenv("A", "environment");
    FileUtility::setPathVariable("A", "application");
    QCOMPARE(QCoreApplication::instance()->property(name.constData()), QVariant("application"));
    QCOMPARE(FileUtility::pathVariable("A", QString(), true), QString("application"));
    FileUtility::setPathVariable("A", QString());
    QVERIFY(!QCoreApplication::instance()->dynamicPropertyNames().contains(name));
    QCOMPARE(FileUtility::pathVariable("A", QString(), true), QString("environment"));
}

void tst_FileUtility::setPathVariableWithAnEmptyName()
{
    LogCapture log;
    FileUtility::setPathVariable(QString(), "something");
    QCOMPARE(log.count(QtWarningMsg, category, "Empty name, value= \"something\""), 1);
    QCOMPARE(log.messages().size(), 1);
    QVERIFY(QCoreApplication::instance()->dynamicPropertyNames().isEmpty());
}

void tst_FileUtility::setPathVariableLeavesTheSettingsAlone()
{
    FileUtility::setPathVariable("A", "application");
    QVERIFY(!QSettings().contains(QString(group) + "A"));
}

void tst_FileUtility::pathVariableType()
{
    QCOMPARE(FileUtility::pathVariableType("A", true), 0);
    QVERIFY(!FileUtility::pathVariableExists("A", true));
    qputenv("A", "environment");
    QCOMPARE(FileUtility::pathVariableType("A", true), 3);
    setInSettings("A", "settings");
    QCOMPARE(FileUtility::pathVariableType("A", true), 2);
    QCOMPARE(FileUtility::pathVariableType("A", false), 0);
    QVERIFY(FileUtility::pathVariableExists("A", true));
    QVERIFY(!FileUtility::pathVariableExists("A", false));
    FileUtility::setPathVariable("A", "application");
    QCOMPARE(FileUtility::pathVariableType("A", true), 1);
    QCOMPARE(FileUtility::pathVariableType("A", false), 1);
    QVERIFY(FileUtility::pathVariableExists("A", false));

    LogCapture log;
    QCOMPARE(FileUtility::pathVariableType(QString(), true), 0);
    QCOMPARE(log.messages().size(), 0);
}

void tst_FileUtility::pathVariableNamesAreThoseOfTheApplication()
{
    qputenv("A", "environment");
    setInSettings("B", "settings");
    QCoreApplication::instance()->setProperty("another property", 1);
    QCOMPARE(FileUtility::pathVariableNames(), QStringList());
    FileUtility::setPathVariable("X", "1");
    FileUtility::setPathVariable(QStringLiteral("ä"), "2");
    FileUtility::setPathVariable("A", "3");
    QCOMPARE(FileUtility::pathVariableNames(), (QStringList{"X", QStringLiteral("ä"), "A"}));
}

void tst_FileUtility::pathVariablesMap()
{
    QCOMPARE(FileUtility::pathVariablesMap(), QVariantMap());
    FileUtility::setPathVariable("X", "1");
    FileUtility::setPathVariable("A", "2");
    QCOMPARE(FileUtility::pathVariablesMap(),
             (QVariantMap{{"A", QString("2")}, {"X", QString("1")}}));
}

void tst_FileUtility::pathPropertyName()
{
    QCOMPARE(FileUtility::pathPropertyName("A"), QByteArray("Zemrik/Runtime/pathVariables.A"));
    QCOMPARE(FileUtility::pathPropertyName(QStringLiteral("ä")),
             QByteArray("Zemrik/Runtime/pathVariables.\xc3\xa4"));
}

void tst_FileUtility::setHomePath()
{
    const QTemporaryDir dir;
    QVERIFY(FileUtility::setHomePath(dir.path()));
    QCOMPARE(FileUtility::homePath(), dir.path());
    QCOMPARE(FileUtility::resolvedPath(QString("~/x"), true), dir.path() + "/x");
    QVERIFY(!FileUtility::setHomePath("/no/such/folder"));
    QCOMPARE(FileUtility::homePath(), QString("/no/such/folder")); // set all the same
}

void tst_FileUtility::mkpath()
{
    const QTemporaryDir dir;
    QVERIFY(FileUtility::mkpath(dir.path()));
    QVERIFY(FileUtility::mkpath(dir.filePath("a/b/c")));
    QVERIFY(QFileInfo(dir.filePath("a/b/c")).isDir());
    QVERIFY(FileUtility::mkpath(dir.filePath("d/")));
    QVERIFY(QFileInfo(dir.filePath("d")).isDir());
    QVERIFY(FileUtility::mkpath(QDir(dir.filePath("e/f"))));
    QVERIFY(QFileInfo(dir.filePath("e/f")).isDir());
}

void tst_FileUtility::mkpathFails()
{
    const QTemporaryDir dir;
    QVERIFY(writeBytes(dir.filePath("file"), "x"));
    QVERIFY(!FileUtility::mkpath(dir.filePath("file")));
    QVERIFY(!FileUtility::mkpath(dir.filePath("file/a")));
    QVERIFY(!FileUtility::mkpath("/proc/nothing/here"));
}

void tst_FileUtility::setHiddenDoesNothing()
{
    const QTemporaryDir dir;
    QVERIFY(writeBytes(dir.filePath("file"), "x"));
    QVERIFY(FileUtility::setHidden(dir.filePath("file"), true));
    QVERIFY(FileUtility::setHidden("/no/such/file", false));
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList("file"));
}

void tst_FileUtility::dirEntryListIsAllFilesOfATree()
{
    const QTemporaryDir dir;
    QVERIFY(writeTree(dir.path(), {"b.txt", "a.txt", "c/d.txt", "c/e/f.txt", "c.txt"}));
    QVERIFY(QDir().mkpath(dir.filePath("empty/also empty")));
    QVERIFY(QDir().mkpath(dir.filePath("c/empty")));
    QCOMPARE(FileUtility::dirEntryList(QDir(dir.path())),
             (QStringList{"a.txt", "b.txt", "c/d.txt", "c/e/f.txt", "c.txt"}));
}

void tst_FileUtility::dirEntryListOfNothing()
{
    const QTemporaryDir dir;
    QCOMPARE(FileUtility::dirEntryList(QDir(dir.path())), QStringList());
    QCOMPARE(FileUtility::dirEntryList(QDir("/no/such/folder")), QStringList());
}

void tst_FileUtility::dirEntryListBelowARelativePath()
{
    const QTemporaryDir dir;
    QVERIFY(writeTree(dir.path(), {"a", "b/c"}));
    QStringList list{"before"};
    FileUtility::dirEntryList(QDir(dir.path()), "top", list);
    QCOMPARE(list, (QStringList{"before", "top/a", "top/b/c"}));
}

void tst_FileUtility::dirEntryListFollowsLinksButNotInCircles()
{
    const QTemporaryDir dir;
    const QTemporaryDir other;
    QVERIFY(writeTree(dir.path(), {"a/x", "b/y"}));
    QVERIFY(writeTree(other.path(), {"z"}));
    QVERIFY(QFile::link(other.path(), dir.filePath("link")));
    QVERIFY(QFile::link(dir.filePath("a"), dir.filePath("b/a")));
    QVERIFY(QFile::link(dir.filePath("b"), dir.filePath("a/b")));
    QVERIFY(QFile::link(dir.path(), dir.filePath("self")));
    QCOMPARE(FileUtility::dirEntryList(QDir(dir.path())),
             (QStringList{"a/b/y", "a/x", "b/a/x", "b/y", "link/z"}));
}

void tst_FileUtility::filesRoundTrip_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("text") << QByteArray("abc");
    QTest::newRow("any bytes") << QByteArray("\0\xff\r\n\x1a", 5);
    QTest::newRow("none") << QByteArray();
    QTest::newRow("more than a buffer") << QByteArray(300000, 'x');
}

void tst_FileUtility::filesRoundTrip()
{
    QFETCH(QByteArray, bytes);
    const QTemporaryDir dir;
    const QString path = dir.filePath("file");
    QVERIFY(FileUtility::writeFile(path, bytes));
    QCOMPARE(QFileInfo(path).size(), qint64(bytes.size()));
    QCOMPARE(FileUtility::readFile(path), bytes);
}

void tst_FileUtility::readFileOfNothing()
{
    const QTemporaryDir dir;
    LogCapture log;
    QVERIFY(FileUtility::readFile(dir.filePath("missing")).isEmpty());
    QVERIFY(FileUtility::readFile(dir.path()).isEmpty());
    QVERIFY(FileUtility::readFile(QString()).isEmpty());
    QVERIFY2(log.messages().isEmpty(), qPrintable(log.dump()));
}

// Where a folder has a size, other than in a file system in memory.
void tst_FileUtility::readFileOfAFolderOnDisk()
{
    LogCapture log;
    for (const char *folder : {"/", "/usr", "/usr/lib", "/proc"})
        QVERIFY(FileUtility::readFile(folder).isEmpty());
    QVERIFY2(log.messages().isEmpty(), qPrintable(log.dump()));
}

// Qt's own way with a file takes over there. The file has a hole, and takes no room on the disk.
void tst_FileUtility::readFileBeyondWhatIsReadAtOnce()
{
    const QTemporaryDir dir;
    QFile file(dir.filePath("large"));
    const qint64 size = 256 * 1024 * 1024 + 1;
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("begin") == 5 && file.resize(size));
    file.close();
    const QByteArray bytes = FileUtility::readFile(file.fileName());
    QCOMPARE(qint64(bytes.size()), size);
    QVERIFY(bytes.startsWith("begin"));
}

// The size of such a file is 0, and a read may bring less than there is.
void tst_FileUtility::readFileWithoutASize()
{
    QVERIFY(FileUtility::readFile("/proc/self/status").startsWith("Name:"));
    QVERIFY(FileUtility::readFile("/dev/null").isEmpty());
}

void tst_FileUtility::readFileOfTooMuch()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath("file");
    const QString relativePath = QDir::current().relativeFilePath(path);
    QVERIFY(FileUtility::writeFile(path, "12345"));
    LogCapture log;
    QCOMPARE(FileUtility::readFile(path, 5), QByteArray("12345"));
    QCOMPARE(FileUtility::readFile(relativePath, 5), QByteArray("12345"));
    QVERIFY(log.messages().isEmpty());
    QVERIFY(FileUtility::readFile(path, 4).isEmpty());
    QVERIFY(FileUtility::readFile(relativePath, 4).isEmpty());
    QVERIFY(FileUtility::readFile("/proc/self/status", 4).isEmpty()); // has no size
    QCOMPARE(log.count(QtWarningMsg, category, "Too many bytes to read:"), 3);
}

void tst_FileUtility::namesWithANulAreRefused()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath("file");
    const QString cut = path + QChar(0) + ".txt";
    QVERIFY(FileUtility::writeFile(path, "kept"));
    const QDateTime before = QFileInfo(path).lastModified();
    LogCapture log;
    QVERIFY(FileUtility::hasUsableName(path));
    QVERIFY(!FileUtility::hasUsableName(cut));
    QVERIFY(FileUtility::readFile(cut).isEmpty());
    QVERIFY(!FileUtility::writeFile(cut, "lost"));
    QVERIFY(!FileUtility::lastModified(cut));
    QVERIFY(!FileUtility::setDateTime(cut, before.addDays(-1), before.addDays(-1)));
    QVERIFY(FileUtility::dirEntryList(QDir(dir.path() + QChar(0) + 'x')).isEmpty());
    QCOMPARE(log.count(QtWarningMsg, category, "Name with a NUL:"), 6);
    QCOMPARE(FileUtility::readFile(path), QByteArray("kept"));
    QCOMPARE(QFileInfo(path).lastModified(), before);
}

void tst_FileUtility::readFileOfAPipeLosesNoWriter()
{
    const QTemporaryDir dir;
    const QByteArray path = QFile::encodeName(dir.filePath("pipe"));
    QCOMPARE(mkfifo(path.constData(), 0600), 0);
    const QByteArray text(200000, 'x'); // more than a pipe holds
    std::thread writer([&] {
        QFile file(QFile::decodeName(path));
        if (file.open(QIODevice::WriteOnly))
            file.write(text); // waits for the reader
    });
    const QByteArray read = FileUtility::readFile(QFile::decodeName(path));
    writer.join();
    QVERIFY(read == text);
}

void tst_FileUtility::writeFileTruncates()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath("file");
    QVERIFY(FileUtility::writeFile(path, "a longer one"));
    QVERIFY(FileUtility::writeFile(path, "short"));
    QCOMPARE(FileUtility::readFile(path), QByteArray("short"));
}

void tst_FileUtility::writeFileFails_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("size");
    QTest::newRow("no folder") << "/no/such/folder/file" << 1;
    QTest::newRow("a folder") << "/" << 1;
    QTest::newRow("full disk") << "/dev/full" << 1;
    QTest::newRow("full disk, more than a buffer") << "/dev/full" << 100000;
}

void tst_FileUtility::writeFileFails()
{
    QFETCH(QString, path);
    QFETCH(int, size);
    QVERIFY(!FileUtility::writeFile(path, QByteArray(size, 'x')));
}

void tst_FileUtility::copyDateTime()
{
    const QTemporaryDir dir;
    const QString from = dir.filePath("from");
    const QString to = dir.filePath("to");
    QVERIFY(writeTree(dir.path(), {"from", "to"}));
    const utimbuf times = {1000000001, 1000000002};
    QCOMPARE(::utime(QFile::encodeName(from).constData(), &times), 0);
    QVERIFY(FileUtility::copyDateTime(from, to));
    QCOMPARE(qint64(statOf(to).st_atime), qint64(1000000001));
    QCOMPARE(qint64(statOf(to).st_mtime), qint64(1000000002));
}

void tst_FileUtility::copyDateTimeOfMissingFiles()
{
    const QTemporaryDir dir;
    const QString file = dir.filePath("file");
    const QString missing = dir.filePath("missing");
    QVERIFY(writeBytes(file, "x"));
    LogCapture log;
    QVERIFY(!FileUtility::copyDateTime(missing, file));
    QCOMPARE(log.count(QtWarningMsg, category, "fromFilePath not found: \"" + missing + '"'), 1);
    QVERIFY(!FileUtility::copyDateTime(file, missing));
    QCOMPARE(log.count(QtWarningMsg, category, "toFilePath not found: \"" + missing + '"'), 1);
    QVERIFY(!FileUtility::copyDateTime(missing, missing));
    QCOMPARE(log.count(QtWarningMsg, category, "fromFilePath not found:"), 2);
    QCOMPARE(log.messages().size(), 3);
}

void tst_FileUtility::lastModified_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("absolute") << QDir::current().filePath("file");
    QTest::newRow("relative") << "file";
    QTest::newRow("folder") << QDir::currentPath();
    QTest::newRow("resource") << ":/images/defaultThumbnail.png";
}

void tst_FileUtility::lastModified()
{
    QFETCH(QString, path);
    QVERIFY(writeBytes(QDir::current().filePath("file"), "x"));
    const QFileInfo info(path);
    QVERIFY(info.exists());
    const std::optional<qint64> time = FileUtility::lastModified(path);
    QVERIFY(time);
    QCOMPARE(*time, info.lastModified().toMSecsSinceEpoch());
    QVERIFY(!FileUtility::lastModified(path + "/missing"));
}

void tst_FileUtility::setDateTimeIsInWholeSeconds()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("fileä"));
    QVERIFY(writeBytes(path, "x"));
    LogCapture log;
    QVERIFY(FileUtility::setDateTime(path, QDateTime::fromMSecsSinceEpoch(1234567890999, Qt::UTC),
                                     QDateTime::fromMSecsSinceEpoch(1500000000500)));
    const struct stat result = statOf(path);
    QCOMPARE(qint64(result.st_atim.tv_sec), qint64(1234567890));
    QCOMPARE(qint64(result.st_mtim.tv_sec), qint64(1500000000));
    QCOMPARE(result.st_atim.tv_nsec + result.st_mtim.tv_nsec, 0);
    QCOMPARE(log.messages().size(), 0);
}

void tst_FileUtility::setDateTimeBeyond32Bits_data()
{
    QTest::addColumn<QDateTime>("time");
    QTest::newRow("before 1970") << QDateTime::fromSecsSinceEpoch(-86400);
    QTest::newRow("after 2106") << QDateTime::fromSecsSinceEpoch(5000000000);
    QTest::newRow("invalid") << QDateTime();
}

// All of them become the largest number of 32 bits, whatever a file system makes of that.
void tst_FileUtility::setDateTimeBeyond32Bits()
{
    QFETCH(QDateTime, time);
    const QTemporaryDir dir;
    const QString path = dir.filePath("file");
    const QString reference = dir.filePath("reference");
    QVERIFY(writeTree(dir.path(), {"file", "reference"}));
    const utimbuf largest = {0xffffffff, 0xffffffff};
    QCOMPARE(::utime(QFile::encodeName(reference).constData(), &largest), 0);
    QVERIFY(FileUtility::setDateTime(path, time, time));
    QCOMPARE(qint64(statOf(path).st_mtime), qint64(statOf(reference).st_mtime));
    QCOMPARE(qint64(statOf(path).st_atime), qint64(statOf(reference).st_atime));
}

void tst_FileUtility::setDateTimeFails()
{
    const QDateTime time = QDateTime::fromSecsSinceEpoch(1000000000, Qt::UTC);
    LogCapture log;
    QVERIFY(!FileUtility::setDateTime("/no/such/file", time, time.addDays(1)));
    QCOMPARE(log.count(QtWarningMsg, category, "error: 2 file: \"/no/such/file\" times:"), 1);
    QCOMPARE(log.messages().size(), 1);
    QVERIFY(log.dump().contains("2001-09-09"));
    QVERIFY(log.dump().contains("2001-09-10"));
}

TESSALINE_TEST_MAIN(tst_FileUtility)
#include "tst_FileUtility.moc"
