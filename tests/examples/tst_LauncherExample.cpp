#include "examples/ExampleWindow.h"
#include "support/DevelopmentPortal.h"
#include "support/IsolatedHome.h"

#include <QAccessible>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QQmlContext>
#include <QQmlExpression>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTouchDevice>

#include <csignal>

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool write(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

void setDates(const QString &folder, const QDateTime &date)
{
    QDirIterator walk(folder, QDir::Files | QDir::Hidden);
    while (walk.hasNext()) {
        QFile file(walk.next());
        if (!file.open(QIODevice::ReadWrite)
            || !file.setFileTime(date, QFileDevice::FileModificationTime))
            qFatal("Can't date %s", qPrintable(file.fileName()));
    }
}

QQuickItem *findText(QQuickItem *item, const QString &text)
{
    if (item->isVisible() && item->property("text").toString() == text)
        return item;
    for (QQuickItem *child : item->childItems()) {
        if (QQuickItem *found = findText(child, text))
            return found;
    }
    return nullptr;
}

} // namespace

// One sitting with the launcher and a portal: each test goes on where the one before it stopped.
class tst_LauncherExample : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void listsTheAppsOfThisMachine();
    void aWrongPasswordIsTold();
    void aPortalThatIsNotThereIsToldInTheDialog();
    void signsInWithTheModulesDialog();
    void listsThePortalsApps();
    void badgesTellWhatIsNew();
    void searches_data();
    void searches();
    void filters_data();
    void filters();
    void sortsWithTheKeyboard();
    void tabReachesEverything();
    void upFromTheFirstRowGoesToTheSearch();
    void aHeldKeyOpensNothing();
    void aTouchOpensAnApp();
    void screenReadersAreTold();
    void emptyPageSaysWhatToDo();
    void pinnedAppsComeFirst();
    void arrowsAndReturnOpenAnApp();
    void detailsTellWhatThePortalKnows();
    void downloadsWithWhatTheAppNeeds();
    void detailsScrollWithTheKeyboard();
    void whatWasDownloadedIsNoLocalChange();
    void startsInPlaceAndComesBack();
    void anUpdateRunsTheNewCode();
    void aSilentPortalFailsTheDownloadAndARetryWorks();
    void aDamagedArchiveFailsTheDownloadAndARetryWorks();
    void aMissingDependencyFailsTheDownloadAndARetryWorks();
    void aSilentPortalFailsTheSearchAndARetryWorks();
    void aSearchThatIsLateClearsItsFailure();
    void aRefusedTokenIsTold();
    void aRefusedSearchIsToldAtOnce();
    void twoFoldersOfOneItemAreTwoApps();
    void anAppThatCannotStartIsTold();
    void aDocumentWithoutAnItemIsTold_data();
    void aDocumentWithoutAnItemIsTold();
    void anAppThatIsStillLoadingIsTold();
    void comesBackToTheListIfTheAppIsGone();
    void theOtherExamplesHaveKeys();
    void aNarrowWindowKeepsEverythingInSight();
    void printsNoWarning();

private:
    QString apps() const { return QDir::homePath() + "/Zemrik/Halvora/Apps"; }
    QQuickItem *root() const { return m_window->view()->rootObject(); }
    QVariant js(const QString &expression) const
    {
        QQmlExpression evaluated(qmlContext(root()), root(), expression);
        return evaluated.evaluate();
    }
    QString titles() const
    {
        return js("appCatalogue.apps.map(info => info.title).join(', ')").toString();
    }
    QString page() const { return root()->property("page").toString(); }
    void setTimeLimit(int milliseconds) { root()->setProperty("timeLimit", milliseconds); }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(m_window->view(), key, modifiers);
    }
    bool isShown(const QString &objectName) const
    {
        const QQuickItem *item = m_window->item(objectName);
        return item && item->isVisible();
    }
    QQuickItem *badge(const QString &id, const QString &name) const
    {
        return ExampleWindow::findItem(m_window->item("card " + id), name);
    }
    void click(const QString &objectName)
    {
        QTRY_VERIFY(isShown(objectName));
        m_window->picture(); // what has just changed is laid out now
        m_window->click(objectName);
    }
    void open(const QString &id) { click("card " + id); }
    QString accessibleName(const QString &objectName) const
    {
        const QAccessibleInterface *interface =
            QAccessible::queryAccessibleInterface(m_window->item(objectName));
        return interface ? interface->text(QAccessible::Name) : QString("(none)");
    }
    QString data(const QString &name) const
    {
        return QDir::homePath() + "/Zemrik/Halvora/Data/" + name;
    }
    void runDocument(const QByteArray &qml)
    {
        QVERIFY(write(m_portal.path("document/main.qml"), qml));
        js(QString("page = 'run'; run.start({ title: 'Some\\nthing', source: 'file://%1' }, true)")
               .arg(m_portal.path("document/main.qml")));
        QCOMPARE(page(), QString("run"));
    }

    QQuickWindow *dialog() const;
    void signIn(const QString &user, const QString &password);
    void makeLocalApp(const QString &id, const QDateTime &date);
    void stopPortal() { ::kill(static_cast<pid_t>(m_portal.processId()), SIGSTOP); }
    void continuePortal() { ::kill(static_cast<pid_t>(m_portal.processId()), SIGCONT); }

    DevelopmentPortal m_portal;
    std::unique_ptr<ExampleWindow> m_window;
};

