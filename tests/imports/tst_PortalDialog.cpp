#include "imports/PortalDialogDocument.h"
#include "support/DevelopmentPortal.h"
#include "support/HttpServer.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"
#include "support/SignalRecorder.h"

#include <QApplication>
#include <QDesktopServices>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QScreen>
#include <QSemaphore>
#include <QSignalSpy>
#include <QUrlQuery>

namespace {

const char fallbackPortal[] = "http//portal.zemrik.example";
const char firstRun[] = "SyntaxError: JSON.parse: Parse error";

QVariant call(QObject *object, const char *method)
{
    QVariant result;
    if (!QMetaObject::invokeMethod(object, method, Q_RETURN_ARG(QVariant, result)))
        qFatal("No method %s", method);
    return result;
}

// Answers as a portal does, keeps what it was asked, and may keep the client waiting.
class SlowPortal
{
public:
    SlowPortal()
    {
        on("/sharing/rest/info", [this] {
            return QJsonObject{
                {"authInfo", QJsonObject{{"tokenServicesUrl", m_server.url("/token").toString()}}},
                {"owningSystemUrl", url()}};
        });
        on("/token", [] {
            return QJsonObject{{"token", "abc"},
                               {"expires", QDateTime::currentMSecsSinceEpoch() + 3600000},
                               {"ssl", false}};
        });
        on("/sharing/rest/portals/self", [this] { return self; });
    }
    ~SlowPortal() { release(); }

    QString url() const { return m_server.url("").toString(QUrl::StripTrailingSlash); }
    HttpServer &server() { return m_server; }
    void hold() { m_holds = true; }
    void release()
    {
        m_holds = false;
        m_gate.release(1000);
    }

    QJsonObject self;
    int status = 200;

private:
    void on(const char *path, const std::function<QJsonObject()> &answer)
    {
        m_server.on(path, [this, answer](const HttpServer::Request &) {
            if (m_holds)
                m_gate.acquire();
            // A kept connection would keep the server from ending.
            return HttpServer::Answer{QJsonDocument(answer()).toJson(),
                                      status,
                                      "application/json",
                                      {{"Connection", "close"}}};
        });
    }

    std::atomic<bool> m_holds{false};
    QSemaphore m_gate;
    HttpServer m_server;
};

} // namespace

class tst_PortalDialog : public QObject
{
    Q_OBJECT

public slots:
    void openUrl(const QUrl &url) { m_openedUrls.append(url); }

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase() { m_stage.reset(); }

    void propertiesHaveTheirTypesAndOrder();
    void defaults();
    void everyTextCanBeReplaced();
    void isOfTheRightSizeInEveryRoot_data();
    void isOfTheRightSizeInEveryRoot();
    void staysOnTheScreen();
    void bannerShowsImageColorsAndPadlock();
    void promptIsShownWhenGiven();
    void fieldsAreForNamesAndPasswords();

    void acceptNeedsBothFields();
    void signInStoresAndCloses_data();
    void signInStoresAndCloses();
    void blanksAtTheEndsAreNotSent();
    void busyWhileSigningIn();
    void returnInAFieldTriesTheSignIn_data();
    void returnInAFieldTriesTheSignIn();
    void returnElsewhereDoesNothing();
    void escapeRejects();
    void cancelRejects();
    void noKeyClosesWhileBusy();
    void wrongPasswordShowsTheServicesWords();
    void theLastErrorKeepsTheMessageLine();
    void unreachableTokenService();
    void unreachablePortalKeepsItBusy();
    void signOutEndsBusy();
    void opensAgainAfterSignOut();
    void secondAttemptIsBusyUntilItsAnswer();
    void closingTheWindowRejects();
    void closingTheWindowWhileBusyDoesNothing();
    void closingTheWindowOfTheAppletIsItsOwn();
    void focusIsWhereTheUserGoesOn();
    void showBeginsOnTheFirstPage();
    void keysReachThePortals();

    void settingsAreRead();
    void settingsAreReadInTheirOrder();
    void functionsTellWhetherThereIsAStore();
    void selectPortalTakesTheRowInItsOrder();
    void selectPortalNeedsARow();
    void findCurrentComparesTheText();
    void storedLists_data();
    void storedLists();
    void firstRunKeepsTheFirstRow();
    void listIsWrittenWithItsFourKeys();
    void groupsKeepPortalsApart();
    void flagsAreRightInTheNextProcess_data();
    void flagsAreRightInTheNextProcess();

    void gearOpensTheListAndBackLeavesIt();
    void gearIsOffWhileBusy();
    void rowsShowTheirPortals();
    void aClickSelects();
    void aDoubleClickSelectsAndLeaves();
    void pressAndHoldOpensThePortal();
    void noRowMatches();
    void openingTheListChangesNothing();
    void highlightMoves();
    void addNeedsAUrl();
    void addStoresAndSelects_data();
    void addStoresAndSelects();
    void addRefusesAPortalWithoutScenes();
    void addRefusesWhatIsNoPortal_data();
    void addRefusesWhatIsNoPortal();
    void addTakesNamesAsLines_data();
    void addTakesNamesAsLines();
    void longRefusalStaysShort();
    void addShowsWhatFailed();
    void addIgnoresOtherStatus();
    void addOverHttpsNeedsTheCheckBox();
    void addNeedsNoInformation();
    void addIsBusyMeanwhile();
    void addWithoutAStore();
    void removeKeepsThePortalInUse();
    void touchWorksToo();

    void picture();

private:
    DialogStage &make(const QString &properties = QString(),
                      const QString &rootType = QStringLiteral("Window"), bool isVisible = false)
    {
        m_stage->close();
        m_settings = makeStore(m_store);
        if (!m_stage->load(document(properties, rootType, isVisible),
                           storeProperty(m_settings.get())))
            qFatal("The document doesn't load");
        return *m_stage;
    }
    // With the development portal, opened.
    DialogStage &makeOpen(const QString &properties = QString())
    {
        DialogStage &stage = make(properties);
        stage.object("portal")->setProperty("portalUrl", QUrl(m_portal.url()));
        if (!stage.open())
            qFatal("The dialog doesn't open");
        return stage;
    }
    DialogStage &makeList(const QString &properties = QString())
    {
        DialogStage &stage = makeOpen(properties);
        DialogStage::click(stage.imageButton("gear.png"));
        waitForPage();
        return stage;
    }
    void waitForPage() { m_stage->waitForPage(); }
    void fill(const QString &user, const QString &password)
    {
        m_stage->subject()->setProperty("username", user);
        m_stage->subject()->setProperty("password", password);
    }
    QQuickItem *list() const
    {
        return m_stage->find([](QQuickItem *item) { return item->inherits("QQuickListView"); });
    }
    QQuickItem *listRow(int index) const
    {
        QQuickItem *item = nullptr;
        QMetaObject::invokeMethod(list(), "positionViewAtIndex", Q_ARG(int, index), Q_ARG(int, 4));
        // itemAtIndex() is for scripts and natives alike since 5.13.
        QMetaObject::invokeMethod(list(), "itemAtIndex", Q_RETURN_ARG(QQuickItem *, item),
                                  Q_ARG(int, index));
        return item;
    }
    QVariantMap store() const
    {
        QVariantMap map;
        for (const QString &key : m_settings->allKeys())
            map.insert(key, m_settings->value(key));
        return map;
    }
    QVariantList storedPortals() const
    {
        return QJsonDocument::fromJson(store().value("Portal/portals").toString().toUtf8())
            .array()
            .toVariantList();
    }
    void writeStore(const QVariantMap &values) const
    {
        QFile file(m_store);
        if (!file.open(QIODevice::WriteOnly)
            || file.write(QJsonDocument::fromVariant(values).toJson()) < 0)
            qFatal("Can't write %s", qPrintable(m_store));
    }
    QString messageText() const
    {
        QQuickItem *item = m_stage->find([](QQuickItem *candidate) {
            return DialogStage::isA(candidate, "QQuickText")
                   && candidate->property("color").value<QColor>() == QColor("red");
        });
        return item ? item->property("text").toString() : QString();
    }
    QObject *portal() const { return m_stage->object("portal"); }
    DevelopmentPortal m_portal;
    QTemporaryDir m_folder;
    QString m_store; // empty: the dialog has no store
    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<Settings> m_settings;
    std::unique_ptr<DialogStage> m_stage;
    QStringList m_expected; // the warnings that a test causes
    QList<QUrl> m_openedUrls;
};

void tst_PortalDialog::initTestCase()
{
    QVERIFY2(m_portal.start(), qPrintable(m_portal.output()));
    m_stage = std::make_unique<DialogStage>();
}

void tst_PortalDialog::init()
{
    static int number = 0;
    m_store = m_folder.filePath(QString("store-%1.json").arg(++number));
    // A list, so that only the tests of the first run meet its script error.
    writeStore({{"Portal/portals", portalsText(QVariantList{row(publicPortal, "Zemrik Online")})}});
    m_expected.clear();
    m_openedUrls.clear();
    m_log.reset(new LogCapture);
}

// Every test fails on a warning that it doesn't announce.
void tst_PortalDialog::cleanup()
{
    m_stage->close();
    QStringList problems;
    for (const LogCapture::Message &message : m_log->messages()) {
        if (message.type == QtDebugMsg || message.type == QtInfoMsg)
            continue;
        const auto expected =
            std::find_if(m_expected.begin(), m_expected.end(),
                         [&](const QString &words) { return message.text.contains(words); });
        if (expected == m_expected.end())
            problems.append(message.text);
        else
            m_expected.erase(expected);
    }
    m_log.reset();
    QCOMPARE(problems.join("\n"), QString());
    QCOMPARE(m_expected.join("\n"), QString()); // what was announced has come
}

