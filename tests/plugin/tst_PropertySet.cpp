#include "plugin/PropertySet.h"
#include "support/IsolatedHome.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QSignalSpy>
#include <QTest>

namespace {

// What NetworkRequestHeaders does: a level below that declares properties of its own.
class DerivedSet : public PropertySet
{
    Q_OBJECT
    Q_PROPERTY(int level READ level CONSTANT)

public:
    explicit DerivedSet(QObject *parent = nullptr)
        : PropertySet(this, parent)
    {
    }

    int level() const { return 2; }
};

class OpenedSet : public PropertySet
{
public:
    using PropertySet::updateValue;
};

QStringList texts(const QSignalSpy &spy)
{
    QStringList list;
    for (const QList<QVariant> &arguments : spy)
        list.append(arguments.at(0).toString() + QLatin1Char('=') + arguments.at(1).toString());
    return list;
}

} // namespace

class tst_PropertySet : public QObject
{
    Q_OBJECT

private slots:
    void jsonReadsEveryKey();
    void jsonOfANestedSetIsANestedMap();
    void jsonOfASetInsideItselfEnds();
    void settingJsonMerges();
    void settingJsonKeepsTheMapsOrder();
    void settingJsonWithEqualValuesIsSilent();
    void aNestedMapStaysAMap();
    void jsonHasNoNotifySignal();
    void valueGivesTheDefaultForMissingAndInvalid();
    void clearKeepsTheKeys();
    void containsValueFollowsTheOrderOfKeys();
    void setValueInsertsAndSignals();
    void replaceVariables_data();
    void replaceVariables();
    void replacementsSeeTheOnesBefore();
    void replaceVariablesIsAMethodOfTheMetaObject();
    void updateValueReturnsItsInput();
    void derivedClassesKeepTheirProperties();
    void scriptObjectsCompareByValue();
};

void tst_PropertySet::jsonReadsEveryKey()
{
    PropertySet set;
    QCOMPARE(set.json(), QVariantMap());
    set.insert("b", 2);
    set.insert("a", QStringList{"x", "y"});
    QCOMPARE(set.json(), (QVariantMap{{"a", QStringList{"x", "y"}}, {"b", 2}}));
}

void tst_PropertySet::jsonOfANestedSetIsANestedMap()
{
    PropertySet inner;
    inner.insert("city", "London");
    DerivedSet derived;
    derived.insert("x", 1);
    QObject plain;
    PropertySet set;
    set.insert("address", QVariant::fromValue<QObject *>(&inner));
    set.insert("derived", QVariant::fromValue<QObject *>(&derived));
    set.insert("plain", QVariant::fromValue(&plain));

    const QVariantMap json = set.json();
    QCOMPARE(json.value("address"), QVariant(QVariantMap{{"city", "London"}}));
    QCOMPARE(json.value("derived"), QVariant(QVariantMap{{"x", 1}}));
    QCOMPARE(json.value("plain").value<QObject *>(), &plain);
}

void tst_PropertySet::jsonOfASetInsideItselfEnds()
{
    PropertySet set;
    set.insert("self", QVariant::fromValue<QObject *>(&set));
    set.insert("n", 1);
    QCOMPARE(set.json(), (QVariantMap{{"n", 1}, {"self", QVariantMap()}}));
    QCOMPARE(set.json().size(), 2);
}

void tst_PropertySet::settingJsonMerges()
{
    PropertySet set;
    set.insert("kept", "as it was");
    set.insert("changed", 1);
    QSignalSpy spy(&set, &PropertySet::valueChanged);

    set.setJson({{"changed", 2}, {"added", "new"}});

    QCOMPARE(set.json(), (QVariantMap{{"added", "new"}, {"changed", 2}, {"kept", "as it was"}}));
    QCOMPARE(texts(spy), (QStringList{"added=new", "changed=2"}));
}

void tst_PropertySet::settingJsonKeepsTheMapsOrder()
{
    PropertySet set;
    set.setJson({{"c", 1}, {"a", 2}, {"b", 3}});
    QCOMPARE(set.keys(), (QStringList{"a", "b", "c"}));
}

void tst_PropertySet::settingJsonWithEqualValuesIsSilent()
{
    PropertySet set;
    set.insert("name", "Ada");
    QSignalSpy spy(&set, &PropertySet::valueChanged);
    set.setJson({{"name", "Ada"}, {"nothing", QVariant()}});
    QCOMPARE(spy.count(), 0);
    QCOMPARE(set.keys(), QStringList{"name"});
}

void tst_PropertySet::aNestedMapStaysAMap()
{
    PropertySet set;
    set.setJson({{"inner", QVariantMap{{"x", 1}}}});
    QCOMPARE(set.value("inner"), QVariant(QVariantMap{{"x", 1}}));
}

void tst_PropertySet::jsonHasNoNotifySignal()
{
    const QMetaObject &type = PropertySet::staticMetaObject;
    const QMetaProperty json = type.property(type.indexOfProperty("json"));
    QVERIFY(json.isWritable());
    QVERIFY(!json.hasNotifySignal());
    QCOMPARE(json.typeName(), "QVariantMap");
}

void tst_PropertySet::valueGivesTheDefaultForMissingAndInvalid()
{
    PropertySet set;
    set.insert("empty", QString());
    set.insert("invalid", QVariant());
    QCOMPARE(set.value("empty", 7), QVariant(QString()));
    QCOMPARE(set.value("invalid", 7), QVariant(7));
    QCOMPARE(set.value("missing", 7), QVariant(7));
    QVERIFY(!set.containsKey("missing"));
}

