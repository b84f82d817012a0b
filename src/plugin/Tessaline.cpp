#include "plugin/Tessaline.h"

#include "files/File.h"
#include "files/FileFolder.h"
#include "files/FileInfo.h"
#include "files/Settings.h"
#include "logging/Logging.h"
#include "network/Network.h"
#include "player/AppletsPlayer.h"
#include "plugin/BinaryData.h"
#include "plugin/ColorUtility.h"
#include "plugin/Device.h"
#include "plugin/Environment.h"
#include "plugin/FileUtility.h"
#include "plugin/PropertyHelper.h"
#include "plugin/StandardPaths.h"
#include "plugin/TessalineDebug.h"
#include "plugin/TessalineObject.h"
#include "plugin/UrlInfo.h"
#include "plugin/XmlUtility.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlListReference>
#include <QQuickWindow>
#include <QRegExp>
#include <QScreen>
#include <QSslSocket>
#include <QSysInfo>
#include <QUuid>

/*!
    \qmltype Tessaline
    \inqmlmodule Zemrik.Tessaline
    \brief The module's singleton: the system, paths, files, and small tools.

    \qml
    import QtQuick 2.15
    import Zemrik.Tessaline 1.0

    Text {
        text: Tessaline.osDisplayName + ", " + Tessaline.resolvedPath("~/Pictures")
        font.pixelSize: 12 * Tessaline.displayScaleFactor
    }
    \endqml

    There is one object for all engines of a process. It belongs to the first engine that used it,
    and what it says about "the engine" it says about that one.
*/

/*!
    \qmlproperty string Tessaline::userHomePath
    The user's home folder, which is what "~" stands for in paths. It is looked up at the first read
    and kept from then on: the property "userHomePath" of the application object if there is one,
    or else the system's home folder.
*/

/*!
    \qmlproperty FileFolder Tessaline::userHomeFolder
    \readonly
    The folder at userHomePath. Each read makes a new object that nobody deletes: keep it in a
    property instead of reading it again and again.
*/

/*!
    \qmlproperty FileFolder Tessaline::temporaryFolder
    \readonly
    The system's folder for temporary files. Each read makes a new object that nobody deletes: keep
    it in a property instead of reading it again and again.
*/

/*!
    \qmlproperty AppPlayer Tessaline::player
    \readonly
    The player that runs the applet, if the host offers one; null otherwise.
*/

/*!
    \qmlproperty StandardPaths Tessaline::standardPaths
    \readonly
    The platform's folders for documents, pictures, settings and so on.
*/

/*!
    \qmlproperty string Tessaline::offlineStoragePath
    Where the engine keeps local storage databases.
*/

/*!
    \qmlproperty string Tessaline::version
    \readonly
    The version of this library.
*/

/*!
    \qmlproperty string Tessaline::sslLibraryVersion
    \readonly
    The version of the TLS library in use; empty without one.
*/

/*!
    \qmlproperty string Tessaline::sslLibraryBuildVersion
    \readonly
    The version of the TLS library that Qt was built against.
*/

/*!
    \qmlproperty string Tessaline::osName
    \readonly
    The operating system's short name, such as "debian".
*/

/*!
    \qmlproperty string Tessaline::osDisplayName
    \readonly
    The operating system's name for people, such as "Debian GNU/Linux 12 (bookworm)".
*/

/*!
    \qmlproperty string Tessaline::osVersion
    \readonly
    The operating system's version.
*/

/*!
    \qmlproperty string Tessaline::kernelType
    \readonly
    The kernel's name, such as "linux".
*/

/*!
    \qmlproperty string Tessaline::kernelVersion
    \readonly
    The kernel's version.
*/

/*!
    \qmlproperty string Tessaline::qtVersion
    \readonly
    The version of the Qt libraries the process runs with.
*/

/*!
    \qmlproperty Settings Tessaline::settings
    \readonly
    The application's own settings store.
*/

/*!
    \qmlproperty Environment Tessaline::environment
    \readonly
    The process's environment variables.
*/

