#include "imaging/ExifInfo.h"

#include "plugin/FileUtility.h"

#include <QDebug>

#include <limits>

/*!
    \qmltype ExifInfo
    \inqmlmodule Zemrik.Tessaline
    \inherits FileInfo
    \brief What a camera wrote into a JPEG picture.

    \badcode
    ExifInfo {
        id: exif
        filePath: "~/Pictures/photo.jpg"

        readonly property string make: {
            var value = imageValue(271)  // Make
            return value ? value[0] : ""
        }
    }

    Text {
        visible: exif.isExifValid
        text: exif.make + ", " + exif.gpsLatitude + " / " + exif.gpsLongitude
    }
    \endcode

    Tags are numbers of the EXIF standard, such as 271 for the camera's make among the image tags,
    33434 for the exposure time among the extended tags and 29 for the date among the GPS tags.

    What a tag's value is for a script depends on its type and on how many items it has:

    \table
    \header \li Type in the file \li One item or none \li More
    \row \li byte, short, signed long \li number \li list of numbers
    \row \li long \li number \li list of numbers
    \row \li rational, signed rational \li number, the quotient \li list of numbers
    \row \li text \li the empty string \li list with the text as its only element
    \row \li undefined \li ArrayBuffer \li list with one ArrayBuffer
    \endtable

    A text's closing zero counts as an item, so that every text that is not empty comes as a list:
    take its first element, \c{imageValue(271)[0]}. A quotient by zero is infinite or NaN.

    The picture is read when \l{FileInfo::}{filePath} or \l{FileInfo::}{url} is set, and at no other
    time. Nothing is ever written to it. EXIF that stands behind another application segment, such
    as XMP, is not found.
*/

/*!
    \qmlproperty bool ExifInfo::isExifValid
    \readonly
    Whether the file is a JPEG picture with EXIF.
*/

/*!
    \qmlproperty list<int> ExifInfo::imageTags
    \readonly
    The tags about the picture itself, ascending. See imageValue().
*/

/*!
    \qmlproperty list<int> ExifInfo::extendedTags
    \readonly
    The tags about how it was taken, ascending. See extendedValue().
*/

/*!
    \qmlproperty list<int> ExifInfo::gpsTags
    \readonly
    The tags about where it was taken, ascending. See gpsValue().
*/

/*!
    \qmlproperty real ExifInfo::gpsLongitude
    \readonly
    Degrees east, negative in the west. NaN if the picture doesn't tell.
*/

/*!
    \qmlproperty real ExifInfo::gpsLatitude
    \readonly
    Degrees north, negative in the south. NaN if the picture doesn't tell.
*/

/*!
    \qmlproperty real ExifInfo::gpsAltitude
    \readonly
    Metres from the sea's level. A place below it has a positive altitude too; \c gpsValue(5) is 1
    there. NaN if the picture doesn't tell.
*/

/*!
    \qmlmethod var ExifInfo::imageValue(int imageTag)
    The value of \a imageTag, one of the \l imageTags, undefined for any other.
*/

/*!
    \qmlmethod var ExifInfo::extendedValue(int extendedTag)
    The value of \a extendedTag, one of the \l extendedTags, undefined for any other.
*/

/*!
    \qmlmethod var ExifInfo::gpsValue(int gpsTag)
    The value of \a gpsTag, one of the \l gpsTags, undefined for any other.
*/

/*!
    \qmlsignal ExifInfo::exifChanged()
    Another file was read; comes after \c filePathChanged.
*/

