#include "plugin/XmlUtility.h"

#include "plugin/TessalineDebug.h"

#include <QDomDocument>
#include <QJsonValue>
#include <QTextStream>
#include <QXmlDefaultHandler>
#include <QXmlSimpleReader>

#include <algorithm>

namespace {

// QDomDocument and everything that walks it recurse, and run out of stack at some 25,000 elements.
const int maximumDepth = 1000;

// The reader recurses into the parentheses of a document type definition, compares each entity with
// all others, and puts a text together before anybody may look at it.
const int maximumDefinition = 16 * 1024;
const int maximumParentheses = 100;
const qint64 maximumExpansion = 16LL * 1024 * 1024;
// What the reader itself lets an entity grow to that refers to others.
const int maximumEntity = 4096;

// Where and why a text does not parse.
struct ParseError
{
    QString message;
    int line = 0;
    int column = 0;
};

// The reader behind QDomDocument is deprecated, but QXmlStreamReader would not do here: it is
// stricter, gives up where QDomDocument reads on, and so never sees how deep the rest goes.
QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED

// A text that ends where its document type definition asks for too much. Where the definition
// begins and ends the handler tells: nothing else sees the text just as the reader does.
class BoundedSource : public QXmlInputSource
{
public:
    explicit BoundedSource(const QString &xml) { setData(xml); }

    const QString &refusal() const { return m_refusal; }

    void beginDefinition() { m_inDefinition = true; }
    void endDefinition() { m_inDefinition = false; }

    void addEntity(const QString &value)
    {
        const bool refersToOthers = value.contains(QLatin1Char('&'));
        m_longestEntity = std::max(m_longestEntity, refersToOthers ? maximumEntity : value.size());
    }

    QChar next() override
    {
        const QChar character = QXmlInputSource::next();
        if (m_inDefinition)
            countInDefinition(character);
        else if (m_longestEntity > 0 && character == QLatin1Char('&'))
            countReference();
        return m_refusal.isEmpty() ? character : QChar(EndOfDocument);
    }

private:
    void countInDefinition(QChar character)
    {
        if (++m_definition > maximumDefinition)
            m_refusal = QStringLiteral("document type definition too long");
        if (character == QLatin1Char('('))
            ++m_parentheses;
        else if (character == QLatin1Char(')'))
            m_parentheses = std::max(0, m_parentheses - 1); // a comment may hold any
        if (m_parentheses > maximumParentheses)
            m_refusal = QStringLiteral("document type definition too deep");
    }

    // Each for the longest one, also those of characters that have an entity of their own.
    void countReference()
    {
        m_expansion += m_longestEntity;
        if (m_expansion > maximumExpansion)
            m_refusal = QStringLiteral("too many entity references");
    }

    bool m_inDefinition = false;
    int m_definition = 0;
    int m_parentheses = 0;
    int m_longestEntity = 0;
    qint64 m_expansion = 0;
    QString m_refusal;
};

// Stops the reader at the first element that lies too deep.
class DepthHandler : public QXmlDefaultHandler
{
public:
    explicit DepthHandler(BoundedSource *source)
        : m_source(source)
    {
    }

    bool isTooMuch() const { return m_depth > maximumDepth || !m_source->refusal().isEmpty(); }
    ParseError refusal() const
    {
        const QString &bound = m_source->refusal();
        return {bound.isEmpty() ? m_error.message : bound, m_error.line, m_error.column};
    }

    bool startDTD(const QString &, const QString &, const QString &) override
    {
        m_source->beginDefinition();
        return true;
    }

    bool endDTD() override
    {
        m_source->endDefinition();
        return true;
    }

    bool internalEntityDecl(const QString &, const QString &value) override
    {
        m_source->addEntity(value);
        return true;
    }

    bool startElement(const QString &, const QString &, const QString &,
                      const QXmlAttributes &) override
    {
        return ++m_depth <= maximumDepth;
    }

    bool endElement(const QString &, const QString &, const QString &) override
    {
        --m_depth;
        return true;
    }

