#include "support/DevelopmentPortal.h"
#include "support/IsolatedHome.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QTcpSocket>

#include <csignal>

// What the tests' build of the portal does wrong on purpose.
class tst_FailingPortal : public QObject
{
    Q_OBJECT

private slots:
    void withoutARuleNothingFails();
    void everyStepFails_data();
    void everyStepFails();
    void kinds_data();
    void kinds();
    void onlyTheNumberedRequestFails();
    void slowBodyTakesItsTime();
    void endsCleanlyWhileABodyIsUnderWay_data();
    void endsCleanlyWhileABodyIsUnderWay();
    void unknownRulesEndWithAMessage_data();
    void unknownRulesEndWithAMessage();

private:
    static QByteArray rawGet(const DevelopmentPortal &portal, const QByteArray &path);
};

namespace {

const QString rest = "/sharing/rest";
const QByteArray content = QByteArray("begin") + QByteArray(100000, 'x') + "end";

void addItem(DevelopmentPortal &portal)
{
    portal.addItem("a", {{"thumbnail", "t.png"}}, {{"data", content}, {"t.png", "picture"}});
}

} // namespace

QByteArray tst_FailingPortal::rawGet(const DevelopmentPortal &portal, const QByteArray &path)
{
    QTcpSocket socket;
    socket.connectToHost("127.0.0.1", portal.port());
    if (!socket.waitForConnected())
        return QByteArray();
    socket.write("GET " + path + " HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n");
    QByteArray answer;
    while (socket.waitForReadyRead(10000))
        answer += socket.readAll();
    return answer;
}

void tst_FailingPortal::withoutARuleNothingFails()
{
    DevelopmentPortal portal;
    addItem(portal);
    QVERIFY2(portal.start({"--fail", "search:status:1000"}), qPrintable(portal.output()));
    QCOMPARE(portal.call(rest + "/content/items/a/data").body, content);
    QCOMPARE(portal.call(rest + "/search").json["total"].toInt(), 1);
}

void tst_FailingPortal::everyStepFails_data()
{
    QTest::addColumn<QString>("step");
    QTest::addColumn<QString>("path");
    QTest::newRow("info") << "info"
                          << "/info";
    QTest::newRow("token") << "token"
                           << "/generateToken";
    QTest::newRow("self") << "self"
                          << "/portals/self";
    QTest::newRow("user") << "user"
                          << "/community/users/demo";
    QTest::newRow("search") << "search"
                            << "/search";
    QTest::newRow("item") << "item"
                          << "/content/items/a";
    QTest::newRow("data") << "data"
                          << "/content/items/a/data";
    QTest::newRow("thumbnail") << "thumbnail"
                               << "/content/items/a/info/t.png";
}

void tst_FailingPortal::everyStepFails()
{
    QFETCH(QString, step);
    QFETCH(QString, path);
    DevelopmentPortal portal;
    addItem(portal);
    QVERIFY2(portal.start({"--fail", step + ":status"}), qPrintable(portal.output()));
    QCOMPARE(portal.call(rest + path).status, 500);
    const QString other = step == "info" ? "/search" : "/info";
    QCOMPARE(portal.call(rest + other).status, 200);
}

void tst_FailingPortal::kinds_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QByteArray>("firstLine");
    QTest::addColumn<QByteArray>("body");
    const QByteArray ok = "HTTP/1.1 200 OK\r\n";
    const int half = content.size() / 2;
    QTest::newRow("status") << "status" << QByteArray("HTTP/1.1 500 ")
                            << QByteArray("Failed on purpose.");
    QTest::newRow("error") << "error" << ok
                           << QByteArray("{\"error\":{\"code\":500,\"message\":\"Failed on "
                                         "purpose.\",\"details\":[\"Somewhere.\"]}}");
    QTest::newRow("truncated") << "truncated" << ok << content.left(half);
    QTest::newRow("damaged") << "damaged" << ok
                             << content.left(half) + QByteArray(content.size() - half, '\0');
    QTest::newRow("slow") << "slow" << ok << content;
}

void tst_FailingPortal::kinds()
{
    QFETCH(QString, kind);
    QFETCH(QByteArray, firstLine);
    DevelopmentPortal portal;
    addItem(portal);
    QVERIFY2(portal.start({"--fail", "data:" + kind}), qPrintable(portal.output()));
    const QByteArray answer = rawGet(portal, "/sharing/rest/content/items/a/data");
    QVERIFY2(answer.startsWith(firstLine), answer.left(100).constData());
    QTEST(answer.mid(answer.indexOf("\r\n\r\n") + 4), "body");
}

void tst_FailingPortal::onlyTheNumberedRequestFails()
{
    DevelopmentPortal portal;
    QVERIFY2(portal.start({"--fail", "search:status:2", "--fail", "search:error:3"}),
             qPrintable(portal.output()));
    QCOMPARE(portal.call(rest + "/search").status, 200);
    QCOMPARE(portal.call(rest + "/search").status, 500);
    QCOMPARE(portal.call(rest + "/search").errorCode(), 500);
    QCOMPARE(portal.call(rest + "/search").errorCode(), 0);
}

void tst_FailingPortal::slowBodyTakesItsTime()
{
    DevelopmentPortal portal;
    QVERIFY2(portal.start({"--fail", "info:slow"}), qPrintable(portal.output()));
    QElapsedTimer timer;
    timer.start();
    QVERIFY(portal.call(rest + "/info").json.contains("authInfo"));
    QVERIFY2(timer.elapsed() >= 900, qPrintable(QString::number(timer.elapsed())));
}

void tst_FailingPortal::endsCleanlyWhileABodyIsUnderWay_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("slow") << "slow";
    QTest::newRow("silent") << "silent";
}

void tst_FailingPortal::endsCleanlyWhileABodyIsUnderWay()
{
    QFETCH(QString, kind);
    DevelopmentPortal portal;
    addItem(portal);
    QVERIFY2(portal.start({"--fail", "data:" + kind}), qPrintable(portal.output()));
    QTcpSocket socket;
    socket.connectToHost("127.0.0.1", portal.port());
    QVERIFY(socket.waitForConnected());
    socket.write("GET /sharing/rest/content/items/a/data HTTP/1.1\r\nHost: x\r\n\r\n");
    QVERIFY(socket.waitForReadyRead(10000));
    QCOMPARE(portal.stop(), 0);
}

void tst_FailingPortal::unknownRulesEndWithAMessage_data()
{
    QTest::addColumn<QString>("rule");
    for (const char *rule : {"data", "data:nothing", "nothing:status", "data:status:0",
                             "data:status:x", "data:status:1:2"})
        QTest::newRow(rule) << rule;
}

void tst_FailingPortal::unknownRulesEndWithAMessage()
{
    QFETCH(QString, rule);
    DevelopmentPortal portal;
    QVERIFY(!portal.start({"--fail", rule}));
    QVERIFY2(portal.output().contains("--fail doesn't know \"" + rule + "\""),
             qPrintable(portal.output()));
}

TESSALINE_TEST_MAIN(tst_FailingPortal)
#include "tst_FailingPortal.moc"