void tst_PortalDialog::propertiesHaveTheirTypesAndOrder()
{
    // Of a document's properties the aliases come last.
    const QStringList expected{"portal:Portal*",        "busy:bool",
                               "message:QString",       "settings:Settings*",
                               "settingsGroup:QString", "portalName:QString",
                               "prompt:QString",        "usernameLabel:QString",
                               "username:QString",      "passwordLabel:QString",
                               "password:QString",      "saveUserLabel:QString",
                               "saveUserChecked:bool",  "saveUserVisible:bool",
                               "acceptLabel:QString",   "rejectLabel:QString",
                               "bannerImage:QUrl",      "bannerColor:QColor",
                               "bannerTextColor:QColor"};
    const QMetaObject *meta = make().subject()->metaObject();
    QStringList found;
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
        const QMetaProperty property = meta->property(i);
        if (property.name()[0] == '_') // the document's own
            continue;
        QVERIFY2(property.isWritable(), property.name());
        // "Portal_QMLTYPE_3*"
        found.append(QString("%1:%2")
                         .arg(property.name(), property.typeName())
                         .remove(QRegularExpression("_QML(TYPE)?_\\d+")));
    }
    QCOMPARE(found, expected);
    QCOMPARE(DialogStage::inside(m_stage->subject(), "portalSignInDialog").value<QObject *>(),
             m_stage->subject());
}

void tst_PortalDialog::defaults()
{
    m_store.clear();
    DialogStage &stage = make();
    const QObject *dialog = stage.subject();
    QCOMPARE(dialog->property("portal").value<QObject *>(), stage.object("portal"));
    QCOMPARE(dialog->property("usernameLabel").toString(), QString("Username"));
    QCOMPARE(dialog->property("username").toString(), QString());
    QCOMPARE(dialog->property("passwordLabel").toString(), QString("Password"));
    QCOMPARE(dialog->property("password").toString(), QString());
    QCOMPARE(dialog->property("busy").toBool(), false);
    QCOMPARE(dialog->property("message").toString(), QString());
    QCOMPARE(dialog->property("saveUserLabel").toString(), QString("Remember me"));
    QCOMPARE(dialog->property("saveUserVisible").toBool(), false);
    QCOMPARE(dialog->property("acceptLabel").toString(), QString("Sign In"));
    QCOMPARE(dialog->property("rejectLabel").toString(), QString("Cancel"));
    QCOMPARE(dialog->property("bannerImage").toUrl(), QUrl());
    QCOMPARE(dialog->property("bannerColor").value<QColor>(), QColor("#0079C1"));
    QCOMPARE(dialog->property("bannerTextColor").value<QColor>(), QColor("white"));
    QVERIFY(!dialog->property("settings").value<QObject *>());
    QCOMPARE(dialog->property("settingsGroup").toString(), QString("Portal"));
    QCOMPARE(dialog->property("portalName").toString(), QString("Zemrik Online"));
    QCOMPARE(dialog->property("prompt").toString(), QString());
    QCOMPARE(dialog->property("title").toString(), QString("Sign in to Zemrik Online"));
    QCOMPARE(dialog->property("standardButtons").toInt(), 0);

    stage.object("portal")->setProperty("name", "Somewhere");
    QCOMPARE(dialog->property("portalName").toString(), QString("Somewhere"));
    QCOMPARE(dialog->property("title").toString(), QString("Sign in to Somewhere"));
    stage.subject()->setProperty("busy", true);
    QCOMPARE(dialog->property("title").toString(), QString("Signing in to Somewhere"));
    QCOMPARE(dialog->property("acceptLabel").toString(), QString("Signing In"));
    // An object without a portal has no portal's name.
    stage.subject()->setProperty("portal", QVariant::fromValue<QObject *>(nullptr));
    QCOMPARE(dialog->property("portalName").toString(), QString());
}

void tst_PortalDialog::everyTextCanBeReplaced()
{
    DialogStage &stage =
        makeOpen("usernameLabel: 'U'; username: 'u'; passwordLabel: 'P'; password: 'p';"
                 "message: 'M'; saveUserLabel: 'S'; saveUserChecked: false;"
                 "acceptLabel: 'A'; rejectLabel: 'R'; portalName: 'N'");
    QVERIFY(stage.text("U"));
    QVERIFY(stage.text("P"));
    QVERIFY(stage.text("M"));
    QVERIFY(stage.checkBox("S"));
    QVERIFY(stage.button("A"));
    QVERIFY(stage.button("R"));
    QVERIFY(stage.text("Sign in to N"));
    QCOMPARE(stage.fields().at(1)->property("text").toString(), QString("p"));
    QCOMPARE(stage.subject()->property("password").toString(), QString("p"));
    // A store has the last word on these two.
    QCOMPARE(stage.subject()->property("username").toString(), QString());
    QCOMPARE(stage.subject()->property("saveUserChecked").toBool(), true);
    stage.subject()->setProperty("saveUserVisible", false);
    QVERIFY(!stage.checkBox("S"));
}

void tst_PortalDialog::isOfTheRightSizeInEveryRoot_data()
{
    QTest::addColumn<QString>("rootType");
    QTest::newRow("Window") << "Window";
    QTest::newRow("ApplicationWindow") << "ApplicationWindow";
    QTest::newRow("Item in a view") << "Item";
    QTest::newRow("Item in no window") << "Item";
}

void tst_PortalDialog::isOfTheRightSizeInEveryRoot()
{
    QFETCH(QString, rootType);
    DialogStage &stage = make(QString(), rootType, true);
    QQuickWindow view;
    if (QTest::currentDataTag() == QByteArray("Item in a view")) {
        qobject_cast<QQuickItem *>(stage.root())->setParentItem(view.contentItem());
        view.resize(640, 560);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
    }
    const qreal scale = stage.object("framework")->property("displayScaleFactor").toReal();
    const QSize available = QGuiApplication::primaryScreen()->availableVirtualSize();
    const QSize expected(qRound(qMin(400 * scale, available.width() * 0.95)),
                         qRound(qMin(400 * scale, available.height() * 0.95)));
    QCOMPARE(QSize(qRound(stage.subject()->property("width").toReal()),
                   qRound(stage.subject()->property("height").toReal())),
             expected);
    QVERIFY(stage.open());
    QTRY_COMPARE(stage.dialogWindow()->size(), expected);
    QCOMPARE(stage.dialogWindow()->title(), QString("Sign in to Zemrik Online"));
    // The page fills the window to its edges.
    const QImage picture = stage.dialogWindow()->grabWindow();
    QTRY_COMPARE(stage.dialogWindow()->grabWindow().pixelColor(1, 1), QColor("#0079C1"));
    QCOMPARE(
        stage.dialogWindow()->grabWindow().pixelColor(picture.width() - 2, picture.height() - 2),
        QColor("white"));
    stage.root()->setProperty("visible", false);
}

void tst_PortalDialog::staysOnTheScreen()
{
    DialogStage &stage = make();
    const QSize available = QGuiApplication::primaryScreen()->availableVirtualSize();
    stage.object("framework")->setProperty("displayScaleFactor", 10);
    QCOMPARE(stage.subject()->property("width").toInt(), int(available.width() * 0.95));
    QCOMPARE(stage.subject()->property("height").toInt(), int(available.height() * 0.95));
    stage.object("framework")->setProperty("displayScaleFactor", 0.5);
    QCOMPARE(stage.subject()->property("width").toInt(), 200);
    stage.object("framework")->setProperty("displayScaleFactor", 0);
}

void tst_PortalDialog::bannerShowsImageColorsAndPadlock()
{
    DialogStage &stage = makeOpen("bannerColor: '#204020'; bannerTextColor: '#ffff80'");
    const auto pictures = [&](const QString &name) {
        return stage.findAll([&](QQuickItem *item) {
            return DialogStage::isA(item, "QQuickImage")
                   && item->property("source").toUrl().fileName() == name;
        });
    };
    QTRY_COMPARE(stage.dialogWindow()->grabWindow().pixelColor(2, 2), QColor("#204020"));
    QQuickItem *title = stage.text("Sign in to Zemrik Online");
    QVERIFY(title);
    QCOMPARE(title->property("color").value<QColor>(), QColor("#ffff80"));
    QCOMPARE(title->property("font").value<QFont>().pointSize(), 22);
    QVERIFY(title->property("font").value<QFont>().bold());

    QVERIFY(pictures("security_unlock.png").isEmpty());
    portal()->setProperty("ignoreSslErrors", true);
    QCOMPARE(pictures("security_unlock.png").size(), 1);
    // Above the gear, in one column.
    const QPoint padlock = DialogStage::center(pictures("security_unlock.png").first());
    const QPoint gear = DialogStage::center(stage.imageButton("gear.png"));
    QTRY_VERIFY(DialogStage::center(pictures("security_unlock.png").first()).y()
                < DialogStage::center(stage.imageButton("gear.png")).y());
    QVERIFY(qAbs(padlock.x() - gear.x()) <= 2);

    QVERIFY(pictures("back.png").isEmpty());
    stage.subject()->setProperty("bannerImage",
                                 QUrl("qrc:/imports/Zemrik/Tessaline/Portal/images/back.png"));
    QCOMPARE(pictures("back.png").size(), 1);
    QVERIFY(pictures("back.png").first()->width() > 20);

    // The icons are drawn in the text's colour.
    QTRY_VERIFY([&] {
        const QImage picture = stage.dialogWindow()->grabWindow();
        const QRectF area = stage.imageButton("gear.png")
                                ->mapRectToScene(stage.imageButton("gear.png")->boundingRect());
        int tinted = 0;
        for (int y = int(area.top()); y < area.bottom(); ++y) {
            for (int x = int(area.left()); x < area.right(); ++x) {
                const QColor color = picture.pixelColor(x, y);
                if (qAbs(color.red() - 255) < 40 && qAbs(color.green() - 255) < 40
                    && qAbs(color.blue() - 128) < 60)
                    ++tinted;
            }
        }
        return tinted > 20;
    }());
}

void tst_PortalDialog::promptIsShownWhenGiven()
{
    DialogStage &stage = make();
    callWith(stage.subject(), "show", "Sign in to <b>download</b>");
    QVERIFY(stage.isOpen());
    QVERIFY(QTest::qWaitForWindowExposed(stage.dialogWindow()));
    QQuickItem *prompt = stage.text("Sign in to <b>download</b>");
    QVERIFY(prompt);
    QVERIFY(prompt->property("font").value<QFont>().bold());
    QVERIFY(prompt->mapToScene({0, 0}).y() < stage.text("Username")->mapToScene({0, 0}).y());
    for (const QVariant &none : {QVariant(""), QVariant(), QVariant::fromValue(nullptr)}) {
        callWith(stage.subject(), "show", none);
        QCOMPARE(stage.subject()->property("prompt").toString(), QString());
        QVERIFY(!prompt->isVisible());
    }
}

