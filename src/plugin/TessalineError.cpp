#include "plugin/TessalineError.h"

/*!
    \qmltype TessalineError
    \inqmlmodule Zemrik.Tessaline
    \brief The payload of \c error signals.

    Objects of this type come with signals such as \c{AppPackage.error}; QML can't create them.
    The object belongs to its sender: read what you need inside the handler.

    \badcode
    onError: console.warn(error.code, error.message, error.details)
    \endcode
*/

/*!
    \qmlproperty int TessalineError::code
    \readonly
    The error code; 0 where the sender has none.
*/

/*!
    \qmlproperty string TessalineError::message
    \readonly
    A short text, fit for a headline.
*/

/*!
    \qmlproperty string TessalineError::details
    \readonly
    A longer text; may be empty.
*/

TessalineError::TessalineError(QObject *parent)
    : QObject(parent)
{
}

TessalineError::TessalineError(int code, const QString &message, const QString &details,
                               QObject *parent)
    : QObject(parent)
    , m_code(code)
    , m_message(message)
    , m_details(details)
{
}

TessalineError::TessalineError(const QString &message, const QString &details, QObject *parent)
    : TessalineError(0, message, details, parent)
{
}

void TessalineError::clear()
{
    setError(0, QString(), QString());
}

void TessalineError::setError(const TessalineError &other)
{
    setError(other.m_code, other.m_message, other.m_details);
}

void TessalineError::setError(int code, const QString &message, const QString &details)
{
    m_code = code;
    m_message = message;
    m_details = details;
    emit objectChanged();
}

#include "moc_TessalineError.cpp"
