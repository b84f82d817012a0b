#include "imports/PortalDialogDocument.h"
#include "languages/CatalogueFile.h"
#include "support/HttpServer.h"
#include "support/IsolatedHome.h"

#include <QDir>
#include <QJsonObject>
#include <QLibraryInfo>
#include <QLocale>
#include <QStandardPaths>
#include <QTranslator>

// All texts that the dialogs show, held against the catalogue of the language that the environment
// names. A process speaks one language, so there is a run for each. TESSALINE_PICTURES names a
// folder for the manual's pictures.
class tst_DialogLanguages : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase() { m_stage.reset(); }

    void signInDialog();
    void captureDialog();
    void chooserDialog();

private:
    void look();
    void keepPicture(const QString &dialog) const;
    bool isMovingBarBeside(const QQuickItem *panel) const;
    QString translated(const QString &context, const QString &source) const
    {
        return translated(context, source, m_arguments.value(source));
    }
    QString translated(const QString &context, const QString &source,
                       const QStringList &arguments) const;
    QString problems(const QStringList &contexts, const QStringList &data) const;

    QString m_language;
    QTranslator m_qtTexts;
    QVector<CatalogueFile::Message> m_catalogue;
    QHash<QString, QStringList> m_arguments; // by source: what stands for its %1 and %2
    QSet<QString> m_seen;
    QSet<QString> m_cut;
    std::unique_ptr<DialogStage> m_stage;
};

