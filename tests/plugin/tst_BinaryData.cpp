#include "plugin/BinaryData.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QJSEngine>
#include <QQmlEngine>
#include <QSignalSpy>
#include <QTest>

// What documents can't see: the functions for native callers, and null against empty.
class tst_BinaryData : public QObject
{
    Q_OBJECT

private slots:
    void fromByteArrayBelongsToTheScript();
    void fromByteArrayWithAParent();
    void fromValue_data();
    void fromValue();
    void dataIsAByteArray();
    void nullStringClearsOnlyAnArray();
    void emptyStringIsNoNull();
};

void tst_BinaryData::fromByteArrayBelongsToTheScript()
{
    QScopedPointer<BinaryData> data(BinaryData::fromByteArray(QByteArray("a\0b", 3)));
    QCOMPARE(data->data().toByteArray(), QByteArray("a\0b", 3));
    QCOMPARE(data->parent(), nullptr);
    QCOMPARE(QQmlEngine::objectOwnership(data.data()), QQmlEngine::JavaScriptOwnership);
    QScopedPointer<BinaryData> null(BinaryData::fromByteArray(QByteArray()));
    QVERIFY(null->isNull());
}

void tst_BinaryData::fromByteArrayWithAParent()
{
    QObject parent;
    const BinaryData *data = BinaryData::fromByteArray("abc", &parent);
    QCOMPARE(data->parent(), &parent);
    QCOMPARE(data->size(), 3);
}

void tst_BinaryData::fromValue_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("warnings");
    QTest::newRow("text is UTF-8") << "'\\u00e4'" << QByteArray("\xc3\xa4") << 0;
    QTest::newRow("bytes") << "new Uint8Array([0, 255]).buffer" << QByteArray("\0\xff", 2) << 0;
    QTest::newRow("number") << "5" << QByteArray() << 1;
    QTest::newRow("object") << "({})" << QByteArray() << 1;
}

void tst_BinaryData::fromValue()
{
    QFETCH(QString, script);
    QFETCH(QByteArray, bytes);
    QFETCH(int, warnings);
    QJSEngine engine;
    LogCapture log;
    QScopedPointer<BinaryData> data(BinaryData::fromValue(engine.evaluate(script)));
    QCOMPARE(data->data().toByteArray(), bytes);
    QCOMPARE(log.count(QtWarningMsg, "default", "Unsupported data type:"), warnings);
    QCOMPARE(QQmlEngine::objectOwnership(data.data()), QQmlEngine::JavaScriptOwnership);
}

void tst_BinaryData::dataIsAByteArray()
{
    BinaryData data;
    QCOMPARE(data.data().userType(), int(QMetaType::QByteArray));
    data.setData(QVariant("text"));
    QCOMPARE(data.data().userType(), int(QMetaType::QByteArray));
}

void tst_BinaryData::nullStringClearsOnlyAnArray()
{
    BinaryData data;
    QSignalSpy dataChanged(&data, &BinaryData::dataChanged);
    QSignalSpy sizeChanged(&data, &BinaryData::sizeChanged);
    data.setStringData(QString());
    QCOMPARE(dataChanged.count() + sizeChanged.count(), 0);

    data.setStringData(QStringLiteral("abc"));
    data.setStringData(QString());
    QVERIFY(data.isNull());
    QCOMPARE(dataChanged.count(), 1);
    QCOMPARE(sizeChanged.count(), 1);
}

void tst_BinaryData::emptyStringIsNoNull()
{
    BinaryData data;
    data.setStringData(QStringLiteral("abc"));
    QSignalSpy dataChanged(&data, &BinaryData::dataChanged);
    data.setStringData(QString::fromLatin1(""));
    QVERIFY(data.isEmpty());
    QVERIFY(!data.isNull());
    QCOMPARE(dataChanged.count(), 0);
}

TESSALINE_TEST_MAIN(tst_BinaryData)
#include "tst_BinaryData.moc"
