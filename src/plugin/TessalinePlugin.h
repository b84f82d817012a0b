#pragma once

#include "plugin/TessalineGlobal.h"

#include <QQmlExtensionPlugin>

class QJSEngine;
class QQmlEngine;
class Tessaline;

// The library's entry for a QML engine: registers the types of the module and prepares each engine
// that imports it.
class TESSALINE_EXPORT TessalinePlugin : public QQmlExtensionPlugin
{
    Q_OBJECT
    // The interface without a version; the engine asks the instance, not the metadata.
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QQmlExtensionInterface" FILE "TessalinePlugin.json")

public:
    explicit TessalinePlugin(QObject *parent = nullptr);

    void registerTypes(const char *uri) override;
    void initializeEngine(QQmlEngine *engine, const char *uri) override;

    // The one singleton of the process, a child of the first engine that asked. It is never made
    // again: no engine may start after that first one has gone.
    static QObject *tessalineProvider(QQmlEngine *engine, QJSEngine *scriptEngine);

private:
    static void initializeNetwork();
    static void installTranslation(QQmlEngine *engine);

    static Tessaline *m_Tessaline;
};