// A copy of the portal's item from an earlier time, whose page says so.
void tst_LauncherExample::makeLocalApp(const QString &id, const QDateTime &date)
{
    const QString folder = apps() + '/' + id;
    QJsonObject info =
        QJsonDocument::fromJson(contentOf(m_portal.path("items/" + id + "/iteminfo.json")))
            .object();
    info.insert("id", id);
    QVERIFY(write(folder + "/iteminfo.json", QJsonDocument(info).toJson()));
    QVERIFY(write(folder + "/appinfo.json", "{ \"version\": { \"major\": 0, \"minor\": 9 } }"));
    QVERIFY(write(folder + "/main.qml", "import QtQuick 2.15\nimport Zemrik.Tessaline 1.0\n"
                                        "App { property string stand: \"old\" }\n"));
    setDates(folder, date);
}

QQuickWindow *tst_LauncherExample::dialog() const
{
    for (QWindow *window : QGuiApplication::topLevelWindows()) {
        auto *quickWindow = qobject_cast<QQuickWindow *>(window);
        if (quickWindow && quickWindow != m_window->view() && quickWindow->isVisible())
            return quickWindow;
    }
    return nullptr;
}

void tst_LauncherExample::signIn(const QString &user, const QString &password)
{
    if (!dialog())
        click("signInButton");
    QTRY_VERIFY(dialog());
    QVERIFY(QTest::qWaitForWindowExposed(dialog()));
    js(QString("portalSignIn.dialog.username = '%1'").arg(user));
    js(QString("portalSignIn.dialog.password = '%1'").arg(password));
    QQuickItem *button = findText(dialog()->contentItem(), "Sign In");
    QVERIFY(button);
    const QPointF center = button->mapToScene({button->width() / 2, button->height() / 2});
    QTest::mouseClick(dialog(), Qt::LeftButton, Qt::NoModifier, center.toPoint());
}

void tst_LauncherExample::initTestCase()
{
    const QString source = QString::fromLocal8Bit(qgetenv("TESSALINE_SOURCE_DIR"));
    QDirIterator walk(source + "/examples/items", QDir::Files, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const QString path = walk.next();
        const QString name = path.mid(source.size() + int(sizeof "/examples/") - 1);
        m_portal.writeFile(name, contentOf(path));
    }
    m_portal.addItem("broken", {{"title", "Broken"}, {"typeKeywords", QStringList{"App"}}},
                     {{"data", "no archive"}});
    m_portal.addItem(
        "faulty", {{"title", "Faulty"}, {"typeKeywords", QStringList{"App"}}},
        {{"data/appinfo.json", "{}"}, {"data/main.qml", "import Nothing 1.0\nItem {}\n"}});
    QVERIFY2(m_portal.start(), qPrintable(m_portal.output()));
    makeLocalApp("focus-timer", QDateTime(QDate(2020, 1, 1), QTime(12, 0)));
    makeLocalApp("palette", QDateTime::currentDateTime().addSecs(3600));

    qputenv("LAUNCHER_PORTAL", m_portal.url().toUtf8() + '/');
    qputenv("LAUNCHER_USER", "demo");
    qputenv("LAUNCHER_PASSWORD", "demo");
    const QString more = m_portal.path("more");
    QVERIFY(QDir().mkpath(more));
    for (const char *name : {"launcher", "notes", "welcome"})
        QVERIFY(QFile::link(source + "/examples/" + name, more + '/' + name));
    qputenv("LAUNCHER_APPS", more.toUtf8());
    m_window = std::make_unique<ExampleWindow>("launcher");
    QVERIFY(m_window->isReady());
    QVERIFY(m_window->expose());
    js("Tessaline.displayScaleFactor = 1"); // all cards fit
    m_window->resize(1000, 720);
}

void tst_LauncherExample::listsTheAppsOfThisMachine()
{
    QCOMPARE(root()->property("timeLimit").toInt(), 20000);
    QTRY_COMPARE(titles(), QString("Focus Timer, Notes, Palette, Welcome"));
    QVERIFY(m_window->item("card palette"));
    QVERIFY(!m_window->item("card launcher"));
    QVERIFY(isShown("signInNotice"));
    QVERIFY(m_window->text("signInNoticeText").contains("Development portal"));
}

