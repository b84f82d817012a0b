#pragma once

#include <QFile>
#include <QString>
#include <QVector>
#include <QXmlStreamReader>

// The translations in src/languages, as their authors wrote them.
class CatalogueFile
{
public:
    struct Message
    {
        QString context;
        QString source;
        QString translation;
        QString state; // "unfinished", "vanished" and the like; empty for a finished one

        QString key() const { return context + QLatin1Char('|') + source; }
    };

    static QString sourceFolder() { return qEnvironmentVariable("TESSALINE_SOURCE_DIR"); }
    static QString path(const QString &locale)
    {
        return sourceFolder() + QStringLiteral("/src/languages/TessalinePlugin_%1.ts").arg(locale);
    }

    // Nothing where there is no such file, or it isn't whole.
    static QVector<Message> read(const QString &path)
    {
        QVector<Message> messages;
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return messages;
        QXmlStreamReader reader(&file);
        QString context;
        while (!reader.atEnd()) {
            if (reader.readNext() != QXmlStreamReader::StartElement)
                continue;
            if (reader.name() == QLatin1String("name")) {
                context = text(reader);
            } else if (reader.name() == QLatin1String("message")) {
                messages.append({context, {}, {}, {}});
            } else if (reader.name() == QLatin1String("source")) {
                messages.last().source = text(reader);
            } else if (reader.name() == QLatin1String("translation")) {
                messages.last().state = reader.attributes().value(QLatin1String("type")).toString();
                messages.last().translation = text(reader);
            }
        }
        return reader.hasError() ? QVector<Message>() : messages;
    }

private:
    // An element's text, with the characters that XML can't hold written as <byte value="xd"/>.
    static QString text(QXmlStreamReader &reader)
    {
        QString result;
        while (reader.readNext() != QXmlStreamReader::EndElement && !reader.atEnd()) {
            if (reader.isStartElement()) {
                const QString value = reader.attributes().value(QLatin1String("value")).toString();
                result += QChar(value.midRef(1).toUShort(nullptr, 16));
                reader.skipCurrentElement();
            } else {
                result += reader.text();
            }
        }
        return result;
    }
};
