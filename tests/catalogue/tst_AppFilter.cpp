#include "catalogue/AppFilter.h"
#include "catalogue/AppInfo.h"
#include "support/IsolatedHome.h"
#include "support/SignalRecorder.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <memory>

class tst_AppFilter : public QObject
{
    Q_OBJECT

private slots:
    void defaults();
    void changesEmitTheirOwnSignalAndThenFilterChanged();
    void equalValuesEmitNothing();
    void clearEmitsOncePerChangedValue();
    void clearGoesThroughTheValuesInItsOrder();
    void types_data();
    void types();
    void text_data();
    void text();
    void textWithAPrefixInTheTitle();
    void tags_data();
    void tags();
    void lists_data();
    void lists();
    void flags();
    void hiddenAndOwnerAreNotMatched();
    void matchesType();
    void matchesList();
    void updateFlags();
    void extractTags_data();
    void extractTags();

private:
    static std::unique_ptr<AppInfo> app(const QVariantMap &item)
    {
        return std::make_unique<AppInfo>(item, nullptr);
    }
    static std::unique_ptr<AppInfo> localApp(const QByteArray &itemInfo)
    {
        static int number = 0;
        const QString folder = QDir::homePath() + "/app" + QString::number(++number);
        QDir().mkpath(folder);
        for (const auto &[name, content] : {std::pair{"/appinfo.json", QByteArray("{}")},
                                            std::pair{"/iteminfo.json", itemInfo}}) {
            QFile file(folder + QLatin1String(name));
            file.open(QIODevice::WriteOnly);
            file.write(content);
        }
        return std::make_unique<AppInfo>(folder, nullptr);
    }
};

void tst_AppFilter::defaults()
{
    const AppFilter filter;
    QVERIFY(filter.tags().isEmpty() && filter.owners().isEmpty() && filter.access().isEmpty());
    QVERIFY(filter.hidden());
    QCOMPARE(filter.types(), 1);
    QVERIFY(filter.text().isEmpty() && filter.owner().isEmpty());
    QVERIFY(!filter.published() && !filter.local() && !filter.updateAvailable()
            && !filter.updatedLocally() && !filter.onlineOnly());
}

void tst_AppFilter::changesEmitTheirOwnSignalAndThenFilterChanged()
{
    AppFilter filter;
    QStringList order;
    connect(&filter, &AppFilter::filterChanged, this, [&] { order << "filter"; });
    connect(&filter, &AppFilter::tagsChanged, this, [&] { order << "tags"; });
    connect(&filter, &AppFilter::typesChanged, this, [&] { order << "types"; });
    connect(&filter, &AppFilter::textChanged, this, [&] { order << "text"; });
    connect(&filter, &AppFilter::onlineOnlyChanged, this, [&] { order << "onlineOnly"; });

    filter.setTags({"a"});
    filter.setTypes(AppInfo::Tool);
    filter.setText("x");
    filter.setOnlineOnly(true);

    QCOMPARE(order, QStringList({"tags", "filter", "types", "filter", "text", "filter",
                                 "onlineOnly", "filter"}));
}

void tst_AppFilter::equalValuesEmitNothing()
{
    AppFilter filter;
    filter.setTags({"a", "b"});
    QSignalSpy spy(&filter, &AppFilter::filterChanged);
    filter.setTags({"a", "b"});
    filter.setTypes(AppInfo::App);
    filter.setHidden(true);
    filter.setOwner(QString());
    QCOMPARE(spy.count(), 0);
    filter.setTags({"b", "a"});
    QCOMPARE(spy.count(), 1);
}

void tst_AppFilter::clearEmitsOncePerChangedValue()
{
    AppFilter filter;
    filter.setHidden(false);
    filter.setText("x");
    filter.setLocal(true);
    QSignalSpy spy(&filter, &AppFilter::filterChanged);
    filter.clear();
    QCOMPARE(spy.count(), 3);
    QVERIFY(filter.hidden() && filter.text().isEmpty() && !filter.local());
}

void tst_AppFilter::clearGoesThroughTheValuesInItsOrder()
{
    AppFilter filter;
    filter.setOnlineOnly(true);
    filter.setLocal(true);
    filter.setUpdatedLocally(true);
    filter.setUpdateAvailable(true);
    filter.setPublished(true);
    filter.setOwner("x");
    filter.setText("x");
    filter.setTypes(AppInfo::Tool);
    filter.setHidden(false);
    filter.setAccess({"x"});
    filter.setOwners({"x"});
    filter.setTags({"x"});
    SignalRecorder recorder(&filter);
    filter.clear();
    QStringList expected;
    for (const char *name :
         {"tags", "owners", "access", "hidden", "types", "text", "owner", "published",
          "updateAvailable", "updatedLocally", "local", "onlineOnly"})
        expected << QString(name) + "Changed"
                 << "filterChanged";
    QCOMPARE(recorder.take(), expected);
    filter.clear();
    QCOMPARE(recorder.names(), QStringList());
}