void tst_LauncherExample::aWrongPasswordIsTold()
{
    signIn("demo", "wrong");
    QTRY_VERIFY(findText(dialog()->contentItem(),
                         "Unable to generate token.\r\nInvalid username or password."));
    QVERIFY(!js("hostedPortal.signedIn").toBool());
}

void tst_LauncherExample::aPortalThatIsNotThereIsToldInTheDialog()
{
    setTimeLimit(500);
    stopPortal();
    signIn("demo", "demo");
    QTRY_VERIFY(js("portalSignIn.dialog.busy").toBool());
    QTRY_VERIFY(!js("portalSignIn.dialog.busy").toBool());
    QVERIFY(findText(dialog()->contentItem(), "The portal doesn't answer.\r\n"));
    continuePortal();
    setTimeLimit(20000);
    // What was asked while it slept is answered now.
    QTRY_VERIFY(js("hostedPortal.signedIn").toBool());
    js("hostedPortal.signOut()");
    QTRY_VERIFY(!dialog());
}

void tst_LauncherExample::signsInWithTheModulesDialog()
{
    click("signInButton");
    QTRY_VERIFY(dialog());
    QCOMPARE(js("portalSignIn.dialog.username").toString(), QString("demo"));
    QCOMPARE(js("portalSignIn.dialog.title").toString(), QString("Sign in to Development portal"));
    signIn("demo", "demo");
    QTRY_VERIFY(js("hostedPortal.signedIn").toBool());
    QTRY_VERIFY(!dialog());
    QTRY_COMPARE(m_window->text("userName"), QString("demo"));
    QVERIFY(!isShown("signInNotice"));
    m_window->view()->requestActivate(); // no window manager does it here
    QVERIFY(QTest::qWaitForWindowActive(m_window->view()));
}

void tst_LauncherExample::listsThePortalsApps()
{
    QTRY_COMPARE(titles(),
                 QString("Broken, Faulty, Focus Timer, Notes, Palette, Tide Table, Welcome"));
    QTRY_COMPARE(m_window->text("summary"), QString("7 apps"));
}

void tst_LauncherExample::badgesTellWhatIsNew()
{
    QVERIFY(badge("focus-timer", "updateBadge")->isVisible());
    QVERIFY(!badge("focus-timer", "changedBadge")->isVisible());
    QVERIFY(badge("palette", "changedBadge")->isVisible());
    QVERIFY(!badge("palette", "updateBadge")->isVisible());
    QVERIFY(!badge("tide-table", "updateBadge")->isVisible());
    QCOMPARE(m_window->item("chip updates")->property("count").toInt(), 1);
}

void tst_LauncherExample::searches_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("found");
    QTest::newRow("part of a title") << "tab"
                                     << "Tide Table";
    QTest::newRow("tag") << "#tide"
                         << "Tide Table";
    QTest::newRow("one of two tags") << "#tide #work"
                                     << "Focus Timer, Tide Table";
    QTest::newRow("owner") << "@studio"
                           << "Focus Timer, Palette";
    QTest::newRow("nothing") << "@nobody"
                             << "";
}

void tst_LauncherExample::searches()
{
    QFETCH(QString, text);
    QFETCH(QString, found);
    key(Qt::Key_F, Qt::ControlModifier);
    QTRY_VERIFY(m_window->item("searchField")->hasActiveFocus());
    m_window->type(text);
    QTRY_COMPARE(titles(), found);
    QCOMPARE(isShown("emptyText"), found.isEmpty());
    key(Qt::Key_Escape);
    QTRY_VERIFY(m_window->item("grid")->hasActiveFocus());
    QTRY_COMPARE(m_window->text("summary"), QString("7 apps"));
}

void tst_LauncherExample::filters_data()
{
    QTest::addColumn<QString>("chip");
    QTest::addColumn<QString>("found");
    QTest::newRow("this device") << "local"
                                 << "Focus Timer, Notes, Palette, Welcome";
    QTest::newRow("portal") << "hosted"
                            << "Broken, Faulty, Tide Table";
    QTest::newRow("updates") << "updates"
                             << "Focus Timer";
    QTest::newRow("changed") << "changed"
                             << "Palette";
    QTest::newRow("all") << "all"
                         << "Broken, Faulty, Focus Timer, Notes, Palette, Tide Table, "
                            "Welcome";
}

void tst_LauncherExample::filters()
{
    QFETCH(QString, chip);
    click("chip " + chip);
    QFETCH(QString, found);
    QTRY_COMPARE(titles(), found);
}

