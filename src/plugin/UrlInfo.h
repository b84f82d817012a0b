#pragma once

#include "plugin/TessalineGlobal.h"

#include <QObject>
#include <QUrl>
#include <QVariantMap>

class QUrlQuery;

// A URL taken apart: each component is a property, read from the URL at each access. QML name:
// UrlInfo. Every change, of whatever component, emits the one signal urlChanged(). Setting a
// component to what it reads already does nothing.
class TESSALINE_EXPORT UrlInfo : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QUrl url READ url WRITE setUrl NOTIFY urlChanged)
    Q_PROPERTY(QString scheme READ scheme WRITE setScheme NOTIFY urlChanged)
    Q_PROPERTY(QString host READ host WRITE setHost NOTIFY urlChanged)
    Q_PROPERTY(QString topLevelDomain READ topLevelDomain NOTIFY urlChanged)
    Q_PROPERTY(QString userName READ userName WRITE setUserName NOTIFY urlChanged)
    Q_PROPERTY(QString password READ password WRITE setPassword NOTIFY urlChanged)
    Q_PROPERTY(QString userInfo READ userInfo WRITE setUserInfo NOTIFY urlChanged)
    Q_PROPERTY(QString authority READ authority WRITE setAuthority NOTIFY urlChanged)
    Q_PROPERTY(QString path READ path WRITE setPath NOTIFY urlChanged)
    Q_PROPERTY(QString fileName READ fileName NOTIFY urlChanged)
    Q_PROPERTY(bool hasFragment READ hasFragment NOTIFY urlChanged)
    Q_PROPERTY(QString fragment READ fragment WRITE setFragment NOTIFY urlChanged)
    Q_PROPERTY(int port READ port WRITE setPort NOTIFY urlChanged)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY urlChanged)
    Q_PROPERTY(bool isValid READ isValid NOTIFY urlChanged)
    Q_PROPERTY(bool isLocalFile READ isLocalFile NOTIFY urlChanged)
    Q_PROPERTY(QString localFile READ localFile WRITE setLocalFile NOTIFY urlChanged)
    Q_PROPERTY(bool hasQuery READ hasQuery NOTIFY urlChanged)
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY urlChanged)
    Q_PROPERTY(
        QVariantMap queryParameters READ queryParameters WRITE setQueryParameters NOTIFY urlChanged)
    Q_PROPERTY(QString queryPairDelimiter READ queryPairDelimiter WRITE setQueryPairDelimiter NOTIFY
                   urlChanged)
    Q_PROPERTY(QString queryValueDelimiter READ queryValueDelimiter WRITE setQueryValueDelimiter
                   NOTIFY urlChanged)

public:
    explicit UrlInfo(QObject *parent = nullptr);
    explicit UrlInfo(const QUrl &url, QObject *parent = nullptr);

    QUrl url() const { return m_url; }
    void setUrl(const QUrl &url);
    QString scheme() const;
    void setScheme(const QString &scheme);
    QString host() const;
    void setHost(const QString &host);
    QString topLevelDomain() const; // with its leading dot
    QString userName() const;
    void setUserName(const QString &userName);
    QString password() const;
    void setPassword(const QString &password);
    QString userInfo() const;
    void setUserInfo(const QString &userInfo);
    QString authority() const;
    void setAuthority(const QString &authority);
    QString path() const;
    void setPath(const QString &path);
    QString fileName() const;
    bool hasFragment() const;
    QString fragment() const;
    void setFragment(const QString &fragment);
    int port() const; // -1 if the URL has none
    void setPort(int port);
    bool isEmpty() const;
    bool isValid() const;
    bool isLocalFile() const;
    QString localFile() const;
    void setLocalFile(const QString &localFile); // replaces the whole URL
    bool hasQuery() const;
    QString query() const;
    void setQuery(const QString &query);
    // A key that stands twice in the query reads as its last value. Writing replaces the whole
    // query and always notifies.
    QVariantMap queryParameters() const;
    void setQueryParameters(const QVariantMap &parameters);
    // How queryParameters takes the query apart: the first character counts, an empty text restores
    // the default ("&" and "="). The query itself stays as it is.
    QString queryPairDelimiter() const { return m_queryPairDelimiter; }
    void setQueryPairDelimiter(const QString &delimiter);
    QString queryValueDelimiter() const { return m_queryValueDelimiter; }
    void setQueryValueDelimiter(const QString &delimiter);

    Q_INVOKABLE bool isParentOf(const QUrl &url) const;
    // These replace the URL, always notify, and tell whether the new URL is valid.
    Q_INVOKABLE bool fromUserInput(const QString &userInput, const QString &workingDirectory);
    Q_INVOKABLE bool fromUserInput(const QString &userInput);
    Q_INVOKABLE bool fromString(const QString &string);

signals:
    void urlChanged();

private:
    template <typename T, typename Change>
    void setComponent(const T &current, const T &value, Change change);
    void setDelimiter(QChar &member, const QString &delimiter, QChar defaultDelimiter);
    bool replaceUrl(const QUrl &url);
    QUrlQuery delimitedQuery() const;

    QUrl m_url;
    int m_defaultPort = -1;
    QChar m_queryPairDelimiter = QLatin1Char('&');
    QChar m_queryValueDelimiter = QLatin1Char('=');
};