void tst_AppFilter::types_data()
{
    QTest::addColumn<int>("types");
    QTest::addColumn<QString>("type");
    QTest::addColumn<bool>("passes");
    QTest::newRow("default, app") << 1 << "App" << true;
    QTest::newRow("default, template") << 1 << "Template" << false;
    QTest::newRow("default, tool") << 1 << "Tool" << false;
    QTest::newRow("default, unknown") << 1 << "foo" << false;
    QTest::newRow("0, unknown") << 0 << "foo" << true;
    QTest::newRow("0, app") << 0 << "App" << false;
    QTest::newRow("7, tool") << 7 << "Tool" << true;
    QTest::newRow("6, app") << 6 << "App" << false;
    QTest::newRow("6, template") << 6 << "template" << true;
    QTest::newRow("7, app") << 7 << "APP" << true;
    QTest::newRow("7, template") << 7 << "Template" << true;
    QTest::newRow("7, unknown") << 7 << "foo" << false;
}

void tst_AppFilter::types()
{
    QFETCH(int, types);
    QFETCH(QString, type);
    AppFilter filter;
    filter._setTypes(types);
    const auto info = app({});
    info->setValue("type", type);
    QTEST(filter.matchesTypes(info.get()), "passes");
    QTEST(filter.matches(info.get()), "passes");
}

void tst_AppFilter::text_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("passes");
    QTest::newRow("part of the title") << "ITY M" << true;
    QTest::newRow("not in the title") << "country" << false;
    QTest::newRow("two words apart") << "city x map" << false;
    QTest::newRow("tag") << "#Streets" << true;
    QTest::newRow("one of two tags") << "#none #streets" << true;
    QTest::newRow("other tag") << "#none" << false;
    QTest::newRow("owner") << "@jo" << true;
    QTest::newRow("part of an owner") << "@j" << false;
    QTest::newRow("owner of more letters") << "@john" << false;
    QTest::newRow("owner beside other words") << "x @none @Jo" << true;
    QTest::newRow("tag as an owner") << "@streets" << false;
    QTest::newRow("prefix alone") << "#" << false;
    QTest::newRow("prefix in the middle") << "x#streets" << false;
    QTest::newRow("blanks") << " " << true; // the title has one
    QTest::newRow("word beside a tag") << "anything #streets" << true;
}

void tst_AppFilter::text()
{
    QFETCH(QString, text);
    AppFilter filter;
    filter.setText(text);
    const auto info =
        app({{"title", "City Map"}, {"tags", QStringList({"streets"})}, {"owner", "JO"}});
    QTEST(filter.matches(info.get()), "passes");
}

// The text as a whole is looked for in the title first, its prefix included.
void tst_AppFilter::textWithAPrefixInTheTitle()
{
    const auto info = app({{"title", "C# and @home #Map"}});
    AppFilter filter;
    for (const char *text : {"#", "@", "#map", "@HOME #m"}) {
        filter.setText(text);
        QVERIFY2(filter.matches(info.get()), text);
    }
    filter.setText("#map @home");
    QVERIFY(!filter.matches(info.get()));
}

void tst_AppFilter::tags_data()
{
    QTest::addColumn<QStringList>("tags");
    QTest::addColumn<bool>("passes");
    QTest::newRow("none asked for") << QStringList() << true;
    QTest::newRow("one of them") << QStringList({"x", "MAP"}) << true;
    QTest::newRow("none of them") << QStringList({"x", "y"}) << false;
}

void tst_AppFilter::tags()
{
    QFETCH(QStringList, tags);
    AppFilter filter;
    filter.setTags(tags);
    const auto info = app({{"tags", QStringList({"map", "z"})}});
    QTEST(filter.matches(info.get()), "passes");
}

void tst_AppFilter::lists_data()
{
    QTest::addColumn<QStringList>("owners");
    QTest::addColumn<QStringList>("access");
    QTest::addColumn<bool>("passes");
    QTest::newRow("none") << QStringList() << QStringList() << true;
    QTest::newRow("owner, other case") << QStringList({"ME"}) << QStringList() << true;
    QTest::newRow("other owner") << QStringList({"you"}) << QStringList() << false;
    QTest::newRow("access") << QStringList() << QStringList({"public", "ORG"}) << true;
    QTest::newRow("other access") << QStringList({"me"}) << QStringList({"private"}) << false;
}