void tst_LauncherExample::sortsWithTheKeyboard()
{
    m_window->item("orderBox")->forceActiveFocus(Qt::TabFocusReason);
    key(Qt::Key_Down);
    QTRY_COMPARE(titles(),
                 QString("Welcome, Tide Table, Palette, Notes, Focus Timer, Faulty, Broken"));
    key(Qt::Key_Down);
    QTRY_VERIFY(titles().startsWith("Palette"));
    QVERIFY(titles().endsWith("Focus Timer"));
    key(Qt::Key_Down);
    QTRY_VERIFY(titles().startsWith("Focus Timer"));
    QVERIFY(titles().endsWith("Palette"));
    for (int step = 0; step < 3; ++step)
        key(Qt::Key_Up);
    QTRY_VERIFY(titles().startsWith("Broken"));
}

void tst_LauncherExample::tabReachesEverything()
{
    QStringList names;
    QQuickItem *first = m_window->item("searchField");
    QQuickItem *item = first;
    do {
        names.append(item->objectName());
        item = item->nextItemInFocusChain();
    } while (item && item != first && names.size() < 50);
    for (const char *name : {"searchField", "signInButton", "chip all", "chip changed", "orderBox",
                             "refreshButton", "grid"})
        QVERIFY2(names.contains(name), qPrintable(name + (": " + names.join(", "))));
    m_window->item("refreshButton")->forceActiveFocus(Qt::TabFocusReason);
    key(Qt::Key_Tab);
    QVERIFY(m_window->item("grid")->hasActiveFocus());
}

void tst_LauncherExample::upFromTheFirstRowGoesToTheSearch()
{
    m_window->item("grid")->forceActiveFocus();
    key(Qt::Key_End);
    key(Qt::Key_Up);
    QVERIFY(m_window->item("grid")->hasActiveFocus());
    QVERIFY(m_window->item("grid")->property("currentIndex").toInt() < 4);
    key(Qt::Key_Up);
    QVERIFY(m_window->item("searchField")->hasActiveFocus());
    key(Qt::Key_Down);
    QVERIFY(m_window->item("grid")->hasActiveFocus());
}

void tst_LauncherExample::aHeldKeyOpensNothing()
{
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r", true);
    QCoreApplication::sendEvent(m_window->view(), &held);
    QCOMPARE(page(), QString("grid"));
}

void tst_LauncherExample::aTouchOpensAnApp()
{
    QTouchDevice *device = QTest::createTouchDevice();
    const QQuickItem *card = m_window->item("card palette");
    const QPoint center =
        card->mapToScene(QPointF(card->width() / 2, card->height() / 2)).toPoint();
    QTest::touchEvent(m_window->view(), device).press(0, center, m_window->view());
    QTest::touchEvent(m_window->view(), device).release(0, center, m_window->view());
    QTRY_COMPARE(page(), QString("details"));
    QCOMPARE(m_window->text("detailsTitle"), QString("Palette"));
    key(Qt::Key_Escape);
    QTRY_COMPARE(page(), QString("grid"));
}

void tst_LauncherExample::screenReadersAreTold()
{
    QCOMPARE(accessibleName("card tide-table"), QString("Tide Table, On the portal"));
    QCOMPARE(accessibleName("card focus-timer"),
             QString("Focus Timer, On this device, Update available"));
    QCOMPARE(accessibleName("refreshButton"), QString("Ask the portal again"));
    QCOMPARE(accessibleName("signInButton"), QString("Sign out"));
    QCOMPARE(accessibleName("orderBox"), QString("Order"));
    QCOMPARE(accessibleName("leaveButton"), QString("‹ Apps"));
    const QAccessibleInterface *notice =
        QAccessible::queryAccessibleInterface(m_window->item("failureNotice"));
    QVERIFY(notice);
    QCOMPARE(notice->role(), QAccessible::AlertMessage);
}

void tst_LauncherExample::emptyPageSaysWhatToDo()
{
    js("appCatalogue.apps = []");
    QVERIFY(isShown("emptyText"));
    QCOMPARE(m_window->text("emptyText"), QString("No apps here or on the portal yet."));
    js("appCatalogue.failure = 'Gone'");
    QCOMPARE(m_window->text("emptyText"), QString("No apps on this device yet."));
    QVERIFY(m_window->text("emptyHint").startsWith("The portal's apps"));
    js("appCatalogue.failure = ''; appCatalogue.rebuild()");
    QTRY_VERIFY(!isShown("emptyText"));
}

