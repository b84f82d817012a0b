#include "plugin/TessalineError.h"
#include "support/IsolatedHome.h"

#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QSignalSpy>
#include <QTest>

class tst_TessalineError : public QObject
{
    Q_OBJECT

private slots:
    void constructorsFillTheFieldsSilently();
    void everyChangeIsSignalledAlsoToEqualValues();
    void setErrorCopiesAllFields();
    void constructorsTakeAParent();
    void bindingsFollowTheFields();
    void fieldsAreReadOnly_data();
    void fieldsAreReadOnly();
};

void tst_TessalineError::constructorsFillTheFieldsSilently()
{
    const TessalineError empty;
    QCOMPARE(empty.code(), 0);
    QVERIFY(empty.message().isEmpty() && empty.details().isEmpty());

    const TessalineError full(7, "message", "details");
    QCOMPARE(full.code(), 7);
    QCOMPARE(full.message(), QString("message"));
    QCOMPARE(full.details(), QString("details"));

    const TessalineError texts("message", "details");
    QCOMPARE(texts.code(), 0);
    QCOMPARE(texts.details(), QString("details"));
}

void tst_TessalineError::everyChangeIsSignalledAlsoToEqualValues()
{
    TessalineError error;
    QSignalSpy spy(&error, &TessalineError::objectChanged);

    error.setError(1, "a", "b");
    error.setError(1, "a", "b");
    error.clear();
    error.clear();

    QCOMPARE(spy.count(), 4);
    QCOMPARE(error.code(), 0);
    QVERIFY(error.message().isEmpty() && error.details().isEmpty());
}

void tst_TessalineError::setErrorCopiesAllFields()
{
    TessalineError error;
    QSignalSpy spy(&error, &TessalineError::objectChanged);

    error.setError(TessalineError(3, "m", "d"));

    QCOMPARE(error.code(), 3);
    QCOMPARE(error.message(), QString("m"));
    QCOMPARE(error.details(), QString("d"));
    QCOMPARE(spy.count(), 1);
}

void tst_TessalineError::constructorsTakeAParent()
{
    QObject parent;
    QCOMPARE((new TessalineError(&parent))->parent(), &parent);
    QCOMPARE((new TessalineError(1, "m", "d", &parent))->parent(), &parent);
    QCOMPARE((new TessalineError("m", "d", &parent))->parent(), &parent);
}

void tst_TessalineError::bindingsFollowTheFields()
{
    TessalineError error(1, "first", "a");
    QQmlEngine engine;
    engine.rootContext()->setContextProperty("failure", &error);
    QQmlComponent component(&engine);
    component.setData("import QtQml 2.15\nQtObject { property string text: "
                      "failure.code + '|' + failure.message + '|' + failure.details }",
                      QUrl());
    const QScopedPointer<QObject> object(component.create());
    QVERIFY(object);
    QCOMPARE(object->property("text").toString(), QString("1|first|a"));

    error.setError(2, "second", "b");
    QCOMPARE(object->property("text").toString(), QString("2|second|b"));

    error.clear();
    QCOMPARE(object->property("text").toString(), QString("0||"));
}

void tst_TessalineError::fieldsAreReadOnly_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"code", "message", "details"})
        QTest::newRow(name) << QString(name);
}

void tst_TessalineError::fieldsAreReadOnly()
{
    QFETCH(QString, name);
    TessalineError error(7, "7", "7");
    QQmlEngine engine;
    QJSValue write =
        engine.evaluate("(function(object, name) { 'use strict'; object[name] = 8; })");
    QQmlEngine::setObjectOwnership(&error, QQmlEngine::CppOwnership);

    QVERIFY(write.call({engine.newQObject(&error), name}).isError());

    QCOMPARE(error.property(name.toLatin1().constData()).toString(), QString("7"));
}

TESSALINE_TEST_MAIN(tst_TessalineError)
#include "tst_TessalineError.moc"
