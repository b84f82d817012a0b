#include "network/NetworkRequestHeaders.h"
#include "support/IsolatedHome.h"
#include "support/SignalRecorder.h"

#include <QTest>

class tst_NetworkRequestHeaders : public QObject
{
    Q_OBJECT

private slots:
    void propertiesAreKeys();
    void bothSpellingsAreOneValue();
    void changesAreSignalled();
    void jsonAndClearAreSignalled();
    void sendableNamesAndValues_data();
    void sendableNamesAndValues();
};

void tst_NetworkRequestHeaders::propertiesAreKeys()
{
    NetworkRequestHeaders headers;
    QCOMPARE(headers.referer(), QString());
    QCOMPARE(headers.userAgent(), QString());
    QVERIFY(headers.keys().isEmpty()); // reading makes no keys
    headers.setUserAgent("Tests/1.0");
    headers.setReferer("http://a/");
    QCOMPARE(headers.value("User-Agent", QVariant()), QVariant("Tests/1.0"));
    QCOMPARE(headers.value("Referer", QVariant()), QVariant("http://a/"));
    headers.setValue("User-Agent", 5);
    QCOMPARE(headers.userAgent(), QString("5"));
}

void tst_NetworkRequestHeaders::bothSpellingsAreOneValue()
{
    NetworkRequestHeaders headers;
    QVERIFY(headers.setProperty("referrer", "http://a/"));
    QCOMPARE(headers.property("referer").toString(), QString("http://a/"));
    QCOMPARE(headers.keys(), QStringList("Referer"));
}

void tst_NetworkRequestHeaders::changesAreSignalled()
{
    NetworkRequestHeaders headers;
    SignalRecorder recorder(&headers);
    headers.setUserAgent("a");
    QCOMPARE(recorder.take(), QStringList({"userAgentChanged", "valueChanged"}));
    headers.setUserAgent("a");
    QCOMPARE(recorder.take(), QStringList());
    headers.setReferer("a");
    QCOMPARE(recorder.take(), QStringList({"refererChanged", "valueChanged"}));
    headers.setValue("REFERER", "b");
    QCOMPARE(recorder.take(), QStringList({"refererChanged", "valueChanged"}));
    headers.setValue("user-AGENT", "b");
    QCOMPARE(recorder.take(), QStringList({"userAgentChanged", "valueChanged"}));
    headers.setValue("X-Other", "b");
    QCOMPARE(recorder.take(), QStringList("valueChanged"));
}

void tst_NetworkRequestHeaders::jsonAndClearAreSignalled()
{
    NetworkRequestHeaders headers;
    SignalRecorder recorder(&headers);
    headers.setJson({{"User-Agent", "a"}});
    QCOMPARE(recorder.take(), QStringList({"userAgentChanged", "valueChanged"}));
    headers.clear();
    QCOMPARE(recorder.take(), QStringList({"userAgentChanged", "valueChanged"}));
    QCOMPARE(headers.userAgent(), QString());
}

void tst_NetworkRequestHeaders::sendableNamesAndValues_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<bool>("sendable");
    const auto row = [](const char *tag, const QByteArray &name, const QByteArray &value, bool is) {
        QTest::newRow(tag) << name << value << is;
    };
    row("usual", "X-Name", "value", true);
    row("empty value", "X-Name", "", true);
    row("tab in the value", "X-Name", "a\tb", true);
    row("beyond ASCII", "X-\xc3\xbc", "\xc3\xbc\xff", true);
    row("colon in the value", "X-Name", "a: b", true);
    row("empty name", "", "value", false);
    row("blank in the name", "X Name", "value", false);
    row("colon in the name", "X:Name", "value", false);
    row("tab in the name", "X\tName", "value", false);
    row("line feed in the name", "X\nName", "value", false);
    row("carriage return", "X-Name", "a\rb", false);
    row("line feed", "X-Name", "a\nb", false);
    row("line feed at the end", "X-Name", "a\n", false);
    row("zero byte", "X-Name", QByteArray("a\0b", 3), false);
    row("delete", "X-Name", "a\x7f", false);
}

void tst_NetworkRequestHeaders::sendableNamesAndValues()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, value);
    QTEST(NetworkRequestHeaders::isSendable(name, value), "sendable");
}

TESSALINE_TEST_MAIN(tst_NetworkRequestHeaders)
#include "tst_NetworkRequestHeaders.moc"