void tst_PortalDialog::fieldsAreForNamesAndPasswords()
{
    DialogStage &stage = makeOpen();
    const QList<QQuickItem *> fields = stage.fields();
    QCOMPARE(fields.size(), 2);
    const int hints = Qt::ImhNoAutoUppercase | Qt::ImhNoPredictiveText | Qt::ImhSensitiveData;
    QCOMPARE(fields.at(0)->property("inputMethodHints").toInt(), hints);
    QCOMPARE(fields.at(0)->property("echoMode").toInt(), 0);
    QCOMPARE(fields.at(1)->property("echoMode").toInt(), 2);
    stage.type(fields.at(0), "jo");
    stage.type(fields.at(1), "pass word");
    QCOMPARE(stage.subject()->property("username").toString(), QString("jo"));
    QCOMPARE(stage.subject()->property("password").toString(), QString("pass word"));
    // From one to the next by the keyboard.
    DialogStage::click(fields.at(0));
    stage.key(Qt::Key_Tab);
    stage.type(fields.at(1), "!");
    QCOMPARE(stage.subject()->property("password").toString().size(), 10);
}

void tst_PortalDialog::acceptNeedsBothFields()
{
    struct Row
    {
        const char *user;
        const char *password;
        bool enabled;
    };
    DialogStage &stage = makeOpen();
    for (const Row &row :
         {Row{"u", "p", true}, Row{"", "", false}, Row{"u", "", false}, Row{"", "p", false},
          Row{"   ", "p", false}, Row{"u", " \t ", false}, Row{" u ", " p ", true}}) {
        fill(row.user, row.password);
        QVERIFY2(stage.button("Sign In")->property("enabled").toBool() == row.enabled, row.user);
    }
    stage.subject()->setProperty("busy", true);
    QCOMPARE(stage.button("Signing In")->property("enabled").toBool(), false);
}

void tst_PortalDialog::signInStoresAndCloses_data()
{
    QTest::addColumn<bool>("remember");
    QTest::newRow("remember me") << true;
    QTest::newRow("don't") << false;
}

void tst_PortalDialog::signInStoresAndCloses()
{
    QFETCH(bool, remember);
    DialogStage &stage = makeOpen();
    m_settings->setValue("Portal/username", "somebody");
    QVariantMap expected = store();
    QSignalSpy accepted(stage.subject(), SIGNAL(accepted()));
    QSignalSpy rejected(stage.subject(), SIGNAL(rejected()));

    stage.type(stage.fields().at(0), "demo");
    stage.type(stage.fields().at(1), "demo");
    if (!remember)
        DialogStage::click(stage.checkBox("Remember me"));
    QCOMPARE(stage.subject()->property("saveUserChecked").toBool(), remember);
    DialogStage::click(stage.button("Sign In"));

    QTRY_VERIFY(!stage.isOpen());
    QVERIFY(portal()->property("signedIn").toBool());
    QCOMPARE(stage.subject()->property("busy").toBool(), false);
    if (remember)
        expected.insert("Portal/username", "demo");
    else
        expected.remove("Portal/username");
    expected.insert("Portal/saveUsername", remember);
    QCOMPARE(store(), expected);
    QCOMPARE(store().value("Portal/saveUsername").type(), QVariant::Bool);
    QCOMPARE(accepted.count(), 0);
    QCOMPARE(rejected.count(), 0);
    // The user's details arrive after the dialog has gone.
    QTRY_VERIFY(portal()->property("user").value<QJSValue>().toVariant().isValid()
                || !portal()->property("user").toMap().isEmpty());
}

void tst_PortalDialog::blanksAtTheEndsAreNotSent()
{
    SlowPortal server;
    DialogStage &stage = makeOpen();
    portal()->setProperty("portalUrl", QUrl(server.url()));
    fill("  jo ann ", " pass word  ");
    DialogStage::click(stage.button("Sign In"));
    QTRY_VERIFY(!stage.isOpen());
    const auto requests = server.server().requests();
    const auto token =
        std::find_if(requests.begin(), requests.end(),
                     [](const HttpServer::Request &request) { return request.path == "/token"; });
    QVERIFY(token != requests.end());
    const auto field = [&](const char *name) {
        return token->parts.contains(name) ? QString(token->parts.value(name).content)
                                           : QUrlQuery(QString(token->body).replace('+', ' '))
                                                 .queryItemValue(name, QUrl::FullyDecoded);
    };
    QCOMPARE(field("username"), QString("jo ann"));
    QCOMPARE(field("password"), QString("pass word"));
    QCOMPARE(store().value("Portal/username").toString(), QString("jo ann"));
    QVERIFY(!QJsonDocument::fromVariant(store()).toJson().contains("pass word"));
}

void tst_PortalDialog::busyWhileSigningIn()
{
    SlowPortal server;
    DialogStage &stage = makeOpen();
    portal()->setProperty("portalUrl", QUrl(server.url()));
    fill("jo", "pw");
    const auto indicator = [&] {
        return stage.find([](QQuickItem *item) { return DialogStage::isA(item, "BusyIndicator"); });
    };
    QVERIFY(!indicator());
    server.hold();
    DialogStage::click(stage.button("Sign In"));

    QVERIFY(stage.subject()->property("busy").toBool());
    QCOMPARE(stage.dialogWindow()->title(), QString("Signing in to Zemrik Online"));
    QVERIFY(stage.text("Signing in to Zemrik Online"));
    QVERIFY(!stage.button("Signing In")->property("enabled").toBool());
    QVERIFY(!stage.button("Cancel")->property("enabled").toBool());
    QVERIFY(!stage.imageButton("gear.png")->property("enabled").toBool());
    QVERIFY(indicator());
    QVERIFY(indicator()->property("running").toBool());
    const QPoint middle = DialogStage::center(indicator());
    QVERIFY(qAbs(middle.x() - stage.dialogWindow()->width() / 2) <= 2);
    QVERIFY(qAbs(middle.y() - stage.dialogWindow()->height() / 2) <= 2);
    server.release();
    QTRY_VERIFY(!stage.isOpen());
    QVERIFY(!stage.subject()->property("busy").toBool());
}

void tst_PortalDialog::returnInAFieldTriesTheSignIn_data()
{
    QTest::addColumn<int>("field");
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("complete");
    QTest::newRow("username") << 0 << int(Qt::Key_Return) << true;
    QTest::newRow("password") << 1 << int(Qt::Key_Return) << true;
    QTest::newRow("password, the other key") << 1 << int(Qt::Key_Enter) << true;
    QTest::newRow("username, incomplete") << 0 << int(Qt::Key_Return) << false;
    QTest::newRow("password, incomplete") << 1 << int(Qt::Key_Enter) << false;
}

void tst_PortalDialog::returnInAFieldTriesTheSignIn()
{
    QFETCH(int, field);
    QFETCH(int, key);
    QFETCH(bool, complete);
    DialogStage &stage = makeOpen();
    QSignalSpy accepted(stage.subject(), SIGNAL(accepted()));
    QSignalSpy rejected(stage.subject(), SIGNAL(rejected()));
    fill(complete ? "demo" : "", "wrong");
    DialogStage::click(stage.fields().at(field));
    stage.key(key);
    QCOMPARE(stage.subject()->property("busy").toBool(), complete);
    QVERIFY(stage.isOpen());
    QTRY_VERIFY(!stage.subject()->property("busy").toBool());
    QCOMPARE(!messageText().isEmpty(), complete);
    QVERIFY(stage.isOpen());
    QCOMPARE(accepted.count() + rejected.count(), 0);
}

void tst_PortalDialog::returnElsewhereDoesNothing()
{
    DialogStage &stage = makeOpen();
    fill("demo", "demo");
    QSignalSpy accepted(stage.subject(), SIGNAL(accepted()));
    for (QQuickItem *item : {stage.checkBox("Remember me"), stage.content()}) {
        item->forceActiveFocus();
        stage.key(Qt::Key_Return);
        stage.key(Qt::Key_Enter);
    }
    QVERIFY(stage.isOpen());
    QVERIFY(!stage.subject()->property("busy").toBool());
    QCOMPARE(accepted.count(), 0);
}

void tst_PortalDialog::escapeRejects()
{
    DialogStage &stage = makeOpen();
    QSignalSpy rejected(stage.subject(), SIGNAL(rejected()));
    DialogStage::click(stage.fields().at(0));
    stage.key(Qt::Key_Escape);
    QTRY_VERIFY(!stage.isOpen());
    QCOMPARE(rejected.count(), 1);
}

void tst_PortalDialog::cancelRejects()
{
    DialogStage &stage = makeOpen();
    QSignalSpy accepted(stage.subject(), SIGNAL(accepted()));
    QSignalSpy rejected(stage.subject(), SIGNAL(rejected()));
    DialogStage::click(stage.button("Cancel"));
    QVERIFY(!stage.isOpen());
    QCOMPARE(rejected.count(), 1);
    QCOMPARE(accepted.count(), 0);
}

