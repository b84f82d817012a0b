#include "support/IsolatedHome.h"

#include <QFile>
#include <QRegularExpression>

// The table of the QML types: it names what the modules have, no more and no less, and where it
// points at there is a page with such a heading.
class tst_TypesPage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void namesEveryType();
    void linksLeadToHeadings();

private:
    static QString read(const QString &path);
    static QStringList found(const QString &text, const QString &pattern);
    static QString anchor(QString heading);

    QString m_page;
};

// A file of the source tree.
QString tst_TypesPage::read(const QString &path)
{
    QFile file(qEnvironmentVariable("TESSALINE_SOURCE_DIR") + '/' + path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("Can't read %s", qPrintable(file.fileName()));
    return QString::fromUtf8(file.readAll());
}

// What the pattern's group holds, line by line.
QStringList tst_TypesPage::found(const QString &text, const QString &pattern)
{
    QStringList list;
    auto matches =
        QRegularExpression(pattern, QRegularExpression::MultilineOption).globalMatch(text);
    while (matches.hasNext())
        list.append(matches.next().captured(1));
    return list;
}

// As a viewer of Markdown makes it from a heading.
QString tst_TypesPage::anchor(QString heading)
{
    return heading.toLower().remove(QRegularExpression("[^\\w\\- ]")).replace(' ', '-');
}

void tst_TypesPage::initTestCase()
{
    m_page = read("docs/types.md");
}

void tst_TypesPage::namesEveryType()
{
    const QString modules = "src/imports/Zemrik/Tessaline/";
    QStringList types =
        found(read(modules + "plugins.qmltypes"), "exports: \\[\"Zemrik.Tessaline/(\\w+) ");
    for (const char *module : {"Controls", "Dialogs", "Portal"})
        types += found(read(modules + module + "/qmldir"), "^(\\w+) [0-9.]+ \\w+\\.qml$");
    types.removeDuplicates();
    types.sort();
    QVERIFY(types.size() > 30);

    QStringList rows = found(m_page, "^\\| `(\\w+)` \\|");
    rows.sort();
    QCOMPARE(rows, types);
}

void tst_TypesPage::linksLeadToHeadings()
{
    QStringList links = found(m_page, "\\]\\(([^)]+)\\)");
    links.removeDuplicates();
    QVERIFY(links.size() > 10);
    for (const QString &link : qAsConst(links)) {
        const QString page = read("docs/" + link.section('#', 0, 0));
        if (!link.contains('#'))
            continue;
        QStringList anchors;
        const QStringList headings = found(page, "^##+ (.*)$");
        for (const QString &heading : headings)
            anchors.append(anchor(heading));
        QVERIFY2(anchors.contains(link.section('#', 1)), qPrintable(link));
    }
}

TESSALINE_TEST_MAIN(tst_TypesPage)
#include "tst_TypesPage.moc"