void tst_LauncherExample::pinnedAppsComeFirst()
{
    m_window->item("grid")->forceActiveFocus();
    m_window->item("grid")->setProperty("currentIndex", 4);
    key(Qt::Key_P);
    QTRY_VERIFY(titles().startsWith("Palette, Broken"));
    QVERIFY(contentOf(apps() + "/palette/.info.json").contains("\"pinned\": true"));
    QTRY_COMPARE(m_window->item("grid")->property("currentIndex").toInt(), 0); // still chosen
    key(Qt::Key_P);
    QTRY_VERIFY(titles().startsWith("Broken"));
    QTRY_COMPARE(m_window->item("grid")->property("currentIndex").toInt(), 4);
}

void tst_LauncherExample::arrowsAndReturnOpenAnApp()
{
    key(Qt::Key_Home);
    key(Qt::Key_Right);
    key(Qt::Key_Right);
    key(Qt::Key_Return);
    QTRY_COMPARE(page(), QString("details"));
    QCOMPARE(m_window->text("detailsTitle"), QString("Focus Timer"));
    key(Qt::Key_Escape);
    QTRY_COMPARE(page(), QString("grid"));
    QTRY_VERIFY(m_window->item("grid")->hasActiveFocus());
    QCOMPARE(m_window->item("grid")->property("currentIndex").toInt(), 2);
}

void tst_LauncherExample::detailsTellWhatThePortalKnows()
{
    open("tide-table");
    QTRY_COMPARE(page(), QString("details"));
    QCOMPARE(m_window->text("versionValue"), QString("1.2.0"));
    QCOMPARE(m_window->text("ownerValue"), QString("harbour-office"));
    QVERIFY(m_window->text("sizeValue").endsWith("kB"));
    QCOMPARE(m_window->text("needsValue"), QString("tide-readings (comes with the download)"));
    QVERIFY(m_window->text("description").startsWith("Draws the tide curve"));
    QVERIFY(!isShown("openButton"));
    QTRY_VERIFY(m_window->item("downloadButton")->hasActiveFocus());
}

void tst_LauncherExample::downloadsWithWhatTheAppNeeds()
{
    // Before the app is there the page says what is going on.
    QSignalSpy texts(m_window->item("downloadText"), SIGNAL(textChanged(QString)));
    QSignalSpy percentages(m_window->item("progressLine"), SIGNAL(percentageChanged()));
    key(Qt::Key_Return);
    QTRY_VERIFY(isShown("openButton"));
    QCOMPARE(texts.value(0).value(0).toString(), QString("Downloading the app"));
    QVERIFY(percentages.count() > 0);
    QCOMPARE(js("appDownloads.of('tide-table').message").toString(),
             QString("Downloading dependency 1 of 1\r\nTide constants"));
    QVERIFY(QFile::exists(apps() + "/tide-table/main.qml"));
    QVERIFY(QFile::exists(apps() + "/tide-table/thumbnail.png"));
    QVERIFY(QFile::exists(QDir::homePath() + "/Zemrik/Halvora/Data/tide-readings/tides.json"));
    QCOMPARE(m_window->text("needsValue"), QString("Tide constants (on this device)"));
    QVERIFY(!isShown("downloadButton"));
    QCOMPARE(js("selectedKey").toString(), apps() + "/tide-table"); // its key is its folder now
}

void tst_LauncherExample::detailsScrollWithTheKeyboard()
{
    const auto place = [this] {
        return m_window->item("detailsFlickable")->property("contentY").toReal();
    };
    m_window->resize(1000, 320);
    QTRY_COMPARE(root()->height(), 320.0);
    QCOMPARE(place(), 0.0);
    key(Qt::Key_Down);
    const qreal line = place();
    QVERIFY(line > 0);
    key(Qt::Key_PageDown);
    QVERIFY(place() > line);
    key(Qt::Key_End);
    const qreal end = place();
    key(Qt::Key_Down);
    QCOMPARE(place(), end);
    key(Qt::Key_Up);
    QVERIFY(place() < end);
    key(Qt::Key_PageUp);
    key(Qt::Key_Home);
    QCOMPARE(place(), 0.0);

    key(Qt::Key_End);
    js("showDetails(appCatalogue.find('palette'))");
    QCOMPARE(place(), 0.0); // another app begins at its top
    js("showDetails(appCatalogue.find('tide-table'))");
    m_window->resize(1000, 720);
    QTRY_COMPARE(root()->height(), 720.0);
}

void tst_LauncherExample::whatWasDownloadedIsNoLocalChange()
{
    QVERIFY(js("appCatalogue.find('tide-table').isUpdatedLocally").toBool());
    QVERIFY(!js("appCatalogue.isChanged(appCatalogue.find('tide-table'))").toBool());
    const QString path = apps() + "/tide-table/main.qml";
    const QByteArray content = contentOf(path);
    QVERIFY(write(path, content + "\n"));
    QVERIFY(js("appCatalogue.isChanged(appCatalogue.find('tide-table'))").toBool());
}