void tst_PortalDialog::noKeyClosesWhileBusy()
{
    SlowPortal server;
    DialogStage &stage = makeOpen();
    portal()->setProperty("portalUrl", QUrl(server.url()));
    fill("jo", "pw");
    server.hold();
    DialogStage::click(stage.fields().at(1));
    stage.key(Qt::Key_Return);
    QVERIFY(stage.subject()->property("busy").toBool());
    QSignalSpy rejected(stage.subject(), SIGNAL(rejected()));
    for (int key : {Qt::Key_Escape, Qt::Key_Back, Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
        stage.key(key);
        stage.content()->forceActiveFocus();
        stage.key(key);
    }
    DialogStage::click(stage.button("Cancel"));
    QVERIFY(stage.isOpen());
    QCOMPARE(rejected.count(), 0);
    server.release();
    QTRY_VERIFY(!stage.isOpen());
}

void tst_PortalDialog::wrongPasswordShowsTheServicesWords()
{
    DialogStage &stage = makeOpen();
    QVERIFY(messageText().isEmpty());
    const QVariantMap before = store();
    fill("demo", "wrong");
    DialogStage::click(stage.button("Sign In"));
    QTRY_COMPARE(messageText(),
                 QString("Unable to generate token.\r\nInvalid username or password."));
    QVERIFY(stage.isOpen());
    QVERIFY(!stage.subject()->property("busy").toBool());
    QCOMPARE(stage.subject()->property("username").toString(), QString("demo"));
    QVERIFY(stage.button("Sign In")->property("enabled").toBool());
    QCOMPARE(store(), before); // nothing is stored for a failed attempt
}

void tst_PortalDialog::theLastErrorKeepsTheMessageLine()
{
    DialogStage &stage = makeOpen();
    stage.subject()->setProperty("message", "from the applet");
    QCOMPARE(messageText(), QString("from the applet"));
    fill("demo", "wrong");
    DialogStage::click(stage.button("Sign In"));
    QCOMPARE(messageText(), QString()); // cleared by the attempt
    QTRY_VERIFY(messageText().startsWith("Unable"));

    // From now on the line follows errors only.
    stage.subject()->setProperty("message", "not to be seen");
    QVERIFY(messageText().startsWith("Unable"));
    DialogStage::click(stage.button("Sign In"));
    QCOMPARE(stage.subject()->property("message").toString(), QString());
    QVERIFY(messageText().startsWith("Unable"));
    QTRY_VERIFY(!stage.subject()->property("busy").toBool());
    portal()->setProperty("tokenServicesUrl", QUrl("http://127.0.0.1:1/token"));
    DialogStage::click(stage.button("Sign In"));
    QTRY_VERIFY(!messageText().startsWith("Unable"));
    QVERIFY(!messageText().isEmpty());
}

void tst_PortalDialog::unreachableTokenService()
{
    DialogStage &stage = makeOpen();
    portal()->setProperty("tokenServicesUrl", QUrl("http://127.0.0.1:1/token"));
    fill("demo", "demo");
    DialogStage::click(stage.button("Sign In"));
    QTRY_VERIFY(!stage.subject()->property("busy").toBool());
    QVERIFY(messageText().endsWith("\r\n"));
    QVERIFY(messageText().size() > 4);
    QVERIFY(stage.isOpen());
}

void tst_PortalDialog::unreachablePortalKeepsItBusy()
{
    DialogStage &stage = makeOpen();
    portal()->setProperty("portalUrl", QUrl("http://127.0.0.1:1"));
    fill("demo", "demo");
    m_log->clear();
    DialogStage::click(stage.button("Sign In"));
    QTRY_VERIFY(m_log->count(QtDebugMsg, "qml", "infoRequest error") > 0);
    // The portal answers nothing, so only the log says so; the script stops at the missing answer.
    QVERIFY(stage.subject()->property("busy").toBool());
    QVERIFY(!stage.button("Cancel")->property("enabled").toBool());
    stage.key(Qt::Key_Escape);
    QVERIFY(stage.isOpen());
    QCOMPARE(messageText(), QString());
    m_expected << "TypeError";
    QTRY_VERIFY(m_log->count(QtWarningMsg) > 0);
    stage.subject()->setProperty("busy", false); // what an applet may do about it
    DialogStage::click(stage.button("Cancel"));
    QVERIFY(!stage.isOpen());
}

void tst_PortalDialog::signOutEndsBusy()
{
    DialogStage &stage = makeOpen();
    portal()->setProperty("token", "some");
    QTRY_VERIFY(!stage.isOpen());
    QVERIFY(stage.open());
    const QVariantMap before = store();
    stage.subject()->setProperty("busy", true);
    portal()->setProperty("token", "");
    QVERIFY(!stage.subject()->property("busy").toBool());
    QVERIFY(stage.isOpen());
    QCOMPARE(store(), before);
}

void tst_PortalDialog::opensAgainAfterSignOut()
{
    DialogStage &stage = makeOpen();
    fill("demo", "demo");
    DialogStage::click(stage.button("Sign In"));
    QTRY_VERIFY(!stage.isOpen());
    QMetaObject::invokeMethod(portal(), "signOut");
    callWith(stage.subject(), "show", "Again");
    QVERIFY(QTest::qWaitForWindowExposed(stage.dialogWindow()));
    QVERIFY(stage.text("Again"));
    QVERIFY(stage.button("Sign In")->property("enabled").toBool());
    DialogStage::click(stage.button("Sign In"));
    QTRY_VERIFY(!stage.isOpen());
    QVERIFY(portal()->property("signedIn").toBool());
}

void tst_PortalDialog::secondAttemptIsBusyUntilItsAnswer()
{
    SlowPortal server;
    DialogStage &stage = makeOpen();
    QSignalSpy error(portal(), SIGNAL(error(QVariant)));
    portal()->setProperty("tokenServicesUrl", QUrl("http://127.0.0.1:1/token"));
    fill("jo", "pw");
    DialogStage::click(stage.button("Sign In"));
    QTRY_COMPARE(error.count(), 1);
    const QString message = messageText();
    QVERIFY(message.size() > 2);

    server.hold();
    portal()->setProperty("tokenServicesUrl", server.server().url("/token"));
    DialogStage::click(stage.button("Sign In"));
    QTRY_COMPARE(server.server().requestCount(), 1);
    QVERIFY(stage.subject()->property("busy").toBool());
    QCOMPARE(messageText(), message);
    QCOMPARE(error.count(), 1);
    server.release();
    QTRY_VERIFY(!stage.isOpen());
    QCOMPARE(error.count(), 1);
}

// As a window manager does it.
void tst_PortalDialog::closingTheWindowRejects()
{
    DialogStage &stage = makeOpen();
    QSignalSpy accepted(stage.subject(), SIGNAL(accepted()));
    QSignalSpy rejected(stage.subject(), SIGNAL(rejected()));
    stage.dialogWindow()->close();
    QTRY_VERIFY(!stage.isOpen());
    QCOMPARE(rejected.count(), 1);
    QCOMPARE(accepted.count(), 0);
    QVERIFY(stage.open());
    fill("demo", "demo");
    DialogStage::click(stage.button("Sign In"));
    QTRY_VERIFY(!stage.isOpen());
    QCOMPARE(rejected.count(), 1); // signed in
}

void tst_PortalDialog::closingTheWindowWhileBusyDoesNothing()
{
    SlowPortal server;
    DialogStage &stage = makeOpen();
    portal()->setProperty("portalUrl", QUrl(server.url()));
    fill("jo", "pw");
    server.hold();
    DialogStage::click(stage.button("Sign In"));
    QSignalSpy rejected(stage.subject(), SIGNAL(rejected()));
    stage.dialogWindow()->close();
    QTest::qWait(50);
    QVERIFY(stage.isOpen());
    QVERIFY(stage.dialogWindow()->isVisible());
    QCOMPARE(rejected.count(), 0);
    server.release();
    QTRY_VERIFY(!stage.isOpen());
    QVERIFY(portal()->property("signedIn").toBool());
}

// Where the system has one window only, the dialog lies in the applet's.
void tst_PortalDialog::closingTheWindowOfTheAppletIsItsOwn()
{
    DialogStage &stage = makeOpen();
    QSignalSpy rejected(stage.subject(), SIGNAL(rejected()));
    QQuickWindow applet;
    QQuickItem *const ground = stage.content()->parentItem();
    QQuickItem frame(applet.contentItem());
    stage.content()->setParentItem(&frame);
    stage.subject()->setProperty("busy", true);
    applet.show();
    QVERIFY(QTest::qWaitForWindowExposed(&applet));
    QVERIFY(applet.close());
    QCOMPARE(rejected.count(), 0);
    stage.content()->setParentItem(ground);
    stage.subject()->setProperty("busy", false);
}

void tst_PortalDialog::focusIsWhereTheUserGoesOn()
{
    DialogStage &stage = make();
    portal()->setProperty("portalUrl", QUrl(m_portal.url()));
    QVERIFY(stage.open());
    QVERIFY(stage.fields().at(0)->hasActiveFocus());
    DialogStage::click(stage.button("Cancel"));
    stage.subject()->setProperty("username", "demo");
    QVERIFY(stage.open());
    QVERIFY(stage.fields().at(1)->hasActiveFocus());
}

void tst_PortalDialog::showBeginsOnTheFirstPage()
{
    DialogStage &stage = makeList();
    stage.key(Qt::Key_Escape);
    QTRY_VERIFY(!stage.isOpen());
    callWith(stage.subject(), "show", "Again");
    QVERIFY(QTest::qWaitForWindowExposed(stage.dialogWindow()));
    QVERIFY(stage.button("Sign In"));
    QVERIFY(!stage.text("Portals"));
    QVERIFY(stage.fields().at(0)->hasActiveFocus());
    DialogStage::click(stage.imageButton("gear.png"));
    waitForPage();
    QVERIFY(stage.text("Portals"));
}

void tst_PortalDialog::keysReachThePortals()
{
    writeStore({{"Portal/portals",
                 portalsText(QVariantList{row(publicPortal, "Zemrik Online"),
                                          row("http://one", "One"), row("http://two", "Two")})}});
    DialogStage &stage = makeOpen();
    const auto tabTo = [&](QQuickItem *item) {
        for (int i = 0; i < 12 && !item->hasActiveFocus(); ++i)
            stage.key(Qt::Key_Tab);
        return item->hasActiveFocus();
    };
    QVERIFY(tabTo(stage.imageButton("gear.png")));
    stage.key(Qt::Key_Space);
    waitForPage();
    QTRY_VERIFY(list()->hasActiveFocus());
    callWith(stage.subject(), "selectPortal", 0);
    stage.key(Qt::Key_Down);
    QCOMPARE(portal()->property("name").toString(), QString("One"));
    QVERIFY(tabTo(stage.imageButton("trash_bin.png")));
    stage.key(Qt::Key_Return);
    QTRY_COMPARE(list()->property("count").toInt(), 2);
    QVERIFY(tabTo(stage.imageButton("back.png")));
    stage.key(Qt::Key_Enter);
    waitForPage();
    QVERIFY(stage.button("Sign In"));
    // Without a portal in use the first arrow selects the first row.
    QVERIFY(tabTo(stage.imageButton("gear.png")));
    stage.key(Qt::Key_Return);
    waitForPage();
    QTRY_VERIFY(list()->hasActiveFocus());
    stage.key(Qt::Key_Down);
    QCOMPARE(portal()->property("name").toString(), QString("Zemrik Online"));
    stage.key(Qt::Key_Return);
    waitForPage();
    QVERIFY(stage.button("Sign In"));
    QVERIFY(stage.isOpen());
}

void tst_PortalDialog::settingsAreRead()
{
    writeStore({{"Portal/saveUsername", false},
                {"Portal/username", "jo"},
                {"Portal/url", "http://127.0.0.1:9"},
                {"Portal/name", "Nine"},
                {"Portal/ignoreSslErrors", true},
                {"Portal/isPortal", true},
                {"Portal/portals", "[]"}});
    DialogStage &stage = make();
    QCOMPARE(stage.subject()->property("saveUserChecked").toBool(), false);
    QCOMPARE(stage.subject()->property("username").toString(), QString("jo"));
    QCOMPARE(portal()->property("portalUrl").toUrl(), QUrl("http://127.0.0.1:9"));
    QCOMPARE(portal()->property("name").toString(), QString("Nine"));
    QCOMPARE(portal()->property("ignoreSslErrors").toBool(), true);
    QCOMPARE(portal()->property("isPortal").toBool(), true);

    m_settings->clear();
    QCOMPARE(call(stage.subject(), "readSettings"), QVariant(true));
    QCOMPARE(stage.subject()->property("saveUserChecked").toBool(), true);
    QCOMPARE(stage.subject()->property("username").toString(), QString());
    QCOMPARE(portal()->property("portalUrl").toUrl(), QUrl(publicPortal));
    QCOMPARE(portal()->property("name").toString(), QString("Zemrik Online"));
    QCOMPARE(portal()->property("ignoreSslErrors").toBool(), false);
    QCOMPARE(portal()->property("isPortal").toBool(), false);
}

// The changes of what the dialog sets in a portal.
static QStringList changes(QObject *portal, const std::function<void()> &change)
{
    QStringList steps;
    SignalRecorder recorder(portal);
    change();
    for (const QString &name : recorder.names()) {
        if (QStringList(
                {"portalUrlChanged", "nameChanged", "ignoreSslErrorsChanged", "isPortalChanged"})
                .contains(name))
            steps.append(name);
    }
    return steps;
}

void tst_PortalDialog::settingsAreReadInTheirOrder()
{
    DialogStage &stage = make();
    m_settings->setValue("Portal/saveUsername", false);
    m_settings->setValue("Portal/username", "jo");
    m_settings->setValue("Portal/url", "http://one");
    m_settings->setValue("Portal/name", "One");
    m_settings->setValue("Portal/ignoreSslErrors", true);
    m_settings->setValue("Portal/isPortal", true);
    QStringList fields;
    const QStringList steps = changes(portal(), [&] {
        SignalRecorder recorder(stage.subject());
        call(stage.subject(), "readSettings");
        fields = recorder.names();
    });
    QCOMPARE(steps, QStringList({"portalUrlChanged", "nameChanged", "ignoreSslErrorsChanged",
                                 "isPortalChanged"}));
    QVERIFY(fields.contains("saveUserCheckedChanged"));
    QVERIFY(fields.indexOf("saveUserCheckedChanged") < fields.indexOf("usernameChanged"));
}

void tst_PortalDialog::functionsTellWhetherThereIsAStore()
{
    const char *const functions[] = {"readSettings", "writeUserSettings", "clearUserSettings",
                                     "writePortalSettings"};
    for (const char *function : functions)
        QCOMPARE(call(make().subject(), function), QVariant(true));
    QCOMPARE(store().size(), 5);
    portal()->setProperty("username", "jo");
    portal()->setProperty("ignoreSslErrors", true);
    call(m_stage->subject(), "writeUserSettings");
    call(m_stage->subject(), "writePortalSettings");
    QVariantMap expected{{"Portal/portals", store().value("Portal/portals")},
                         {"Portal/username", "jo"},
                         {"Portal/url", publicPortal},
                         {"Portal/name", "Zemrik Online"},
                         {"Portal/ignoreSslErrors", true},
                         {"Portal/isPortal", false}};
    QCOMPARE(store(), expected);
    call(m_stage->subject(), "clearUserSettings");
    expected.remove("Portal/username");
    QCOMPARE(store(), expected);

    m_store.clear();
    for (const char *function : functions)
        QCOMPARE(call(make().subject(), function), QVariant(false));
    QVERIFY(!call(m_stage->subject(), "readPortals").isValid());
    QVERIFY(!call(m_stage->subject(), "writePortals").isValid());
    QCOMPARE(m_stage->subject()->property("saveUserVisible").toBool(), false);
}

void tst_PortalDialog::selectPortalTakesTheRowInItsOrder()
{
    writeStore(
        {{"Portal/portals", portalsText(QVariantList{row(publicPortal, "Zemrik Online"),
                                                     row("http://one", "One", true, true)})}});
    DialogStage &stage = make();
    const QStringList steps =
        changes(portal(), [&] { callWith(stage.subject(), "selectPortal", 1); });
    QCOMPARE(steps, QStringList({"portalUrlChanged", "nameChanged", "ignoreSslErrorsChanged",
                                 "isPortalChanged"}));
    QCOMPARE(store().value("Portal/url").toString(), QString("http://one"));
    QCOMPARE(store().value("Portal/url").type(), QVariant::String);
    QCOMPARE(store().value("Portal/name").toString(), QString("One"));
    // Another row at the same address signs nobody out.
    portal()->setProperty("token", "signed in");
    callWith(stage.subject(), "selectPortal", 1);
    QVERIFY(portal()->property("signedIn").toBool());
}

void tst_PortalDialog::selectPortalNeedsARow()
{
    DialogStage &stage = make();
    m_expected << "TypeError";
    const QVariantMap before = store();
    callWith(stage.subject(), "selectPortal", 7);
    QCOMPARE(portal()->property("portalUrl").toUrl(), QUrl(publicPortal));
    QCOMPARE(store(), before);
}

void tst_PortalDialog::findCurrentComparesTheText()
{
    writeStore({{"Portal/portals",
                 portalsText(QVariantList{row("http://one/", "Slash"), row("http://one", "One"),
                                          row("http://one", "One again")})}});
    DialogStage &stage = make();
    portal()->setProperty("portalUrl", QUrl("http://one"));
    QCOMPARE(call(stage.subject(), "findCurrent").toInt(), 1); // the first of two
    portal()->setProperty("portalUrl", QUrl("http://two"));
    QVERIFY(!call(stage.subject(), "findCurrent").isValid());
}

void tst_PortalDialog::storedLists_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVariantList>("rows");
    const QString two = QJsonDocument::fromVariant(
                            QVariantList{row("http://a", "A"), row("https://b", "B", true, true)})
                            .toJson();
    QTest::newRow("two portals") << two
                                 << QVariantList{row("http://a", "A"),
                                                 row("https://b", "B", true, true)};
    QTest::newRow("an empty list") << "[]" << QVariantList{};
    const QVariantList fallback{row(fallbackPortal, "Zemrik Online")};
    QTest::newRow("no list: an object") << "{}" << fallback;
    QTest::newRow("no list: a number") << "5" << fallback;
    QTest::newRow("no list: null") << "null" << fallback;
    QTest::newRow("rows of other types")
        << R"([5, null, "http://a", {"name": "B"}, {"url": 5, "name": "C"},
               {"url": "http://d", "name": 5, "ignoreSslErrors": "false", "isPortal": 1},
               {"url": "http://e", "name": {"a": 1}}, {"url": "http://f", "name": ["F"]},
               {"url": "http://g", "name": "G", "other": 1}])"
        << QVariantList{row("http://d", "http://d"), row("http://e", "http://e"),
                        row("http://f", "http://f"), row("http://g", "G")};
    QTest::newRow("a name of many lines")
        << R"([{"url": "http://a", "name": " A\n\n\u2028 b\tc "}])"
        << QVariantList{row("http://a", "A b c")};
}

