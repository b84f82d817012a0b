#include "plugin/TessalinePlugin.h"

#include "player/AppletsPlayer.h"
#include "plugin/Tessaline.h"
#include "plugin/TessalineDebug.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonObject>
#include <QLibraryInfo>
#include <QNetworkProxyFactory>
#include <QPluginLoader>
#include <QPointer>
#include <QProcess>
#include <qqml.h>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QResource>
#include <QTest>
#include <QTranslator>

namespace {

const char *const pluginCategory = "Zemrik.Tessaline.Plugin";

QString importDirectory()
{
    return qEnvironmentVariable("TESSALINE_QML_IMPORT_DIR");
}

QString libraryPath()
{
    return importDirectory() + "/Zemrik/Tessaline/libTessaline.so";
}

const QStringList catalogueLocales{"ar", "cs",    "da", "de", "el",    "en",    "es",    "et",
                                   "fi", "fr",    "he", "hr", "it",    "ja",    "ko",    "lt",
                                   "lv", "nb_NO", "nl", "pl", "pt_BR", "pt_PT", "ro",    "ru",
                                   "sr", "sv",    "th", "tr", "vi",    "zh_CN", "zh_HK", "zh_TW"};

QString catalogueFile(const QString &locale)
{
    return QString(":/languages/TessalinePlugin_%1.qm").arg(locale);
}

const QString subModuleFolder = ":/imports/Zemrik/Tessaline/";

// What the library carries; the names of pictures are its own affair.
QStringList resourceFiles()
{
    QStringList files{":/images/defaultThumbnail.png"};
    for (const char *name :
         {"Controls/qmldir", "Controls/CalloutRectangle.qml", "Controls/Fader.qml",
          "Controls/ImageButton.qml", "Dialogs/qmldir", "Dialogs/ImageCaptureDialog.qml",
          "Dialogs/ImageChooserDialog.qml", "Dialogs/CameraComboBox.qml",
          "Dialogs/CameraProperties.qml", "Dialogs/CameraPropertyChooser.qml",
          "Dialogs/CameraPropertySection.qml", "Dialogs/CameraPropertySlider.qml",
          "Dialogs/CameraPropertyText.qml", "Dialogs/images", "Portal/qmldir", "Portal/Portal.qml",
          "Portal/PortalDialog.qml", "Portal/images"})
        files.append(subModuleFolder + name);
    for (const QString &locale : catalogueLocales)
        files.append(catalogueFile(locale));
    return files;
}

// Makes an object from one element; null, and the errors in `errors`, if that fails.
QObject *createObject(QQmlEngine *engine, const QString &element, QString *errors = nullptr)
{
    QQmlComponent component(engine);
    component.setData("import QtQml 2.15\nimport Zemrik.Tessaline 1.0\n" + element.toUtf8(),
                      QUrl());
    QObject *object = component.create();
    if (errors)
        *errors = component.errorString();
    return object;
}

// What child processes do, by the name in their first argument.

// Uses the singleton where there is no GUI application; it must not get to the end.
int runWithoutGui(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QQmlEngine engine;
    engine.addImportPath(importDirectory());
    createObject(&engine, "QtObject { property string version: Tessaline.version }");
    return 0;
}

// Imports the module with the catalogues of the resource file in the second argument, if that isn't
// empty, and prints the translation of the text in the fourth in the context in the third, and the
// number of translators that belong to the engine.
int runTranslated(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    if (argc != 5 || (*argv[2] && !QResource::registerResource(QString::fromLocal8Bit(argv[2]))))
        return 1;
    QQmlEngine engine;
    engine.addImportPath(importDirectory());
    const QScopedPointer<QObject> object(createObject(&engine, "QtObject {}"));
    printf("%s %d\n", QCoreApplication::translate(argv[3], argv[4]).toUtf8().constData(),
           engine.findChildren<QTranslator *>().size());
    return object ? 0 : 2;
}

} // namespace