void tst_AppFilter::lists()
{
    QFETCH(QStringList, owners);
    QFETCH(QStringList, access);
    AppFilter filter;
    filter.setOwners(owners);
    filter.setAccess(access);
    const auto info = app({{"owner", "me"}, {"access", "org"}});
    QTEST(filter.matches(info.get()), "passes");
}

void tst_AppFilter::flags()
{
    const auto online = app({{"id", "1"}});
    const auto unpublished = app({});
    const auto local = localApp(R"({"id": "2"})");
    AppFilter filter;

    filter.setLocal(true);
    QVERIFY(filter.matches(local.get()) && !filter.matches(online.get()));
    filter.clear();
    filter.setPublished(true);
    QVERIFY(filter.matches(online.get()) && filter.matches(local.get())
            && !filter.matches(unpublished.get()));
    filter.clear();
    filter.setOnlineOnly(true);
    QVERIFY(filter.matches(online.get()) && !filter.matches(local.get())
            && !filter.matches(unpublished.get()));
    filter.setLocal(true);
    QVERIFY(!filter.matches(online.get()) && !filter.matches(local.get()));
}

void tst_AppFilter::hiddenAndOwnerAreNotMatched()
{
    const auto info = app({{"id", "1"}, {"owner", "jo"}});
    AppFilter filter;
    filter.setOwner("al");
    filter.setHidden(false);
    QVERIFY(filter.matches(info.get()));
}

void tst_AppFilter::matchesType()
{
    const auto tool = app({{"typeKeywords", QStringList{"TOOL"}}});
    QVERIFY(AppFilter::matchesType(tool.get(), AppInfo::Tool));
    QVERIFY(!AppFilter::matchesType(tool.get(), AppInfo::App));
    QVERIFY(!AppFilter::matchesType(tool.get(), AppInfo::Unknown));
    const AppFilter::AppTypes types(AppInfo::Template | AppInfo::Tool);
    QVERIFY(AppFilter::matchesTypes(tool.get(), types));
    QVERIFY(!AppFilter::matchesTypes(tool.get(), AppInfo::Template));
    QVERIFY(!AppFilter::matchesTypes(tool.get(), AppFilter::AppTypes()));
}

void tst_AppFilter::matchesList()
{
    QVERIFY(AppFilter::matchesList("x", {}));
    QVERIFY(AppFilter::matchesList("", {}));
    QVERIFY(AppFilter::matchesList("Jo", {"al", "JO"}));
    QVERIFY(!AppFilter::matchesList("j", {"jo"}));
    QVERIFY(!AppFilter::matchesList("", {"jo"}));
    QVERIFY(AppFilter::matchesList("", {""}));
}

void tst_AppFilter::updateFlags()
{
    const auto current = localApp(R"({"id": "3"})");
    const auto old = localApp(R"({"id": "4"})");
    const qint64 modified = old->modified().toMSecsSinceEpoch();
    old->statusUpdate({{"modified", modified + 1000}});
    const auto changed = localApp(R"({"id": "5"})");
    changed->statusUpdate({{"modified", changed->modified().toMSecsSinceEpoch() - 1000}});

    AppFilter filter;
    filter.setUpdateAvailable(true);
    QVERIFY(filter.matches(old.get()) && !filter.matches(changed.get())
            && !filter.matches(current.get()));
    filter.clear();
    filter.setUpdatedLocally(true);
    QVERIFY(filter.matches(changed.get()) && !filter.matches(old.get())
            && !filter.matches(current.get()));
}

void tst_AppFilter::extractTags_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("tags");
    QTest::newRow("empty") << "" << QStringList();
    QTest::newRow("prefix alone") << "# a #" << QStringList();
    QTest::newRow("order kept") << "#b  x #a" << QStringList({"b", "a"});
    QTest::newRow("twice the prefix") << "##a" << QStringList({"#a"});
}

void tst_AppFilter::extractTags()
{
    QFETCH(QString, text);
    QTEST(AppFilter::extractTags(text, "#"), "tags");
    QCOMPARE(AppFilter::extractTags("TAG:One tag:two tag: tags", "Tag:"),
             QStringList({"One", "two"}));
}

TESSALINE_TEST_MAIN(tst_AppFilter)
#include "tst_AppFilter.moc"
