#include "imaging/LiveImage.h"

#include <QHash>

namespace {

struct Table
{
    std::recursive_mutex mutex;
    quint64 lastNumber = 0; // numbers are never used twice: an old one finds nothing
    QHash<quint64, const QImage *> images;
    QHash<const QImage *, quint64> numbers;
};

// Never deleted: pictures that live as long as the process leave it at the very end.
Table &table()
{
    static auto *const table = new Table;
    return *table;
}

} // namespace

LiveImage::LiveImage(const QImage &image)
    : m_image(image)
{
    const std::lock_guard<std::recursive_mutex> lock(mutex());
    m_number = ++table().lastNumber;
    table().images.insert(m_number, &m_image);
    table().numbers.insert(&m_image, m_number);
}

LiveImage::~LiveImage()
{
    const std::lock_guard<std::recursive_mutex> lock(mutex());
    table().images.remove(m_number);
    table().numbers.remove(&m_image);
}

quint64 LiveImage::numberOf(const QImage &image)
{
    const std::lock_guard<std::recursive_mutex> lock(mutex());
    return table().numbers.value(&image);
}

QImage LiveImage::find(quint64 number)
{
    const std::lock_guard<std::recursive_mutex> lock(mutex());
    const QImage *image = table().images.value(number);
    return image ? *image : QImage();
}

std::recursive_mutex &LiveImage::mutex()
{
    return table().mutex;
}
