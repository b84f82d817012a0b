#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QVarLengthArray>

// A path as the system takes it, for calls that are made thousands of times: QFile::encodeName()
// allocates three times the length and gives most of it back. Ends at a NUL within, like its.
class LocalPath
{
public:
    explicit LocalPath(const QString &path)
    {
        m_bytes.reserve(path.size() + 1);
        for (const QChar c : path) {
            if (c.unicode() >= 0x80) {
                const QByteArray encoded = QFile::encodeName(path);
                m_bytes.clear();
                m_bytes.append(encoded.constData(), encoded.size());
                break;
            }
            m_bytes.append(static_cast<char>(c.unicode()));
        }
        m_bytes.append('\0');
    }

    const char *constData() const { return m_bytes.constData(); }

private:
    QVarLengthArray<char, 512> m_bytes;
};
