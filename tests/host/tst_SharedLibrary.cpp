#include "catalogue/App.h"
#include "plugin/FileUtility.h"
#include "plugin/Tessaline.h"
#include "plugin/TessalinePlugin.h"
#include "support/IsolatedHome.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QSet>
#include <QTest>

#include <memory>

// This program links the library, and its engine imports the module: both must be one, or types,
// registered formats and the singleton would exist twice.
class tst_SharedLibrary : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void theSingletonIsTheSame();
    void typesAreTheSame();
    void stateThatTheProgramSetsIsSeenByDocuments();
    void stateThatDocumentsSetIsSeenByTheProgram();
    void oneFileIsMapped();

private:
    std::unique_ptr<QObject> create(const QByteArray &document);

    QQmlEngine m_engine;
};

void tst_SharedLibrary::initTestCase()
{
    m_engine.addImportPath(QString::fromLocal8Bit(qgetenv("TESSALINE_QML_IMPORT_DIR")));
}

std::unique_ptr<QObject> tst_SharedLibrary::create(const QByteArray &document)
{
    QQmlComponent component(&m_engine);
    component.setData("import QtQml 2.15\nimport Zemrik.Tessaline 1.0\n" + document, QUrl());
    std::unique_ptr<QObject> object(component.create());
    if (!object)
        qWarning("%s", qPrintable(component.errorString()));
    return object;
}

void tst_SharedLibrary::theSingletonIsTheSame()
{
    const auto object = create("QtObject { property var singleton: Tessaline }");
    QVERIFY(object);

    auto *singleton = object->property("singleton").value<QObject *>();

    QVERIFY(qobject_cast<Tessaline *>(singleton));
    QCOMPARE(TessalinePlugin::tessalineProvider(&m_engine, nullptr), singleton);
}

void tst_SharedLibrary::typesAreTheSame()
{
    const auto object = create("App {}");
    QVERIFY(qobject_cast<App *>(object.get()));
    QCOMPARE(object->metaObject(), &App::staticMetaObject);
}

void tst_SharedLibrary::stateThatTheProgramSetsIsSeenByDocuments()
{
    FileUtility::setPathVariable(QStringLiteral("SHARED"), QStringLiteral("/from/program"));

    const auto object =
        create("QtObject { property string path: Tessaline.resolvedPath('$SHARED') }");

    QCOMPARE(object->property("path").toString(), QStringLiteral("/from/program"));
}

void tst_SharedLibrary::stateThatDocumentsSetIsSeenByTheProgram()
{
    const auto object = create(
        "QtObject { Component.onCompleted: Tessaline.setPathVariable('SHARED', '/from/qml') }");

    QCOMPARE(FileUtility::resolvedPath(QStringLiteral("$SHARED"), true),
             QStringLiteral("/from/qml"));
}

void tst_SharedLibrary::oneFileIsMapped()
{
    QFile maps(QStringLiteral("/proc/self/maps"));
    QVERIFY(maps.open(QIODevice::ReadOnly));
    QSet<QString> files;
    const QStringList lines = QString::fromLocal8Bit(maps.readAll()).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (line.contains(QStringLiteral("libTessaline")))
            files.insert(line.mid(line.indexOf(QLatin1Char('/'))));
    }

    QCOMPARE(files, QSet<QString>{QString::fromLocal8Bit(qgetenv("TESSALINE_QML_IMPORT_DIR"))
                                  + QStringLiteral("/Zemrik/Tessaline/libTessaline.so")});
}

TESSALINE_TEST_MAIN(tst_SharedLibrary)
#include "tst_SharedLibrary.moc"
