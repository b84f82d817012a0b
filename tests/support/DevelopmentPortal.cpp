#include "support/DevelopmentPortal.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QRegularExpression>
#include <QUrlQuery>

DevelopmentPortal::~DevelopmentPortal()
{
    if (m_process.state() != QProcess::NotRunning && stop() < 0) {
        m_process.kill();
        m_process.waitForFinished();
    }
}

QString DevelopmentPortal::program()
{
    return qEnvironmentVariable("TESSALINE_BIN_DIR") + QStringLiteral("/tessaline-portal");
}

QString DevelopmentPortal::failingProgram()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/tessaline-failing-portal");
}

void DevelopmentPortal::addItem(const QString &id, const QVariantMap &info,
                                const QMap<QString, QByteArray> &files)
{
    const QString folder = QStringLiteral("items/") + id + QLatin1Char('/');
    writeFile(folder + QStringLiteral("iteminfo.json"), QJsonDocument::fromVariant(info).toJson());
    for (auto file = files.begin(); file != files.end(); ++file)
        writeFile(folder + file.key(), file.value());
}

void DevelopmentPortal::writeFile(const QString &name, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path(name)).path());
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("Can't write %s", qPrintable(file.fileName()));
}

bool DevelopmentPortal::start(const QStringList &arguments)
{
    QDir().mkpath(path(QStringLiteral("items")));
    QStringList all = arguments;
    if (!all.contains(QStringLiteral("--items")))
        all << QStringLiteral("--items") << path(QStringLiteral("items"));
    if (!all.contains(QStringLiteral("--port")))
        all << QStringLiteral("--port") << QStringLiteral("0");
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.start(all.contains(QStringLiteral("--fail")) ? failingProgram() : program(), all);

    static const QRegularExpression address(
        QStringLiteral("https?://127\\.0\\.0\\.1:[0-9]+(?=\\n)"));
    m_output.clear();
    while (m_process.waitForReadyRead(10000)) {
        m_output += QString::fromUtf8(m_process.readAll());
        const QRegularExpressionMatch match = address.match(m_output);
        if (match.hasMatch()) {
            m_url = match.captured();
            return true;
        }
    }
    m_process.waitForFinished(1000);
    m_output += m_process.errorString();
    return false;
}

int DevelopmentPortal::stop()
{
    m_process.terminate();
    const bool ended = m_process.waitForFinished(5000);
    m_output += QString::fromUtf8(m_process.readAll());
    return ended && m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

int DevelopmentPortal::Answer::errorCode() const
{
    return json.value(QLatin1String("error")).toObject().value(QLatin1String("code")).toInt();
}

DevelopmentPortal::Answer DevelopmentPortal::call(const QString &path, const QVariantMap &fields,
                                                  bool get) const
{
    QUrlQuery query;
    for (auto field = fields.begin(); field != fields.end(); ++field)
        query.addQueryItem(QString::fromLatin1(QUrl::toPercentEncoding(field.key())),
                           QString::fromLatin1(QUrl::toPercentEncoding(field.value().toString())));
    QUrl url(m_url + path);
    if (get)
        url.setQuery(query);
    QNetworkRequest request(url);
    request.setHeader(QNetworkRequest::ContentTypeHeader,
                      QStringLiteral("application/x-www-form-urlencoded"));

    QNetworkAccessManager manager;
    QNetworkReply *reply =
        get ? manager.get(request)
            : manager.post(request, query.toString(QUrl::FullyEncoded).toLatin1());
    reply->ignoreSslErrors();
    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    loop.exec();
    Answer answer;
    answer.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    answer.contentType = reply->header(QNetworkRequest::ContentTypeHeader).toByteArray();
    answer.body = reply->readAll();
    answer.json = QJsonDocument::fromJson(answer.body).object();
    return answer;
}

QString DevelopmentPortal::token(const QString &user, const QString &password) const
{
    return call(QStringLiteral("/sharing/rest/generateToken"),
                {{QStringLiteral("username"), user}, {QStringLiteral("password"), password}})
        .json.value(QLatin1String("token"))
        .toString();
}