void tst_PortalDialog::storedLists()
{
    QFETCH(QString, text);
    QFETCH(QVariantList, rows);
    writeStore({{"Portal/portals", text}});
    DialogStage &stage = make();
    call(stage.subject(), "writePortals");
    QCOMPARE(storedPortals(), rows);
}

void tst_PortalDialog::firstRunKeepsTheFirstRow()
{
    writeStore({});
    m_expected << firstRun;
    DialogStage &stage = make();
    QVERIFY(!store().contains("Portal/portals"));
    call(stage.subject(), "writePortals");
    QCOMPARE(storedPortals(), (QVariantList{row(publicPortal, "Zemrik Online")}));
}

void tst_PortalDialog::listIsWrittenWithItsFourKeys()
{
    DialogStage &stage = make();
    call(stage.subject(), "writePortals");
    QCOMPARE(store().value("Portal/portals").toString(),
             QString("[{\"ignoreSslErrors\":false,\"isPortal\":false,\"name\":\"Zemrik Online\","
                     "\"url\":\"http://portal.zemrik.example\"}]"));
}

void tst_PortalDialog::groupsKeepPortalsApart()
{
    writeStore({{"Portal/username", "one"},
                {"Other/username", "two"},
                {"Other/saveUsername", false},
                {"Other/portals", "[]"}});
    DialogStage &stage = make("settingsGroup: 'Other'");
    QCOMPARE(stage.subject()->property("username").toString(), QString("two"));
    QCOMPARE(stage.subject()->property("saveUserChecked").toBool(), false);
    call(stage.subject(), "clearUserSettings");
    QCOMPARE(store().value("Portal/username").toString(), QString("one"));
    QVERIFY(!store().contains("Other/username"));
}

void tst_PortalDialog::flagsAreRightInTheNextProcess_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<bool>("flag");
    for (const char *name : {"flags.json", "flags.ini"}) {
        QTest::addRow("%s, true", name) << name << true;
        QTest::addRow("%s, false", name) << name << false;
    }
}

