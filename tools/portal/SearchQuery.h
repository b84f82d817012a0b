#pragma once

#include <QString>
#include <QVariantMap>

#include <memory>
#include <vector>

// The portal's search language, as far as catalogues use it:
//
//     (type:"Code Sample" AND NOT tags:draft) OR owner:jo
//
// Operators are upper case; NOT binds closest, then AND (also between two terms with nothing
// between them), then OR. A term is a word or a quoted phrase, which may be limited to one field;
// without a field it is looked for in title, snippet, description, tags and owner. A value matches
// where its words stand in a row, in any case; "*" matches whatever is there.
class SearchQuery
{
public:
    // An empty text matches everything.
    explicit SearchQuery(const QString &text);
    ~SearchQuery();

    bool isValid() const { return m_error.isEmpty(); }
    QString error() const { return m_error; } // what is wrong, for people
    // False for everything if the query isn't valid.
    bool matches(const QVariantMap &item) const;

    struct Node;

private:
    QString m_error;
    std::unique_ptr<Node> m_root;
};
