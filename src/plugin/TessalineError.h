#pragma once

#include "plugin/TessalineGlobal.h"

#include <QObject>

// What an error signal carries. QML name: TessalineError, uncreatable. Every change emits
// objectChanged(), also one to equal values; constructors emit nothing.
class TESSALINE_EXPORT TessalineError : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int code READ code NOTIFY objectChanged)
    Q_PROPERTY(QString message READ message NOTIFY objectChanged)
    Q_PROPERTY(QString details READ details NOTIFY objectChanged)

public:
    explicit TessalineError(QObject *parent = nullptr);
    TessalineError(int code, const QString &message, const QString &details,
                   QObject *parent = nullptr);
    TessalineError(const QString &message, const QString &details, QObject *parent = nullptr);

    int code() const { return m_code; }
    QString message() const { return m_message; }
    QString details() const { return m_details; }

    void clear();
    void setError(const TessalineError &other);
    void setError(int code, const QString &message, const QString &details);

signals:
    void objectChanged();

private:
    qint32 m_code = 0;
    QString m_message;
    QString m_details;
};