class tst_TessalinePlugin : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void metadataNamesClassAndModule();
    void resourcesAreThereBeforeRegistration();
    void subModuleNamesItsTypes_data();
    void subModuleNamesItsTypes();
    void shippedCatalogueHasTexts_data();
    void shippedCatalogueHasTexts();
    void firstImportRegistersOnce();
    void rowIsRegistered_data();
    void rowIsRegistered();
    void rowsKeepTheirOrder();
    void helperClassIsNoType_data();
    void helperClassIsNoType();
    void singletonCannotBeAnElement();
    void settingsElementIsTheCreatableClass();
    void expressionsReachTheSingleton();

    void enginesShareTheSingleton();
    void secondEngineLeavesTheSingletonAlone();
    void hostAndModuleShareOneLibrary();
    void providerLogsItsPointer();

    void initializeEngineLogsInOrder();
    void systemProxyIsUsedForEveryEngine();
    void everyEngineGetsAnImageProvider();
    void importPathsStayAsTheyAre();
    void subModulesNeedTheResourcePath_data();
    void subModulesNeedTheResourcePath();
    void engineOwnsOneTranslator();

    void withoutGuiApplicationTheProcessEnds();
    void catalogueOfTheFirstLanguageIsInstalled_data();
    void catalogueOfTheFirstLanguageIsInstalled();
    void shippedCatalogueIsInstalled_data();
    void shippedCatalogueIsInstalled();

private:
    struct Translated
    {
        QString text; // and the number of the engine's translators
        QByteArray messages;
    };
    static Translated translated(const QString &languages, const QString &resource,
                                 const QString &context, const QString &text);
    QQmlEngine *makeEngine(QObject *parent = nullptr);
    QString makeCatalogues(const QTemporaryDir &folder);

    QStringList m_missingAtStart;   // resources
    QStringList m_firstImport;      // the plug-in's lines
    QQmlEngine *m_engine = nullptr; // the process's first, which has to outlive all others
    QPointer<Tessaline> m_singleton;
};

QQmlEngine *tst_TessalinePlugin::makeEngine(QObject *parent)
{
    auto *engine = new QQmlEngine(parent);
    engine->addImportPath(importDirectory());
    return engine;
}

void tst_TessalinePlugin::initTestCase()
{
    for (const QString &file : resourceFiles()) {
        if (!QFile::exists(file))
            m_missingAtStart.append(file);
    }
    m_engine = makeEngine();
    LogCapture log;
    QString errors;
    const QScopedPointer<QObject> object(
        createObject(m_engine, "QtObject { property QtObject it: Tessaline }", &errors));
    QVERIFY2(object, qPrintable(errors));
    m_singleton = qobject_cast<Tessaline *>(object->property("it").value<QObject *>());
    QVERIFY(m_singleton);
    const auto messages = log.messages();
    for (const LogCapture::Message &message : messages) {
        if (message.category == pluginCategory)
            m_firstImport.append(message.text);
    }
}

void tst_TessalinePlugin::cleanupTestCase()
{
    delete m_engine;
    QVERIFY(!m_singleton); // its life is the first engine's
}

void tst_TessalinePlugin::metadataNamesClassAndModule()
{
    const QJsonObject metaData = QPluginLoader(libraryPath()).metaData();
    QCOMPARE(metaData.value("IID").toString(), QString("org.qt-project.Qt.QQmlExtensionInterface"));
    QCOMPARE(metaData.value("className").toString(), QString("TessalinePlugin"));
    QCOMPARE(metaData.value("version").toInt() >> 8, QT_VERSION >> 8); // major and minor
#ifdef QT_NO_DEBUG
    QCOMPARE(metaData.value("debug").toBool(true), false);
#endif
    QCOMPARE(metaData.value("MetaData").toObject().value("uri").toArray(),
             QJsonArray{"Zemrik.Tessaline"});
}

void tst_TessalinePlugin::resourcesAreThereBeforeRegistration()
{
    QCOMPARE(m_missingAtStart, QStringList());
    QVERIFY(!QImage(":/images/defaultThumbnail.png").isNull());
    QVERIFY(!QDir(subModuleFolder + "Dialogs/images").isEmpty());
    QVERIFY(!QDir(subModuleFolder + "Portal/images").isEmpty());
    QCOMPARE(QDir(":/languages").entryList().size(), catalogueLocales.size());
}

