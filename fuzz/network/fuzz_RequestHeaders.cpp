#include "network/NetworkRequest.h"
#include "support/FuzzTarget.h"

#include <QCoreApplication>
#include <QNetworkReply>
#include <QNetworkRequest>

namespace {

// Keeps each request instead of sending it.
class Manager : public QNetworkAccessManager
{
public:
    QNetworkRequest last;

protected:
    QNetworkReply *createRequest(Operation, const QNetworkRequest &request, QIODevice *) override
    {
        last = request;
        return QNetworkAccessManager::createRequest(
            GetOperation, QNetworkRequest(QUrl(QStringLiteral("data:,x"))), nullptr);
    }
};

QCoreApplication &application()
{
    static int argc = 1;
    static char name[] = "fuzz_RequestHeaders";
    static char *argv[] = {name, nullptr};
    static QCoreApplication instance(argc, argv);
    return instance;
}

} // namespace

// Names and values, separated by 0x1e: what a request made with them writes is one line for each
// header, and each line is a name, a colon and a value.
TESSALINE_FUZZ_TARGET(bytes)
{
    application();
    static Manager manager;
    NetworkRequest request;
    request.setNetworkAccessManager(&manager);
    request.setUrl(QUrl(QStringLiteral("http://host/")));
    const QStringList pieces = QString::fromUtf8(bytes).split(QChar(0x1e));
    for (int i = 0; i + 1 < pieces.size(); i += 2)
        request.headers()->insert(pieces.at(i), pieces.at(i + 1));

    request.send();

    const QList<QByteArray> names = manager.last.rawHeaderList();
    if (names.isEmpty())
        qFatal("The content type is missing");
    for (const QByteArray &name : names) {
        const QByteArray line = name + ": " + manager.last.rawHeader(name);
        if (name.isEmpty() || line.indexOf(": ") != name.size() || name.contains(' ')
            || name.contains(':') || line.contains('\r') || line.contains('\n')
            || line.contains('\0'))
            qFatal("A header breaks the request");
    }
    delete request.networkAccessManager()->findChild<QNetworkReply *>();
}