/*!
    \qmlproperty Logging Tessaline::logging
    \readonly
    Where the process's messages can be sent: a file or a syslog collector.
*/

/*!
    \qmlproperty real Tessaline::displayScaleFactor
    What to multiply a size in units of 1/72 inch with to get pixels. It follows the primary
   screen's logical density unless a factor above 0 is written; writing 0 or less follows the screen
   again. Each write is signalled, also one that changes nothing.
*/

/*!
    \qmlproperty Network Tessaline::network
    \readonly
    The state of the network.
*/

/*!
    \qmlproperty bool Tessaline::isOnline
    \readonly
    \deprecated
    Use \c{Tessaline.network.isOnline}: each read of this one complains in the log.
*/

/*!
    \qmlproperty Device Tessaline::device
    \readonly
    What the device offers.
*/

/*!
    \qmlproperty list<string> Tessaline::importPathList
    The folders in which the engine looks for modules. Each write is signalled.
*/

namespace {

const double referenceDotsPerInch = 72.0;

// What typeOf says of script values that are no object, text or function.
const struct
{
    int type;
    const char *name;
} valueTypeNames[] = {
    {QMetaType::Bool, "bool"},
    {QMetaType::Int, "int"},
    {QMetaType::Double, "double"},
    {QMetaType::QVariantMap, "object"},
    {QMetaType::QStringList, "array"},
    {QMetaType::QDateTime, "date"},
    {QMetaType::QUrl, "url"},
    {QMetaType::QRectF, "rect"},
    {QMetaType::QSizeF, "size"},
    {QMetaType::QPointF, "point"},
    {QMetaType::QRegExp, "regexp"},
    {QMetaType::QRegularExpression, "regexp"}, // what the engine makes of /x/
    {QMetaType::QFont, "font"},
    {QMetaType::QColor, "color"},
    {QMetaType::QMatrix4x4, "matrix4x4"},
    {QMetaType::QVector2D, "vector2d"},
    {QMetaType::QVector3D, "vector3d"},
    {QMetaType::QVector4D, "vector4d"},
    {QMetaType::QQuaternion, "quaternion"},
};

// Null where the value's own traits decide.
const char *variantTypeName(const QVariant &variant)
{
    for (const auto &row : valueTypeNames) {
        if (row.type == variant.userType())
            return row.name;
    }
    if (variant.userType() == QMetaType::QVariantList)
        return nullptr;
    return variant.canConvert<QQmlListReference>() ? "list" : nullptr;
}

QString valueTypeName(const QJSValue &value)
{
    const QVariant variant = value.toVariant();
    if (const char *name = variantTypeName(variant))
        return QLatin1String(name);
    if (value.isNumber())
        return QStringLiteral("number");
    if (value.isArray())
        return QStringLiteral("array");
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << variant.userType() << variant.type()
                            << variant.typeName();
    return QLatin1String(variant.typeName());
}

// A class name without what the engine adds for documents, and without the prefix of Qt's own
// types.
QString displayTypeName(QString className)
{
    className.remove(QRegExp(QStringLiteral("_QMLTYPE_\\d+")));
    className.remove(QRegExp(QStringLiteral("_QML_\\d+")));
    for (const QLatin1String prefix : {QLatin1String("QQuick"), QLatin1String("QQml")}) {
        if (className.startsWith(prefix))
            return className.mid(prefix.size());
    }
    return className;
}

// Null stands for an object that was deleted while a script still refers to it.
QString objectTypeName(const QObject *object, bool displayName)
{
    if (!object)
        return QStringLiteral("null");
    const QString className = QLatin1String(object->metaObject()->className());
    return displayName ? displayTypeName(className) : className;
}

bool inheritsClass(const QObject *object, const QString &className)
{
    for (auto *metaObject = object->metaObject(); metaObject;
         metaObject = metaObject->superClass()) {
        if (className == QLatin1String(metaObject->className()))
            return true;
    }
    return false;
}

void logProperties(const QMetaObject *metaObject)
{
    for (int i = 0; i < metaObject->propertyCount(); ++i) {
        const QMetaProperty property = metaObject->property(i);
        qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << "property" << property.name() << "typeName"
                                << property.typeName() << "isEnumType" << property.isEnumType();
    }
}

void logMethods(const QMetaObject *metaObject)
{
    for (int i = 0; i < metaObject->methodCount(); ++i) {
        const QMetaMethod method = metaObject->method(i);
        qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << "method" << method.name().constData()
                                << "signature" << method.methodSignature().constData();
    }
}

void logSuperClasses(const QMetaObject *metaObject)
{
    QByteArray indent;
    for (; metaObject; metaObject = metaObject->superClass()) {
        qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << indent.constData() << "metaObject className"
                                << metaObject->className();
        indent += "  ";
    }
}

} // namespace