void tst_TessalinePlugin::subModuleNamesItsTypes_data()
{
    QTest::addColumn<QStringList>("types");
    QTest::newRow("Controls") << QStringList{"CalloutRectangle", "Fader", "ImageButton"};
    QTest::newRow("Dialogs") << QStringList{"ImageCaptureDialog", "ImageChooserDialog"};
    QTest::newRow("Portal") << QStringList{"Portal", "PortalDialog"};
}

void tst_TessalinePlugin::subModuleNamesItsTypes()
{
    QFETCH(QStringList, types);
    const QString name = QTest::currentDataTag();
    QFile qmldir(subModuleFolder + name + "/qmldir");
    QVERIFY(qmldir.open(QIODevice::ReadOnly));

    QStringList expected{"module Zemrik.Tessaline." + name};
    for (const QString &type : types)
        expected.append(QString("%1 1.0 %1.qml").arg(type));
    QCOMPARE(QString::fromUtf8(qmldir.readAll()).split('\n', Qt::SkipEmptyParts), expected);
}

void tst_TessalinePlugin::shippedCatalogueHasTexts_data()
{
    QTest::addColumn<QString>("file");
    for (const QString &locale : catalogueLocales)
        QTest::newRow(qPrintable(locale)) << catalogueFile(locale);
}

// One without texts would be loaded, but couldn't be installed.
void tst_TessalinePlugin::shippedCatalogueHasTexts()
{
    QFETCH(QString, file);
    QTranslator translator;
    QVERIFY(translator.load(file));
    QVERIFY(!translator.isEmpty());
}

void tst_TessalinePlugin::firstImportRegistersOnce()
{
    QVERIFY(m_firstImport.value(0).contains("registerTypes"));
    QVERIFY(m_firstImport.value(0).endsWith("Zemrik.Tessaline"));
    QCOMPARE(m_firstImport.filter("registerTypes").size(), 1);
    QCOMPARE(m_firstImport.filter("initializeEngine").size(), 2); // itself, and the storage path
}

void tst_TessalinePlugin::rowIsRegistered_data()
{
    QTest::addColumn<QString>("className"); // empty: can't be created
    const auto creatable = [](const char *name) { QTest::newRow(name) << QString(name); };
    const auto uncreatable = [](const char *name) { QTest::newRow(name) << QString(); };
    uncreatable("TessalineObject");
    uncreatable("TessalineError");
    uncreatable("AppPlayer");
    uncreatable("AppPlayerSettings");
    uncreatable("Environment");
    uncreatable("Logging");
    creatable("App");
    creatable("AppInfo");
    creatable("AppInfoList");
    uncreatable("AppFilter");
    uncreatable("Network");
    uncreatable("NetworkProxy");
    creatable("NetworkRequest");
    creatable("NetworkRequestHeaders");
    creatable("AppPackage");
    uncreatable("AppDependency");
    creatable("ItemPackage");
    creatable("UrlInfo");
    creatable("File");
    creatable("FileInfo");
    creatable("FileFolder");
    creatable("Settings");
    creatable("ExifInfo");
    creatable("StorageInfo");
    creatable("ZipReader");
    creatable("ZipWriter");
    creatable("ZipFileInfo");
    uncreatable("StandardPaths");
    uncreatable("Device");
    creatable("ImageObject");
    creatable("PropertySet");
    creatable("BinaryData");
}

void tst_TessalinePlugin::rowIsRegistered()
{
    QFETCH(QString, className);
    const QString name = QTest::currentDataTag();
    QString errors;
    const QScopedPointer<QObject> object(createObject(m_engine, name + " {}", &errors));
    if (className.isEmpty()) {
        QVERIFY(!object);
        QVERIFY2(errors.contains(QString("The Zemrik type %1 is not creatable\n").arg(name)),
                 qPrintable(errors));
    } else {
        QVERIFY2(object, qPrintable(errors));
        QVERIFY(object->inherits(className.toLatin1().constData()));
    }
}