void tst_LauncherExample::startsInPlaceAndComesBack()
{
    QTRY_VERIFY(m_window->item("openButton")->hasActiveFocus());
    key(Qt::Key_Return);
    QTRY_COMPARE(page(), QString("run"));
    QTRY_COMPARE(js("run.app.harbours.length").toInt(), 4);
    QVERIFY(isShown("chart"));
    QCOMPARE(js("run.app.width").toInt(), 1000);
    key(Qt::Key_Down);
    key(Qt::Key_Right);
    QCOMPARE(js("run.app.harbourIndex + ' ' + run.app.dayOffset").toString(), QString("1 1"));
    key(Qt::Key_Escape);
    QTRY_COMPARE(page(), QString("details"));
    QVERIFY(js("run.app === null").toBool());
    key(Qt::Key_Escape);
    QTRY_COMPARE(page(), QString("grid"));
}

void tst_LauncherExample::anUpdateRunsTheNewCode()
{
    open("focus-timer");
    QTRY_COMPARE(m_window->text("versionValue"), QString("0.9.1"));
    click("openButton");
    QTRY_COMPARE(js("run.app.stand").toString(), QString("old"));
    click("leaveButton");
    QTRY_COMPARE(page(), QString("details"));

    click("downloadButton");
    QTRY_COMPARE(m_window->text("versionValue"), QString("2.0.0"));
    QTRY_VERIFY(!isShown("downloadButton"));
    click("openButton");
    QTRY_COMPARE(m_window->text("clock"), QString("25:00"));
    click("leaveButton");
    QTRY_COMPARE(page(), QString("details"));
    key(Qt::Key_Escape);
    QTRY_COMPARE(js("appCatalogue.updateCount").toInt(), 0);
}

void tst_LauncherExample::aSilentPortalFailsTheDownloadAndARetryWorks()
{
    QVERIFY(QDir(apps() + "/tide-table").removeRecursively());
    key(Qt::Key_F5);
    QTRY_VERIFY(
        js("!appCatalogue.refreshing && !appCatalogue.find('tide-table').isLocal").toBool());
    open("tide-table");
    setTimeLimit(500);
    stopPortal();
    click("downloadButton");
    QTRY_VERIFY(isShown("downloadNotice"));
    QVERIFY(m_window->text("downloadNoticeText").startsWith("The download came to a halt"));
    continuePortal();
    setTimeLimit(20000);
    QTRY_VERIFY(m_window->item("downloadNoticeButton")->hasActiveFocus());
    key(Qt::Key_Return);
    QTRY_VERIFY(isShown("openButton"));
    QVERIFY(!isShown("downloadNotice"));
    key(Qt::Key_Escape);
}

void tst_LauncherExample::aDamagedArchiveFailsTheDownloadAndARetryWorks()
{
    QTRY_COMPARE(page(), QString("grid"));
    open("broken");
    setTimeLimit(500);
    click("downloadButton");
    QTRY_VERIFY(isShown("downloadNotice"));
    setTimeLimit(20000);
    const QByteArray good =
        m_portal.call("/sharing/rest/content/items/palette/data", {{"token", m_portal.token()}})
            .body;
    m_portal.writeFile("items/broken/data", good);
    click("downloadNoticeButton");
    QTRY_VERIFY(isShown("openButton"));
    QVERIFY(QFile::exists(apps() + "/broken/main.qml"));
    key(Qt::Key_Escape);
}

// The app is there then, but not its data: the folder that was made for them says nothing.
void tst_LauncherExample::aMissingDependencyFailsTheDownloadAndARetryWorks()
{
    QTRY_COMPARE(page(), QString("grid"));
    const QString tides = m_portal.path("items/tide-readings/tides.json");
    const QByteArray content = contentOf(tides);
    QVERIFY(!content.isEmpty() && QFile::remove(tides));
    QVERIFY(QDir(apps() + "/tide-table").removeRecursively());
    QVERIFY(QDir(data("tide-readings")).removeRecursively());
    key(Qt::Key_F5);
    QTRY_VERIFY(
        js("!appCatalogue.refreshing && !appCatalogue.find('tide-table').isLocal").toBool());
    open("tide-table");
    setTimeLimit(500);
    click("downloadButton");
    QTRY_VERIFY(isShown("downloadNotice"));
    QVERIFY(QDir(data("tide-readings")).exists());
    setTimeLimit(20000);
    m_portal.writeFile("items/tide-readings/tides.json", content);
    click("downloadNoticeButton");
    QTRY_COMPARE(js("appDownloads.of('tide-table').state").toString(), QString("done"));
    QCOMPARE(contentOf(data("tide-readings/tides.json")), content);
    QVERIFY(QDir(data("tide-readings")).removeRecursively());
    QCOMPARE(js("detailsPage.needsText()").toString(),
             QString("Tide constants (not on this device)"));
    QVERIFY(write(data("tide-readings/tides.json"), content));
    key(Qt::Key_Escape);
}