void tst_PortalDialog::flagsAreRightInTheNextProcess()
{
    QFETCH(QString, fileName);
    QFETCH(bool, flag);
    m_store = m_folder.filePath(QString::number(flag) + fileName);
    m_expected << firstRun;
    {
        DialogStage &stage = makeOpen();
        portal()->setProperty("ignoreSslErrors", flag);
        portal()->setProperty("isPortal", flag);
        portal()->setProperty("name", "Next");
        call(stage.subject(), "writePortalSettings");
        call(stage.subject(), "writePortals");
        stage.subject()->setProperty("saveUserChecked", flag);
        fill("demo", "demo");
        DialogStage::click(stage.button("Sign In"));
        QTRY_VERIFY(!stage.isOpen());
        m_settings->synchronize();
        m_stage->close();
    }
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), {"child:flags", m_store});
    QVERIFY(child.waitForFinished());
    const QByteArray output = child.readAllStandardOutput();
    const QJsonObject read = QJsonDocument::fromJson(output).object();
    QVERIFY2(!read.isEmpty(), child.readAllStandardError().constData());
    QCOMPARE(read.value("saveUserChecked").toBool(!flag), flag);
    QCOMPARE(read.value("ignoreSslErrors").toBool(!flag), flag);
    QCOMPARE(read.value("isPortal").toBool(!flag), flag);
    QCOMPARE(read.value("username").toString(), QString(flag ? "demo" : ""));
    QCOMPARE(read.value("portalUrl").toString(), m_portal.url());
    QCOMPARE(read.value("name").toString(), QString("Next"));
}

void tst_PortalDialog::gearOpensTheListAndBackLeavesIt()
{
    DialogStage &stage = makeOpen();
    QVERIFY(!stage.text("Portals"));
    DialogStage::click(stage.imageButton("gear.png"));
    waitForPage();
    QVERIFY(stage.text("Portals"));
    QVERIFY(stage.text("Select your active Zemrik Portal"));
    QCOMPARE(stage.fields().size(), 1);
    QCOMPARE(stage.fields().first()->property("placeholderText").toString(),
             QString("URL of your Portal for Zemrik"));
    QVERIFY(stage.checkBox("Ignore SSL Errors"));
    QCOMPARE(stage.checkBox("Ignore SSL Errors")->property("checked").toBool(), false);
    QVERIFY(stage.button("Add Portal"));
    QVERIFY(!stage.button("Sign In"));
    DialogStage::click(stage.imageButton("back.png"));
    waitForPage();
    QVERIFY(stage.button("Sign In"));
    QVERIFY(!stage.text("Portals"));
}

void tst_PortalDialog::gearIsOffWhileBusy()
{
    DialogStage &stage = makeOpen();
    stage.subject()->setProperty("busy", true);
    DialogStage::click(stage.imageButton("gear.png"));
    QVERIFY(stage.button("Signing In"));
    QVERIFY(!stage.text("Portals"));
    stage.subject()->setProperty("busy", false);
}

void tst_PortalDialog::rowsShowTheirPortals()
{
    writeStore({{"Portal/portals", portalsText(QVariantList{
                                       row(publicPortal, "Zemrik Online"), row("http://one", "One"),
                                       row("https://two", "<b>Two</b>", true, true)})}});
    DialogStage &stage = makeList();
    QCOMPARE(list()->property("count").toInt(), 3);
    const auto shows = [&](int index, const QString &text) {
        return DialogStage::find(listRow(index), [&](QQuickItem *item) {
            return DialogStage::isA(item, "QQuickText")
                   && item->property("text").toString() == text;
        });
    };
    const auto padlock = [&](int index) {
        return DialogStage::find(listRow(index), [](QQuickItem *item) {
            return DialogStage::isA(item, "QQuickImage")
                   && item->property("source").toUrl().fileName() == "security_unlock.png";
        });
    };
    QVERIFY(shows(0, "Zemrik Online"));
    QVERIFY(!shows(0, publicPortal));
    QVERIFY(!padlock(0));
    QVERIFY(shows(1, "One"));
    QVERIFY(shows(1, "http://one"));
    QVERIFY(shows(1, "http://one")->property("font").value<QFont>().italic());
    QVERIFY(shows(1, "http://one")->mapToScene({0, 0}).y()
            > shows(1, "One")->mapToScene({0, 0}).y());
    QVERIFY(!padlock(1));
    QVERIFY(shows(2, "<b>Two</b>"));
    QCOMPARE(shows(2, "<b>Two</b>")->property("textFormat").toInt(), 0);
    QVERIFY(padlock(2));
    Q_UNUSED(stage)
}

void tst_PortalDialog::aClickSelects()
{
    writeStore(
        {{"Portal/portals",
          portalsText(QVariantList{row(publicPortal, "Zemrik Online"), row(m_portal.url(), "One"),
                                   row("https://two", "Two", true, true)})}});
    DialogStage &stage = makeList();
    QCOMPARE(list()->property("currentIndex").toInt(), 1);
    QVERIFY(DialogStage::find(
        listRow(1), [](QQuickItem *item) { return DialogStage::isA(item, "ImageButton"); }));
    portal()->setProperty("token", "signed in");
    QSignalSpy urlChanged(portal(), SIGNAL(portalUrlChanged()));

    DialogStage::click(listRow(2));
    QCOMPARE(list()->property("currentIndex").toInt(), 2);
    QCOMPARE(portal()->property("portalUrl").toUrl(), QUrl("https://two"));
    QCOMPARE(portal()->property("name").toString(), QString("Two"));
    QCOMPARE(portal()->property("ignoreSslErrors").toBool(), true);
    QCOMPARE(portal()->property("isPortal").toBool(), true);
    QCOMPARE(portal()->property("signedIn").toBool(), false);
    QCOMPARE(urlChanged.count(), 1);
    QCOMPARE(store().value("Portal/url").toString(), QString("https://two"));
    QCOMPARE(store().value("Portal/name").toString(), QString("Two"));
    QCOMPARE(store().value("Portal/ignoreSslErrors"), QVariant(true));
    QCOMPARE(store().value("Portal/isPortal"), QVariant(true));
    QVERIFY(stage.text("Portals")); // the page stays

    const auto trash = [&](int index) {
        return DialogStage::find(
            listRow(index), [](QQuickItem *item) { return DialogStage::isA(item, "ImageButton"); });
    };
    QVERIFY(trash(2));
    QVERIFY(!trash(1));
    DialogStage::click(listRow(0));
    QCOMPARE(portal()->property("portalUrl").toUrl(), QUrl(publicPortal));
    for (int index = 0; index < 3; ++index)
        QVERIFY(!trash(index)); // the first row can't be removed
    DialogStage::click(listRow(1));
    QCOMPARE(portal()->property("portalUrl").toUrl(), QUrl(m_portal.url()));
    QVERIFY(trash(1));
}

void tst_PortalDialog::aDoubleClickSelectsAndLeaves()
{
    writeStore({{"Portal/portals", portalsText(QVariantList{row(publicPortal, "Zemrik Online"),
                                                            row("http://one", "One")})}});
    DialogStage &stage = makeList();
    QTest::mouseDClick(stage.dialogWindow(), Qt::LeftButton, Qt::NoModifier,
                       DialogStage::center(listRow(1)));
    waitForPage();
    QVERIFY(stage.button("Sign In"));
    QCOMPARE(portal()->property("portalUrl").toUrl(), QUrl("http://one"));
    QVERIFY(stage.text("Sign in to One"));
}

void tst_PortalDialog::pressAndHoldOpensThePortal()
{
    writeStore({{"Portal/portals", portalsText(QVariantList{row(publicPortal, "Zemrik Online"),
                                                            row("http://one/home", "One")})}});
    DialogStage &stage = makeList();
    QDesktopServices::setUrlHandler("http", this, "openUrl");
    QTest::mousePress(stage.dialogWindow(), Qt::LeftButton, Qt::NoModifier,
                      DialogStage::center(listRow(1)));
    QTRY_COMPARE(m_openedUrls.size(), 1);
    QTest::mouseRelease(stage.dialogWindow(), Qt::LeftButton, Qt::NoModifier,
                        DialogStage::center(listRow(1)));
    QDesktopServices::unsetUrlHandler("http");
    QCOMPARE(m_openedUrls.first(), QUrl("http://one/home"));
    QCOMPARE(portal()->property("portalUrl").toUrl(), QUrl(m_portal.url())); // no selection
}

void tst_PortalDialog::noRowMatches()
{
    makeList(); // the development portal isn't in the list
    QVERIFY(!call(m_stage->subject(), "findCurrent").isValid());
    QCOMPARE(list()->property("currentIndex").toInt(), -1);
    QCOMPARE(portal()->property("portalUrl").toUrl(), QUrl(m_portal.url()));
    QVERIFY(!store().contains("Portal/url"));
    portal()->setProperty("portalUrl", QUrl(publicPortal));
    QCOMPARE(call(m_stage->subject(), "findCurrent").toInt(), 0);
    QCOMPARE(list()->property("currentIndex").toInt(), 0); // follows by itself
}

void tst_PortalDialog::openingTheListChangesNothing()
{
    writeStore({{"Portal/portals", portalsText(QVariantList{row(publicPortal, "Zemrik Online"),
                                                            row(m_portal.url(), "One")})}});
    DialogStage &stage = makeOpen();
    portal()->setProperty("token", "some");
    QTRY_VERIFY(!stage.isOpen());
    QVERIFY(stage.open());
    QSignalSpy urlChanged(portal(), SIGNAL(portalUrlChanged()));
    DialogStage::click(stage.imageButton("gear.png"));
    waitForPage();
    QCOMPARE(list()->property("currentIndex").toInt(), 1);
    DialogStage::click(stage.imageButton("back.png"));
    waitForPage();
    QCOMPARE(urlChanged.count(), 0);
    QVERIFY(portal()->property("signedIn").toBool());
}

void tst_PortalDialog::highlightMoves()
{
    writeStore({{"Portal/portals",
                 portalsText(QVariantList{row(publicPortal, "Zemrik Online"),
                                          row(m_portal.url(), "One"), row("http://two", "Two")})}});
    makeList();
    const auto highlight = [&] { return list()->property("highlightItem").value<QQuickItem *>(); };
    QVERIFY(highlight());
    QTRY_COMPARE(highlight()->y(), listRow(1)->y());
    DialogStage::click(listRow(2));
    QVERIFY(highlight()->y() != listRow(2)->y()); // on its way
    QTRY_COMPARE(highlight()->y(), listRow(2)->y());
}