void tst_DialogLanguages::initTestCase()
{
    m_language = qEnvironmentVariable("LANGUAGE");
    QCOMPARE(QLocale(QLocale::system().uiLanguages().value(0)),
             QLocale(m_language)); // where the library looks
    m_catalogue = CatalogueFile::read(CatalogueFile::path(m_language));
    QVERIFY(!m_catalogue.isEmpty());
    m_stage = std::make_unique<DialogStage>();
    QVERIFY(m_stage->load("import QtQml 2.15\nimport Zemrik.Tessaline 1.0\nQtObject {}"));
    // As the player does it: Qt's own buttons speak the language too, where its catalogue is here.
    if (m_qtTexts.load(QLocale::system(), "qtbase", "_",
                       QLibraryInfo::location(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&m_qtTexts); // false for the empty one of English
}

void tst_DialogLanguages::init()
{
    QGuiApplication::setLayoutDirection(QLocale(m_language).textDirection());
    m_seen.clear();
    m_cut.clear();
    m_arguments.clear();
    m_stage->beginLog();
}

void tst_DialogLanguages::cleanup()
{
    m_stage->endTest();
}

// Keeps the texts that can be seen now: the window's title, and what the dialog's document shows.
// Qt's own buttons under it are none of the library's texts.
void tst_DialogLanguages::look()
{
    m_seen.insert(m_stage->dialogWindow()->title());
    QQuickItem *content = DialogStage::contentOf(m_stage->subject());
    for (QQuickItem *item : DialogStage::findAll(content, [](QQuickItem *) { return true; })) {
        const bool isField = DialogStage::isA(item, "TextField");
        if (!isField && !item->inherits("QQuickTextInput"))
            m_seen.insert(item->property("text").toString());
        if (isField && item->property("text").toString().isEmpty())
            m_seen.insert(item->property("placeholderText").toString());
        // A text that has just come is cut until its layout has made room for it.
        if (!QTest::qWaitFor([item] { return !item->property("truncated").toBool(); }, 1000))
            m_cut.insert(item->property("text").toString());
    }
    m_seen.remove(QString());
}

void tst_DialogLanguages::keepPicture(const QString &dialog) const
{
    DialogStage::keepPicture(m_stage->dialogWindow()->grabWindow(),
                             QString("%1-%2.png").arg(dialog, m_language));
}

// Whether the bar that moves through the synthetic camera's picture shows in full, not under the
// panel's texts.
bool tst_DialogLanguages::isMovingBarBeside(const QQuickItem *panel) const
{
    const QImage picture = m_stage->dialogWindow()->grabWindow();
    const QRectF covered = DialogStage::rectOf(panel);
    int light = 0;
    for (int x = 0; x < picture.width(); ++x) {
        const QPointF point(x, picture.height() / 2.0);
        if (!covered.contains(point) && DialogStage::pixel(picture, point).lightness() > 180)
            ++light;
    }
    return light > 45;
}

QString tst_DialogLanguages::translated(const QString &context, const QString &source,
                                        const QStringList &arguments) const
{
    for (const CatalogueFile::Message &message : m_catalogue) {
        if (message.context != context || message.source != source)
            continue;
        QString text = message.translation;
        for (const QString &argument : arguments)
            text = text.arg(argument);
        return text;
    }
    qFatal("No translation of %s", qPrintable(source));
}

// What has been seen but is neither a translation nor one of the data, what the catalogue has for
// these contexts but was never seen, and what ended in dots.
QString tst_DialogLanguages::problems(const QStringList &contexts, const QStringList &data) const
{
    QSet<QString> wanted;
    for (const CatalogueFile::Message &message : m_catalogue) {
        if (contexts.contains(message.context))
            wanted.insert(translated(message.context, message.source));
    }
    QStringList lines;
    for (const QString &text : m_seen) {
        if (!wanted.contains(text) && !data.contains(text))
            lines.append("no translation: " + text);
    }
    for (const QString &text : wanted) {
        if (!m_seen.contains(text))
            lines.append("not seen: " + text);
    }
    for (const QString &text : m_cut)
        lines.append("ends in dots: " + text);
    return lines.join('\n');
}

void tst_DialogLanguages::signInDialog()
{
    HttpServer server;
    QJsonObject self; // says nothing, as no portal does
    server.on("/sharing/rest/portals/self", [&self](const HttpServer::Request &) {
        return HttpServer::Answer{QJsonDocument(self).toJson(), 200, "application/json"};
    });
    const QString url = server.url("").toString(QUrl::StripTrailingSlash);
    m_arguments = {{"Sign in to %1", {"City maps"}},
                   {"Signing in to %1", {"City maps"}},
                   {"%1 (%2)", {"Survey", url}}};

    QTemporaryDir folder;
    const auto store = makeStore(folder.filePath("store.json"));
    store->setValue("Portal/portals",
                    portalsText({row(publicPortal, "Zemrik Online"),
                                 row("https://maps.example/portal", "City maps", true, true)}));
    store->setValue("Portal/username", "jo");
    store->setValue("Portal/url", "https://maps.example/portal");
    store->setValue("Portal/name", "City maps");
    store->setValue("Portal/ignoreSslErrors", true);
    QVERIFY(m_stage->load(document("password: 'secret'"), storeProperty(store.get())));
    QVERIFY(m_stage->open());
    QQuickItem *accept = m_stage->button(translated("PortalDialog", "Sign In"));
    QVERIFY(accept);
    QTRY_VERIFY(accept->width() > 0);
    look();
    keepPicture("portal-dialog");
    m_stage->subject()->setProperty("busy", true);
    look();
    m_stage->subject()->setProperty("busy", false);

    DialogStage::click(m_stage->imageButton("gear.png"));
    m_stage->waitForPage();
    look();
    keepPicture("portal-dialog-portals");
    const auto add = [&] {
        DialogStage::click(m_stage->button(translated("PortalDialog", "Add Portal")));
    };
    DialogStage::type(m_stage->fields().first(), url);
    add();
    QTRY_VERIFY(m_stage->text(translated("PortalDialog", "There is no portal at this URL")));
    look();
    self = {{"portalName", "Survey"}, {"isPortal", true}, {"supportsSceneServices", false}};
    add();
    QTRY_VERIFY(m_stage->text(
        translated("PortalDialog", "Quillform requires that Portal for Zemrik 10.3.1 is configured "
                                   "with a Hosted Server and Zemrik Data Store")));
    look();
    self["supportsSceneServices"] = true;
    add();
    QTRY_VERIFY(m_stage->text(translated("PortalDialog", "%1 (%2)")));
    look();
    QTRY_COMPARE(server.requestCount(), 6); // each attempt's second answer too
    QTRY_COMPARE(m_stage->count(QtDebugMsg, "info: "), 3);
    // The added portal is the one in use: its name is in the title, behind the list's page.
    const QString added = translated("PortalDialog", "%1 (%2)");
    const QString title = translated("PortalDialog", "Sign in to %1", {added});
    QCOMPARE(problems({"PortalDialog"},
                      {"Zemrik Online", "City maps", "https://maps.example/portal", url, title}),
             QString());
}

void tst_DialogLanguages::captureDialog()
{
    QVERIFY(m_stage->show("ImageCaptureDialog { id: theSubject; width: 560; height: 480 }"));
    QVERIFY(m_stage->openDialog());
    look();
    QTest::mouseMove(m_stage->dialogWindow(), QPoint(400, 200));
    DialogStage::click(m_stage->imageButton("gear.png"));
    QQuickItem *panel = m_stage->innerItem("cameraPropertiesPanel");
    const bool fromTheRight = QGuiApplication::isRightToLeft();
    QTRY_VERIFY(panel->opacity() == 1
                && panel->x()
                       == (fromTheRight ? panel->parentItem()->width() - panel->width() : 0));
    look();
    const auto choosers = DialogStage::itemsOf(panel, "CameraPropertyChooser");
    QCOMPARE(choosers.size(), 2);
    for (QQuickItem *chooser : choosers) {
        chooser->setProperty("expanded", true);
        QQuickItem *grid = DialogStage::itemsOf(chooser, "QQuickGridView").first();
        const int rows = qCeil(grid->property("count").toInt() / 2.0);
        QTRY_COMPARE(grid->height(), rows * chooser->property("itemHeight").toReal());
        // All cells lie within the panel.
        for (QQuickItem *label : DialogStage::itemsOf(grid, "QQuickText"))
            QVERIFY(DialogStage::rectOf(grid).contains(DialogStage::rectOf(label)));
    }
    look();
    QTRY_VERIFY(isMovingBarBeside(panel));
    keepPicture("image-capture-dialog");
    QCOMPARE(problems({"ImageCaptureDialog", "CameraProperties"}, {"Orientation:0 false"}),
             QString());
}

void tst_DialogLanguages::chooserDialog()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    QVERIFY(QDir().mkpath(folder + "/March"));
    QImage picture(160, 120, QImage::Format_RGB32);
    picture.fill(QColor("steelblue"));
    QVERIFY(picture.save(folder + "/coast.jpg"));
    picture.fill(QColor("olivedrab"));
    QVERIFY(picture.save(folder + "/farm.jpg"));
    QVERIFY(m_stage->show("ImageChooserDialog { id: theSubject; width: 560; height: 400 }"));
    QVERIFY(m_stage->openDialog());
    for (QQuickItem *image : DialogStage::itemsOf(m_stage->innerItem("imagesView"), "QQuickImage"))
        QTRY_COMPARE(image->property("status").toInt(), 1);
    QQuickItem *view = m_stage->innerItem("imagesView");
    auto *highlight = view->property("highlightItem").value<QQuickItem *>();
    auto *current = view->property("currentItem").value<QQuickItem *>();
    QTRY_COMPARE(highlight->position(), current->position());
    // The first picture leads, from the side where the language begins.
    const qreal middle = m_stage->dialogWindow()->width() / 2.0;
    QCOMPARE(DialogStage::rectOf(current).center().x() > middle,
             QLocale(m_language).textDirection() == Qt::RightToLeft);
    look();
    keepPicture("image-chooser-dialog");
    QCOMPARE(problems({"ImageChooserDialog"}, {"coast.jpg", "farm.jpg", "March"}), QString());
}

TESSALINE_INPUT_TEST_MAIN(tst_DialogLanguages)
#include "tst_DialogLanguages.moc"