Tessaline::Tessaline(QObject *parent)
    : QObject(parent)
{
    const QGuiApplication *application = app();
    const QScreen *screen = application->primaryScreen();
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << "devicePixelRatio" << application->devicePixelRatio();
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << "primaryScreen.physicalDotsPerInch"
                            << screen->physicalDotsPerInch();
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << "primaryScreen.logicalDotsPerInch"
                            << screen->logicalDotsPerInch();
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << "referenceDotsPerInch" << referenceDotsPerInch;
    connect(screen, &QScreen::logicalDotsPerInchChanged, this,
            &Tessaline::onLogicalDotsPerInchChanged);
    connect(network(), &Network::onlineStateChanged, this, &Tessaline::onlineStateChanged);
}

QString Tessaline::userHomePath()
{
    // A QDir that was never set says ".".
    QString known = m_home.path();
    if (!known.isEmpty() && known != QLatin1String("."))
        return known;
    QString path;
    if (const QCoreApplication *application = QCoreApplication::instance())
        path = application->property("userHomePath").toString();
    if (!path.isEmpty()) {
        qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << "App property:" << path;
        FileUtility::setHomePath(path);
    } else {
        path = FileUtility::homePath();
        qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << "Default:" << path;
    }
    m_home.setPath(path);
    return m_home.path();
}

void Tessaline::setUserHomePath(const QString &path)
{
    if (path == m_home.path())
        return;
    m_home.setPath(path);
    FileUtility::setHomePath(path);
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << path;
    emit userHomePathChanged();
}

FileFolder *Tessaline::userHomeFolder()
{
    return new FileFolder(userHomePath());
}

FileFolder *Tessaline::temporaryFolder() const
{
    return new FileFolder(QDir(QDir::tempPath()));
}

AppletsPlayer *Tessaline::player() const
{
    const QQmlEngine *engine = this->engine();
    if (!engine)
        return nullptr;
    const QQmlContext *context = engine->rootContext();
    if (!context) {
        qCCritical(FRAMEWORK_CORE) << Q_FUNC_INFO << "Null root context";
        return nullptr;
    }
    const QVariant variant = context->contextProperty(QStringLiteral("player"));
    if (!variant.isValid()) {
        qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << "Empty player property";
        return nullptr;
    }
    auto *object = variant.value<QObject *>();
    // By name, so that a player from another copy of the class's meta-object counts too.
    const char *className = AppletsPlayer::staticMetaObject.className();
    return object ? static_cast<AppletsPlayer *>(object->qt_metacast(className)) : nullptr;
}

StandardPaths *Tessaline::standardPaths()
{
    return lazyChild(m_standardPaths, this);
}

QString Tessaline::offlineStoragePath() const
{
    const QQmlEngine *engine = this->engine();
    return engine ? engine->offlineStoragePath() : QString();
}

void Tessaline::setOfflineStoragePath(const QString &path)
{
    QQmlEngine *engine = this->engine();
    if (!engine || engine->offlineStoragePath() == path)
        return;
    engine->setOfflineStoragePath(path);
    emit offlineStoragePathChanged();
}