// Types are numbered as they are registered. A name with two rows is found at its later one, and
// the singleton at its repetition behind the table.
void tst_TessalinePlugin::rowsKeepTheirOrder()
{
    const auto idOf = [](const QString &name) {
        return qmlTypeId("Zemrik.Tessaline", 1, 0, name.toLatin1().constData());
    };
    const QString shadowed("shadowed");
    const QStringList names{"TessalineObject",
                            shadowed, // Tessaline, uncreatable
                            "TessalineError",
                            "AppPlayer",
                            "AppPlayerSettings",
                            "Environment",
                            "Logging",
                            "App",
                            "AppInfo",
                            "AppInfoList",
                            "AppFilter",
                            shadowed, // Settings, uncreatable
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
                            "Settings",
                            "ExifInfo",
                            "StorageInfo",
                            "ZipReader",
                            "ZipWriter",
                            "ZipFileInfo",
                            "StandardPaths",
                            "Device",
                            "ImageObject",
                            "PropertySet",
                            "BinaryData",
                            "Tessaline"};
    int expected = idOf(names.first());
    for (const QString &name : names) {
        if (name != shadowed) {
            const int id = idOf(name);
            if (id < 0)
                continue; // rowIsRegistered() tells of rows that are missing
            QVERIFY2(id == expected, qPrintable(name));
        }
        ++expected;
    }
}

void tst_TessalinePlugin::helperClassIsNoType_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"PortalRequest", "PortalPackageRequest", "PortalObject",
                             "NetworkFormData", "NetworkFilePart", "SettingsBase", "AppletsPlayer",
                             "AppletsPlayerSettings", "FileUtility", "UnZipFile", "ImageProvider"})
        QTest::newRow(name) << QString(name);
}

void tst_TessalinePlugin::helperClassIsNoType()
{
    QFETCH(QString, name);
    QString errors;
    const QScopedPointer<QObject> object(createObject(m_engine, name + " {}", &errors));
    QVERIFY(!object);
    QVERIFY2(errors.contains(name + " is not a type"), qPrintable(errors));
}

void tst_TessalinePlugin::singletonCannotBeAnElement()
{
    QString errors;
    const QScopedPointer<QObject> object(createObject(m_engine, "Tessaline {}", &errors));
    QVERIFY(!object);
    QVERIFY2(errors.contains("not creatable"), qPrintable(errors));
}

void tst_TessalinePlugin::settingsElementIsTheCreatableClass()
{
    const QScopedPointer<QObject> object(createObject(m_engine, "Settings {}"));
    QVERIFY(object);
    QCOMPARE(object->metaObject()->className(), "Settings");
    QVERIFY(!object->inherits("SettingsBase"));
}

void tst_TessalinePlugin::expressionsReachTheSingleton()
{
    const QScopedPointer<QObject> object(
        createObject(m_engine, "QtObject { property string version: Tessaline.version }"));
    QVERIFY(object);
    QCOMPARE(object->property("version").toString(), QString("1.2.15"));
    QVERIFY(m_singleton);
    QCOMPARE(m_singleton->parent(), m_engine);
}

void tst_TessalinePlugin::enginesShareTheSingleton()
{
    const QScopedPointer<QQmlEngine> second(makeEngine());
    LogCapture log; // takes the engine's remark that the object has a context already
    const QScopedPointer<QObject> object(
        createObject(second.data(), "QtObject { property QtObject it: Tessaline; "
                                    "property real scale: Tessaline.displayScaleFactor }"));
    QVERIFY(object);
    QCOMPARE(object->property("it").value<QObject *>(), m_singleton.data());
    QCOMPARE(m_singleton->parent(), m_engine);
    QCOMPARE(m_singleton->engine(), m_engine);

    m_singleton->setDisplayScaleFactor(4.0); // bindings of the second engine follow
    QCOMPARE(object->property("scale").toDouble(), 4.0);
    m_singleton->setDisplayScaleFactor(0.0);
}