    // The message for an element that was refused.
    QString errorString() const override
    {
        return QStringLiteral("more than %1 elements inside each other").arg(maximumDepth);
    }

    bool fatalError(const QXmlParseException &exception) override
    {
        m_error = {exception.message(), exception.lineNumber(), exception.columnNumber()};
        return false;
    }

private:
    BoundedSource *m_source;
    int m_depth = 0;
    ParseError m_error;
};

// Keeps the attributes of the last element.
class AttributeHandler : public QXmlDefaultHandler
{
public:
    const QXmlAttributes &attributes() const { return m_attributes; }

    bool startElement(const QString &, const QString &, const QString &,
                      const QXmlAttributes &attributes) override
    {
        m_attributes = attributes;
        return true;
    }

private:
    QXmlAttributes m_attributes;
};

bool read(const QXmlInputSource &source, QXmlDefaultHandler *handler)
{
    QXmlSimpleReader reader;
    // As QDomDocument sets them, so that both accept the same texts.
    reader.setFeature(QStringLiteral("http://xml.org/sax/features/namespaces"), false);
    reader.setFeature(QStringLiteral("http://xml.org/sax/features/namespace-prefixes"), true);
    reader.setContentHandler(handler);
    reader.setErrorHandler(handler);
    reader.setLexicalHandler(handler);
    reader.setDeclHandler(handler);
    return reader.parse(source);
}

bool isTooMuch(const QString &xml, ParseError *error)
{
    BoundedSource source(xml);
    DepthHandler handler(&source);
    read(source, &handler);
    if (handler.isTooMuch())
        *error = handler.refusal();
    return handler.isTooMuch();
}

// The attributes by way of the element's written start tag. False for names that can't be read.
bool addWrittenAttributes(const QDomElement &element, const QString &prefix, QVariantMap &map)
{
    QString tag;
    QTextStream stream(&tag);
    element.cloneNode(false).save(stream, -1);
    stream.flush();

    QXmlInputSource source;
    source.setData(tag);
    AttributeHandler handler;
    if (!read(source, &handler))
        return false;
    const QXmlAttributes &attributes = handler.attributes();
    for (int i = 0; i < attributes.count(); ++i)
        map.insert(prefix + attributes.qName(i), attributes.value(i));
    return true;
}

QT_WARNING_POP

bool parse(const QString &xml, QDomDocument *document, ParseError *error)
{
    return !isTooMuch(xml, error)
           && document->setContent(xml, &error->message, &error->line, &error->column);
}

XmlUtility::Options optionsFromMap(const QVariantMap &map)
{
    const XmlUtility::Options defaults;
    const auto text = [&map](const char *key, const QString &value) {
        return map.value(QLatin1String(key), value).toString();
    };
    const auto flag = [&map](const char *key, bool value) {
        return map.value(QLatin1String(key), value).toBool();
    };
    XmlUtility::Options options;
    options.attributePrefix = text("attributePrefix", defaults.attributePrefix);
    options.textProperty = text("textProperty", defaults.textProperty);
    options.commentProperty = text("commentProperty", defaults.commentProperty);
    options.nodesProperty = text("nodesProperty", defaults.nodesProperty);
    options.indexFormat = text("indexFormat", defaults.indexFormat);
    options.rootProperty = flag("rootProperty", defaults.rootProperty);
    options.preserveNamespaces = flag("preserveNamespaces", defaults.preserveNamespaces);
    return options;
}

void addAttributes(const QDomElement &element, const QString &prefix, QVariantMap &map)
{
    const QDomNamedNodeMap attributes = element.attributes();
    // item(i) walks to the i-th entry of a hash: tens of thousands of attributes take minutes.
    const int many = 100;
    if (attributes.count() > many && addWrittenAttributes(element, prefix, map))
        return;
    for (int i = 0; i < attributes.count(); ++i) {
        const QDomAttr attribute = attributes.item(i).toAttr();
        map.insert(prefix + attribute.name(), attribute.value());
    }
}

// The children of one element while it is walked: the values under each name, the names with their
// indexes in document order, and the text.
class Children
{
public:
    Children(const QDomElement &element, const XmlUtility::Options &options);

