#include "examples/ExampleWindow.h"
#include "support/IsolatedHome.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

// One sitting with the notes: each test goes on where the one before it stopped.
class tst_NotesExample : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void beginsWithAnEmptyList();
    void newMakesANoteOnDisk();
    void whatIsTypedReachesTheFiles();
    void theListShowsTheTitle();
    void theLastNoteIsRememberedInTheAppsSettings();
    void textSizePersistsUnderItsOwnName();
    void aNarrowWindowShowsOnePane();
    void looksLikeAnEditor();
    void deleteRemovesTheFiles();
    void printsNoWarning();

private:
    QDir notes() const { return QDir(QDir::homePath() + "/Zemrik/Notes"); }
    QString noteFile(const QString &suffix) const
    {
        const QStringList names = notes().entryList({"*." + suffix});
        return names.size() == 1 ? notes().filePath(names.first()) : QString();
    }

    std::unique_ptr<ExampleWindow> m_window;
};

void tst_NotesExample::initTestCase()
{
    m_window = std::make_unique<ExampleWindow>("notes");
    QVERIFY(m_window->isReady());
    QVERIFY(m_window->expose());
    m_window->resize(1280, 800);
}

void tst_NotesExample::beginsWithAnEmptyList()
{
    QCOMPARE(m_window->item("noteList")->property("count").toInt(), 0);
    QVERIFY(notes().exists());
    QVERIFY(notes().entryList(QDir::Files).isEmpty());
}

void tst_NotesExample::newMakesANoteOnDisk()
{
    m_window->click("newButton");

    QTRY_COMPARE(notes().entryList(QDir::Files).size(), 2);
    const QJsonObject note = QJsonDocument::fromJson(contentOf(noteFile("json"))).object();
    QCOMPARE(note.value("title").toString(), QString("New note"));
    QTRY_COMPARE(m_window->item("noteList")->property("count").toInt(), 1);
}

void tst_NotesExample::whatIsTypedReachesTheFiles()
{
    QTRY_VERIFY(m_window->item("titleField")->hasActiveFocus());
    m_window->type("Shopping"); // replaces the selected title
    QCOMPARE(m_window->text("titleField"), QString("Shopping"));
    QTest::keyClick(m_window->view(), Qt::Key_Return);
    QTRY_VERIFY(m_window->item("editor")->hasActiveFocus());
    m_window->type("Milk, Käse");

    QTRY_COMPARE(contentOf(noteFile("txt")), QByteArray("Milk, K\xc3\xa4se"));
    const QJsonObject note = QJsonDocument::fromJson(contentOf(noteFile("json"))).object();
    QCOMPARE(note.value("title").toString(), QString("Shopping"));
    QTRY_COMPARE(m_window->text("state"), QString("Saved"));
}

void tst_NotesExample::theListShowsTheTitle()
{
    QCOMPARE(m_window->item("noteList")->property("count").toInt(), 1);
    QQuickItem *item = ExampleWindow::findItem(m_window->item("noteList"), "noteItem");
    QVERIFY(item);
    QCOMPARE(item->property("title").toString(), QString("Shopping"));
    QCOMPARE(item->property("preview").toString(), QString::fromUtf8("Milk, K\xc3\xa4se"));
}

void tst_NotesExample::theLastNoteIsRememberedInTheAppsSettings()
{
    const QString settings = QDir::homePath() + "/Zemrik/Halvora/Settings/notes.json";
    const QJsonObject stored = QJsonDocument::fromJson(contentOf(settings)).object();
    QCOMPARE(stored.value("lastNote").toString(), QFileInfo(noteFile("txt")).completeBaseName());
}

void tst_NotesExample::textSizePersistsUnderItsOwnName()
{
    m_window->click("largerButton");
    QTRY_COMPARE(QSettings().value("textSize").toInt(), 16);
}

void tst_NotesExample::aNarrowWindowShowsOnePane()
{
    m_window->resize(360, 640);
    QTRY_VERIFY(!m_window->item("noteList")->isVisible());
    QVERIFY(m_window->item("editor")->isVisible());
    m_window->click("backButton");
    QTRY_VERIFY(m_window->item("noteList")->isVisible());
    QVERIFY(!m_window->item("editor")->isVisible());
    m_window->clickItem(ExampleWindow::findItem(m_window->item("noteList"), "noteItem"));
    QTRY_VERIFY(m_window->item("editor")->isVisible());
    QTRY_COMPARE(m_window->text("editor"), QString::fromUtf8("Milk, K\xc3\xa4se"));
    m_window->resize(1280, 800);
}

void tst_NotesExample::looksLikeAnEditor()
{
    QTRY_COMPARE(m_window->picture().pixelColor(3, 3), QColor("#8a5a16"));
    const QImage picture = m_window->picture();
    QCOMPARE(picture.pixelColor(picture.width() - 3, 3), QColor("#f6d55c")); // the note's colour
    QVERIFY(ExampleWindow::colorCount(picture) > 50);
}

void tst_NotesExample::deleteRemovesTheFiles()
{
    m_window->click("deleteButton");
    QTRY_VERIFY(notes().entryList(QDir::Files).isEmpty());
    QTRY_COMPARE(m_window->item("noteList")->property("count").toInt(), 0);
}

void tst_NotesExample::printsNoWarning()
{
    QCOMPARE(m_window->warningCount(), 0);
}

TESSALINE_INPUT_TEST_MAIN(tst_NotesExample)
#include "tst_NotesExample.moc"
