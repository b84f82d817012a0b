#include "plugin/UrlInfo.h"

#include "plugin/PropertyHelper.h"

#include <QUrlQuery>

/*!
    \qmltype UrlInfo
    \inqmlmodule Zemrik.Tessaline
    \brief Takes a URL apart and puts it together again.

    Each component of the URL is a property. All of them notify through the one signal urlChanged(),
    because a change of one component can show in several others.

    \qml
    UrlInfo {
        id: info
        url: "https://example.com/search?text=bridge&page=2"

        Component.onCompleted: {
            console.log(info.host, info.queryParameters.page);
            info.queryParameters = { text: "harbour", page: 1 };
            console.log(info.url);
        }
    }
    \endqml

    Setting a component to what it already reads changes nothing and notifies nobody. See also
    \c{Tessaline.urlInfo(url)}, which makes such an object for a script.
*/

/*!
    \qmlproperty url UrlInfo::url
    The whole URL.
*/

/*!
    \qmlproperty string UrlInfo::scheme
    The scheme without its colon, in lower case.
*/

/*!
    \qmlproperty string UrlInfo::host
    The host, decoded.
*/

/*!
    \qmlproperty string UrlInfo::topLevelDomain
    \readonly
    The registry part of the host with a leading dot, such as ".co.uk"; empty if it isn't known.
*/

/*!
    \qmlproperty string UrlInfo::userName
    The user's name, decoded.
*/

/*!
    \qmlproperty string UrlInfo::password
    The password, decoded.
*/

/*!
    \qmlproperty string UrlInfo::userInfo
    User name and password with the colon between them. Reserved characters stay percent-encoded.
*/

/*!
    \qmlproperty string UrlInfo::authority
    User info, host and port in one text. Reserved characters stay percent-encoded.
*/

/*!
    \qmlproperty string UrlInfo::path
    The path, decoded.
*/

/*!
    \qmlproperty string UrlInfo::fileName
    \readonly
    The last part of the path; empty if the path ends in a slash.
*/

/*!
    \qmlproperty bool UrlInfo::hasFragment
    \readonly
    Whether the URL has a "#", also one with nothing behind it.
*/

/*!
    \qmlproperty string UrlInfo::fragment
    The text behind the "#". Reserved characters stay percent-encoded.
*/

/*!
    \qmlproperty int UrlInfo::port
    The port that the URL names; -1 if it names none. Setting -1 removes it.
*/

/*!
    \qmlproperty bool UrlInfo::isEmpty
    \readonly
    Whether the URL has no component at all.
*/

/*!
    \qmlproperty bool UrlInfo::isValid
    \readonly
    Whether the URL could be parsed and isn't empty.
*/

/*!
    \qmlproperty bool UrlInfo::isLocalFile
    \readonly
    Whether the URL has the scheme "file".
*/

/*!
    \qmlproperty string UrlInfo::localFile
    The local path of a file URL; empty for any other. Setting it replaces the whole URL by the file
    URL of that path.
*/

/*!
    \qmlproperty bool UrlInfo::hasQuery
    \readonly
    Whether the URL has a "?", also one with nothing behind it.
*/

/*!
    \qmlproperty string UrlInfo::query
    The text between "?" and "#". Reserved characters stay percent-encoded.
*/

/*!
    \qmlproperty object UrlInfo::queryParameters

    The query as an object of texts. A name that stands in the query more than once has its last
    value. Assigning an object replaces the whole query, with the names in alphabetical order, and
    always notifies; an empty object removes the query.

    The properties of the object are a copy: assign the whole object to change the URL.

    \sa queryPairDelimiter, queryValueDelimiter
*/

/*!
    \qmlproperty string UrlInfo::queryPairDelimiter
    The character between two pairs of the query, "&" by default. Only the first character of an
    assigned text counts; an empty text restores the default. This is how \l queryParameters is read
    and written: the query itself doesn't change. A character that isn't a visible one of ASCII has
    no effect: the default is used in its place.
*/

/*!
    \qmlproperty string UrlInfo::queryValueDelimiter
    The character between name and value in the query, "=" by default; otherwise like
    \l queryPairDelimiter.
*/