void tst_TessalinePlugin::secondEngineLeavesTheSingletonAlone()
{
    {
        const QScopedPointer<QQmlEngine> second(makeEngine());
        LogCapture log;
        const QScopedPointer<QObject> object(
            createObject(second.data(), "QtObject { property QtObject it: Tessaline }"));
        QVERIFY(object);
        second->collectGarbage();
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(m_singleton);
    expressionsReachTheSingleton();
}

void tst_TessalinePlugin::hostAndModuleShareOneLibrary()
{
    QFile maps("/proc/self/maps");
    QVERIFY(maps.open(QIODevice::ReadOnly));
    QSet<QByteArray> libraries;
    const QList<QByteArray> lines = maps.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.contains("libTessaline"))
            libraries.insert(line.mid(line.indexOf('/')));
    }
    QCOMPARE(libraries.size(), 1);
    QCOMPARE(QFileInfo(QString::fromLocal8Bit(*libraries.begin())).canonicalFilePath(),
             QFileInfo(libraryPath()).canonicalFilePath());

    // The very classes: what a host hands over is known on the other side.
    QCOMPARE(m_singleton->metaObject(), &Tessaline::staticMetaObject);
    AppletsPlayer player(nullptr);
    m_engine->rootContext()->setContextProperty("player", &player);
    const QScopedPointer<QObject> object(
        createObject(m_engine, "QtObject { property AppPlayer it: Tessaline.player }"));
    QVERIFY(object);
    QCOMPARE(object->property("it").value<AppletsPlayer *>(), &player);
    m_engine->rootContext()->setContextProperty("player", QVariant());
}

void tst_TessalinePlugin::providerLogsItsPointer()
{
    LogCapture log;
    QCOMPARE(TessalinePlugin::tessalineProvider(m_engine, m_engine), m_singleton.data());
    QCOMPARE(log.messages().size(), 1);
    QCOMPARE(log.count(QtDebugMsg, pluginCategory, "tessalineProvider"), 1);
    QVERIFY(log.messages().at(0).text.contains("Tessaline(0x"));
    QCOMPARE(QQmlEngine::objectOwnership(m_singleton), QQmlEngine::CppOwnership);
}

void tst_TessalinePlugin::initializeEngineLogsInOrder()
{
    const QScopedPointer<QQmlEngine> engine(makeEngine());
    engine->setOfflineStoragePath("/srv/storage");
    LogCapture log;
    const QScopedPointer<QObject> first(createObject(engine.data(), "QtObject {}"));
    const QScopedPointer<QObject> second(createObject(engine.data(), "QtObject { id: other }"));

    const QStringList expected{"Zemrik.Tessaline", "Offline storage path: \"/srv/storage\"",
                               "Using system network proxy configuration"};
    const auto messages = log.messages();
    QCOMPARE(messages.size(), expected.size()); // once per engine, and no registration
    for (int i = 0; i < expected.size(); ++i) {
        QCOMPARE(messages.at(i).type, QtDebugMsg);
        QCOMPARE(messages.at(i).category, QByteArray(pluginCategory));
        QVERIFY2(messages.at(i).text.endsWith(expected.at(i)), qPrintable(log.dump()));
    }
}

void tst_TessalinePlugin::systemProxyIsUsedForEveryEngine()
{
    for (const bool logged : {true, false}) {
        QNetworkProxyFactory::setUseSystemConfiguration(false);
        Debug::setAllEnabled(logged);
        const QScopedPointer<QQmlEngine> engine(makeEngine());
        const QScopedPointer<QObject> object(createObject(engine.data(), "QtObject {}"));
        QVERIFY(QNetworkProxyFactory::usesSystemConfiguration());
    }
    QLoggingCategory::setFilterRules(QString());
}

void tst_TessalinePlugin::everyEngineGetsAnImageProvider()
{
    for (int i = 0; i < 2; ++i) {
        const QScopedPointer<QQmlEngine> engine(makeEngine());
        QVERIFY(!engine->imageProvider("imageobject"));
        const QScopedPointer<QObject> object(createObject(engine.data(), "QtObject {}"));
        const QQmlImageProviderBase *provider = engine->imageProvider("imageobject");
        QVERIFY(provider);
        QCOMPARE(provider->imageType(), QQmlImageProviderBase::Image);
        QCOMPARE(provider->flags(), QQmlImageProviderBase::Flags());
    }
}