void tst_PropertySet::clearKeepsTheKeys()
{
    PropertySet set;
    set.insert("a", 1);
    set.insert("b", 2);
    QSignalSpy spy(&set, &PropertySet::valueChanged);

    set.clear();

    QCOMPARE(texts(spy), (QStringList{"a=", "b="}));
    QVERIFY(!spy.at(0).at(1).value<QVariant>().isValid());
    QCOMPARE(set.keys(), (QStringList{"a", "b"}));
    QVERIFY(set.containsKey("a"));
    QCOMPARE(set.value("a", "default"), QVariant("default"));
}

void tst_PropertySet::containsValueFollowsTheOrderOfKeys()
{
    PropertySet set;
    set.insert("z", "same");
    set.insert("m", "other");
    set.insert("a", "same");
    QCOMPARE(set.containsValue("same"), (QStringList{"z", "a"}));
    QCOMPARE(set.containsValue("none"), QStringList());
}

void tst_PropertySet::setValueInsertsAndSignals()
{
    PropertySet set;
    QSignalSpy spy(&set, &PropertySet::valueChanged);
    set.setValue("User-Agent", "x");
    set.setValue("User-Agent", "x");
    set.setValue("User-Agent", "y");
    QCOMPARE(texts(spy), (QStringList{"User-Agent=x", "User-Agent=y"}));
    QCOMPARE(set.value("User-Agent"), QVariant("y"));
}

void tst_PropertySet::replaceVariables_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("caseSensitive");
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("expected");

    QTest::newRow("default format") << "Hello @name@!" << false << ""
                                    << "Hello Ada!";
    QTest::newRow("every occurrence") << "@name@@name@" << false << ""
                                      << "AdaAda";
    QTest::newRow("case ignored") << "@NAME@" << false << ""
                                  << "Ada";
    QTest::newRow("case counts") << "@NAME@ @name@" << true << ""
                                 << "@NAME@ Ada";
    QTest::newRow("number") << "@age@" << false << ""
                            << "36";
    QTest::newRow("unknown stays") << "@nobody@" << false << ""
                                   << "@nobody@";
    QTest::newRow("invalid is empty") << "[@invalid@]" << false << ""
                                      << "[]";
    QTest::newRow("dollar and braces") << "${name} @name@" << false << "${key}"
                                       << "Ada @name@";
    QTest::newRow("percent signs") << "%name% is %age%" << false << "%key%"
                                   << "Ada is 36";
    QTest::newRow("key twice in format") << "<name>:</name>" << false << "<key>:</key>"
                                         << "Ada";
    QTest::newRow("format's key is case-sensitive") << "KEYname" << false << "KEYkey"
                                                    << "Ada";
    QTest::newRow("empty text") << "" << false << ""
                                << "";
}

void tst_PropertySet::replaceVariables()
{
    QFETCH(QString, text);
    QFETCH(bool, caseSensitive);
    QFETCH(QString, format);
    PropertySet set;
    set.insert("name", "Ada");
    set.insert("age", 36);
    set.insert("invalid", QVariant());
    QTEST(set.replaceVariables(text, caseSensitive, format), "expected");
}

void tst_PropertySet::replacementsSeeTheOnesBefore()
{
    PropertySet set;
    set.insert("first", "@second@");
    set.insert("second", "@first@");
    QCOMPARE(set.replaceVariables("@first@"), QString("@first@"));
    QCOMPARE(set.replaceVariables("@second@"), QString("@first@"));

    // A format without the word "key" is one pattern for all: the first key takes it.
    QTest::ignoreMessage(QtWarningMsg, "QString::arg: Argument missing: name, first");
    QTest::ignoreMessage(QtWarningMsg, "QString::arg: Argument missing: name, second");
    QCOMPARE(set.replaceVariables("name", false, "name"), QString("@second@"));
}

void tst_PropertySet::replaceVariablesIsAMethodOfTheMetaObject()
{
    PropertySet set;
    set.insert("name", "Ada");
    QString result;
    QVERIFY(QMetaObject::invokeMethod(&set, "replaceVariables", Q_RETURN_ARG(QString, result),
                                      Q_ARG(QString, "@name@ @NAME@"), Q_ARG(bool, true)));
    QCOMPARE(result, QString("Ada @NAME@"));
    // The function for scripts needs a script engine.
    QVERIFY(set.property("replaceVariables").value<QJSValue>().isUndefined());
}

void tst_PropertySet::updateValueReturnsItsInput()
{
    OpenedSet set;
    QCOMPARE(set.updateValue("x", 5), QVariant(5));
    QCOMPARE(set.updateValue("x", QVariant()), QVariant());
}

void tst_PropertySet::derivedClassesKeepTheirProperties()
{
    DerivedSet set;
    set.insert("X-Token", "1");
    QCOMPARE(set.metaObject()->className(), "DerivedSet");
    QCOMPARE(set.property("level"), QVariant(2));
    QCOMPARE(set.property("X-Token"), QVariant("1"));
    QVERIFY(qobject_cast<PropertySet *>(&set));

    PropertySet base;
    QCOMPARE(base.metaObject()->className(), "PropertySet");
}

void tst_PropertySet::scriptObjectsCompareByValue()
{
    QQmlEngine engine;
    PropertySet set;
    const QJSValue list = engine.evaluate("[1, 2]");
    set.insert("list", QVariant::fromValue(list));
    QSignalSpy spy(&set, &PropertySet::valueChanged);
    set.setJson({{"list", QVariantList{1, 2}}});
    QCOMPARE(spy.count(), 0);
    QCOMPARE(set.containsValue(QVariant::fromValue(engine.evaluate("[1, 2]"))),
             QStringList{"list"});
    QCOMPARE(set.json().value("list").toList(), (QVariantList{1, 2}));
}

TESSALINE_TEST_MAIN(tst_PropertySet)

#include "tst_PropertySet.moc"