namespace {

using Header = QExifImageHeader;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

// A zero denominator gives infinity or NaN, as the processor divides.
template <typename Rational>
double toDouble(const Rational &rational)
{
    return static_cast<double>(rational.first) / static_cast<double>(rational.second);
}

double toDouble(const QExifValue &value)
{
    if (value.count() != 1)
        return notANumber;
    switch (value.type()) {
    case QExifValue::Byte:
    case QExifValue::Short:
    case QExifValue::Long:
        return value.toLong();
    case QExifValue::SignedLong:
        return value.toSignedLong();
    case QExifValue::Rational:
        return toDouble(value.toRational());
    case QExifValue::SignedRational:
        return toDouble(value.toSignedRational());
    default:
        return notANumber;
    }
}

double toDecimalDegrees(const QExifValue &value)
{
    const QVector<QExifURational> parts = value.toRationalVector();
    if (parts.size() < 3) // also the null value
        return notANumber;
    return toDouble(parts.at(0)) + toDouble(parts.at(1)) / 60 + toDouble(parts.at(2)) / 3600;
}

double coordinate(const Header &header, Header::GpsTag tag, Header::GpsTag refTag,
                  QLatin1Char negativeRef)
{
    const double degrees = toDecimalDegrees(header.value(tag));
    return header.value(refTag).toString().startsWith(negativeRef) ? -degrees : degrees;
}

// Bytes and shorts become ints.
template <typename Number>
QVariantList numberList(const QVector<Number> &numbers)
{
    QVariantList list;
    list.reserve(numbers.size());
    for (const Number number : numbers)
        list.append(QVariant(number));
    return list;
}

template <typename Rational>
QVariantList quotientList(const QVector<Rational> &rationals)
{
    QVariantList list;
    list.reserve(rationals.size());
    for (const Rational &rational : rationals)
        list.append(toDouble(rational));
    return list;
}

QVariantList toVariantList(const QExifValue &value)
{
    switch (value.type()) {
    case QExifValue::Byte:
        return numberList(value.toByteVector());
    case QExifValue::Short:
        return numberList(value.toShortVector());
    case QExifValue::Long:
        return numberList(value.toLongVector());
    case QExifValue::SignedLong:
        return numberList(value.toSignedLongVector());
    case QExifValue::Rational:
        return quotientList(value.toRationalVector());
    case QExifValue::SignedRational:
        return quotientList(value.toSignedRationalVector());
    case QExifValue::Ascii:
        return {value.toString()};
    case QExifValue::Undefined:
        return {value.toByteArray()};
    default:
        return {};
    }
}

// A text's closing zero counts too: nearly every text is a list.
QVariant toVariant(const QExifValue &value)
{
    if (value.count() >= 2)
        return toVariantList(value);
    switch (value.type()) {
    case QExifValue::Byte:
    case QExifValue::Short:
    case QExifValue::SignedLong:
        return static_cast<int>(value.toSignedLong());
    case QExifValue::Ascii:
        return value.toString();
    case QExifValue::Long:
        return value.toLong();
    case QExifValue::Rational:
    case QExifValue::SignedRational:
        return toDouble(value);
    case QExifValue::Undefined:
        return value.toByteArray();
    default:
        return QVariant();
    }
}

template <typename Tag>
QList<int> toIntList(const QList<Tag> &tags)
{
    QList<int> numbers;
    numbers.reserve(tags.size());
    for (const Tag tag : tags)
        numbers.append(tag);
    return numbers;
}

template <typename Tag>
QVariant valueOf(const Header &header, Tag tag)
{
    return header.contains(tag) ? toVariant(header.value(tag)) : QVariant();
}

template <typename Tag>
void logTags(const Header &header, const char *title, const char *word, const QList<Tag> &tags)
{
    qDebug() << title;
    for (const Tag tag : tags) {
        const QExifValue value = header.value(tag);
        qDebug() << word << static_cast<int>(tag) << "type" << value.type() << "count"
                 << value.count() << "=" << toVariant(value);
    }
}

} // namespace

ExifInfo::ExifInfo(QObject *parent)
    : FileInfo(parent)
{
}

ExifInfo::ExifInfo(const QString &path, QObject *parent)
    : FileInfo(path, parent)
{
    loadExif();
}

// Compares the path as given: one that only resolves to the present path loads it again.
void ExifInfo::setFilePath(const QString &path)
{
    if (path != filePath())
        setExifFile(FileUtility::resolvedPath(path, true));
}

void ExifInfo::setUrl(const QUrl &url)
{
    if (url != this->url())
        setExifFile(FileUtility::resolvedPath(url, true));
}

QList<int> ExifInfo::imageTags() const
{
    return toIntList(m_header.imageTags());
}

QList<int> ExifInfo::extendedTags() const
{
    return toIntList(m_header.extendedTags());
}

QList<int> ExifInfo::gpsTags() const
{
    return toIntList(m_header.gpsTags());
}

double ExifInfo::gpsLongitude() const
{
    if (!m_isExifValid)
        return notANumber;
    return coordinate(m_header, Header::GPSLongitude, Header::GPSLongitudeRef, QLatin1Char('W'));
}

double ExifInfo::gpsLatitude() const
{
    if (!m_isExifValid)
        return notANumber;
    return coordinate(m_header, Header::GPSLatitude, Header::GPSLatitudeRef, QLatin1Char('S'));
}

double ExifInfo::gpsAltitude() const
{
    if (!m_isExifValid || !m_header.contains(Header::GPSAltitude))
        return notANumber;
    return toDouble(m_header.value(Header::GPSAltitude));
}

QVariant ExifInfo::imageValue(int imageTag) const
{
    return valueOf(m_header, static_cast<Header::ImageTag>(imageTag));
}

QVariant ExifInfo::extendedValue(int extendedTag) const
{
    return valueOf(m_header, static_cast<Header::ExifExtendedTag>(extendedTag));
}

QVariant ExifInfo::gpsValue(int gpsTag) const
{
    return valueOf(m_header, static_cast<Header::GpsTag>(gpsTag));
}

void ExifInfo::log() const
{
    if (!m_isExifValid) {
        qDebug() << "No EXIF info";
        return;
    }
    logTags(m_header, "Image tags", "imageTag", m_header.imageTags());
    logTags(m_header, "Extended tags", "extendedTag", m_header.extendedTags());
    logTags(m_header, "GPS tags", "gpsTag", m_header.gpsTags());
}

void ExifInfo::loadExif()
{
    m_header.clear();
    m_isExifValid = exists() && m_header.loadFromJpeg(filePath());
}

void ExifInfo::setExifFile(const QString &path)
{
    assignFile(path);
    loadExif();
    emit filePathChanged();
    emit exifChanged();
}

#include "moc_ExifInfo.cpp"
