#include "portal/SearchQuery.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

struct SearchQuery::Node
{
    enum Kind { Term, Not, And, Or };

    Kind kind = Term;
    QString field;     // of a term; empty: the usual ones
    QStringList words; // of a term, lower case
    bool anything = false;
    std::vector<std::unique_ptr<Node>> children;
};

namespace {

using Node = SearchQuery::Node;
using NodePtr = std::unique_ptr<Node>;

const int MaximumDepth = 64; // of parentheses and NOTs: the parser is recursive

QStringList wordsOf(const QString &text)
{
    static const QRegularExpression gaps(QStringLiteral("[^\\w]+"),
                                         QRegularExpression::UseUnicodePropertiesOption);
    return text.toLower().split(gaps, Qt::SkipEmptyParts);
}

struct Token
{
    enum Kind { End, Open, Close, And, Or, Not, Text };

    Kind kind = End;
    QString field;
    QString text;
};

class Lexer
{
public:
    explicit Lexer(const QString &text)
        : m_text(text)
    {
    }

    QString error() const { return m_error; }

    Token next()
    {
        while (m_pos < m_text.size() && m_text.at(m_pos).isSpace())
            ++m_pos;
        if (m_pos == m_text.size())
            return Token();
        const QChar c = m_text.at(m_pos);
        if (c == QLatin1Char('(') || c == QLatin1Char(')')) {
            ++m_pos;
            return Token{c == QLatin1Char('(') ? Token::Open : Token::Close, QString(), QString()};
        }
        if (c == QLatin1Char('"'))
            return Token{Token::Text, QString(), quoted()};
        return wordOrField();
    }

private:
    Token wordOrField()
    {
        const QString word = bareWord();
        if (m_pos < m_text.size() && m_text.at(m_pos) == QLatin1Char(':') && !word.isEmpty()) {
            ++m_pos;
            const bool isQuoted = m_pos < m_text.size() && m_text.at(m_pos) == QLatin1Char('"');
            const QString value = isQuoted ? quoted() : bareWord();
            if (value.isEmpty() && m_error.isEmpty())
                m_error = QStringLiteral("No value for the field \"%1\"").arg(word);
            return Token{Token::Text, word, value};
        }
        if (word.isEmpty()) { // a colon with nothing before it
            m_error = QStringLiteral("A ':' without a field");
            ++m_pos;
        }
        return Token{operatorOf(word), QString(), word};
    }

    static Token::Kind operatorOf(const QString &word)
    {
        if (word == QLatin1String("AND"))
            return Token::And;
        if (word == QLatin1String("OR"))
            return Token::Or;
        return word == QLatin1String("NOT") ? Token::Not : Token::Text;
    }

    QString bareWord()
    {
        const int start = m_pos;
        while (m_pos < m_text.size() && !m_text.at(m_pos).isSpace()
               && !QStringLiteral("():\"").contains(m_text.at(m_pos)))
            ++m_pos;
        return m_text.mid(start, m_pos - start);
    }

    QString quoted()
    {
        const int end = m_text.indexOf(QLatin1Char('"'), m_pos + 1);
        if (end < 0)
            m_error = QStringLiteral("A quote isn't closed");
        QString value = m_text.mid(m_pos + 1, end < 0 ? -1 : end - m_pos - 1);
        m_pos = end < 0 ? m_text.size() : end + 1;
        return value;
    }

    QString m_text;
    QString m_error;
    int m_pos = 0;
};

class Parser
{
public:
    explicit Parser(const QString &text)
        : m_lexer(text)
    {
        advance();
    }

    NodePtr parse(QString &error)
    {
        if (m_token.kind == Token::End && m_lexer.error().isEmpty())
            return nullptr;
        NodePtr root = parseOr();
        if (m_token.kind == Token::Close)
            fail(QStringLiteral("A ')' without a '('"));
        error = m_lexer.error().isEmpty() ? m_error : m_lexer.error();
        return root;
    }

private:
    void advance() { m_token = m_lexer.next(); }

    NodePtr fail(const QString &message)
    {
        if (m_error.isEmpty())
            m_error = message;
        return std::make_unique<Node>();
    }

