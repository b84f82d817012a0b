#include "examples/ExampleWindow.h"
#include "support/HttpServer.h"
#include "support/IsolatedHome.h"
#include "support/RawServer.h"
#include "support/TestCertificates.h"

#include <QClipboard>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

// One sitting with the requests example: each test goes on where the one before it stopped.
class tst_RequestsExample : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void beginsWithAnEmptyAnswer();
    void jsonIsShownInOrder();
    void otherTextIsShownAsItIs();
    void headersAreSentAndShown();
    void fieldsBecomeTheQuery();
    void valuesThatBeginLikeAnUploadAreSentAsText();
    void filesAreUploaded();
    void missingFileIsSaid();
    void textIsSentAsJson();
    void longTransfersHaveABar();
    void transfersCanBeCancelled();
    void answersGoToAFile();
    void redirectsAreFollowed();
    void redirectsAreShown_data();
    void redirectsAreShown();
    void failuresAreSaid();
    void certificateErrorsAreListed();
    void helpFillsInAnAddress();
    void aNarrowWindowShowsOnePage();
    void looksLikeAClient();
    void printsNoWarning();

private:
    void fill(const QString &objectName, const QString &text);
    void fillItem(QQuickItem *item, const QString &text);
    void settle();
    void clickInForm(QQuickItem *item);
    void clickInForm(const QString &objectName) { clickInForm(m_window->item(objectName)); }
    void send();
    void sendTo(const QUrl &url);
    bool isDone() const;
    QString body() const;
    void removeRows(const QString &kind);
    HttpServer::Request received() const { return m_server.lastRequest(); }

    HttpServer m_server;
    QTemporaryDir m_dir;
    std::unique_ptr<ExampleWindow> m_window;
};

void tst_RequestsExample::initTestCase()
{
    m_server.on("/json", [](const HttpServer::Request &) {
        return HttpServer::Answer{R"({"b":[1,{"c":null}],"a":"x<y","big":12345678901234567890})",
                                  200, "application/json"};
    });
    m_window = std::make_unique<ExampleWindow>("requests");
    QVERIFY(m_window->isReady());
    QVERIFY(m_window->expose());
    m_window->resize(1280, 800);
}

void tst_RequestsExample::fill(const QString &objectName, const QString &text)
{
    fillItem(m_window->item(objectName), text);
    QCOMPARE(m_window->text(objectName), text);
}