void tst_LauncherExample::aSilentPortalFailsTheSearchAndARetryWorks()
{
    QTRY_COMPARE(page(), QString("grid"));
    setTimeLimit(500);
    stopPortal();
    click("refreshButton");
    QTRY_COMPARE(m_window->text("failureNoticeText"), QString("The portal doesn't answer."));
    QVERIFY(isShown("failureNotice"));
    QTRY_VERIFY(titles().contains("Welcome")); // the apps of this machine stay
    setTimeLimit(20000);
    click("failureNoticeButton");
    QTRY_VERIFY(!isShown("failureNotice"));
    QVERIFY(m_window->item("grid")->hasActiveFocus());
    continuePortal();
    QTRY_COMPARE(m_window->text("summary"), QString("7 apps"));
}

void tst_LauncherExample::aSearchThatIsLateClearsItsFailure()
{
    setTimeLimit(500);
    stopPortal();
    click("refreshButton");
    QTRY_VERIFY(isShown("failureNotice"));
    continuePortal();
    QTRY_VERIFY(!isShown("failureNotice"));
    setTimeLimit(20000);
    QTRY_COMPARE(m_window->text("summary"), QString("7 apps"));
}

// A portal that was started again knows no token of before.
void tst_LauncherExample::aRefusedTokenIsTold()
{
    const quint16 port = m_portal.port();
    QCOMPARE(m_portal.stop(), 0);
    click("refreshButton");
    QTRY_VERIFY(m_window->text("failureNoticeText").startsWith("The portal can't be reached"));
    QVERIFY2(m_portal.start({"--port", QString::number(port)}), qPrintable(m_portal.output()));

    click("signInButton"); // signs out
    QTRY_VERIFY(!js("hostedPortal.signedIn").toBool());
    signIn("demo", "demo");
    QTRY_VERIFY(!isShown("failureNotice"));
    QTRY_COMPARE(m_window->text("summary"), QString("7 apps"));

    QCOMPARE(m_portal.stop(), 0);
    QVERIFY2(m_portal.start({"--port", QString::number(port)}), qPrintable(m_portal.output()));
    open("faulty");
    click("downloadButton");
    QTRY_COMPARE(m_window->text("downloadNoticeText"), QString("Invalid token."));
    key(Qt::Key_Escape);
    QTRY_COMPARE(page(), QString("grid"));
    click("signInButton");
    signIn("demo", "demo");
    QTRY_COMPARE(m_window->text("summary"), QString("7 apps"));
}

void tst_LauncherExample::aRefusedSearchIsToldAtOnce()
{
    const quint16 port = m_portal.port();
    QCOMPARE(m_portal.stop(), 0);
    QVERIFY2(m_portal.start({"--port", QString::number(port)}), qPrintable(m_portal.output()));
    click("refreshButton");
    QTRY_COMPARE(m_window->text("failureNoticeText"),
                 QString("The portal refuses to be searched. Sign in again. Invalid token."));
    QCOMPARE(m_window->text("failureNoticeButton"), QString("Sign in"));
    click("failureNoticeButton");
    QTRY_VERIFY(dialog());
    QVERIFY(!isShown("failureNotice"));
    signIn("demo", "demo");
    QTRY_COMPARE(m_window->text("summary"), QString("7 apps"));
    m_window->view()->requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(m_window->view()));
}

void tst_LauncherExample::twoFoldersOfOneItemAreTwoApps()
{
    const QString copy = m_portal.path("more/palette-copy");
    QVERIFY(write(copy + "/appinfo.json", "{}"));
    QVERIFY(write(copy + "/main.qml", "import QtQuick 2.15\nItem {}\n"));
    QVERIFY(write(copy + "/iteminfo.json", "{\"id\": \"palette\", \"title\": \"Palette Copy\"}"));
    js("appCatalogue.list.refresh()");
    QTRY_VERIFY(titles().contains("Palette, Palette Copy"));
    for (const char *title : {"Palette", "Palette Copy"}) {
        m_window->item("grid")->forceActiveFocus();
        m_window->item("grid")->setProperty("currentIndex", titles().split(", ").indexOf(title));
        key(Qt::Key_Return);
        QTRY_COMPARE(page(), QString("details"));
        QCOMPARE(m_window->text("detailsTitle"), QString(title));
        key(Qt::Key_Escape);
        QTRY_COMPARE(page(), QString("grid"));
    }
    QVERIFY(QDir(copy).removeRecursively());
    js("appCatalogue.list.refresh()");
    QTRY_VERIFY(!titles().contains("Palette Copy"));
}