void tst_PortalDialog::addNeedsAUrl()
{
    DialogStage &stage = makeList();
    QQuickItem *field = stage.fields().first();
    const QMap<QString, bool> rows{{"", false},
                                   {"htt", false},
                                   {"http://x", true},
                                   {"https://x", true},
                                   {"HTTP://X", true},
                                   {"hTtPs://x", true},
                                   {" http://x", false},
                                   {"ftp://x", false},
                                   {"file:///etc/passwd", false},
                                   {"portal.example", false}};
    for (auto row = rows.begin(); row != rows.end(); ++row) {
        field->setProperty("text", "");
        stage.type(field, row.key());
        QCOMPARE(field->property("text").toString(), row.key());
        QVERIFY2(stage.button("Add Portal")->property("enabled").toBool() == row.value(),
                 qPrintable(row.key()));
    }
}

void tst_PortalDialog::addStoresAndSelects_data()
{
    QTest::addColumn<QJsonObject>("self");
    QTest::addColumn<bool>("ignore");
    QTest::addColumn<QString>("name"); // %1 is the URL
    QTest::addColumn<bool>("isPortal");
    QTest::newRow("with a name") << QJsonObject{{"name", "Ours"},
                                                {"portalName", "P"},
                                                {"isPortal", true},
                                                {"supportsSceneServices", true}}
                                 << false << "Ours" << true;
    QTest::newRow("without a name") << QJsonObject{{"name", ""},
                                                   {"portalName", "Their <i>portal</i>"},
                                                   {"isPortal", true},
                                                   {"supportsSceneServices", true}}
                                    << true << "Their <i>portal</i> (%1)" << true;
    QTest::newRow("name missing") << QJsonObject{{"portalName", "P"},
                                                 {"isPortal", true},
                                                 {"supportsSceneServices", true}}
                                  << false << "P (%1)" << true;
    QTest::newRow("a public portal needs no scenes")
        << QJsonObject{{"name", "Public"}, {"isPortal", false}, {"supportsSceneServices", false}}
        << false << "Public" << false;
    QTest::newRow("says nothing about itself")
        << QJsonObject{{"name", "Plain"}} << false << "Plain" << false;
}

void tst_PortalDialog::addStoresAndSelects()
{
    QFETCH(QJsonObject, self);
    QFETCH(bool, ignore);
    QFETCH(QString, name);
    QFETCH(bool, isPortal);
    SlowPortal server;
    server.self = self;
    DialogStage &stage = makeList();
    stage.type(stage.fields().first(), server.url());
    if (ignore)
        DialogStage::click(stage.checkBox("Ignore SSL Errors"));
    DialogStage::click(stage.button("Add Portal"));

    QTRY_COMPARE(list()->property("count").toInt(), 2);
    name = name.contains("%1") ? name.arg(server.url()) : name;
    const QVariantList expected{row(publicPortal, "Zemrik Online"),
                                row(server.url(), name, ignore, isPortal)};
    QCOMPARE(storedPortals(), expected);
    QCOMPARE(list()->property("currentIndex").toInt(), 1);
    QCOMPARE(portal()->property("portalUrl").toUrl(), QUrl(server.url()));
    QCOMPARE(portal()->property("name").toString(), name);
    QCOMPARE(portal()->property("ignoreSslErrors").toBool(), ignore);
    QCOMPARE(portal()->property("isPortal").toBool(), isPortal);
    QCOMPARE(store().value("Portal/url").toString(), server.url());
    QCOMPARE(store().value("Portal/isPortal"), QVariant(isPortal));
    QCOMPARE(stage.fields().first()->property("text").toString(), QString());
    QCOMPARE(stage.checkBox("Ignore SSL Errors")->property("checked").toBool(), false);
    QCOMPARE(messageText(), QString());

    QTRY_COMPARE(server.server().requestCount(), 2); // itself, then its information
    const auto requests = server.server().requests();
    QCOMPARE(requests.at(0).method, QByteArray("POST"));
    QCOMPARE(requests.at(0).target, QByteArray("/sharing/rest/portals/self"));
    QVERIFY(requests.at(0).body.contains("f=pjson")
            || requests.at(0).parts.value("f").content == "pjson");
    QCOMPARE(requests.at(1).target, QByteArray("/sharing/rest/info?f=json"));
    QTRY_VERIFY(m_log->count(QtDebugMsg, "qml", "info: {") > 0);
    QVERIFY(m_log->count(QtDebugMsg, "qml", "self {") > 0);
}

void tst_PortalDialog::addRefusesAPortalWithoutScenes()
{
    const QString refusal = "Quillform requires that Portal for Zemrik 10.3.1 is configured with a "
                            "Hosted Server and Zemrik Data Store";
    DialogStage &stage = makeList(); // the development portal has none
    stage.type(stage.fields().first(), m_portal.url());
    DialogStage::click(stage.button("Add Portal"));
    QTRY_COMPARE(messageText(), refusal);
    QCOMPARE(list()->property("count").toInt(), 1);
    QCOMPARE(stage.fields().first()->property("text").toString(), m_portal.url());
    QVERIFY(!store().contains("Portal/url"));
    stage.type(stage.fields().first(), "/");
    QCOMPARE(messageText(), refusal); // until the next attempt
    QTRY_VERIFY(stage.button("Add Portal")->property("enabled").toBool());
    DialogStage::click(stage.button("Add Portal"));
    QVERIFY(messageText() != refusal);
    QTRY_VERIFY(stage.button("Add Portal")->property("enabled").toBool());
}

void tst_PortalDialog::addRefusesWhatIsNoPortal_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QString>("message");
    const QString none = "There is no portal at this URL";
    QTest::newRow("a page") << QByteArray("<html><body>Hello</body></html>") << none;
    QTest::newRow("null") << QByteArray("null") << none;
    QTest::newRow("array") << QByteArray("[{\"name\": \"A\"}]") << none;
    QTest::newRow("empty object") << QByteArray("{}") << none;
    QTest::newRow("names that are no text")
        << QByteArray("{\"name\": 5, \"portalName\": {\"a\": 1}}") << none;
    QTest::newRow("error") << QByteArray("{\"name\": \"A\", \"error\": {\"code\": 499, "
                                         "\"message\": \"Token\\nRequired\"}}")
                           << "Token Required";
    QTest::newRow("error without words") << QByteArray("{\"error\": {\"code\": 400}}") << none;
    QTest::newRow("error as text") << QByteArray("{\"error\": \"no\"}") << none;
}

void tst_PortalDialog::addRefusesWhatIsNoPortal()
{
    QFETCH(QByteArray, answer);
    HttpServer server;
    server.on("/sharing/rest/portals/self", [answer](const HttpServer::Request &) {
        return HttpServer::Answer{answer, 200, "application/json"};
    });
    server.on("/sharing/rest/info", [](const HttpServer::Request &) {
        return HttpServer::Answer{"{}", 200, "application/json"};
    });
    DialogStage &stage = makeList();
    portal()->setProperty("token", "signed in");
    QVERIFY(stage.open());
    const QString url = server.url("").toString(QUrl::StripTrailingSlash);
    stage.type(stage.fields().first(), url);
    DialogStage::click(stage.button("Add Portal"));
    QTRY_VERIFY(!messageText().isEmpty());
    QTEST(messageText(), "message");
    QCOMPARE(list()->property("count").toInt(), 1);
    QVERIFY(portal()->property("signedIn").toBool());
    QCOMPARE(stage.fields().first()->property("text").toString(), url);
    QCOMPARE(storedPortals().size(), 1);
}

void tst_PortalDialog::addTakesNamesAsLines_data()
{
    QTest::addColumn<QJsonObject>("self");
    QTest::addColumn<QString>("name"); // %1 is the URL
    QTest::newRow("number") << QJsonObject{{"name", 5}, {"portalName", "P"}} << "P (%1)";
    QTest::newRow("object") << QJsonObject{{"name", QJsonObject{{"a", 1}}}, {"portalName", "P"}}
                            << "P (%1)";
    QTest::newRow("array") << QJsonObject{{"name", QJsonArray{"A"}}, {"portalName", "P"}}
                           << "P (%1)";
    QTest::newRow("lines") << QJsonObject{{"name", QString("\n\nA\n").repeated(200)}}
                           << QString("A ").repeated(200).trimmed();
    QTest::newRow("lines in the other name") << QJsonObject{{"portalName", "A\r\nB"}} << "A B (%1)";
    QTest::newRow("blank") << QJsonObject{{"name", " \n"}, {"portalName", "P"}} << "P (%1)";
    QTest::newRow("a place of its own")
        << QJsonObject{{"portalName", "100 %2 %1"}} << QString("100 %2 %1 (URL)");
}

void tst_PortalDialog::addTakesNamesAsLines()
{
    QFETCH(QJsonObject, self);
    QFETCH(QString, name);
    SlowPortal server;
    server.self = self;
    name = name.endsWith("(URL)") ? name.replace("URL", server.url())
                                  : name.replace("%1", server.url());
    DialogStage &stage = makeList();
    portal()->setProperty("ignoreSslErrors", true);
    stage.type(stage.fields().first(), server.url());
    DialogStage::click(stage.button("Add Portal"));
    QTRY_COMPARE(list()->property("count").toInt(), 2);
    QCOMPARE(portal()->property("name").toString(), name);
    QCOMPARE(portal()->property("portalUrl").toUrl(), QUrl(server.url()));
    QCOMPARE(portal()->property("ignoreSslErrors").toBool(), false);
    QCOMPARE(storedPortals().value(1).toMap().value("name").toString(), name);
    QVERIFY(listRow(1)->height() < 80);
}

void tst_PortalDialog::longRefusalStaysShort()
{
    SlowPortal server;
    server.self = {{"error", QJsonObject{{"message", QString("No. ").repeated(2000)}}}};
    DialogStage &stage = makeList();
    stage.type(stage.fields().first(), server.url());
    DialogStage::click(stage.button("Add Portal"));
    QTRY_VERIFY(!messageText().isEmpty());
    QQuickItem *line = stage.text(messageText());
    QTRY_VERIFY(DialogStage::rectOf(line).bottom() <= stage.dialogWindow()->height());
    QVERIFY(line->property("truncated").toBool());
    QVERIFY(list()->height() > 60);
}

