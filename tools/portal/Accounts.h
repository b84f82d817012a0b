#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QMap>
#include <QString>
#include <QVariantMap>

#include <mutex>

// Who may sign in, and the tokens given out. The functions may be called from any thread.
//
// A users file is a JSON object of user names; all but the password is what the portal tells about
// the user:
//
//     { "jo": { "password": "secret", "fullName": "Jo Doe", "thumbnail": "jo.png" } }
class Accounts
{
public:
    // Signing in works for nobody until users are loaded or added.
    Accounts();

    // False with a message for people if the file can't be read, isn't as above or has a nameless
    // user.
    bool load(const QString &path, QString &error);
    void addUser(const QString &name, const QString &password, const QVariantMap &details);

    bool passwordMatches(const QString &name, const QString &password) const;
    // What the portal tells about a user, never the password; empty for an unknown name.
    QVariantMap user(const QString &name) const;

    struct Token
    {
        QString text;
        QDateTime expires;
    };
    Token makeToken(const QString &user, qint64 lifeMilliseconds);
    // The user that a token stands for; empty if it is unknown or has run out.
    QString userOfToken(const QString &token);

private:
    struct User
    {
        QByteArray passwordHash;
        QVariantMap details;
    };
    struct Session
    {
        QString user;
        QDateTime expires;
    };

    QByteArray hashed(const QString &password) const;
    void dropOldTokens();

    const QByteArray m_salt;
    const QByteArray m_nobodysHash;
    QMap<QString, User> m_users;
    QHash<QByteArray, Session> m_sessions; // by the token's hash
    std::mutex m_mutex;                    // of the sessions; users don't change while serving
};
