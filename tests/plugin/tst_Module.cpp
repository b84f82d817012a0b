#include "support/IsolatedHome.h"

#include <QDir>
#include <QFile>
#include <QLibraryInfo>
#include <QProcess>
#include <QTest>

// The module's folder as other programs use it: Qt's own tools, each in a process of its own.
class tst_Module : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void qmldirNamesAllItsParts();
    void everyRowIsDescribed_data();
    void everyRowIsDescribed();
    void programQmlRunsADocument();
    void runnerRunsATest();
    void lintAcceptsADocument();
    void lintFinds_data();
    void lintFinds();

private:
    struct Result
    {
        int exitCode = -1;
        QString output; // of both channels
    };

    QString write(const QString &name, const QByteArray &text);
    static QByteArray moduleFile(const QString &name);
    static Result run(const QString &program, const QStringList &arguments);

    QTemporaryDir m_folder;
};

namespace {

QString importDirectory()
{
    return qEnvironmentVariable("TESSALINE_QML_IMPORT_DIR");
}

QStringList lintArguments(const QString &document)
{
    return {"--check-unqualified",
            "-I",
            importDirectory(),
            "-I",
            QLibraryInfo::location(QLibraryInfo::Qml2ImportsPath),
            document};
}

const QByteArray imports = "import QtQuick 2.15\nimport Zemrik.Tessaline 1.0\n";

} // namespace

void tst_Module::initTestCase()
{
    QVERIFY(m_folder.isValid());
}

QString tst_Module::write(const QString &name, const QByteArray &text)
{
    QFile file(m_folder.filePath(name));
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() ? file.fileName()
                                                                              : QString();
}

QByteArray tst_Module::moduleFile(const QString &name)
{
    QFile file(importDirectory() + "/Zemrik/Tessaline/" + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

tst_Module::Result tst_Module::run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QLibraryInfo::location(QLibraryInfo::BinariesPath) + '/' + program, arguments);
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit)
        return {-1, program + ": " + process.errorString()};
    return {process.exitCode(), QString::fromLocal8Bit(process.readAll())};
}

void tst_Module::qmldirNamesAllItsParts()
{
    const QList<QByteArray> lines = moduleFile("qmldir").trimmed().split('\n');
    for (const char *line :
         {"module Zemrik.Tessaline", "plugin Tessaline", "classname TessalinePlugin",
          "typeinfo plugins.qmltypes", "depends QtQml 2.15", "depends QtQuick 2.15"})
        QVERIFY2(lines.contains(line), line);
    QVERIFY(QFile::exists(importDirectory() + "/Zemrik/Tessaline/libTessaline.so"));
}

void tst_Module::everyRowIsDescribed_data()
{
    QTest::addColumn<QString>("className");
    const QVector<QPair<const char *, const char *>> renamed{
        {"Tessaline", "Tessaline"},
        {"AppPlayer", "AppletsPlayer"},
        {"Settings", "Settings"},
        {"AppPlayerSettings", "AppletsPlayerSettings"},
    };
    for (const auto &row : renamed)
        QTest::newRow(row.first) << QString(row.second);
    for (const char *name : {"TessalineObject",
                             "TessalineError",
                             "Environment",
                             "Logging",
                             "App",
                             "AppInfo",
                             "AppInfoList",
                             "AppFilter",
                             "Network",
                             "NetworkProxy",
                             "NetworkRequest",
                             "NetworkRequestHeaders",
                             "AppPackage",
                             "AppDependency",
                             "ItemPackage",
                             "UrlInfo",
                             "File",
                             "FileInfo",
                             "FileFolder",
                             "ExifInfo",
                             "StorageInfo",
                             "ZipReader",
                             "ZipWriter",
                             "ZipFileInfo",
                             "StandardPaths",
                             "Device",
                             "ImageObject",
                             "PropertySet",
                             "BinaryData"})
        QTest::newRow(name) << QString(name);
}

void tst_Module::everyRowIsDescribed()
{
    QFETCH(QString, className);
    const QString types = QString::fromUtf8(moduleFile("plugins.qmltypes"));
    const int component = types.indexOf(QString("\n        name: \"%1\"\n").arg(className));
    QVERIFY(component > 0);
    const QString description =
        types.mid(component, types.indexOf("\n    }", component) - component);
    QVERIFY2(description.contains(
                 QString("exports: [\"Zemrik.Tessaline/%1 1.0\"]").arg(QTest::currentDataTag())),
             qPrintable(description));
}

void tst_Module::programQmlRunsADocument()
{
    const QString document = write("run.qml", imports
                                                  + "Item { Component.onCompleted: {"
                                                    " console.log('version', Tessaline.version);"
                                                    " Qt.callLater(Qt.quit) } }");
    const Result result = run("qml", {"-I", importDirectory(), document});
    QCOMPARE(result.exitCode, 0);
    QVERIFY2(result.output.contains("version 1.2.15"), qPrintable(result.output));
}

void tst_Module::runnerRunsATest()
{
    const QString document =
        write("tst_run.qml",
              imports
                  + "import QtTest 1.2\nTestCase { name: 'Outside'\n"
                    "    function test_folder() { verify(Tessaline.fileFolder('/').exists) } }");
    const Result result = run("qmltestrunner", {"-import", importDirectory(), "-input", document});
    QCOMPARE(result.exitCode, 0);
    QVERIFY2(result.output.contains("Outside::test_folder()"), qPrintable(result.output));
    QVERIFY2(result.output.contains("3 passed, 0 failed"), qPrintable(result.output));
}

void tst_Module::lintAcceptsADocument()
{
    const QString document =
        write("good.qml", imports
                              + "Item {\n"
                                "    id: root\n"
                                "    property string version: Tessaline.version\n"
                                "    property bool complete: request.readyState === "
                                "NetworkRequest.ReadyStateComplete\n"
                                "    FileFolder { id: folder; path: '~/x'; onPathChanged: "
                                "root.version = folder.path }\n"
                                "    NetworkRequest { id: request; method: 'GET' }\n"
                                "    Settings { fallbacksEnabled: false }\n"
                                "}\n");
    const Result result = run("qmllint", lintArguments(document));
    QCOMPARE(result.output, QString());
    QCOMPARE(result.exitCode, 0);
}

void tst_Module::lintFinds_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("warning");
    QTest::newRow("an unknown type")
        << QByteArray("PortalRequest {}") << "PortalRequest was not found";
    QTest::newRow("an unknown name")
        << QByteArray("FileFolder { function name() { return title } }") << "unqualified access";
}

void tst_Module::lintFinds()
{
    QFETCH(QByteArray, body);
    QFETCH(QString, warning);
    const QString document = write("bad.qml", imports + "Item { " + body + " }\n");
    const Result result = run("qmllint", lintArguments(document));
    QVERIFY(result.exitCode != 0);
    QVERIFY2(result.output.contains(warning), qPrintable(result.output));
}

TESSALINE_TEST_MAIN(tst_Module)
#include "tst_Module.moc"