void tst_TessalinePlugin::importPathsStayAsTheyAre()
{
    const QScopedPointer<QQmlEngine> engine(makeEngine());
    const QStringList before = engine->importPathList();
    const QScopedPointer<QObject> object(createObject(engine.data(), "QtObject {}"));
    QVERIFY(object);
    QCOMPARE(engine->importPathList(), before);
}

void tst_TessalinePlugin::subModulesNeedTheResourcePath_data()
{
    QTest::addColumn<QByteArray>("module");
    for (const char *name : {"Controls", "Dialogs", "Portal"})
        QTest::newRow(name) << QByteArray("Zemrik.Tessaline.") + name;
}

void tst_TessalinePlugin::subModulesNeedTheResourcePath()
{
    QFETCH(QByteArray, module);
    const QByteArray document =
        "import QtQml 2.15\nimport Zemrik.Tessaline 1.0\nimport " + module + " 1.0\nQtObject {}";
    const QScopedPointer<QQmlEngine> without(makeEngine());
    QQmlComponent refused(without.data());
    refused.setData(document, QUrl());
    QVERIFY(refused.isError());
    QVERIFY2(refused.errorString().contains("module \"" + module + "\" is not installed"),
             qPrintable(refused.errorString()));

    const QScopedPointer<QQmlEngine> with(makeEngine());
    with->addImportPath(":/imports");
    QQmlComponent accepted(with.data());
    accepted.setData(document, QUrl());
    QVERIFY2(accepted.isReady(), qPrintable(accepted.errorString()));
}

void tst_TessalinePlugin::engineOwnsOneTranslator()
{
    const QScopedPointer<QQmlEngine> engine(makeEngine());
    const QScopedPointer<QObject> object(createObject(engine.data(), "QtObject {}"));
    const auto translators = engine->findChildren<QTranslator *>();
    QCOMPARE(translators.size(), 1);
    QCOMPARE(translators.at(0)->parent(), engine.data());
}

void tst_TessalinePlugin::withoutGuiApplicationTheProcessEnds()
{
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), {"child:without-gui"});
    QVERIFY(child.waitForFinished());
    QCOMPARE(child.exitStatus(), QProcess::CrashExit);
    const QByteArray output = child.readAllStandardError().trimmed();
    QVERIFY2(output.contains("This is not a GUI application"), output.constData());
}

// Catalogues for languages that the library has none for: "hu" with one text, "mt" with none.
QString tst_TessalinePlugin::makeCatalogues(const QTemporaryDir &folder)
{
    const auto write = [&](const QString &name, const QByteArray &text) {
        QFile file(folder.filePath(name));
        return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
    };
    const auto run = [&](const QString &program, const QStringList &arguments) {
        QProcess process;
        process.setWorkingDirectory(folder.path());
        process.start(QLibraryInfo::location(QLibraryInfo::BinariesPath) + '/' + program,
                      arguments);
        return process.waitForFinished() && process.exitCode() == 0;
    };
    const QByteArray head = "<?xml version='1.0' encoding='utf-8'?><!DOCTYPE TS><TS version='2.1'>";
    if (!write("TessalinePlugin_hu.ts",
               head
                   + "<context><name>Greeting</name><message><source>hello</source>"
                     "<translation>szia</translation></message></context></TS>")
        || !write("TessalinePlugin_mt.ts", head + "</TS>")
        || !run("lrelease", {"TessalinePlugin_hu.ts", "TessalinePlugin_mt.ts"})
        || !write("languages.qrc", "<RCC><qresource prefix='/languages'>"
                                   "<file>TessalinePlugin_hu.qm</file>"
                                   "<file>TessalinePlugin_mt.qm</file></qresource></RCC>")
        || !run("rcc", {"--binary", "languages.qrc", "-o", "languages.rcc"}))
        return QString();
    return folder.filePath("languages.rcc");
}

