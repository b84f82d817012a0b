#pragma once

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

// A file or folder of the catalogue below the user's home.
inline QString home(const QString &name)
{
    return QDir::homePath() + "/Zemrik/Halvora/" + name;
}

// An app's folder for one test. A new one is empty.
class AppFolder
{
public:
    QString path() const { return m_dir.path(); }
    QString filePath(const QString &name) const { return m_dir.filePath(name); }
    bool contains(const QString &name) const { return QFile::exists(filePath(name)); }

    // Makes the folders in front of the name, too.
    AppFolder &write(const QString &name, const QByteArray &content = QByteArray())
    {
        const QString path = filePath(name);
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("%s can't be written", qPrintable(path));
        return *this;
    }
    AppFolder &appInfo(const QByteArray &json) { return write("appinfo.json", json); }
    AppFolder &itemInfo(const QByteArray &json) { return write("iteminfo.json", json); }
    AppFolder &localInfo(const QByteArray &json) { return write(".info.json", json); }

    QByteArray read(const QString &name) const
    {
        QFile file(filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    bool remove(const QString &name) const { return QFile::remove(filePath(name)); }

    // Makes a file whose content never reaches a disk: each write to it fails.
    bool fillDisk(const QString &name) const
    {
        QFile::remove(filePath(name));
        return QFile::link("/dev/full", filePath(name));
    }
    bool setTime(const QString &name, const QDateTime &time) const
    {
        QFile file(filePath(name));
        return file.open(QIODevice::ReadWrite)
               && file.setFileTime(time, QFileDevice::FileModificationTime);
    }

private:
    QTemporaryDir m_dir;
};
