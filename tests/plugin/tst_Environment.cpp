#include "plugin/Environment.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QJSEngine>
#include <QSignalSpy>
#include <QTest>

class tst_Environment : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void valueReadsTheVariable();
    void valueOfAnUnsetVariableIsTheDefault();
    void emptyVariableIsSetAndHasAnEmptyText();
    void setValueReturnsTheFormerValue();
    void setValueWritesTheValuesText_data();
    void setValueWritesTheValuesText();
    void setValueOfUndefinedOrNullUnsets_data();
    void setValueOfUndefinedOrNullUnsets();
    void valueChangedComesAtEveryCallAfterTheChange();
    void removeUnsetsSilently();
    void namesAndValuesAreUtf8();
    void setValuesOverwritesOnRequest();
    void refusedNamesStayUnset_data();
    void refusedNamesStayUnset();
    void logsNothing();

private:
    Environment m_environment;
};

namespace {

const char name[] = "TST_ENVIRONMENT";

QString text(const QJSValue &value)
{
    return value.isString() ? value.toString() : QStringLiteral("not a text");
}

} // namespace

Q_DECLARE_METATYPE(QJSValue::SpecialValue)

void tst_Environment::init()
{
    qunsetenv(name);
    qunsetenv("TST_ENVIRONMENT_2");
}

void tst_Environment::valueReadsTheVariable()
{
    qputenv(name, "text");
    QCOMPARE(text(m_environment.value(name)), QString("text"));
    QCOMPARE(text(m_environment.value(name, "default")), QString("text"));
    QVERIFY(m_environment.isSet(name));
    QVERIFY(!m_environment.isEmpty(name));
}

void tst_Environment::valueOfAnUnsetVariableIsTheDefault()
{
    QVERIFY(m_environment.value(name).isUndefined());
    QCOMPARE(text(m_environment.value(name, "default")), QString("default"));
    QVERIFY(m_environment.value(name, QJSValue::NullValue).isNull());
    QVERIFY(m_environment.value(name, 5).isNumber());
    QVERIFY(!m_environment.isSet(name));
    QVERIFY(m_environment.isEmpty(name));
}

void tst_Environment::emptyVariableIsSetAndHasAnEmptyText()
{
    qputenv(name, "");
    QCOMPARE(text(m_environment.value(name, "default")), QString(""));
    QVERIFY(m_environment.isSet(name));
    QVERIFY(m_environment.isEmpty(name));
}

void tst_Environment::setValueReturnsTheFormerValue()
{
    QVERIFY(m_environment.setValue(name, "first").isUndefined());
    QCOMPARE(text(m_environment.setValue(name, "")), QString("first"));
    QCOMPARE(text(m_environment.setValue(name, "third")), QString(""));
    QCOMPARE(qgetenv(name), QByteArray("third"));
}

void tst_Environment::setValueWritesTheValuesText_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("text") << "'text'" << QByteArray("text");
    QTest::newRow("empty text") << "''" << QByteArray("");
    QTest::newRow("number") << "2.5" << QByteArray("2.5");
    QTest::newRow("zero") << "0" << QByteArray("0");
    QTest::newRow("false") << "false" << QByteArray("false");
    QTest::newRow("array") << "[1, 'a']" << QByteArray("1,a");
    QTest::newRow("object") << "({})" << QByteArray("[object Object]");
    QTest::newRow("text up to a NUL") << "'a\\u0000b'" << QByteArray("a");
}

void tst_Environment::setValueWritesTheValuesText()
{
    QFETCH(QString, script);
    QFETCH(QByteArray, bytes);
    QJSEngine engine;

    m_environment.setValue(name, engine.evaluate(script));

    QVERIFY(qEnvironmentVariableIsSet(name));
    QCOMPARE(qgetenv(name), bytes);
}

void tst_Environment::setValueOfUndefinedOrNullUnsets_data()
{
    QTest::addColumn<QJSValue::SpecialValue>("value");

    QTest::newRow("undefined") << QJSValue::UndefinedValue;
    QTest::newRow("null") << QJSValue::NullValue;
}

void tst_Environment::setValueOfUndefinedOrNullUnsets()
{
    QFETCH(QJSValue::SpecialValue, value);
    qputenv(name, "former");

    QCOMPARE(text(m_environment.setValue(name, value)), QString("former"));
    QVERIFY(!qEnvironmentVariableIsSet(name));
    QVERIFY(m_environment.setValue(name, value).isUndefined());
}