tst_TessalinePlugin::Translated tst_TessalinePlugin::translated(const QString &languages,
                                                                const QString &resource,
                                                                const QString &context,
                                                                const QString &text)
{
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LC_ALL", "C.UTF-8");
    environment.insert("LANGUAGE", languages);
    child.setProcessEnvironment(environment);
    child.start(QCoreApplication::applicationFilePath(),
                {"child:translated", resource, context, text});
    const bool ended = child.waitForFinished();
    const QByteArray messages = child.readAllStandardError();
    if (!ended || child.exitStatus() != QProcess::NormalExit || child.exitCode() != 0)
        return {"the child failed", messages};
    return {QString::fromUtf8(child.readAllStandardOutput()), messages};
}

void tst_TessalinePlugin::catalogueOfTheFirstLanguageIsInstalled_data()
{
    QTest::addColumn<QString>("languages");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("failures");
    QTest::newRow("language") << "hu"
                              << "szia" << 0;
    QTest::newRow("language and territory") << "hu_HU"
                                            << "szia" << 0;
    QTest::newRow("first of two") << "hu:sk"
                                  << "szia" << 0;
    QTest::newRow("second of two") << "sk:hu"
                                   << "hello" << 0;
    QTest::newRow("no catalogue") << "sk"
                                  << "hello" << 0;
    QTest::newRow("catalogue without texts") << "mt"
                                             << "hello" << 1;
}

void tst_TessalinePlugin::catalogueOfTheFirstLanguageIsInstalled()
{
    QFETCH(QString, languages);
    QFETCH(QString, text);
    QFETCH(int, failures);
    const QTemporaryDir folder;
    const QString resource = makeCatalogues(folder);
    QVERIFY(!resource.isEmpty());

    const Translated result = translated(languages, resource, "Greeting", "hello");

    QCOMPARE(result.text, text + " 1\n");
    const QList<QByteArray> lines = result.messages.split('\n');
    QCOMPARE(std::count_if(lines.begin(), lines.end(),
                           [](const QByteArray &line) {
                               return line.startsWith(pluginCategory)
                                      && line.endsWith("installTranslator() Failed");
                           }),
             failures);
    // One line each for registration, engine, storage and proxy: nothing else is said.
    QCOMPARE(lines.size() - 1, 4 + failures);
}

void tst_TessalinePlugin::shippedCatalogueIsInstalled_data()
{
    QTest::addColumn<QString>("languages");
    QTest::addColumn<QString>("locale");
    QTest::newRow("language") << "de"
                              << "de";
    QTest::newRow("another country") << "de_AT"
                                     << "de";
    QTest::newRow("Brazil") << "pt_BR"
                            << "pt_BR";
    QTest::newRow("Portugal") << "pt_PT"
                              << "pt_PT";
    QTest::newRow("language with one country") << "nb"
                                               << "nb_NO";
    QTest::newRow("first of two") << "zh_TW:pt_PT"
                                  << "zh_TW";
}

void tst_TessalinePlugin::shippedCatalogueIsInstalled()
{
    QFETCH(QString, languages);
    QFETCH(QString, locale);
    const char context[] = "CameraProperties";
    const char source[] = "White Balance";
    QTranslator catalogue;
    QVERIFY(catalogue.load(catalogueFile(locale)));
    const QString text = catalogue.translate(context, source);
    QVERIFY(!text.isEmpty() && text != source);

    const Translated result = translated(languages, QString(), context, source);

    QVERIFY2(result.text == text + " 1\n", result.messages.constData());
    QVERIFY(!result.messages.contains("Failed"));
}

int main(int argc, char **argv)
{
    const QByteArray mode = argc > 1 ? argv[1] : "";
    if (mode == "child:without-gui")
        return runWithoutGui(argc, argv);
    if (mode == "child:translated")
        return runTranslated(argc, argv);
    return runIsolatedTest<tst_TessalinePlugin>(argc, argv);
}

#include "tst_TessalinePlugin.moc"
