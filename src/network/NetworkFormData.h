#pragma once

#include "plugin/TessalineGlobal.h"

#include <QIODevice>
#include <QList>
#include <QVector>

#include <memory>
#include <vector>

class NetworkFilePart;
class QBuffer;
class QFile;

// The body of a multipart request: a read-only chain of small devices (boundaries and headers in
// memory, files on disk) that is read through once, so a body of any size takes no memory. It knows
// its size, so that the request carries a Content-Length. Of each device it gives at most what was
// there when it was appended: what a file gains meanwhile would go beyond that length.
class TESSALINE_EXPORT NetworkFormData : public QIODevice
{
    Q_OBJECT

public:
    explicit NetworkFormData(QObject *parent = nullptr);
    ~NetworkFormData() override;

    // Adds a device at the end of the chain. It stays its owner's, and must outlive this object.
    bool appendDevice(QIODevice *device);
    bool append(const QByteArray &bytes);
    // Adds `size` bytes of a file from `offset`; -1 means up to its end. The path is taken as
    // given. False for a file that can't be opened and for anything but a regular file (a pipe has
    // no length to announce, and opening one may never return).
    bool appendPath(const QString &path, qint64 offset, qint64 size);
    // Closes the files and empties the chain; an abort stays in force.
    void clear();

    // From then on the body reads as ended.
    void setAborted(bool aborted) { m_aborted = aborted; }

    bool isSequential() const override;
    // Only before the first read. A body that is to be sent again, after a challenge for instance,
    // fails the transfer that way; the server would wait for it in vain otherwise.
    bool reset() override;
    qint64 pos() const override; // bytes handed out so far
    // Taken from the files at each call: a file may shrink. One that grows counts as it was.
    qint64 size() const override;

signals:
    void readProgress(double progress); // 0.0 to 1.0, at each read

protected:
    qint64 readData(char *data, qint64 maxSize) override;
    qint64 writeData(const char *data, qint64 maxSize) override;

private:
    struct Piece
    {
        QIODevice *device; // owned by the lists below or by the caller
        qint64 length;     // when it was appended
        qint64 left;       // of that length, still to be read

        bool isDone() const;
    };

    QVector<Piece> m_pieces; // in reading order
    std::vector<std::unique_ptr<QBuffer>> m_buffers;
    QList<QFile *> m_files;
    QList<NetworkFilePart *> m_fileParts;
    int m_pieceIndex = 0;
    qint64 m_position = 0;
    bool m_aborted = false;
};