    void storeInto(QVariantMap &map);
    const QString &text() const { return m_text; }

private:
    struct Values
    {
        QVariantList list;
        int firstNode = 0; // index in m_nodes of the first one
    };

    void addNode(const QDomNode &node);
    void addValue(const QString &name, const QVariant &value);

    const XmlUtility::Options &m_options;
    QMap<QString, Values> m_values;
    QVariantList m_nodes;
    QString m_text;
};

Children::Children(const QDomElement &element, const XmlUtility::Options &options)
    : m_options(options)
{
    for (QDomNode node = element.firstChild(); !node.isNull(); node = node.nextSibling())
        addNode(node);
}

void Children::addNode(const QDomNode &node)
{
    switch (node.nodeType()) {
    case QDomNode::ElementNode: {
        const QDomElement element = node.toElement();
        addValue(XmlUtility::propertyName(element.tagName(), m_options),
                 XmlUtility::toVariant(element, m_options));
        break;
    }
    case QDomNode::TextNode:
    case QDomNode::CDATASectionNode:
        // Of several pieces, around a child or a comment, the last one counts.
        m_text = node.nodeValue();
        break;
    case QDomNode::CommentNode:
        addValue(m_options.commentProperty, node.toComment().data());
        break;
    default:
        qCDebug(FRAMEWORK_UTILITY)
            << "static QVariant XmlUtility::toVariant(const QDomElement&, const "
               "XmlUtility::Options&)"
            << "Unhandled node" << node.nodeName();
        break;
    }
}

void Children::addValue(const QString &name, const QVariant &value)
{
    Values &values = m_values[name];
    if (values.list.isEmpty())
        values.firstNode = m_nodes.size();
    m_nodes.append(name + m_options.indexFormat.arg(values.list.size()));
    values.list.append(value);
}

void Children::storeInto(QVariantMap &map)
{
    for (auto it = m_values.constBegin(); it != m_values.constEnd(); ++it) {
        const Values &values = it.value();
        if (values.list.size() > 1) {
            map.insert(it.key(), values.list);
        } else {
            map.insert(it.key(), values.list.first());
            m_nodes[values.firstNode] = it.key();
        }
    }
    if (!m_nodes.isEmpty() && !m_options.nodesProperty.isEmpty())
        map.insert(m_options.nodesProperty, m_nodes);
}

} // namespace

QVariantMap XmlUtility::toVariantMap(const QString &xml, const QVariantMap &options)
{
    const Options xmlOptions = optionsFromMap(options);

    QDomDocument document(QStringLiteral("xml"));
    ParseError error;
    if (!parse(xml, &document, &error)) {
        qCDebug(FRAMEWORK_UTILITY)
            << Q_FUNC_INFO << error.message << "Line:" << error.line << "Column:" << error.column;
        return QVariantMap();
    }

    const QDomElement root = document.documentElement();
    if (!xmlOptions.rootProperty)
        return toVariant(root, xmlOptions).toMap();
    QVariantMap map;
    addElement(root, map, xmlOptions);
    return map;
}

QVariant XmlUtility::toVariant(const QDomElement &element, const Options &options)
{
    QVariantMap map;
    addAttributes(element, options.attributePrefix, map);

    Children children(element, options);
    children.storeInto(map);

    const QString text = children.text();
    if (map.isEmpty())
        return text.isEmpty() ? QVariant(QJsonValue()) : QVariant(text); // empty: null in a script
    if (!text.isEmpty())
        map.insert(options.textProperty, text);
    return map;
}

void XmlUtility::addElement(const QDomElement &element, QVariantMap &map, const Options &options)
{
    map.insert(propertyName(element.tagName(), options), toVariant(element, options));
}

QString XmlUtility::propertyName(const QString &name, const Options &options)
{
    return options.preserveNamespaces ? name : name.mid(name.indexOf(QLatin1Char(':')) + 1);
}
