#include "imports/PortalDialogDocument.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QApplication>

// What the dialog looks like in the language and at the font density of the environment: nothing is
// cut or lies outside the window. TESSALINE_PICTURES names a folder for pictures to look at.
class tst_PortalDialogLooks : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase() { m_stage.reset(); }

    void speaksTheLanguage();
    void nothingIsCut_data();
    void nothingIsCut();
    void runsFromTheRightInSuchALanguage();

private:
    DialogStage &makeOpen(const QString &properties = QString());
    QStringList cutTexts() const;
    void keepPicture(const QString &name) const;

    QTemporaryDir m_folder;
    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<Settings> m_settings;
    std::unique_ptr<DialogStage> m_stage;
};

void tst_PortalDialogLooks::initTestCase()
{
    m_stage = std::make_unique<DialogStage>();
}

void tst_PortalDialogLooks::init()
{
    m_settings = makeStore(m_folder.filePath("store.json"));
    m_settings->setValue("Portal/portals",
                         portalsText({row(publicPortal, "Zemrik Online"),
                                      row("https://maps.example/portal", "City maps", true, true),
                                      row("http://localhost:8080", "Development")}));
    m_settings->setValue("Portal/url", "https://maps.example/portal");
    m_settings->setValue("Portal/ignoreSslErrors", true);
    m_log.reset(new LogCapture);
}

void tst_PortalDialogLooks::cleanup()
{
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    m_stage->close();
    const int problems = m_log->count(QtWarningMsg) + m_log->count(QtCriticalMsg);
    const QString log = m_log->dump();
    m_log.reset();
    QVERIFY2(problems == 0, qPrintable(log));
}

DialogStage &tst_PortalDialogLooks::makeOpen(const QString &properties)
{
    if (!m_stage->load(document(properties), storeProperty(m_settings.get())))
        qFatal("The document doesn't load");
    callWith(m_stage->subject(), "show",
             properties.isEmpty() ? QString() : QString("Please sign in"));
    if (!QTest::qWaitForWindowExposed(m_stage->dialogWindow()))
        qFatal("The dialog doesn't open");
    return *m_stage;
}

// What ends in dots, is larger than its item, or lies outside the window.
QStringList tst_PortalDialogLooks::cutTexts() const
{
    const QRectF window(QPointF(-1, -1), QSizeF(m_stage->dialogWindow()->size()) + QSizeF(2, 2));
    const QList<QQuickItem *> texts = m_stage->findAll([](QQuickItem *item) {
        return DialogStage::isA(item, "QQuickText") && !item->property("text").toString().isEmpty();
    });
    QStringList list;
    for (QQuickItem *item : texts) {
        const QString text = item->property("text").toString();
        if (item->property("truncated").toBool())
            list.append("ends in dots: " + text);
        if (item->property("contentHeight").toReal() > item->height() + 1
            || item->property("contentWidth").toReal() > item->width() + 1)
            list.append("larger than its item: " + text);
        if (!window.contains(item->mapRectToScene(item->boundingRect())))
            list.append("outside the window: " + text);
    }
    return list;
}

void tst_PortalDialogLooks::keepPicture(const QString &name) const
{
    const QString folder = qEnvironmentVariable("TESSALINE_PICTURES");
    if (folder.isEmpty())
        return;
    const QString path = folder + '/' + name + ".png";
    if (!m_stage->dialogWindow()->grabWindow().save(path))
        qFatal("Can't write %s", qPrintable(path));
}

void tst_PortalDialogLooks::speaksTheLanguage()
{
    const QMap<QString, QString> words{{"en", "Password"},
                                       {"de", QString::fromUtf8("Kennwort")},
                                       {"ar", QString::fromUtf8("كلمة المرور")},
                                       {"ja", QString::fromUtf8("パスワード")},
                                       {"zh_CN", QString::fromUtf8("密码")}};
    const QString language = qEnvironmentVariable("LANGUAGE");
    QVERIFY2(words.contains(language), qPrintable(language));
    DialogStage &stage = makeOpen();
    QCOMPARE(stage.subject()->property("passwordLabel").toString(), words.value(language));
    QVERIFY(stage.text(words.value(language)));
}

void tst_PortalDialogLooks::nothingIsCut_data()
{
    QTest::addColumn<QString>("properties");
    QTest::addColumn<QString>("error");
    QTest::newRow("plain") << ""
                           << "";
    QTest::newRow("all at once") << "portalName: 'Landesvermessung und Geobasisinformation'; "
                                    "username: 'jo'; password: 'secret';"
                                    "bannerImage: 'qrc:/images/defaultThumbnail.png'"
                                 << "Unable to generate token.";
    QTest::newRow("busy") << "busy: true; username: 'jo'; password: 'secret'"
                          << "";
}

void tst_PortalDialogLooks::nothingIsCut()
{
    QFETCH(QString, properties);
    QFETCH(QString, error);
    DialogStage &stage = makeOpen(properties);
    if (!error.isEmpty()) {
        const QVariantMap details{{"message", error}, {"details", "Invalid username or password."}};
        QMetaObject::invokeMethod(stage.object("portal"), "error", Q_ARG(QVariant, details));
        stage.subject()->setProperty("username", "jo"); // the store's is empty
        QVERIFY(stage.text(error + "\r\nInvalid username or password."));
    }
    QTRY_COMPARE(cutTexts().join('\n'), QString());
    const QString name = QString("sign-in %1").arg(QTest::currentDataTag());
    keepPicture(name);
    if (stage.subject()->property("busy").toBool())
        return;
    DialogStage::click(stage.imageButton("gear.png"));
    stage.waitForPage();
    QTRY_COMPARE(cutTexts().join('\n'), QString());
    keepPicture(name + " portals");
}

void tst_PortalDialogLooks::runsFromTheRightInSuchALanguage()
{
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    DialogStage &stage = makeOpen("username: 'jo'; password: 'secret'");
    QTRY_VERIFY(DialogStage::center(stage.imageButton("gear.png")).x()
                < stage.dialogWindow()->width() / 4);
    QTRY_COMPARE(cutTexts().join('\n'), QString());
    keepPicture("sign-in mirrored");
    DialogStage::click(stage.imageButton("gear.png"));
    stage.waitForPage();
    QVERIFY(DialogStage::center(stage.imageButton("back.png")).x()
            > stage.dialogWindow()->width() * 3 / 4);
    QTRY_VERIFY(DialogStage::center(stage.imageButton("trash_bin.png")).x()
                < stage.dialogWindow()->width() / 4);
    keepPicture("sign-in mirrored portals");
}

int main(int argc, char **argv)
{
    return runIsolatedTest<tst_PortalDialogLooks, QApplication>(argc, argv);
}

#include "tst_PortalDialogLooks.moc"
