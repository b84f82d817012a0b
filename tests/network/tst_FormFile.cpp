#include "network/FormFile.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QTest>

class tst_FormFile : public QObject
{
    Q_OBJECT

private slots:
    void optionsAreRead_data();
    void optionsAreRead();
    void everyPieceIsLoggedAndUnknownOnesAreSkipped();
};

void tst_FormFile::optionsAreRead_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("contentType");
    QTest::addColumn<qint64>("offset");
    QTest::addColumn<qint64>("size");

    const auto row = [](const char *name, const char *text, const char *path, const char *fileName,
                        const char *contentType, qint64 offset = 0, qint64 size = -1) {
        QTest::newRow(name) << QString::fromUtf8(text) << QString::fromUtf8(path)
                            << QString::fromUtf8(fileName) << QString::fromUtf8(contentType)
                            << offset << size;
    };
    row("path alone", "/tmp/x.png", "/tmp/x.png", "x.png", "image/png");
    row("all options", "/tmp/x.png;type=a/b;filename=q.png;offset=3;size=4", "/tmp/x.png", "q.png",
        "a/b", 3, 4);
    row("later options win", "/tmp/x.png;size=1;size=2", "/tmp/x.png", "x.png", "image/png", 0, 2);
    row("no number counts as 0", "/tmp/x.png;offset=ten;size=0x10", "/tmp/x.png", "x.png",
        "image/png", 0, 0);
    row("number beyond 64 bits counts as 0", "/x;size=99999999999999999999", "/x", "x",
        "application/octet-stream", 0, 0);
    row("negative numbers are kept", "/x;offset=-1;size=-2", "/x", "x", "application/octet-stream",
        -1, -2);
    row("empty options", "/x;;type=;filename=", "/x", "", "", 0, -1);
    row("names are case-sensitive", "/x.png;Type=a/b;FILENAME=q", "/x.png", "x.png", "image/png");
    row("blanks count", "/x.png; type=a/b", "/x.png", "x.png", "image/png");
    row("value with an equals sign", "/x.png;filename=a=b", "/x.png", "a=b", "image/png");
    row("path that reads as an option", "type=x/y", "type=x/y", "y", "x/y");
    row("path that reads as a file name", "filename=x.png", "filename=x.png", "x.png", "image/png");
    row("empty text", "", "", "", "application/octet-stream");
    row("text beyond ASCII", "/tmp/ü.txt;filename=日.txt", "/tmp/ü.txt", "日.txt", "text/plain");
    row("last suffix decides", "/tmp/x.tar.zip", "/tmp/x.tar.zip", "x.tar.zip", "application/zip");
    row("suffixes are case-sensitive", "/tmp/x.PNG", "/tmp/x.PNG", "x.PNG",
        "application/octet-stream");
}

void tst_FormFile::optionsAreRead()
{
    QFETCH(QString, text);
    const LogCapture silence;

    const FormFile file = FormFile::fromText(text);

    QTEST(file.path, "path");
    QTEST(file.fileName, "fileName");
    QTEST(file.contentType, "contentType");
    QTEST(file.offset, "offset");
    QTEST(file.size, "size");
}

void tst_FormFile::everyPieceIsLoggedAndUnknownOnesAreSkipped()
{
    const QString function("void NetworkRequest::sendFormData(const QVariantMap&, const "
                           "QVariantMap&)");
    LogCapture log;

    FormFile::fromText("/x.png;type=a/b;color=red");

    const QList<QString> expected{
        function + " param \"/x.png\"", function + " Skipping Parameter \"/x.png\"",
        function + " param \"type=a/b\"", function + " param \"color=red\"",
        function + " Skipping Parameter \"color=red\""};
    const QList<LogCapture::Message> messages = log.messages();
    QCOMPARE(messages.size(), expected.size());
    for (int i = 0; i < expected.size(); ++i) {
        QCOMPARE(messages.at(i).text, expected.at(i));
        QCOMPARE(messages.at(i).type, QtDebugMsg);
        QCOMPARE(messages.at(i).category, QByteArray("default"));
    }
}

TESSALINE_TEST_MAIN(tst_FormFile)
#include "tst_FormFile.moc"
