#include "plugin/JsonUtility.h"
#include "plugin/XmlUtility.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QDomDocument>
#include <QJSEngine>
#include <QJsonValue>
#include <QTest>

// Expected trees are written as JSON; the one thing that it doesn't tell, how an empty element's
// null comes about, has a test of its own.
class tst_XmlUtility : public QObject
{
    Q_OBJECT

private slots:
    void optionsHaveTheirDefaults();
    void documentsBecomeMaps_data();
    void documentsBecomeMaps();
    void optionsChangeTheMap_data();
    void optionsChangeTheMap();
    void emptyElementIsNullInAScript();
    void everyTextIsAString();
    void unhandledNodesAreSkippedAndLogged();
    void unparsableTextIsLogged_data();
    void unparsableTextIsLogged();
    void nestingEndsAtAThousandElements_data();
    void nestingEndsAtAThousandElements();
    void depthIsSeenBehindWhatOnlyAStrictReaderRefuses_data();
    void depthIsSeenBehindWhatOnlyAStrictReaderRefuses();
    void depthCountsWhatEntitiesBringIn();
    void definitionsThatAskForTooMuchAreRefused_data();
    void definitionsThatAskForTooMuchAreRefused();
    void definitionsWithinTheBoundsAreRead_data();
    void definitionsWithinTheBoundsAreRead();
    void veryManyAttributesAreReadOnceEach_data();
    void veryManyAttributesAreReadOnceEach();
    void veryManyAttributesWithNamesThatCannotBeRead();
    void addElementKeepsWhatTheMapHas();
    void propertyNameDropsThePrefix_data();
    void propertyNameDropsThePrefix();
};

namespace {

const char category[] = "Zemrik.Tessaline.Utility";

QString toJson(const QString &xml, const QVariantMap &options = {})
{
    return JsonUtility::toString(XmlUtility::toVariantMap(xml, options));
}

QString nested(int depth, const QString &inside = QString())
{
    return QString("<a>").repeated(depth) + inside + QString("</a>").repeated(depth);
}

} // namespace

void tst_XmlUtility::optionsHaveTheirDefaults()
{
    const XmlUtility::Options options;
    QCOMPARE(options.attributePrefix, QString("@"));
    QCOMPARE(options.textProperty, QString("#text"));
    QCOMPARE(options.commentProperty, QString("#comment"));
    QCOMPARE(options.nodesProperty, QString("#nodes"));
    QCOMPARE(options.indexFormat, QString("[%1]"));
    QCOMPARE(options.rootProperty, false);
    QCOMPARE(options.preserveNamespaces, false);
}