void tst_RequestsExample::fillItem(QQuickItem *item, const QString &text)
{
    QVERIFY(item);
    clickInForm(item);
    QTRY_VERIFY(item->hasActiveFocus());
    // Pasted: a picture for each key would take long.
    QGuiApplication::clipboard()->setText(text);
    QTest::keyClick(m_window->view(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(m_window->view(), Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(item->property("text").toString(), text);
}

// Layouts put their items where they belong before the next frame.
void tst_RequestsExample::settle()
{
    QSignalSpy drawn(m_window->view(), &QQuickWindow::frameSwapped);
    m_window->view()->update();
    QVERIFY(drawn.wait());
}

// What lies below the fold is moved into sight first.
void tst_RequestsExample::clickInForm(QQuickItem *item)
{
    settle();
    QQuickItem *form = m_window->item("form");
    const qreal y = item->mapToItem(form, QPointF()).y();
    if (y < 0 || y + item->height() > form->height()) {
        const qreal most = form->property("contentHeight").toReal() - form->height();
        const qreal wanted = form->property("contentY").toReal() + y - 20;
        form->setProperty("contentY", qBound(0.0, wanted, most));
    }
    m_window->clickItem(item);
}

bool tst_RequestsExample::isDone() const
{
    return m_window->text("state") == "Done";
}

void tst_RequestsExample::send()
{
    m_window->click("sendButton");
    QTRY_VERIFY(isDone());
}

void tst_RequestsExample::sendTo(const QUrl &url)
{
    fill("urlField", url.toString());
    send();
}

// As the user reads it.
QString tst_RequestsExample::body() const
{
    QString text;
    QQuickItem *area = m_window->item("body");
    QMetaObject::invokeMethod(area, "getText", Q_RETURN_ARG(QString, text), Q_ARG(int, 0),
                              Q_ARG(int, area->property("length").toInt()));
    return text.replace(QChar::ParagraphSeparator, '\n').replace(QChar::LineSeparator, '\n');
}

void tst_RequestsExample::removeRows(const QString &kind)
{
    while (!m_window->items(kind + "Remove").isEmpty()) {
        const int count = m_window->items(kind + "Remove").size();
        clickInForm(m_window->items(kind + "Remove").first());
        QTRY_COMPARE(m_window->items(kind + "Remove").size(), count - 1);
    }
}

void tst_RequestsExample::beginsWithAnEmptyAnswer()
{
    QCOMPARE(m_window->text("state"), QString("Ready"));
    QCOMPARE(m_window->text("summary"), QString("No answer yet"));
    QVERIFY(!m_window->item("status")->isVisible());
    QCOMPARE(m_server.requestCount(), 0);
}

void tst_RequestsExample::jsonIsShownInOrder()
{
    sendTo(m_server.url("/json"));
    QCOMPARE(m_window->text("status"), QString("200 OK"));
    QCOMPARE(body(), QString("{\n"
                             "    \"b\": [\n"
                             "        1,\n"
                             "        {\n"
                             "            \"c\": null\n"
                             "        }\n"
                             "    ],\n"
                             "    \"a\": \"x<y\",\n"
                             "    \"big\": 12345678901234567890\n"
                             "}"));
    QCOMPARE(received().method, QByteArray("GET"));
}

void tst_RequestsExample::otherTextIsShownAsItIs()
{
    sendTo(m_server.url("/text/<b>no&lt;markup</b>"));
    QCOMPARE(body(), QString("<b>no&lt;markup</b>"));
    QCOMPARE(m_window->text("note"), QString());
    sendTo(m_server.url("/bytes/0"));
    QVERIFY(m_window->text("note").contains("no text"));
}

void tst_RequestsExample::headersAreSentAndShown()
{
    clickInForm("addHeader");
    fill("headerName", "X-Client");
    fill("headerValue", "a b");
    sendTo(m_server.url("/json"));
    QCOMPARE(received().header("X-Client"), QByteArray("a b"));
    QVERIFY(m_window->item("headers")->property("count").toInt() > 0);

    // A header that was taken away is gone from the next request.
    removeRows("header");
    send();
    QVERIFY(!received().hasHeader("X-Client"));
}

void tst_RequestsExample::fieldsBecomeTheQuery()
{
    clickInForm("choice Form");
    clickInForm("addField");
    fill("fieldName", "title");
    fill("fieldValue", "1");
    send();
    QCOMPARE(received().target, QByteArray("/json?title=1"));
    sendTo(m_server.url("/json?a=b"));
    QCOMPARE(received().target, QByteArray("/json?a=b&title=1"));
    fill("urlField", m_server.url("/json").toString());
}

void tst_RequestsExample::valuesThatBeginLikeAnUploadAreSentAsText()
{
    clickInForm("choice POST");
    fill("fieldValue", "@/etc/passwd");
    send();
    QCOMPARE(received().method, QByteArray("POST"));
    QCOMPARE(received().body, QByteArray("title=@/etc/passwd"));
}

void tst_RequestsExample::filesAreUploaded()
{
    const QByteArray bytes = HttpServer::pattern(100000);
    QFile file(m_dir.filePath("some file.png"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    file.close();
    clickInForm("addFile");
    fill("fileValue", file.fileName());
    send();
    QCOMPARE(m_window->text("status"), QString("200 OK"));
    const HttpServer::Request request = received();
    QCOMPARE(request.parts["title"].content, QByteArray("@/etc/passwd"));
    QCOMPARE(request.parts["file"].fileName, QByteArray("some file.png"));
    QCOMPARE(request.parts["file"].contentType, QByteArray("image/png"));
    QVERIFY(request.parts["file"].content == bytes);
}

void tst_RequestsExample::missingFileIsSaid()
{
    fill("fileValue", m_dir.filePath("none.png"));
    const int count = m_server.requestCount();
    send();
    QVERIFY(m_window->item("failure")->isVisible());
    QCOMPARE(m_window->text("failure"), "Cannot open " + m_dir.filePath("none.png"));
    QCOMPARE(m_window->text("status"), QString("Failed"));
    QCOMPARE(m_server.requestCount(), count);
    removeRows("file");
    removeRows("field");
}

void tst_RequestsExample::textIsSentAsJson()
{
    clickInForm("choice Text");
    fill("bodyField", "{\"a\": [1]}");
    sendTo(m_server.url("/echo"));
    QCOMPARE(received().body, QByteArray("{\"a\": [1]}"));
    QCOMPARE(received().header("Content-Type"), QByteArray("application/json"));
    QVERIFY(!m_window->item("failure")->isVisible());
    clickInForm("choice None");
    clickInForm("choice GET");
}

void tst_RequestsExample::longTransfersHaveABar()
{
    RawServer server;
    server.answer("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n" + QByteArray(500, 'x'));
    fill("urlField", server.url("/half").toString());
    m_window->click("sendButton");
    QTRY_VERIFY(m_window->item("bar")->isVisible());
    QTRY_COMPARE(m_window->text("barText"), QString("Receiving, 50 %"));
    QCOMPARE(m_window->text("sendButton"), QString("Cancel"));
    QQuickItem *bar = m_window->item("bar");
    QCOMPARE(bar->width(), bar->parentItem()->width() * 0.5);
    server.sendMore(QByteArray(500, 'y'));
    QTRY_VERIFY(isDone());
    QVERIFY(!bar->isVisible());
    QCOMPARE(body().size(), 1000);
}

void tst_RequestsExample::transfersCanBeCancelled()
{
    RawServer server;
    server.answer("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\nx");
    fill("urlField", server.url("/stalled").toString());
    m_window->click("sendButton");
    QTRY_COMPARE(m_window->text("state"), QString("Receiving"));
    m_window->click("sendButton");
    server.sendMore("more");
    QTRY_VERIFY(isDone());
    QVERIFY(m_window->item("failure")->isVisible());
}

void tst_RequestsExample::answersGoToAFile()
{
    clickInForm("saveSwitcher");
    fill("saveField", m_dir.filePath("answer.bin"));
    sendTo(m_server.url("/bytes/1234567"));
    QFile file(m_dir.filePath("answer.bin"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll() == HttpServer::pattern(1234567));
    QCOMPARE(m_window->text("note"), "1 234 567 bytes in " + file.fileName());

    clickInForm("saveSwitcher");
}

void tst_RequestsExample::redirectsAreFollowed()
{
    sendTo(m_server.url("/redirect/302?" + m_server.url("/json").toString()));
    QCOMPARE(m_window->text("status"), QString("200 OK"));
    QCOMPARE(received().path, QByteArray("/json"));
    QVERIFY(!m_window->item("redirect")->isVisible());
}

void tst_RequestsExample::redirectsAreShown_data()
{
    QTest::addColumn<QString>("location");
    QTest::addColumn<QByteArray>("path");
    QTest::newRow("whole address") << m_server.url("/json").toString() << QByteArray("/json");
    QTest::newRow("without scheme")
        << QString("//127.0.0.1:%1/json").arg(m_server.port()) << QByteArray("/json");
    QTest::newRow("path") << "/json" << QByteArray("/json");
    QTest::newRow("name") << "here" << QByteArray("/redirect/here");
}

void tst_RequestsExample::redirectsAreShown()
{
    QFETCH(QString, location);
    QFETCH(QByteArray, path);
    m_server.on("/redirect/here",
                [](const HttpServer::Request &) { return HttpServer::Answer{"here it is"}; });
    clickInForm("followSwitcher");
    sendTo(m_server.url("/redirect/302?" + location));
    QCOMPARE(m_window->text("status"), QString("302 Found"));
    QTRY_VERIFY(m_window->item("redirect")->isVisible());
    QCOMPARE(m_window->text("redirect"), "Moved to " + location);
    settle();
    m_window->click("followButton");
    QTRY_COMPARE(m_window->text("status"), QString("200 OK"));
    QCOMPARE(received().path, path);
    clickInForm("followSwitcher");
}

void tst_RequestsExample::failuresAreSaid()
{
    sendTo(m_server.url("/status/404"));
    QCOMPARE(m_window->text("status"), QString("404 Not Found"));
    QCOMPARE(body(), QString("status 404"));
    QVERIFY(m_window->item("failure")->isVisible());
    sendTo(QUrl("http://127.0.0.1:1/"));
    QCOMPARE(m_window->text("status"), QString("Failed"));
    QVERIFY(m_window->text("failure").contains("refused"));
}

void tst_RequestsExample::certificateErrorsAreListed()
{
    const TestCertificates certificates;
    HttpServer secure(certificates.selfSignedPath(), certificates.keyPath());
    sendTo(secure.url("/text/secret"));
    QCOMPARE(m_window->text("status"), QString("Failed"));
    QVERIFY(m_window->item("tlsErrors")->isVisible());
    QTRY_VERIFY(m_window->item("tlsErrors")->property("count").toInt() > 0);
    QVERIFY(!m_window->text("tlsErrorText").isEmpty());
    QCOMPARE(
        m_window->text("tlsSubject"),
        QString("127.0.0.1, Zemrik, Tests, Munich, Bavaria, DE, test@zemrik.example, 4711, dq"));
    QCOMPARE(secure.requestCount(), 0);

    settle();
    m_window->click("trustButton");
    QTRY_COMPARE(body(), QString("secret"));
    QVERIFY(m_window->item("ignored")->isVisible());
    QCOMPARE(secure.requestCount(), 1);
}

void tst_RequestsExample::helpFillsInAnAddress()
{
    m_window->click("helpButton");
    QTRY_VERIFY(m_window->item("help")->isVisible());
    QVERIFY(!m_window->item("form")->isVisible());
    QQuickItem *address = m_window->items("address").value(1);
    QTRY_VERIFY(address && address->mapToScene(QPointF()).y() < m_window->view()->height());
    m_window->clickItem(address);
    QTRY_VERIFY(!m_window->item("help")->isVisible());
    QCOMPARE(m_window->text("urlField"), QString("http://127.0.0.1:8081/redirect/3"));
}

void tst_RequestsExample::aNarrowWindowShowsOnePage()
{
    m_window->resize(360, 640);
    m_window->click("choice Request");
    QTRY_VERIFY(m_window->item("form")->isVisible());
    QVERIFY(!m_window->item("answer")->isVisible());
    sendTo(m_server.url("/json"));
    QVERIFY(m_window->item("answer")->isVisible());
    QVERIFY(!m_window->item("form")->isVisible());
    m_window->click("choice Request");
    QTRY_VERIFY(m_window->item("form")->isVisible());
}

void tst_RequestsExample::looksLikeAClient()
{
    m_window->resize(1280, 800);
    sendTo(m_server.url("/json"));
    const QImage picture = m_window->picture();
    QCOMPARE(picture.size(), QSize(1280, 800));
    QVERIFY(ExampleWindow::colorCount(picture) > 50);
    // The dark answer on the right, the light request on the left, the green of a good status.
    QVERIFY(picture.pixelColor(1270, 700).lightnessF() < 0.3);
    QVERIFY(picture.pixelColor(4, 700).lightnessF() > 0.8);
    QQuickItem *status = m_window->item("status")->parentItem();
    const QPointF corner = status->mapToScene(QPointF(status->width() / 2, 2));
    QCOMPARE(picture.pixelColor(corner.toPoint()).name(), QString("#7fd1ae"));
}

void tst_RequestsExample::printsNoWarning()
{
    QCOMPARE(m_window->warningCount(), 0);
    m_window.reset();
}

TESSALINE_INPUT_TEST_MAIN(tst_RequestsExample)

#include "tst_RequestsExample.moc"