QString Tessaline::version() const
{
    return QStringLiteral(TESSALINE_VERSION);
}

QString Tessaline::sslLibraryVersion() const
{
    return QSslSocket::sslLibraryVersionString();
}

QString Tessaline::sslLibraryBuildVersion() const
{
    return QSslSocket::sslLibraryBuildVersionString();
}

QString Tessaline::osName() const
{
    return QSysInfo::productType();
}

QString Tessaline::osDisplayName() const
{
    return QSysInfo::prettyProductName();
}

QString Tessaline::osVersion() const
{
    return QSysInfo::productVersion();
}

QString Tessaline::kernelType() const
{
    return QSysInfo::kernelType();
}

QString Tessaline::kernelVersion() const
{
    return QSysInfo::kernelVersion();
}

QString Tessaline::qtVersion() const
{
    return QString::fromLatin1(qVersion());
}

Settings *Tessaline::settings()
{
    return lazyChild(m_settings, this);
}

Environment *Tessaline::environment()
{
    return lazyChild(m_environment, this);
}

Logging *Tessaline::logging() const
{
    return Logging::instance(false);
}

double Tessaline::displayScaleFactor() const
{
    if (m_displayScaleFactor > 0)
        return m_displayScaleFactor;
    return app()->primaryScreen()->logicalDotsPerInch() / referenceDotsPerInch;
}

// Signals each write: what follows from the screen may have changed unnoticed under an override.
void Tessaline::setDisplayScaleFactor(double factor)
{
    m_displayScaleFactor = factor;
    if (factor <= 0) {
        qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << "Reset to default scale factor";
        m_displayScaleFactor = 0.0;
    }
    emit displayScaleFactorChanged();
}

void Tessaline::onLogicalDotsPerInchChanged(double dpi)
{
    const QGuiApplication *application = app();
    const QScreen *screen = application->primaryScreen();
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << dpi;
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << "devicePixelRatio" << application->devicePixelRatio();
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << "primaryScreen.physicalDotsPerInch"
                            << screen->physicalDotsPerInch();
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << "primaryScreen.logicalDotsPerInch"
                            << screen->logicalDotsPerInch();
    if (m_displayScaleFactor <= 0)
        emit displayScaleFactorChanged();
}

Network *Tessaline::network()
{
    return lazyChild(m_network, this);
}

bool Tessaline::isOnline()
{
    qCCritical(FRAMEWORK_NETWORK) << Q_FUNC_INFO << "*** Deprectated function ***";
    return network()->isOnline();
}

Device *Tessaline::device()
{
    return lazyChild(m_device, this);
}

QStringList Tessaline::importPathList() const
{
    const QQmlEngine *engine = this->engine();
    return engine ? engine->importPathList() : QStringList();
}

void Tessaline::setImportPathList(const QStringList &paths)
{
    QQmlEngine *engine = this->engine();
    if (!engine)
        return;
    engine->setImportPathList(paths);
    emit importPathListChanged();
}

/*!
    \qmlmethod string Tessaline::resolvedPath(string path)
    \qmlmethod string Tessaline::resolvedPath(url pathUrl)
    The path with its leading variable ("~", "$HOME", "$NAME") replaced.
*/
QString Tessaline::resolvedPath(const QString &path) const
{
    return FileUtility::resolvedPath(path, true);
}

QString Tessaline::resolvedPath(const QUrl &pathUrl) const
{
    return FileUtility::resolvedPath(pathUrl, true);
}

/*!
    \qmlmethod url Tessaline::resolvedPathUrl(string pathUrl)
    The resolved path of \a pathUrl as a URL, which is what an \c Image or a \c Loader wants.
*/
QUrl Tessaline::resolvedPathUrl(const QString &pathUrl) const
{
    return FileUtility::resolvedPathUrl(pathUrl, true);
}

