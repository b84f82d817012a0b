#pragma once

#include "player/AppletsPlayer.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

// What the player's tests share: applets on disk, an empty settings store, and no registered
// player.
namespace PlayerFixture {

// A process has one player; each test starts as a process of its own would.
inline void reset()
{
    QCoreApplication::instance()->setProperty("AppletsPlayer", QVariant());
    QSettings().clear();
}

inline bool write(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

} // namespace PlayerFixture

// An applet's folder that goes with the object.
class AppletFolder
{
public:
    explicit AppletFolder(const QByteArray &mainDocument = "import QtQuick 2.15\nItem {}\n",
                          const QByteArray &appInfo = "{}")
    {
        write(QStringLiteral("main.qml"), mainDocument);
        write(QStringLiteral("appinfo.json"), appInfo);
    }

    QString path() const { return m_dir.path(); }
    QString filePath(const QString &name) const { return m_dir.filePath(name); }
    bool write(const QString &name, const QByteArray &content)
    {
        return PlayerFixture::write(filePath(name), content);
    }

private:
    QTemporaryDir m_dir;
};

// A player whose command line is the given one.
class ArgumentPlayer : public AppletsPlayer
{
public:
    explicit ArgumentPlayer(const QStringList &arguments = {})
    {
        commandLineParser()->parse(QStringList{QStringLiteral("player")} + arguments);
    }
};
