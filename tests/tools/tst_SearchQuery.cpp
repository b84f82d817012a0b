#include "support/IsolatedHome.h"

#include <portal/SearchQuery.h>

class tst_SearchQuery : public QObject
{
    Q_OBJECT

private slots:
    void matches_data();
    void matches();
    void defaultQueryOfTheCatalogue_data();
    void defaultQueryOfTheCatalogue();
    void wrongQueriesMatchNothing_data();
    void wrongQueriesMatchNothing();
    void depthIsBounded();
};

static QVariantMap sample()
{
    return {{"title", "Street Map"},
            {"type", "Code Sample"},
            {"tags", QStringList{"app", "qml", "two words"}},
            {"owner", "jo"},
            {"size", 5}};
}

void tst_SearchQuery::matches_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<bool>("expected");

    QTest::newRow("empty") << "" << true;
    QTest::newRow("blank") << "  \t " << true;
    QTest::newRow("star") << "*" << true;
    QTest::newRow("word of the title, other case") << "STREET" << true;
    QTest::newRow("part of a word") << "Stre" << false;
    QTest::newRow("word of an unusual field") << "sample" << false;
    QTest::newRow("owner without field") << "jo" << true;
    QTest::newRow("field") << "owner:jo" << true;
    QTest::newRow("field, other value") << "owner:joe" << false;
    QTest::newRow("field that isn't there") << "colour:red" << false;
    QTest::newRow("quoted field") << "type:\"code sample\"" << true;
    QTest::newRow("phrase in the wrong order") << "type:\"sample code\"" << false;
    QTest::newRow("phrase across elements") << "tags:\"app qml\"" << false;
    QTest::newRow("phrase in an element") << "tags:\"two words\"" << true;
    QTest::newRow("number") << "size:5" << true;
    QTest::newRow("any value") << "tags:*" << true;
    QTest::newRow("any value of a missing field") << "colour:*" << false;
    QTest::newRow("and") << "street AND map" << true;
    QTest::newRow("and, one missing") << "street AND sea" << false;
    QTest::newRow("side by side") << "street sea" << false;
    QTest::newRow("or") << "sea OR map" << true;
    QTest::newRow("not") << "NOT sea" << true;
    QTest::newRow("and not") << "map AND NOT street" << false;
    QTest::newRow("twice not") << "NOT NOT map" << true;
    QTest::newRow("and before or") << "map OR sea AND sky" << true;
    QTest::newRow("parentheses first") << "(map OR sea) AND sky" << false;
    QTest::newRow("not before and") << "NOT sea AND map" << true;
    QTest::newRow("not of a group") << "NOT (sea OR map)" << false;
    QTest::newRow("lower case isn't an operator") << "map or street" << false;
    QTest::newRow("operator in quotes") << "\"AND\"" << false;
    QTest::newRow("no blanks") << "(street)(map)" << true;
    QTest::newRow("only marks") << "\"!?\"" << false;
}

void tst_SearchQuery::matches()
{
    QFETCH(QString, query);
    const SearchQuery parsed(query);
    QVERIFY2(parsed.isValid(), qPrintable(parsed.error()));
    QTEST(parsed.matches(sample()), "expected");
}

void tst_SearchQuery::defaultQueryOfTheCatalogue_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QStringList>("tags");
    QTest::addColumn<bool>("expected");

    QTest::newRow("app") << "Native Application" << QStringList() << true;
    QTest::newRow("installer") << "Native Application Installer" << QStringList() << false;
    QTest::newRow("sample") << "Code Sample" << QStringList{"app", "qml"} << true;
    QTest::newRow("sample, one tag") << "Code Sample" << QStringList{"app"} << false;
    QTest::newRow("tags only") << "Web Map" << QStringList{"app", "qml"} << false;
}

void tst_SearchQuery::defaultQueryOfTheCatalogue()
{
    QFETCH(QString, type);
    QFETCH(QStringList, tags);
    const SearchQuery query("((type:\"Native Application\" AND NOT type:\"Native Application "
                            "Installer\") OR (tags:\"app\" AND tags:\"qml\" AND type:\"Code "
                            "Sample\"))");
    QVERIFY2(query.isValid(), qPrintable(query.error()));
    QTEST(query.matches({{"type", type}, {"tags", tags}}), "expected");
}

void tst_SearchQuery::wrongQueriesMatchNothing_data()
{
    QTest::addColumn<QString>("query");

    QTest::newRow("open") << "(map";
    QTest::newRow("close") << "map)";
    QTest::newRow("close alone") << ")";
    QTest::newRow("nothing inside") << "()";
    QTest::newRow("quote") << "\"map";
    QTest::newRow("quote of a field") << "title:\"map";
    QTest::newRow("field without value") << "title:";
    QTest::newRow("field with blank before the value") << "title: map";
    QTest::newRow("value without field") << ":map";
    QTest::newRow("and alone") << "AND";
    QTest::newRow("and at the end") << "map AND";
    QTest::newRow("or at the start") << "OR map";
    QTest::newRow("two operators") << "map AND OR street";
    QTest::newRow("not alone") << "NOT";
}

void tst_SearchQuery::wrongQueriesMatchNothing()
{
    QFETCH(QString, query);
    const SearchQuery parsed(query);
    QVERIFY(!parsed.isValid());
    QVERIFY(!parsed.error().isEmpty());
    QVERIFY(!parsed.matches(sample()));
}

void tst_SearchQuery::depthIsBounded()
{
    const int few = 50;
    const int many = 100000;
    QVERIFY(SearchQuery(QString(few, '(') + "map" + QString(few, ')')).matches(sample()));
    QVERIFY(!SearchQuery(QString(many, '(') + "map" + QString(many, ')')).isValid());
    QVERIFY(!SearchQuery(QString("NOT ").repeated(many) + "map").isValid());
    QVERIFY(SearchQuery(QString("(map) ").repeated(1000)).matches(sample()));
}

TESSALINE_TEST_MAIN(tst_SearchQuery)
#include "tst_SearchQuery.moc"