/*!
    \qmlmethod string Tessaline::pathVariable(string name)
    The value of the path variable \a name, empty if it is set nowhere.
*/
QString Tessaline::pathVariable(const QString &name) const
{
    return FileUtility::pathVariable(name, QString(), true);
}

/*!
    \qmlmethod void Tessaline::setPathVariable(string name, string value)
    Sets the path variable \a name to \a value for the whole process; an empty one removes it.
*/
void Tessaline::setPathVariable(const QString &name, const QString &value)
{
    FileUtility::setPathVariable(name, value);
}

/*!
    \qmlmethod url Tessaline::resolvedUrl(url url)
    The \a url as it is, without looking at path variables.
*/
QUrl Tessaline::resolvedUrl(const QUrl &url) const
{
    return url;
}

/*!
    \qmlmethod UrlInfo Tessaline::urlInfo(url url)
    A new object that takes \a url apart.
*/
UrlInfo *Tessaline::urlInfo(const QUrl &url) const
{
    return TessalineObject::givenToScript(new UrlInfo(url));
}

/*!
    \qmlmethod color Tessaline::contrastColor(color color, color tintColor)
    Black or white, whichever reads better on \a color. With \a tintColor the result is blended
    towards it by its alpha.
*/
QColor Tessaline::contrastColor(const QColor &color, const QColor &tintColor) const
{
    return ColorUtility::contrastColor(color, tintColor);
}

/*!
    \qmlmethod color Tessaline::alphaColor(color color, real alpha)
    The colour \a color with another \a alpha, 0.0 to 1.0.
*/
QColor Tessaline::alphaColor(const QColor &color, double alpha) const
{
    return ColorUtility::alphaColor(color, alpha);
}

/*!
    \qmlmethod string Tessaline::createId()
    A new unique identifier of 32 lower-case hexadecimal digits.
*/
QString Tessaline::createId() const
{
    return createUuidString(2);
}

/*!
    \qmlmethod string Tessaline::createUuidString(int format)
    A new UUID as text. \a format is 0 (the default) for "{67c8770b-44f1-410a-ab9a-f9b5446f13ee}", 1
    to leave the braces out, 2 to leave the dashes out as well.
*/
QString Tessaline::createUuidString(int format) const
{
    const QUuid uuid = QUuid::createUuid();
    if (format < 1)
        return uuid.toString(QUuid::WithBraces);
    return uuid.toString(format == 1 ? QUuid::WithoutBraces : QUuid::Id128);
}

/*!
    \qmlmethod void Tessaline::clearComponentCache()
    Makes the engine forget the documents it has compiled, so that changed files are read again.

    Nothing may be loading asynchronously at that moment, neither a \c Loader with \c{asynchronous:
    true} nor a component made with \c{Component.Asynchronous}: the engine's loader thread may be
    using what is dropped, and the process then crashes.
*/
void Tessaline::clearComponentCache()
{
    if (QQmlEngine *engine = this->engine())
        engine->clearComponentCache();
}

/*!
    \qmlmethod void Tessaline::trimComponentCache()
    Makes the engine forget the compiled documents that nothing uses any more.
*/
void Tessaline::trimComponentCache()
{
    if (QQmlEngine *engine = this->engine())
        engine->trimComponentCache();
}

/*!
    \qmlmethod void Tessaline::addImportPath(string path)
    Adds the folder \a path, in which the engine looks for modules.
*/
void Tessaline::addImportPath(const QString &path)
{
    QQmlEngine *engine = this->engine();
    if (!engine)
        return;
    engine->addImportPath(path);
    emit importPathListChanged();
}

/*!
    \qmlmethod void Tessaline::removeImportPath(string path)
    Removes the folder \a path from importPathList; nothing happens if it isn't there.
*/
void Tessaline::removeImportPath(const QString &path)
{
    const QQmlEngine *engine = this->engine();
    if (!engine)
        return;
    QStringList paths = engine->importPathList();
    if (paths.removeAll(path) > 0)
        setImportPathList(paths);
}

