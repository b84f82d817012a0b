#include "plugin/TessalinePlugin.h"

#include "archives/ZipFileInfo.h"
#include "archives/ZipReader.h"
#include "archives/ZipWriter.h"
#include "catalogue/App.h"
#include "catalogue/AppDependency.h"
#include "catalogue/AppFilter.h"
#include "catalogue/AppInfo.h"
#include "catalogue/AppInfoList.h"
#include "catalogue/AppPackage.h"
#include "catalogue/ItemPackage.h"
#include "files/File.h"
#include "files/FileFolder.h"
#include "files/FileInfo.h"
#include "files/Settings.h"
#include "files/SettingsBase.h"
#include "imaging/ExifInfo.h"
#include "imaging/ImageObject.h"
#include "imaging/ImageProvider.h"
#include "logging/Logging.h"
#include "network/Network.h"
#include "network/NetworkProxy.h"
#include "network/NetworkRequest.h"
#include "network/NetworkRequestHeaders.h"
#include "player/AppletsPlayer.h"
#include "player/AppletsPlayerSettings.h"
#include "plugin/BinaryData.h"
#include "plugin/Device.h"
#include "plugin/Environment.h"
#include "plugin/PropertySet.h"
#include "plugin/StandardPaths.h"
#include "plugin/StorageInfo.h"
#include "plugin/Tessaline.h"
#include "plugin/TessalineDebug.h"
#include "plugin/TessalineError.h"
#include "plugin/TessalineObject.h"
#include "plugin/UrlInfo.h"

#include <QCoreApplication>
#include <QLocale>
#include <QNetworkProxyFactory>
#include <qqml.h>
#include <QQmlEngine>
#include <QTranslator>

// The linker drops a resource nobody names from a static build; a plug-in that is loaded late
// registers it here, which is harmless where the static initialiser already has.
extern int qInitResources_TessalineLib();

namespace {

const int majorVersion = 1;
const int minorVersion = 0;

template <typename T>
void creatable(const char *uri, const char *name)
{
    qmlRegisterType<T>(uri, majorVersion, minorVersion, name);
}

template <typename T>
void uncreatable(const char *uri, const char *name)
{
    qmlRegisterUncreatableType<T>(
        uri, majorVersion, minorVersion, name,
        QStringLiteral("The Zemrik type %1 is not creatable").arg(QLatin1String(name)));
}

void registerSingleton(const char *uri)
{
    qmlRegisterSingletonType<Tessaline>(uri, majorVersion, minorVersion, "Tessaline",
                                        TessalinePlugin::tessalineProvider);
}

} // namespace

Tessaline *TessalinePlugin::m_Tessaline = nullptr;

TessalinePlugin::TessalinePlugin(QObject *parent)
    : QQmlExtensionPlugin(parent)
{
}

void TessalinePlugin::registerTypes(const char *uri)
{
    qCDebug(FRAMEWORK_PLUGIN) << Q_FUNC_INFO << uri;
    qInitResources_TessalineLib();

    // The order counts: of two rows with one name the later one is what documents see.
    registerSingleton(uri);
    uncreatable<TessalineObject>(uri, "TessalineObject");
    uncreatable<Tessaline>(uri, "Tessaline");
    uncreatable<TessalineError>(uri, "TessalineError");
    uncreatable<AppletsPlayer>(uri, "AppPlayer");
    uncreatable<AppletsPlayerSettings>(uri, "AppPlayerSettings");
    uncreatable<Environment>(uri, "Environment");
    uncreatable<Logging>(uri, "Logging");
    creatable<App>(uri, "App");
    creatable<AppInfo>(uri, "AppInfo");
    creatable<AppInfoList>(uri, "AppInfoList");
    uncreatable<AppFilter>(uri, "AppFilter");
    uncreatable<SettingsBase>(uri, "Settings");
    uncreatable<Network>(uri, "Network");
    uncreatable<NetworkProxy>(uri, "NetworkProxy");
    creatable<NetworkRequest>(uri, "NetworkRequest");
    creatable<NetworkRequestHeaders>(uri, "NetworkRequestHeaders");
    creatable<AppPackage>(uri, "AppPackage");
    uncreatable<AppDependency>(uri, "AppDependency");
    creatable<ItemPackage>(uri, "ItemPackage");
    creatable<UrlInfo>(uri, "UrlInfo");
    creatable<File>(uri, "File");
    creatable<FileInfo>(uri, "FileInfo");
    creatable<FileFolder>(uri, "FileFolder");
    creatable<Settings>(uri, "Settings");
    creatable<ExifInfo>(uri, "ExifInfo");
    creatable<StorageInfo>(uri, "StorageInfo");
    creatable<ZipReader>(uri, "ZipReader");
    creatable<ZipWriter>(uri, "ZipWriter");
    creatable<ZipFileInfo>(uri, "ZipFileInfo");
    uncreatable<StandardPaths>(uri, "StandardPaths");
    uncreatable<Device>(uri, "Device");
    creatable<ImageObject>(uri, "ImageObject");
    creatable<PropertySet>(uri, "PropertySet");
    creatable<BinaryData>(uri, "BinaryData");

    // Expressions reach the later registration too, so the singleton goes in once more.
    registerSingleton(uri);
}

void TessalinePlugin::initializeEngine(QQmlEngine *engine, const char *uri)
{
    qCDebug(FRAMEWORK_PLUGIN) << Q_FUNC_INFO << uri;
    qCDebug(FRAMEWORK_PLUGIN) << Q_FUNC_INFO
                              << "Offline storage path:" << engine->offlineStoragePath();
    initializeNetwork();
    ImageProvider::initialize(engine);
    installTranslation(engine);
    QQmlExtensionPlugin::initializeEngine(engine, uri);
}

QObject *TessalinePlugin::tessalineProvider(QQmlEngine *engine, QJSEngine *scriptEngine)
{
    Q_UNUSED(scriptEngine)
    qCDebug(FRAMEWORK_PLUGIN) << Q_FUNC_INFO << m_Tessaline;
    if (!m_Tessaline) {
        m_Tessaline = new Tessaline(engine);
        // A second engine would otherwise delete the shared object when it goes.
        QQmlEngine::setObjectOwnership(m_Tessaline, QQmlEngine::CppOwnership);
    }
    return m_Tessaline;
}

void TessalinePlugin::initializeNetwork()
{
    qCDebug(FRAMEWORK_PLUGIN) << Q_FUNC_INFO << "Using system network proxy configuration";
    QNetworkProxyFactory::setUseSystemConfiguration(true);
}

void TessalinePlugin::installTranslation(QQmlEngine *engine)
{
    auto *translator = new QTranslator(engine);
    const QLocale locale(QLocale::system().uiLanguages().value(0));
    // Null delimiters and suffix: empty ones that aren't null find no file at all.
    if (!translator->load(QStringLiteral("TessalinePlugin_") + locale.name(),
                          QStringLiteral(":/languages"), QString(), QString()))
        return;
    if (!QCoreApplication::installTranslator(translator))
        qCDebug(FRAMEWORK_PLUGIN) << Q_FUNC_INFO << "installTranslator() Failed";
}

#include "moc_TessalinePlugin.cpp"