void tst_Environment::valueChangedComesAtEveryCallAfterTheChange()
{
    QStringList seen;
    const auto connection =
        connect(&m_environment, &Environment::valueChanged, this,
                [&](const QString &variable, const QJSValue &value) {
                    seen.append(QStringLiteral("%1=%2 (%3)")
                                    .arg(variable, text(value), QString::fromUtf8(qgetenv(name))));
                });

    m_environment.setValue(name, "a");
    m_environment.setValue(name, "a");
    m_environment.setValue(name, 5);
    m_environment.setValue(name, QJSValue());
    m_environment.setValue(name, QJSValue());
    disconnect(connection);

    QCOMPARE(seen,
             (QStringList{"TST_ENVIRONMENT=a (a)", "TST_ENVIRONMENT=a (a)", "TST_ENVIRONMENT=5 (5)",
                          "TST_ENVIRONMENT= ()", "TST_ENVIRONMENT= ()"}));
}

void tst_Environment::removeUnsetsSilently()
{
    QSignalSpy spy(&m_environment, &Environment::valueChanged);
    qputenv(name, "former");

    QCOMPARE(text(m_environment.remove(name)), QString("former"));
    QVERIFY(!qEnvironmentVariableIsSet(name));
    QVERIFY(m_environment.remove(name).isUndefined());

    qputenv(name, "");
    QCOMPARE(text(m_environment.remove(name)), QString(""));
    QVERIFY(!qEnvironmentVariableIsSet(name));
    QCOMPARE(spy.count(), 0);
}

void tst_Environment::namesAndValuesAreUtf8()
{
    const QString variable = QString::fromUtf8("TST_\u00fc");
    const QString value = QString::fromUtf8("\u65e5\u672c");

    m_environment.setValue(variable, value);

    QCOMPARE(qgetenv("TST_\xc3\xbc"), value.toUtf8());
    QVERIFY(m_environment.isSet(variable));
    QVERIFY(!m_environment.isEmpty(variable));
    QCOMPARE(text(m_environment.value(variable)), value);
    Environment::setValues({{variable, "other"}}, false);
    QCOMPARE(text(m_environment.remove(variable)), value);
    QVERIFY(!m_environment.isSet(variable));
}

void tst_Environment::setValuesOverwritesOnRequest()
{
    QSignalSpy spy(&m_environment, &Environment::valueChanged);
    qputenv(name, "former");
    const QVariantMap values{{name, "new"}, {"TST_ENVIRONMENT_2", 2.5}};

    Environment::setValues(values, false);
    QCOMPARE(qgetenv(name), QByteArray("former"));
    QCOMPARE(qgetenv("TST_ENVIRONMENT_2"), QByteArray("2.5"));

    Environment::setValues(values, true);
    QCOMPARE(qgetenv(name), QByteArray("new"));

    // An empty variable is set; a value without a text sets an empty one.
    qputenv(name, "");
    Environment::setValues(values, false);
    QCOMPARE(qgetenv(name), QByteArray(""));
    Environment::setValues({{"TST_ENVIRONMENT_2", QVariant()}}, true);
    QVERIFY(qEnvironmentVariableIsSet("TST_ENVIRONMENT_2"));
    QVERIFY(qEnvironmentVariableIsEmpty("TST_ENVIRONMENT_2"));
    QCOMPARE(spy.count(), 0);
}

void tst_Environment::refusedNamesStayUnset_data()
{
    QTest::addColumn<QString>("variable");

    QTest::newRow("empty") << "";
    QTest::newRow("equals sign first") << "=TST";
    QTest::newRow("NUL first") << QString::fromLatin1("\0TST", 4);
}

void tst_Environment::refusedNamesStayUnset()
{
    QFETCH(QString, variable);
    QSignalSpy spy(&m_environment, &Environment::valueChanged);

    QVERIFY(m_environment.setValue(variable, "value").isUndefined());

    QVERIFY(!m_environment.isSet(variable));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(text(spy.at(0).at(1).value<QJSValue>()), QString(""));
    QVERIFY(m_environment.remove(variable).isUndefined());
    Environment::setValues({{variable, "value"}}, true);
    QVERIFY(!m_environment.isSet(variable));
}

void tst_Environment::logsNothing()
{
    LogCapture log;
    m_environment.setValue(name, "a secret");
    m_environment.remove(name);
    m_environment.setValue("", 1);
    Environment::setValues({{name, "a secret"}}, true);
    QVERIFY2(log.messages().isEmpty(), qPrintable(log.dump()));
}

TESSALINE_TEST_MAIN(tst_Environment)
#include "tst_Environment.moc"