/*!
    \qmlmethod void Tessaline::collectGarbage()
    Runs the script engine's garbage collection now.
*/
void Tessaline::collectGarbage()
{
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO;
    if (QQmlEngine *engine = this->engine())
        engine->collectGarbage();
}

/*!
    \qmlmethod string Tessaline::typeOf(var value, bool displayName)
    The name of the type of \a value: "undefined", "null", "string", "function", "bool", "int",
   "double", "number", "array", "object", "date", "url", "rect", "size", "point", "regexp", "font",
   "color", "matrix4x4", "vector2d", "vector3d", "vector4d", "quaternion", "list", or of an object
   its class name. With \a displayName true a class name loses what the engine and Qt put around it:

    \qml
    Rectangle {
        Component.onCompleted: {
            console.log(Tessaline.typeOf(this));         // QQuickRectangle
            console.log(Tessaline.typeOf(this, true));   // Rectangle
        }
    }
    \endqml
*/
QString Tessaline::typeOf(const QJSValue &value, bool displayName) const
{
    if (value.isUndefined())
        return QStringLiteral("undefined");
    if (value.isNull())
        return QStringLiteral("null");
    if (value.isString())
        return QStringLiteral("string");
    if (value.isQObject())
        return objectTypeName(value.toQObject(), displayName);
    if (value.isCallable())
        return QStringLiteral("function");
    return valueTypeName(value);
}

/*!
    \qmlmethod bool Tessaline::instanceOf(var value, var type)
    Returns whether \a value is of a type or, if it is an object, derives from it. \a type is the
    type's name as typeOf gives it, or any value of that type.

    \badcode
    Tessaline.instanceOf(item, "QQuickItem")
    Tessaline.instanceOf(1, "int")
    \endcode
*/
bool Tessaline::instanceOf(const QJSValue &value, const QJSValue &type) const
{
    const QString name = type.isString() ? type.toString() : typeOf(type, false);
    if (name.isEmpty())
        return false;
    if (typeOf(value, false) == name)
        return true;
    QObject *object = value.toQObject();
    if (!object)
        return false;
    return object->qt_metacast(name.toUtf8().constData()) || inheritsClass(object, name);
}

/*!
    \qmlmethod bool Tessaline::grabWindowToClipboard(rect rect)
    Puts a picture of the window, or of the part \a rect of it, on the clipboard. Returns
    whether there is a window.
*/
bool Tessaline::grabWindowToClipboard(const QRect &rect)
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    if (!clipboard)
        qCCritical(FRAMEWORK_CORE) << Q_FUNC_INFO << "Null clipboard";
    const QImage image = grabWindow(rect);
    if (image.isNull())
        return false;
    if (clipboard)
        clipboard->setImage(image, QClipboard::Clipboard);
    return true;
}

/*!
    \qmlmethod bool Tessaline::grabWindowToFile(string path, rect rect)
    Saves a picture of the window, or of the part \a rect of it, as the file \a path. The
    format follows its suffix, and it may begin with a path variable. Returns false if there is no
    window or the file can't be written.
*/
bool Tessaline::grabWindowToFile(const QString &path, const QRect &rect)
{
    const QImage image = grabWindow(rect);
    if (image.isNull())
        return false;
    // What QImage::save() wrote may still be buffered; only a flush tells of a full disk.
    QFile file(resolvedPath(path));
    return FileUtility::hasUsableName(file.fileName()) && image.save(&file) && file.flush();
}

/*!
    \qmlmethod object Tessaline::xmlToJson(string xml, object options)
    The document \a xml as an object: attributes, texts and child elements become its keys.
    \a options may hold \c attributePrefix ("@"), \c textProperty ("#text"), \c commentProperty
    ("#comment"), \c nodesProperty ("#nodes"), \c indexFormat ("[%1]"), \c rootProperty (false) and
    \c preserveNamespaces (false). Text that doesn't parse gives an empty object, and so does one whose
    elements lie too deep or whose document type definition asks for too much.
*/
QVariantMap Tessaline::xmlToJson(const QString &xml, const QVariantMap &options) const
{
    return XmlUtility::toVariantMap(xml, options);
}

