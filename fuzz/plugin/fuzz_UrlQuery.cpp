#include "plugin/UrlInfo.h"
#include "support/FuzzTarget.h"

// Reads the parameters, writes them, and reads them again.
static QVariantMap rewritten(UrlInfo &info, const QVariantMap &parameters)
{
    info.setQueryParameters(parameters);
    return info.queryParameters();
}

// The first two characters are the delimiters, the rest is a URL with its query, or a query.
TESSALINE_FUZZ_TARGET(bytes)
{
    const QString text = QString::fromUtf8(bytes);
    UrlInfo info;
    info.fromString(text);
    rewritten(info, info.queryParameters());

    info.setUrl(QUrl(QStringLiteral("http://host/path")));
    info.setQuery(text.mid(2));
    QVariantMap parameters = info.queryParameters();
    if (parameters.value(QString()).toString().isEmpty())
        parameters.remove(QString()); // a pair of nothing and nothing leaves no trace in a query
    if (rewritten(info, parameters) != parameters)
        qFatal("The parameters change when they are written");
    if (info.host() != QLatin1String("host") || info.path() != QLatin1String("/path"))
        qFatal("A query has changed another component");

    info.setQueryPairDelimiter(text.left(1));
    info.setQueryValueDelimiter(text.mid(1, 1));
    rewritten(info, info.queryParameters());
}