    static NodePtr group(Node::Kind kind, std::vector<NodePtr> children)
    {
        if (children.size() == 1 && kind != Node::Not)
            return std::move(children.front());
        NodePtr node = std::make_unique<Node>();
        node->kind = kind;
        node->children = std::move(children);
        return node;
    }

    NodePtr parseOr()
    {
        std::vector<NodePtr> parts;
        parts.push_back(parseAnd());
        while (m_error.isEmpty() && m_token.kind == Token::Or) {
            advance();
            parts.push_back(parseAnd());
        }
        return group(Node::Or, std::move(parts));
    }

    NodePtr parseAnd()
    {
        std::vector<NodePtr> parts;
        parts.push_back(parseNot());
        while (m_error.isEmpty() && m_token.kind != Token::Or && m_token.kind != Token::Close
               && m_token.kind != Token::End) {
            if (m_token.kind == Token::And)
                advance();
            parts.push_back(parseNot());
        }
        return group(Node::And, std::move(parts));
    }

    NodePtr parseNot()
    {
        if (m_token.kind != Token::Not)
            return parsePrimary();
        if (++m_depth > MaximumDepth)
            return fail(QStringLiteral("The query is nested too deeply"));
        advance();
        std::vector<NodePtr> parts;
        parts.push_back(parseNot());
        --m_depth;
        return group(Node::Not, std::move(parts));
    }

    NodePtr parsePrimary()
    {
        if (m_token.kind == Token::Open)
            return parseGroup();
        if (m_token.kind != Token::Text)
            return fail(QStringLiteral("A term is missing"));
        NodePtr node = std::make_unique<Node>();
        node->field = m_token.field;
        node->anything = m_token.text == QLatin1String("*");
        node->words = wordsOf(m_token.text);
        advance();
        return node;
    }

    NodePtr parseGroup()
    {
        if (++m_depth > MaximumDepth)
            return fail(QStringLiteral("The query is nested too deeply"));
        advance();
        NodePtr node = parseOr();
        if (m_token.kind != Token::Close)
            return fail(QStringLiteral("A '(' isn't closed"));
        advance();
        --m_depth;
        return node;
    }

    Lexer m_lexer;
    Token m_token;
    QString m_error;
    int m_depth = 0;
};

bool holdsInARow(const QStringList &text, const QStringList &words)
{
    for (int start = 0; start + words.size() <= text.size(); ++start) {
        if (text.mid(start, words.size()) == words)
            return true;
    }
    return false;
}

bool fieldMatches(const QVariant &value, const Node &term)
{
    if (value.type() == QVariant::List || value.type() == QVariant::StringList) {
        const QVariantList elements = value.toList();
        for (const QVariant &element : elements) {
            if (fieldMatches(element, term))
                return true;
        }
        return false;
    }
    const QString text = value.toString();
    if (term.anything)
        return !text.isEmpty();
    return !term.words.isEmpty() && holdsInARow(wordsOf(text), term.words);
}

bool termMatches(const QVariantMap &item, const Node &term)
{
    if (!term.field.isEmpty())
        return fieldMatches(item.value(term.field), term);
    if (term.anything)
        return true;
    static const QStringList usual{QStringLiteral("title"), QStringLiteral("snippet"),
                                   QStringLiteral("description"), QStringLiteral("tags"),
                                   QStringLiteral("owner")};
    for (const QString &field : usual) {
        if (fieldMatches(item.value(field), term))
            return true;
    }
    return false;
}

bool nodeMatches(const QVariantMap &item, const Node &node)
{
    const auto childMatches = [&item](const NodePtr &child) { return nodeMatches(item, *child); };
    switch (node.kind) {
    case Node::Not:
        return !childMatches(node.children.front());
    case Node::And:
        return std::all_of(node.children.begin(), node.children.end(), childMatches);
    case Node::Or:
        return std::any_of(node.children.begin(), node.children.end(), childMatches);
    case Node::Term:
        break;
    }
    return termMatches(item, node);
}

} // namespace

SearchQuery::SearchQuery(const QString &text)
    : m_root(Parser(text).parse(m_error))
{
}

SearchQuery::~SearchQuery() = default;

bool SearchQuery::matches(const QVariantMap &item) const
{
    return isValid() && (!m_root || nodeMatches(item, *m_root));
}