/*!
    \qmlmethod File Tessaline::file(string path)
    \qmlmethod File Tessaline::file(url pathUrl)
    A new object for the file. The path may begin with a path variable.
*/
File *Tessaline::file(const QString &path) const
{
    return TessalineObject::givenToScript(new File(path));
}

File *Tessaline::file(const QUrl &pathUrl) const
{
    return TessalineObject::givenToScript(new File(pathUrl));
}

/*!
    \qmlmethod FileFolder Tessaline::fileFolder(string path)
    \qmlmethod FileFolder Tessaline::fileFolder(url pathUrl)
    A new object for the folder. The path may begin with a path variable.
*/
FileFolder *Tessaline::fileFolder(const QString &path) const
{
    return TessalineObject::givenToScript(new FileFolder(path));
}

FileFolder *Tessaline::fileFolder(const QUrl &pathUrl) const
{
    return TessalineObject::givenToScript(new FileFolder(pathUrl));
}

/*!
    \qmlmethod FileInfo Tessaline::fileInfo(string path)
    \qmlmethod FileInfo Tessaline::fileInfo(url pathUrl)
    A new object that tells about the file. The path may begin with a path variable.
*/
FileInfo *Tessaline::fileInfo(const QString &path) const
{
    return TessalineObject::givenToScript(new FileInfo(path));
}

FileInfo *Tessaline::fileInfo(const QUrl &pathUrl) const
{
    return TessalineObject::givenToScript(new FileInfo(pathUrl));
}

/*!
    \qmlmethod string Tessaline::objectToString(object object)
    Writes the properties, methods and base classes of \a object to the log, at debug level under
    "Zemrik.Tessaline.Core". The result is empty, or "null" for a null object.
*/
QString Tessaline::objectToString(QObject *object) const
{
    if (!object) {
        qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << object;
        return QStringLiteral("null");
    }
    qCDebug(FRAMEWORK_CORE) << Q_FUNC_INFO << "static className"
                            << QObject::staticMetaObject.className();
    logProperties(object->metaObject());
    logMethods(object->metaObject());
    logSuperClasses(object->metaObject());
    return QString();
}

/*!
    \qmlmethod BinaryData Tessaline::binaryData(var value)
    A new object with the bytes of \a value: a text, in UTF-8, or a byte array. Other values, and
   none at all, give an empty one.

    \badcode
    Tessaline.binaryData("bridge").size   // 6
    \endcode
*/
BinaryData *Tessaline::binaryData(const QJSValue &value) const
{
    return BinaryData::fromValue(value, nullptr);
}

QGuiApplication *Tessaline::app() const
{
    auto *application = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
    if (!application)
        qFatal("This is not a GUI application");
    return application;
}

QQmlEngine *Tessaline::engine() const
{
    if (QQmlEngine *contextEngine = qmlEngine(this))
        return contextEngine;
    // An object without a QML context still knows the engine that made it.
    auto *parentEngine = qobject_cast<QQmlEngine *>(parent());
    if (!parentEngine)
        qCCritical(FRAMEWORK_CORE) << Q_FUNC_INFO << "Null engine";
    return parentEngine;
}

QQuickWindow *Tessaline::window() const
{
    const QWindowList windows = QGuiApplication::topLevelWindows();
    for (QWindow *candidate : windows) {
        if (auto *quickWindow = qobject_cast<QQuickWindow *>(candidate))
            return quickWindow;
    }
    qCCritical(FRAMEWORK_CORE) << Q_FUNC_INFO << "No QuickWindow found";
    return nullptr;
}

QImage Tessaline::grabWindow(const QRect &rect) const
{
    QQuickWindow *quickWindow = window();
    if (!quickWindow)
        return QImage();
    const QImage image = quickWindow->grabWindow();
    return rect.isValid() && !rect.isNull() ? image.copy(rect) : image;
}

#include "moc_Tessaline.cpp"
