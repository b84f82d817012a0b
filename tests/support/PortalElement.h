#pragma once

#include <QDir>
#include <QObject>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QTest>

#include <memory>

// A Portal element as documents write it, with the "url" that native classes read.
//
//     QQmlEngine engine;   // one per process
//     const auto portal = makePortalElement(engine, server.url());
//     QVERIFY(signIn(portal.get(), "demo", "demo"));
inline std::unique_ptr<QObject> makePortalElement(QQmlEngine &engine, const QString &url)
{
    engine.addImportPath(qEnvironmentVariable("TESSALINE_QML_IMPORT_DIR"));
    engine.addImportPath(":/imports");
    QQmlComponent component(&engine);
    component.setData("import QtQml 2.15\nimport Zemrik.Tessaline 1.0\n"
                      "import Zemrik.Tessaline.Portal 1.0\n"
                      "Portal { property url url: portalUrl }\n",
                      QUrl::fromLocalFile(QDir::homePath() + "/document.qml"));
    std::unique_ptr<QObject> object(component.createWithInitialProperties({{"portalUrl", url}}));
    if (!object)
        qWarning() << component.errors();
    return object;
}

inline void startSignIn(QObject *portal, const QString &user, const QString &password)
{
    QMetaObject::invokeMethod(portal, "signIn", Q_ARG(QVariant, user), Q_ARG(QVariant, password));
}

inline bool signIn(QObject *portal, const QString &user, const QString &password)
{
    startSignIn(portal, user, password);
    return QTest::qWaitFor([portal] { return portal->property("signedIn").toBool(); });
}
