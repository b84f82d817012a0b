#pragma once

#include <QImage>

#include <mutex>

// A picture that the image provider finds by its number, from any thread, as long as it lives.
//
// The owner reads it freely on its own thread and changes it through change() only. That takes the
// lock under which find() shares the pixels, so that a picture is never shared while it is written.
class LiveImage
{
public:
    explicit LiveImage(const QImage &image = QImage());
    ~LiveImage();
    Q_DISABLE_COPY(LiveImage)

    const QImage &image() const { return m_image; }

    // Calls change(QImage &). No signal may be emitted in there: its handler would find the picture
    // half changed. A warning of QImage may: the lock lets a message handler ask for pictures.
    template <typename Change>
    void change(Change change)
    {
        const std::lock_guard<std::recursive_mutex> lock(mutex());
        change(m_image);
    }

    // The number of the live picture that lies at this very place; 0 for any other.
    static quint64 numberOf(const QImage &image);
    // Shares the pixels; null without a live picture of that number.
    static QImage find(quint64 number);

private:
    static std::recursive_mutex &mutex();

    QImage m_image;
    quint64 m_number = 0;
};