void tst_XmlUtility::documentsBecomeMaps_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("json");

    QTest::newRow("attributes and children")
        << "<a b='1'><c>2</c><c>3</c><d/></a>"
        << R"({"#nodes":["c[0]","c[1]","d"],"@b":"1","c":["2","3"],"d":null})";
    QTest::newRow("order of children")
        << "<a><b/><c/><b>x</b><d/></a>"
        << R"({"#nodes":["b[0]","c","b[1]","d"],"b":[null,"x"],"c":null,"d":null})";
    QTest::newRow("one child has no index") << "<a><b>x</b></a>"
                                            << R"({"#nodes":["b"],"b":"x"})";
    QTest::newRow("text beside an attribute") << "<a b='1'>x</a>"
                                              << R"({"#text":"x","@b":"1"})";
    QTest::newRow("text beside a child") << "<a>x<b/></a>"
                                         << R"({"#nodes":["b"],"#text":"x","b":null})";
    QTest::newRow("last text counts, around a comment")
        << "<a>x<!-- y -->z</a>"
        << R"({"#comment":" y ","#nodes":["#comment"],"#text":"z"})";
    QTest::newRow("last text counts, around a child")
        << "<a>x<b/>y<c/></a>"
        << R"({"#nodes":["b","c"],"#text":"y","b":null,"c":null})";
    QTest::newRow("CDATA is a text") << "<a><b><![CDATA[<x> & y]]></b></a>"
                                     << R"({"#nodes":["b"],"b":"<x> & y"})";
    QTest::newRow("CDATA replaces an earlier text") << "<a><b>x<![CDATA[y]]></b></a>"
                                                    << R"({"#nodes":["b"],"b":"y"})";
    QTest::newRow("empty CDATA replaces it too") << "<a><b>x<![CDATA[]]></b></a>"
                                                 << R"({"#nodes":["b"],"b":null})";
    QTest::newRow("comments are collected")
        << "<a><!--x--><b/><!--y--></a>"
        << R"({"#comment":["x","y"],"#nodes":["#comment[0]","b","#comment[1]"],"b":null})";
    QTest::newRow("nested") << "<a><b c='d'><e>f</e></b></a>"
                            << R"({"#nodes":["b"],"b":{"#nodes":["e"],"@c":"d","e":"f"}})";
    QTest::newRow("root with text only") << "<a>x</a>"
                                         << "{}";
    QTest::newRow("empty root") << "<a/>"
                                << "{}";
    QTest::newRow("attribute without a child") << "<a b='1'/>"
                                               << R"({"@b":"1"})";
    QTest::newRow("white space only between children is dropped") << "<a>\n  <b>x</b>\n</a>"
                                                                  << R"({"#nodes":["b"],"b":"x"})";
    QTest::newRow("white space around a text stays") << "<a><b> x </b></a>"
                                                     << R"({"#nodes":["b"],"b":" x "})";
    QTest::newRow("prefix of a child is dropped")
        << "<x:a xmlns:x='u'><x:b>1</x:b><c>2</c></x:a>"
        << R"({"#nodes":["b","c"],"@xmlns:x":"u","b":"1","c":"2"})";
    QTest::newRow("children that differ in the prefix are one list")
        << "<a><x:b>1</x:b><y:b>2</y:b></a>"
        << R"({"#nodes":["b[0]","b[1]"],"b":["1","2"]})";
    QTest::newRow("prefix of an attribute stays") << "<a x:b='1'/>"
                                                  << R"({"@x:b":"1"})";
    QTest::newRow("entities") << "<a b='&lt;&#65;'>&amp;&quot;</a>"
                              << R"({"#text":"&\"","@b":"<A"})";
    QTest::newRow("declaration") << "<?xml version='1.0' encoding='UTF-8'?><a b='1'/>"
                                 << R"({"@b":"1"})";
}

void tst_XmlUtility::documentsBecomeMaps()
{
    QFETCH(QString, xml);
    QFETCH(QString, json);
    LogCapture log;
    QCOMPARE(toJson(xml), json);
    QCOMPARE(log.messages().size(), 0);
}