void tst_PortalDialog::addShowsWhatFailed()
{
    DialogStage &stage = makeList();
    stage.type(stage.fields().first(), "http://127.0.0.1:1");
    DialogStage::click(stage.button("Add Portal"));
    QTRY_VERIFY(!messageText().isEmpty());
    QCOMPARE(list()->property("count").toInt(), 1);
    QTRY_VERIFY(stage.button("Add Portal")->property("enabled").toBool());
}

void tst_PortalDialog::addIgnoresOtherStatus()
{
    SlowPortal server;
    server.status = 203;
    server.self = {{"name", "Not quite"}};
    DialogStage &stage = makeList();
    stage.type(stage.fields().first(), server.url());
    DialogStage::click(stage.button("Add Portal"));
    QTRY_COMPARE(server.server().requestCount(), 1);
    QTRY_VERIFY(stage.button("Add Portal")->property("enabled").toBool());
    QCOMPARE(list()->property("count").toInt(), 1);
    QCOMPARE(messageText(), QString());
    QCOMPARE(stage.fields().first()->property("text").toString(), server.url());
}

void tst_PortalDialog::addOverHttpsNeedsTheCheckBox()
{
    DevelopmentPortal secure; // with a certificate of its own making
    QVERIFY2(secure.start({"--https", "--scene-services", "true", "--name", "Secure"}),
             qPrintable(secure.output()));
    QVERIFY(secure.url().startsWith("https:"));
    DialogStage &stage = makeList();
    stage.type(stage.fields().first(), secure.url());
    DialogStage::click(stage.button("Add Portal"));
    QTRY_VERIFY(!messageText().isEmpty());
    QCOMPARE(list()->property("count").toInt(), 1);
    QTRY_VERIFY(stage.button("Add Portal")->property("enabled").toBool());

    DialogStage::click(stage.checkBox("Ignore SSL Errors"));
    DialogStage::click(stage.button("Add Portal"));
    QTRY_COMPARE(list()->property("count").toInt(), 2);
    QCOMPARE(portal()->property("name").toString(), QString("Secure"));
    QCOMPARE(portal()->property("ignoreSslErrors").toBool(), true);
    DialogStage::click(stage.imageButton("back.png"));
    waitForPage();
    fill("demo", "demo");
    DialogStage::click(stage.button("Sign In"));
    QTRY_VERIFY(!stage.isOpen());
    QVERIFY(portal()->property("signedIn").toBool());
}

void tst_PortalDialog::addNeedsNoInformation()
{
    HttpServer server;
    server.on("/sharing/rest/portals/self", [](const HttpServer::Request &) {
        return HttpServer::Answer{"{\"name\": \"Silent\"}", 200, "application/json"};
    });
    server.on("/sharing/rest/info", [](const HttpServer::Request &) {
        return HttpServer::Answer{"no", 500};
    });
    DialogStage &stage = makeList();
    stage.type(stage.fields().first(), server.url("").toString(QUrl::StripTrailingSlash));
    DialogStage::click(stage.button("Add Portal"));
    QTRY_COMPARE(m_log->count(QtDebugMsg, "qml", "infoRequest error "), 1);
    QCOMPARE(list()->property("count").toInt(), 2);
    QCOMPARE(portal()->property("name").toString(), QString("Silent"));
    QCOMPARE(messageText(), QString()); // only the log tells
}

void tst_PortalDialog::addIsBusyMeanwhile()
{
    SlowPortal server;
    server.self = {{"name", "Slow"}};
    DialogStage &stage = makeList();
    const auto indicator = [&] {
        return stage.find([](QQuickItem *item) { return DialogStage::isA(item, "BusyIndicator"); });
    };
    stage.type(stage.fields().first(), server.url());
    QVERIFY(!indicator());
    server.hold();
    DialogStage::click(stage.button("Add Portal"));
    QTRY_VERIFY(!stage.button("Add Portal")->property("enabled").toBool());
    QVERIFY(indicator());
    server.release();
    QTRY_COMPARE(list()->property("count").toInt(), 2);
    QTRY_VERIFY(!indicator());
}

void tst_PortalDialog::addWithoutAStore()
{
    m_store.clear();
    SlowPortal server;
    server.self = {{"name", "Ours"}};
    DialogStage &stage = makeList();
    QCOMPARE(list()->property("count").toInt(), 1);
    stage.type(stage.fields().first(), server.url());
    DialogStage::click(stage.button("Add Portal"));
    QTRY_COMPARE(list()->property("count").toInt(), 2);
    QCOMPARE(portal()->property("name").toString(), QString("Ours"));
    DialogStage::click(stage.imageButton("back.png"));
    waitForPage();
    DialogStage::click(stage.imageButton("gear.png"));
    waitForPage();
    QCOMPARE(list()->property("count").toInt(), 2); // as long as the dialog lives
    make();
    portal()->setProperty("portalUrl", QUrl(m_portal.url()));
    QVERIFY(m_stage->open());
    DialogStage::click(m_stage->imageButton("gear.png"));
    waitForPage();
    QCOMPARE(list()->property("count").toInt(), 1);
}

void tst_PortalDialog::removeKeepsThePortalInUse()
{
    writeStore({{"Portal/portals",
                 portalsText(QVariantList{row(publicPortal, "Zemrik Online"),
                                          row("http://one", "One"), row("http://two", "Two")})}});
    DialogStage &stage = makeList();
    DialogStage::click(listRow(1));
    QCOMPARE(portal()->property("name").toString(), QString("One"));
    QSignalSpy urlChanged(portal(), SIGNAL(portalUrlChanged()));
    QVERIFY(stage.imageButton("trash_bin.png"));
    DialogStage::click(stage.imageButton("trash_bin.png"));
    QTRY_COMPARE(list()->property("count").toInt(), 2);
    QCOMPARE(storedPortals(),
             (QVariantList{row(publicPortal, "Zemrik Online"), row("http://two", "Two")}));
    QCOMPARE(urlChanged.count(), 0);
    QCOMPARE(portal()->property("name").toString(), QString("One"));
    QCOMPARE(store().value("Portal/url").toString(), QString("http://one"));
    QVERIFY(!stage.imageButton("trash_bin.png"));
    DialogStage::click(listRow(1));
    QCOMPARE(portal()->property("name").toString(), QString("Two"));
}

void tst_PortalDialog::touchWorksToo()
{
    DialogStage &stage = makeOpen();
    auto *device = QTest::createTouchDevice();
    const auto tap = [&](QQuickItem *item) {
        const QPoint point = DialogStage::center(item);
        QTest::touchEvent(stage.dialogWindow(), device).press(0, point, stage.dialogWindow());
        QTest::touchEvent(stage.dialogWindow(), device).release(0, point, stage.dialogWindow());
    };
    tap(stage.imageButton("gear.png"));
    waitForPage();
    QVERIFY(stage.text("Portals"));
    tap(listRow(0));
    QCOMPARE(portal()->property("portalUrl").toUrl(), QUrl(publicPortal));
    tap(stage.imageButton("back.png"));
    waitForPage();
    QCOMPARE(stage.subject()->property("saveUserChecked").toBool(), true);
    tap(stage.checkBox("Remember me"));
    QCOMPARE(stage.subject()->property("saveUserChecked").toBool(), false);
    tap(stage.button("Cancel"));
    QVERIFY(!stage.isOpen());
}

// For the manual: TESSALINE_PICTURES names a folder.
void tst_PortalDialog::picture()
{
    const QString folder = qEnvironmentVariable("TESSALINE_PICTURES");
    writeStore({{"Portal/portals", portalsText(QVariantList{
                                       row(publicPortal, "Zemrik Online"),
                                       row("https://maps.example/portal", "City maps", true, true),
                                       row("http://localhost:8080", "Development")})}});
    DialogStage &stage = make("username: 'jo'; password: 'secret'");
    callWith(stage.subject(), "show", "Please sign in to download apps");
    QVERIFY(QTest::qWaitForWindowExposed(stage.dialogWindow()));
    fill("jo", "secret");
    QTRY_COMPARE(stage.dialogWindow()->grabWindow().pixelColor(2, 2), QColor("#0079C1"));
    const QImage signIn = stage.dialogWindow()->grabWindow();
    DialogStage::click(stage.imageButton("gear.png"));
    waitForPage();
    DialogStage::click(listRow(1));
    QQuickItem *highlight = list()->property("highlightItem").value<QQuickItem *>();
    QTRY_COMPARE(highlight->y(), listRow(1)->y());
    const QImage portals = stage.dialogWindow()->grabWindow();
    QVERIFY(signIn != portals);
    if (folder.isEmpty())
        return;
    QVERIFY(signIn.save(folder + "/portal-dialog.png"));
    QVERIFY(portals.save(folder + "/portal-dialog-portals.png"));
}

namespace {

// The next process: what the dialog has read from the store.
int printFlags(int argc, char **argv)
{
    QApplication application(argc, argv);
    const std::unique_ptr<Settings> store = makeStore(QString::fromLocal8Bit(argv[2]));
    DialogStage stage;
    if (!stage.load(document(), storeProperty(store.get())))
        return 1;
    const QObject *dialog = stage.subject();
    const QObject *portal = stage.object("portal");
    const QJsonObject flags{{"saveUserChecked", dialog->property("saveUserChecked").toBool()},
                            {"username", dialog->property("username").toString()},
                            {"portalUrl", portal->property("portalUrl").toUrl().toString()},
                            {"name", portal->property("name").toString()},
                            {"ignoreSslErrors", portal->property("ignoreSslErrors").toBool()},
                            {"isPortal", portal->property("isPortal").toBool()}};
    printf("%s", QJsonDocument(flags).toJson().constData());
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc > 2 && qstrcmp(argv[1], "child:flags") == 0)
        return printFlags(argc, argv);
    return runIsolatedTest<tst_PortalDialog, QApplication>(argc, argv);
}

#include "tst_PortalDialog.moc"