/*!
    \qmlsignal UrlInfo::urlChanged()
    The URL, or one of the two delimiters, has changed.
*/

namespace {

// QUrlQuery keeps what to do with each character in a table of the ASCII ones, and writes outside
// of it for a delimiter that has no place there.
QChar usableDelimiter(QChar delimiter, QChar defaultDelimiter)
{
    return delimiter > QLatin1Char(' ') && delimiter < QLatin1Char('\x7f') ? delimiter
                                                                           : defaultDelimiter;
}

} // namespace

UrlInfo::UrlInfo(QObject *parent)
    : QObject(parent)
{
}

UrlInfo::UrlInfo(const QUrl &url, QObject *parent)
    : QObject(parent)
    , m_url(url)
{
}

template <typename T, typename Change>
void UrlInfo::setComponent(const T &current, const T &value, Change change)
{
    if (value == current)
        return;
    change();
    emit urlChanged();
}

void UrlInfo::setUrl(const QUrl &url)
{
    setComponent(this->url(), url, [&] { m_url = url; });
}

QString UrlInfo::scheme() const
{
    return m_url.scheme();
}

void UrlInfo::setScheme(const QString &scheme)
{
    setComponent(this->scheme(), scheme, [&] { m_url.setScheme(scheme); });
}

QString UrlInfo::host() const
{
    return m_url.host(QUrl::FullyDecoded);
}

void UrlInfo::setHost(const QString &host)
{
    setComponent(this->host(), host, [&] { m_url.setHost(host, QUrl::DecodedMode); });
}

QString UrlInfo::topLevelDomain() const
{
    // Deprecated without a public successor in Qt 5.
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    return m_url.topLevelDomain(QUrl::FullyDecoded);
    QT_WARNING_POP
}

QString UrlInfo::userName() const
{
    return m_url.userName(QUrl::FullyDecoded);
}

void UrlInfo::setUserName(const QString &userName)
{
    setComponent(this->userName(), userName,
                 [&] { m_url.setUserName(userName, QUrl::DecodedMode); });
}

QString UrlInfo::password() const
{
    return m_url.password(QUrl::FullyDecoded);
}

void UrlInfo::setPassword(const QString &password)
{
    setComponent(this->password(), password,
                 [&] { m_url.setPassword(password, QUrl::DecodedMode); });
}

QString UrlInfo::userInfo() const
{
    return m_url.userInfo(QUrl::PrettyDecoded);
}

void UrlInfo::setUserInfo(const QString &userInfo)
{
    setComponent(this->userInfo(), userInfo,
                 [&] { m_url.setUserInfo(userInfo, QUrl::TolerantMode); });
}

QString UrlInfo::authority() const
{
    return m_url.authority(QUrl::PrettyDecoded);
}

void UrlInfo::setAuthority(const QString &authority)
{
    setComponent(this->authority(), authority,
                 [&] { m_url.setAuthority(authority, QUrl::TolerantMode); });
}

QString UrlInfo::path() const
{
    return m_url.path(QUrl::FullyDecoded);
}

void UrlInfo::setPath(const QString &path)
{
    setComponent(this->path(), path, [&] { m_url.setPath(path, QUrl::DecodedMode); });
}

QString UrlInfo::fileName() const
{
    return m_url.fileName(QUrl::FullyDecoded);
}

bool UrlInfo::hasFragment() const
{
    return m_url.hasFragment();
}

QString UrlInfo::fragment() const
{
    return m_url.fragment(QUrl::PrettyDecoded);
}

void UrlInfo::setFragment(const QString &fragment)
{
    setComponent(this->fragment(), fragment,
                 [&] { m_url.setFragment(fragment, QUrl::TolerantMode); });
}

int UrlInfo::port() const
{
    return m_url.port(m_defaultPort);
}

void UrlInfo::setPort(int port)
{
    setComponent(this->port(), port, [&] { m_url.setPort(port); });
}

bool UrlInfo::isEmpty() const
{
    return m_url.isEmpty();
}

