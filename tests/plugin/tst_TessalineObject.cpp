#include "plugin/TessalineObject.h"
#include "support/IsolatedHome.h"

#include <QPointer>
#include <QQmlEngine>
#include <QTest>

class tst_TessalineObject : public QObject
{
    Q_OBJECT

private slots:
    void setJavaScriptOwnershipReturnsTheObject();
    void nullIsAllowed();
    void givenObjectGoesWithTheCollection();
};

void tst_TessalineObject::setJavaScriptOwnershipReturnsTheObject()
{
    QObject object;
    QCOMPARE(QQmlEngine::objectOwnership(&object), QQmlEngine::CppOwnership);

    QCOMPARE(TessalineObject::setJavaScriptOwnership(&object), &object);

    QCOMPARE(QQmlEngine::objectOwnership(&object), QQmlEngine::JavaScriptOwnership);
}

void tst_TessalineObject::nullIsAllowed()
{
    QCOMPARE(TessalineObject::setJavaScriptOwnership(nullptr), nullptr);
    QCOMPARE(TessalineObject::givenToScript<TessalineObject>(nullptr), nullptr);
}

void tst_TessalineObject::givenObjectGoesWithTheCollection()
{
    QQmlEngine engine;
    const QPointer<TessalineObject> kept(new TessalineObject);
    const QPointer<TessalineObject> given(TessalineObject::givenToScript(new TessalineObject));
    QQmlEngine::setObjectOwnership(kept, QQmlEngine::CppOwnership);
    engine.newQObject(kept);
    engine.newQObject(given);

    engine.collectGarbage();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    QVERIFY(kept);
    QVERIFY(!given);
    delete kept;
}

TESSALINE_TEST_MAIN(tst_TessalineObject)
#include "tst_TessalineObject.moc"