void tst_XmlUtility::optionsChangeTheMap_data()
{
    QTest::addColumn<QVariantMap>("options");
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("json");

    const QString mixed = "<x:a b='1'>t<!--c--><x:d>2</x:d><x:d>3</x:d></x:a>";
    QTest::newRow("attributePrefix") << QVariantMap{{"attributePrefix", "_"}} << "<a b='1'/>"
                                     << R"({"_b":"1"})";
    QTest::newRow("no attributePrefix") << QVariantMap{{"attributePrefix", ""}} << "<a b='1'/>"
                                        << R"({"b":"1"})";
    QTest::newRow("textProperty") << QVariantMap{{"textProperty", "T"}} << "<a b='1'>x</a>"
                                  << R"({"@b":"1","T":"x"})";
    QTest::newRow("commentProperty") << QVariantMap{{"commentProperty", "C"}} << "<a><!--x--></a>"
                                     << R"({"#nodes":["C"],"C":"x"})";
    QTest::newRow("nodesProperty") << QVariantMap{{"nodesProperty", "N"}} << "<a><b/></a>"
                                   << R"({"N":["b"],"b":null})";
    QTest::newRow("no nodesProperty") << QVariantMap{{"nodesProperty", ""}} << "<a><b/></a>"
                                      << R"({"b":null})";
    QTest::newRow("indexFormat") << QVariantMap{{"indexFormat", "/%1/"}} << "<a><b/><b/><c/></a>"
                                 << R"({"#nodes":["b/0/","b/1/","c"],"b":[null,null],"c":null})";
    QTest::newRow("rootProperty") << QVariantMap{{"rootProperty", true}} << "<a>x</a>"
                                  << R"({"a":"x"})";
    QTest::newRow("rootProperty of an empty root") << QVariantMap{{"rootProperty", true}} << "<a/>"
                                                   << R"({"a":null})";
    QTest::newRow("rootProperty without the prefix")
        << QVariantMap{{"rootProperty", true}} << "<x:a>y</x:a>"
        << R"({"a":"y"})";
    QTest::newRow("preserveNamespaces")
        << QVariantMap{{"preserveNamespaces", true}, {"rootProperty", true}}
        << "<x:a><y:b>1</y:b><z:b>2</z:b></x:a>"
        << R"({"x:a":{"#nodes":["y:b","z:b"],"y:b":"1","z:b":"2"}})";
    QTest::newRow("flags as text") << QVariantMap{{"rootProperty", "true"}} << "<a>x</a>"
                                   << R"({"a":"x"})";
    QTest::newRow("child overwrites an attribute of its key")
        << QVariantMap{{"attributePrefix", ""}} << "<a b='1'><b>2</b></a>"
        << R"({"#nodes":["b"],"b":"2"})";
    QTest::newRow("order overwrites a child of its key")
        << QVariantMap{{"nodesProperty", "b"}} << "<a><b>2</b></a>"
        << R"({"b":["b"]})";
    QTest::newRow("text overwrites a child of its key")
        << QVariantMap{{"textProperty", "b"}} << "<a>x<b>2</b></a>"
        << R"({"#nodes":["b"],"b":"x"})";
    QTest::newRow("unknown options don't count")
        << QVariantMap{{"textproperty", "T"}} << mixed
        << R"({"#comment":"c","#nodes":["#comment","d[0]","d[1]"],"#text":"t","@b":"1","d":["2","3"]})";
}

void tst_XmlUtility::optionsChangeTheMap()
{
    QFETCH(QVariantMap, options);
    QFETCH(QString, xml);
    QFETCH(QString, json);
    QCOMPARE(toJson(xml, options), json);
}

void tst_XmlUtility::emptyElementIsNullInAScript()
{
    const QVariantMap map = XmlUtility::toVariantMap("<a><b/></a>", {});
    QCOMPARE(map.value("b").userType(), int(QMetaType::QJsonValue));
    QVERIFY(map.value("b").toJsonValue().isNull());

    QJSEngine engine;
    engine.globalObject().setProperty("map", engine.toScriptValue(map));
    QVERIFY(engine.evaluate("map.b === null").toBool());
}

void tst_XmlUtility::everyTextIsAString()
{
    const QVariantMap map = XmlUtility::toVariantMap("<a b='1'><c>2</c></a>", {});
    QCOMPARE(map.value("@b"), QVariant(QString("1")));
    QCOMPARE(map.value("c"), QVariant(QString("2")));
    QCOMPARE(map.value("#nodes"), QVariant(QVariantList{QString("c")}));
}