bool UrlInfo::isValid() const
{
    return m_url.isValid();
}

bool UrlInfo::isLocalFile() const
{
    return m_url.isLocalFile();
}

QString UrlInfo::localFile() const
{
    return m_url.toLocalFile();
}

void UrlInfo::setLocalFile(const QString &localFile)
{
    setComponent(this->localFile(), localFile, [&] { m_url = QUrl::fromLocalFile(localFile); });
}

bool UrlInfo::hasQuery() const
{
    return m_url.hasQuery();
}

QString UrlInfo::query() const
{
    return m_url.query(QUrl::PrettyDecoded);
}

void UrlInfo::setQuery(const QString &query)
{
    setComponent(this->query(), query, [&] { m_url.setQuery(query, QUrl::TolerantMode); });
}

QVariantMap UrlInfo::queryParameters() const
{
    QVariantMap parameters;
    if (!m_url.hasQuery())
        return parameters;
    QUrlQuery query = delimitedQuery();
    query.setQuery(m_url.query());
    const auto items = query.queryItems();
    for (const auto &item : items)
        parameters.insert(item.first, item.second);
    return parameters;
}

void UrlInfo::setQueryParameters(const QVariantMap &parameters)
{
    QUrlQuery query = delimitedQuery();
    for (auto it = parameters.begin(); it != parameters.end(); ++it)
        query.addQueryItem(it.key(), it.value().toString());
    m_url.setQuery(query);
    emit urlChanged();
}

void UrlInfo::setQueryPairDelimiter(const QString &delimiter)
{
    setDelimiter(m_queryPairDelimiter, delimiter, QUrlQuery::defaultQueryPairDelimiter());
}

void UrlInfo::setQueryValueDelimiter(const QString &delimiter)
{
    setDelimiter(m_queryValueDelimiter, delimiter, QUrlQuery::defaultQueryValueDelimiter());
}

/*!
    \qmlmethod bool UrlInfo::isParentOf(url url)
    Returns whether \a url lies below this URL: scheme and authority are equal or missing in \a url,
    and its path continues this URL's path behind a slash.
*/

bool UrlInfo::isParentOf(const QUrl &url) const
{
    return m_url.isParentOf(url);
}

/*!
    \qmlmethod bool UrlInfo::fromUserInput(string userInput, string workingDirectory)

    Replaces the URL by what a user may have meant, by \a userInput, as the address field of a
    browser does: "example.com" becomes an http URL, and a path of an existing file a file URL.
    Relative paths are looked up in \a workingDirectory, which can be left out. Returns whether the
    result is valid. Notifies in any case.
*/

bool UrlInfo::fromUserInput(const QString &userInput, const QString &workingDirectory)
{
    return replaceUrl(workingDirectory.isEmpty()
                          ? QUrl::fromUserInput(userInput)
                          : QUrl::fromUserInput(userInput, workingDirectory));
}

bool UrlInfo::fromUserInput(const QString &userInput)
{
    return fromUserInput(userInput, QString());
}

/*!
    \qmlmethod bool UrlInfo::fromString(string string)
    Replaces the URL by the one that \a string holds, and returns whether it is valid. Notifies in
    any case.
*/

bool UrlInfo::fromString(const QString &string)
{
    return replaceUrl(QUrl(string, QUrl::TolerantMode));
}

bool UrlInfo::replaceUrl(const QUrl &url)
{
    m_url = url;
    emit urlChanged();
    return isValid();
}

QUrlQuery UrlInfo::delimitedQuery() const
{
    QUrlQuery query;
    query.setQueryDelimiters(
        usableDelimiter(m_queryValueDelimiter, QUrlQuery::defaultQueryValueDelimiter()),
        usableDelimiter(m_queryPairDelimiter, QUrlQuery::defaultQueryPairDelimiter()));
    return query;
}

void UrlInfo::setDelimiter(QChar &member, const QString &delimiter, QChar defaultDelimiter)
{
    if (assignIfChanged(member, delimiter.isEmpty() ? defaultDelimiter : delimiter.at(0)))
        emit urlChanged();
}

#include "moc_UrlInfo.cpp"
