#include "portal/Accounts.h"

#include <QCryptographicHash>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMessageAuthenticationCode>
#include <QRandomGenerator>

#include <algorithm>

namespace {

const int MaximumTokens = 10000;

QByteArray randomBytes()
{
    quint32 words[8];
    QRandomGenerator::system()->fillRange(words);
    return QByteArray(reinterpret_cast<const char *>(words), sizeof words);
}

// Takes the same time wherever the two differ.
bool equalInConstantTime(const QByteArray &a, const QByteArray &b)
{
    unsigned difference = static_cast<unsigned>(a.size() ^ b.size());
    for (int i = 0; i < qMin(a.size(), b.size()); ++i)
        difference |= static_cast<unsigned char>(a.at(i) ^ b.at(i));
    return difference == 0;
}

} // namespace

Accounts::Accounts()
    : m_salt(randomBytes())
    , m_nobodysHash(hashed(QString()))
{
}

bool Accounts::load(const QString &path, QString &error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        error = QStringLiteral("can't read the users file %1: %2").arg(path, file.errorString());
        return false;
    }
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &parseError);
    if (!document.isObject()) {
        error = QStringLiteral("%1 isn't a JSON object of users: %2")
                    .arg(path, parseError.errorString());
        return false;
    }
    const QJsonObject users = document.object();
    for (auto user = users.begin(); user != users.end(); ++user) {
        if (user.key().isEmpty()) { // stands for nobody where tokens are looked up
            error = QStringLiteral("%1: the name of a user is empty").arg(path);
            return false;
        }
        const QJsonValue password = user.value().toObject().value(QLatin1String("password"));
        if (!password.isString()) {
            error = QStringLiteral("%1: the user \"%2\" has no password").arg(path, user.key());
            return false;
        }
        addUser(user.key(), password.toString(), user.value().toObject().toVariantMap());
    }
    return true;
}

void Accounts::addUser(const QString &name, const QString &password, const QVariantMap &details)
{
    User user{hashed(password), details};
    user.details.remove(QStringLiteral("password"));
    user.details.insert(QStringLiteral("username"), name);
    if (!user.details.contains(QStringLiteral("fullName")))
        user.details.insert(QStringLiteral("fullName"), name);
    m_users.insert(name, user);
}

bool Accounts::passwordMatches(const QString &name, const QString &password) const
{
    // An unknown user takes as long as a known one: one hash is made for either.
    const auto user = m_users.constFind(name);
    const bool known = user != m_users.constEnd();
    const QByteArray expected = known ? user->passwordHash : m_nobodysHash;
    return equalInConstantTime(expected, hashed(password)) && known;
}

QVariantMap Accounts::user(const QString &name) const
{
    return m_users.value(name).details;
}

Accounts::Token Accounts::makeToken(const QString &user, qint64 lifeMilliseconds)
{
    Token token{QString::fromLatin1(randomBytes().toHex()),
                QDateTime::currentDateTimeUtc().addMSecs(lifeMilliseconds)};
    const std::lock_guard<std::mutex> lock(m_mutex);
    dropOldTokens();
    m_sessions.insert(hashed(token.text), Session{user, token.expires});
    return token;
}

QString Accounts::userOfToken(const QString &token)
{
    // Looked up by its hash: how long it takes tells nothing about the tokens that exist.
    const QByteArray key = hashed(token);
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Session session = m_sessions.value(key);
    return session.expires > QDateTime::currentDateTimeUtc() ? session.user : QString();
}

QByteArray Accounts::hashed(const QString &password) const
{
    return QMessageAuthenticationCode::hash(password.toUtf8(), m_salt, QCryptographicHash::Sha256);
}

void Accounts::dropOldTokens()
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    for (auto session = m_sessions.begin(); session != m_sessions.end();) {
        if (session->expires <= now)
            session = m_sessions.erase(session);
        else
            ++session;
    }
    const auto endsFirst = [](const Session &a, const Session &b) { return a.expires < b.expires; };
    while (m_sessions.size() >= MaximumTokens)
        m_sessions.erase(std::min_element(m_sessions.begin(), m_sessions.end(), endsFirst));
}