void tst_XmlUtility::unhandledNodesAreSkippedAndLogged()
{
    LogCapture log;
    QCOMPARE(toJson("<a b='1'>x<?pi data?></a>"), QString(R"({"#text":"x","@b":"1"})"));
    QCOMPARE(log.count(QtDebugMsg, category,
                       "static QVariant XmlUtility::toVariant(const QDomElement&, const "
                       "XmlUtility::Options&) Unhandled node \"pi\""),
             1);
    QCOMPARE(toJson("<a b='1'>&nope;</a>"), QString(R"({"@b":"1"})"));
    QCOMPARE(log.count(QtDebugMsg, category, "Unhandled node \"nope\""), 1);
    QCOMPARE(log.messages().size(), 2);
}

void tst_XmlUtility::unparsableTextIsLogged_data()
{
    QTest::addColumn<QString>("xml");
    QTest::newRow("wrong end") << "<a>\n<b></a>";
    QTest::newRow("cut off") << "<a><b>";
    QTest::newRow("no XML") << "hello";
    QTest::newRow("empty") << "";
    QTest::newRow("two roots") << "<a/><b/>";
    QTest::newRow("attribute without quotes") << "<a b=1/>";
}

void tst_XmlUtility::unparsableTextIsLogged()
{
    QFETCH(QString, xml);
    QDomDocument document("xml");
    QString message;
    int line = 0;
    int column = 0;
    QVERIFY(!document.setContent(xml, &message, &line, &column));

    LogCapture log;
    QVERIFY(XmlUtility::toVariantMap(xml, {}).isEmpty());
    QVERIFY(XmlUtility::toVariantMap(xml, {{"rootProperty", true}}).isEmpty());
    QCOMPARE(log.count(QtDebugMsg, category,
                       QStringLiteral("static QVariantMap XmlUtility::toVariantMap(const QString&, "
                                      "const QVariantMap&) \"%1\" Line: %2 Column: %3")
                           .arg(message)
                           .arg(line)
                           .arg(column)),
             2);
    QCOMPARE(log.messages().size(), 2);
}

void tst_XmlUtility::nestingEndsAtAThousandElements_data()
{
    QTest::addColumn<int>("depth");
    QTest::addColumn<bool>("parses");
    QTest::newRow("1000") << 1000 << true;
    QTest::newRow("1001") << 1001 << false;
    QTest::newRow("200000") << 200000 << false;
}

void tst_XmlUtility::nestingEndsAtAThousandElements()
{
    QFETCH(int, depth);
    QFETCH(bool, parses);
    LogCapture log;
    const QVariantMap map = XmlUtility::toVariantMap(nested(depth, "x"), {});
    QCOMPARE(!map.isEmpty(), parses);
    QCOMPARE(log.count(QtDebugMsg, category, "Line: 1 Column:"), parses ? 0 : 1);

    // As many one after another are no depth.
    const QString flat = "<r>" + QString("<a/>").repeated(2000) + "</r>";
    QCOMPARE(XmlUtility::toVariantMap(flat, {}).value("a").toList().size(), 2000);
}

void tst_XmlUtility::depthIsSeenBehindWhatOnlyAStrictReaderRefuses_data()
{
    QTest::addColumn<QString>("before");
    QTest::newRow("undeclared entity") << "&foo;";
    QTest::newRow("attribute given twice") << "<b c='1' c='2'/>";
    QTest::newRow("two colons") << "<b:c:d/>";
    QTest::newRow("undeclared prefix") << "<b:c d:e='1'/>";
    QTest::newRow("control character") << "\x01";
    QTest::newRow("processing instruction") << "<?x?>";
}

void tst_XmlUtility::depthIsSeenBehindWhatOnlyAStrictReaderRefuses()
{
    QFETCH(QString, before);
    const LogCapture log;
    QVERIFY(!XmlUtility::toVariantMap("<r e='1'>" + before + nested(999) + "</r>", {}).isEmpty());
    QVERIFY(XmlUtility::toVariantMap("<r e='1'>" + before + nested(1000) + "</r>", {}).isEmpty());
    QVERIFY(XmlUtility::toVariantMap("<r e='1'>" + before + nested(99999) + "</r>", {}).isEmpty());
}

void tst_XmlUtility::depthCountsWhatEntitiesBringIn()
{
    const QString document = "<!DOCTYPE r [<!ENTITY e '%1'>]><r f='1'>%2</r>";
    const LogCapture log;
    QVERIFY(!XmlUtility::toVariantMap(document.arg(nested(10), "&e;"), {}).isEmpty());
    QVERIFY(!XmlUtility::toVariantMap(document.arg(nested(10), nested(989, "&e;")), {}).isEmpty());
    QVERIFY(XmlUtility::toVariantMap(document.arg(nested(10), nested(990, "&e;")), {}).isEmpty());
}

void tst_XmlUtility::definitionsThatAskForTooMuchAreRefused_data()
{
    QTest::addColumn<QString>("definition");
    QTest::addColumn<QString>("content");
    QTest::addColumn<QString>("reason");

    const QString tooLong = "document type definition too long";
    const QString tooDeep = "document type definition too deep";
    const QString tooMany = "too many entity references";
    const QString parentheses = QString("(").repeated(120000);
    QTest::newRow("parentheses") << "<!ELEMENT r " + parentheses << "" << tooDeep;
    QTest::newRow("parentheses behind closing ones")
        << "<!--" + QString(")").repeated(9000) + "--><!ELEMENT r " + parentheses.left(5000) << ""
        << tooDeep;
    QTest::newRow("parentheses in a parameter entity")
        << "<!ENTITY % p '<!ELEMENT r " + parentheses.left(5000) + "'>%p;"
        << "" << tooDeep;

    QString entities;
    for (int i = 0; i < 20000; ++i)
        entities += QString("<!ENTITY e%1 'x'>").arg(i);
    QTest::newRow("entities") << entities << "&e1;" << tooLong;
    QTest::newRow("comment") << "<!--" + QString(20000, 'x') + "-->"
                             << "" << tooLong;
    QTest::newRow("end that only looks like one") << "<!-- ]> -->" + entities << "&e1;" << tooLong;

    const QString longEntity = "<!ENTITY e '" + QString(4096, 'x') + "'>";
    QTest::newRow("references") << longEntity << QString("&e;").repeated(270000) << tooMany;
    QTest::newRow("references in attributes")
        << longEntity << "<a b='" + QString("&e;").repeated(270000) + "'/>" << tooMany;
    QTest::newRow("references to nested entities")
        << "<!ENTITY a '" + QString(63, 'x') + "'><!ENTITY b '" + QString("&a;").repeated(63) + "'>"
        << QString("&b;").repeated(270000) << tooMany;
}

void tst_XmlUtility::definitionsThatAskForTooMuchAreRefused()
{
    QFETCH(QString, definition);
    QFETCH(QString, content);
    QFETCH(QString, reason);
    LogCapture log;
    const QString xml = "<!DOCTYPE r [" + definition + "]><r>" + content + "</r>";
    QCOMPARE(XmlUtility::toVariantMap(xml, {}), QVariantMap());
    QCOMPARE(log.count(QtDebugMsg, category, '"' + reason + "\" Line:"), 1);
}

void tst_XmlUtility::definitionsWithinTheBoundsAreRead_data()
{
    QTest::addColumn<QString>("definition");
    QTest::addColumn<QString>("content");
    QTest::addColumn<QString>("text");
    QTest::newRow("content model") << "<!ELEMENT r (((a|b)*,c)?)><!ELEMENT a (#PCDATA)>"
                                   << "x"
                                   << "x";
    QTest::newRow("entity") << "<!ENTITY e 'long'>"
                            << "&e;"
                            << "long";
    QTest::newRow("many references")
        << "<!ENTITY e 'long'>" << QString("&e;").repeated(5000) << QString("long").repeated(5000);
    // None of these grows: there is no entity.
    QTest::newRow("signs") << "<!ELEMENT r ANY>" << QString("&amp;").repeated(100000)
                           << QString("&").repeated(100000);
    QTest::newRow("brackets in the text")
        << "<!ELEMENT r ANY>" << QString("(").repeated(20000) << QString("(").repeated(20000);
}

void tst_XmlUtility::definitionsWithinTheBoundsAreRead()
{
    QFETCH(QString, definition);
    QFETCH(QString, content);
    QFETCH(QString, text);
    const QString xml = "<!DOCTYPE r [" + definition + "]><r>" + content + "</r>";
    QCOMPARE(XmlUtility::toVariantMap(xml, {{"rootProperty", true}}).value("r").toString(), text);
}

void tst_XmlUtility::veryManyAttributesAreReadOnceEach_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("few") << 50;
    QTest::newRow("many") << 150;
    QTest::newRow("so many that anything quadratic runs into the time limit") << 60000;
}

void tst_XmlUtility::veryManyAttributesAreReadOnceEach()
{
    QFETCH(int, count);
    const QStringList written{"plain", "&lt;&amp;&quot;'&gt;", "&#10;&#9;&#13; x ", "", "€"};
    const QStringList read{"plain", "<&\"'>", "\n\t\r x ", "", QStringLiteral("€")};
    QString xml = "<r>t<a:e ";
    for (int i = 0; i < count; ++i)
        xml += QStringLiteral(" x:y:n%1=\"%2\"").arg(i).arg(written.at(i % written.size()));
    xml += "/></r>";

    LogCapture log;
    const QVariantMap map = XmlUtility::toVariantMap(xml, {}).value("e").toMap();
    QCOMPARE(map.size(), count);
    for (int i = 0; i < count; ++i)
        QCOMPARE(map.value(QStringLiteral("@x:y:n%1").arg(i)), QVariant(read.at(i % read.size())));
    QCOMPARE(log.messages().size(), 0);
}

void tst_XmlUtility::veryManyAttributesWithNamesThatCannotBeRead()
{
    QDomDocument document;
    QDomElement element = document.createElement("e");
    for (int i = 0; i < 200; ++i)
        element.setAttribute(QStringLiteral("a name %1").arg(i), i);
    const QVariantMap map = XmlUtility::toVariant(element, XmlUtility::Options()).toMap();
    QCOMPARE(map.size(), 200);
    QCOMPARE(map.value("@a name 7"), QVariant(QString("7")));
}

void tst_XmlUtility::addElementKeepsWhatTheMapHas()
{
    QDomDocument document;
    QVERIFY(document.setContent(QString("<x:a>1</x:a>")));
    QVariantMap map{{"b", 2}};
    XmlUtility::Options options;
    XmlUtility::addElement(document.documentElement(), map, options);
    QCOMPARE(map, (QVariantMap{{"a", QString("1")}, {"b", 2}}));
    options.preserveNamespaces = true;
    XmlUtility::addElement(document.documentElement(), map, options);
    QCOMPARE(map, (QVariantMap{{"a", QString("1")}, {"b", 2}, {"x:a", QString("1")}}));
}

void tst_XmlUtility::propertyNameDropsThePrefix_data()
{
    QTest::addColumn<QString>("tag");
    QTest::addColumn<QString>("name");
    QTest::newRow("no prefix") << "a"
                               << "a";
    QTest::newRow("prefix") << "x:a"
                            << "a";
    QTest::newRow("first colon counts") << "x:y:a"
                                        << "y:a";
    QTest::newRow("nothing behind the colon") << "x:"
                                              << "";
    QTest::newRow("empty") << ""
                           << "";
}

void tst_XmlUtility::propertyNameDropsThePrefix()
{
    QFETCH(QString, tag);
    QFETCH(QString, name);
    XmlUtility::Options options;
    QCOMPARE(XmlUtility::propertyName(tag, options), name);
    options.preserveNamespaces = true;
    QCOMPARE(XmlUtility::propertyName(tag, options), tag);
}

TESSALINE_TEST_MAIN(tst_XmlUtility)
#include "tst_XmlUtility.moc"