void tst_LauncherExample::anAppThatCannotStartIsTold()
{
    open("faulty");
    click("downloadNoticeButton");
    QTRY_VERIFY(isShown("openButton"));
    click("openButton");
    QTRY_VERIFY(isShown("startFailure"));
    QVERIFY(m_window->text("startFailure").contains("module \"Nothing\" is not installed"));
    key(Qt::Key_Escape);
    QTRY_COMPARE(page(), QString("details"));
    key(Qt::Key_Escape);
    QTRY_COMPARE(page(), QString("grid"));
}

void tst_LauncherExample::aDocumentWithoutAnItemIsTold_data()
{
    QTest::addColumn<QByteArray>("qml");
    QTest::newRow("object") << QByteArray("import QtQml 2.15\nQtObject {}\n");
    QTest::newRow("window") << QByteArray("import QtQuick.Window 2.15\nWindow {}\n");
}

void tst_LauncherExample::aDocumentWithoutAnItemIsTold()
{
    QFETCH(QByteArray, qml);
    runDocument(qml);
    QVERIFY(isShown("startFailure"));
    QCOMPARE(m_window->text("startText"), QString("Some thing can't be started"));
    QCOMPARE(m_window->text("startFailure"), QString("The app's main document is no item."));
    key(Qt::Key_Escape);
    QTRY_VERIFY(page() != "run");
}

void tst_LauncherExample::anAppThatIsStillLoadingIsTold()
{
    stopPortal();
    runDocument("import QtQuick 2.15\nimport \"" + m_portal.url().toUtf8()
                + "/module\"\nItem {}\n");
    QTRY_COMPARE(m_window->text("startText"), QString("Some thing is being loaded"));
    QVERIFY(isShown("startText"));
    continuePortal();
    QTRY_COMPARE(m_window->text("startText"), QString("Some thing can't be started"));
    m_window->item("leaveButton")->forceActiveFocus(Qt::TabFocusReason);
    key(Qt::Key_Return);
    QTRY_VERIFY(page() != "run");
}

void tst_LauncherExample::comesBackToTheListIfTheAppIsGone()
{
    js("selectedKey = ''");
    runDocument("import QtQuick 2.15\nItem {}\n");
    QVERIFY(!isShown("startText"));
    key(Qt::Key_Escape);
    QTRY_COMPARE(page(), QString("grid"));
    QVERIFY(m_window->item("grid")->hasActiveFocus());
}

void tst_LauncherExample::theOtherExamplesHaveKeys()
{
    const QString items =
        QString::fromLocal8Bit(qgetenv("TESSALINE_SOURCE_DIR")) + "/examples/items/";
    const auto start = [this, items](const QString &id) {
        js(QString("page = 'run'; run.start({ title: '%1', source: 'file://%2' }, true)")
               .arg(id, items + id + "/data/main.qml"));
    };
    start("focus-timer");
    QTRY_VERIFY(m_window->item("startButton")->hasActiveFocus());
    key(Qt::Key_Space);
    QVERIFY(js("run.app.running").toBool());
    key(Qt::Key_Tab);
    QVERIFY(m_window->item("resetButton")->hasActiveFocus());
    key(Qt::Key_Return);
    QVERIFY(!js("run.app.running").toBool());

    start("palette");
    QTRY_VERIFY(m_window->item("hues")->hasActiveFocus());
    const QVariant hue = js("run.app.base.hslHue");
    key(Qt::Key_Right);
    QVERIFY(js("run.app.base.hslHue").toReal() != hue.toReal());
    key(Qt::Key_Tab);
    QVERIFY(m_window->item("swatch 0")->hasActiveFocus());
    key(Qt::Key_Return);
    QVERIFY(js("run.app.base.hslLightness > 0.8").toBool());
    js("showGrid(); run.stop()");
}

void tst_LauncherExample::aNarrowWindowKeepsEverythingInSight()
{
    m_window->resize(360, 640);
    for (const char *name : {"searchField", "signInButton", "refreshButton", "orderBox"}) {
        const QQuickItem *item = m_window->item(name);
        const QRectF place = item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
        QVERIFY2(QRectF(0, 0, 360, 640).contains(place), name);
    }
    QCOMPARE(m_window->item("grid")->property("columns").toInt(), 2);
    QVERIFY(ExampleWindow::colorCount(m_window->picture()) > 50);
}

void tst_LauncherExample::printsNoWarning()
{
    QCOMPARE(m_window->warningCount(), 0);
}

TESSALINE_INPUT_TEST_MAIN(tst_LauncherExample)
#include "tst_LauncherExample.moc"
