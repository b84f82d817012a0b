#include "support/IsolatedHome.h"

#include <QDir>
#include <QFile>

namespace {

void setFolder(const char *variable, const QString &path)
{
    QDir().mkpath(path);
    qputenv(variable, QFile::encodeName(path));
}

} // namespace

IsolatedHome::IsolatedHome()
{
    if (!m_dir.isValid())
        qFatal("No temporary home: %s", qPrintable(m_dir.errorString()));
    const QDir home(m_dir.path());
    setFolder("HOME", home.path());
    setFolder("XDG_CONFIG_HOME", home.filePath(QStringLiteral(".config")));
    setFolder("XDG_DATA_HOME", home.filePath(QStringLiteral(".local/share")));
    setFolder("XDG_CACHE_HOME", home.filePath(QStringLiteral(".cache")));
    setFolder("XDG_RUNTIME_DIR", home.filePath(QStringLiteral(".runtime")));
    QFile::setPermissions(home.filePath(QStringLiteral(".runtime")),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}
