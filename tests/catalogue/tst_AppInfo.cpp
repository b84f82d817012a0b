#include "catalogue/AppFolder.h"
#include "catalogue/AppInfo.h"
#include "plugin/JsonUtility.h"
#include "support/IsolatedHome.h"
#include "support/LogCapture.h"
#include "support/SignalRecorder.h"
#include "support/UnprivilegedUser.h"

#include <QJSEngine>
#include <QSignalSpy>
#include <QTest>

class tst_AppInfo : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void objectWithoutAPathIsEmpty();
    void constructorsLeadToTheSameApp();
    void constructorFromASearchResultHasNoFolder();

    void keysOfAppInfoReadAsProperties();
    void keysOfItemInfoReadAsProperties();
    void absentKeysHaveDefaults();
    void keysAreCaseSensitive();
    void filesThatAreNoObjectsReadAsEmpty_data();
    void filesThatAreNoObjectsReadAsEmpty();
    void valuesOfAWrongTypeAreHarmless_data();
    void valuesOfAWrongTypeAreHarmless();
    void datesKeepSixtyFourBits();

    void typeAndMainFileAreCompletedInMemory();
    void declaredTypeAndMainFileAreKept();
    void typeIsDerived_data();
    void typeIsDerived();

    void setPathEmitsInOrder_data();
    void setPathEmitsInOrder();
    void setPathReplacesWhatWasKnown();
    void setPathResolvesVariables();
    void documentStandsForItsFolder();
    void documentWithoutAppInfoIsNotLocal();
    void jsonFileIsTheItemWithAPicture();
    void jsonSuffixIsMatchedWithoutCase();
    void folderForgetsThePictureOfAnItemFile();
    void clearStandsForTheCurrentFolder();
    void refreshReadsAgainAndEmitsInOrder();
    void setItemInfoReplacesTheMapAndEmitsTheSameGroup();
    void readFunctionsEmitNothing();
    void clearAppInfoEmptiesTheMapSilently();

    void validNeedsBothFiles_data();
    void validNeedsBothFiles();
    void editableNeedsWriteAccess_data();
    void editableNeedsWriteAccess();
    void resourceAppIsValidButNotEditable();
    void existsAnswersForFoldersAndFiles_data();
    void existsAnswersForFoldersAndFiles();
    void adjustPathOnlyChangesQrcPaths_data();
    void adjustPathOnlyChangesQrcPaths();
    void isLocalIsDecidedWhenThePathIsSet();
    void contentUrlFollowsTheFolder();

    void thumbnailComesFromTheFolderOrThePortal();
    void thumbnailPathFromOutsideWins();
    void thumbnailUrlMayBeAUrlValue();
    void nullEntryShowsItsThumbnailAndSortsFirst();

    void modifiedOfALocalAppIsItsNewestFile();
    void modifiedIsNullWithoutACountedFile();
    void modifiedOfAPortalAppIsTheItems();
    void statusUpdateComparesTheDates_data();
    void statusUpdateComparesTheDates();
    void statusUpdateEmitsAtEachStep();
    void statusUpdateWithoutAnEntryWarns();
    void freshThumbnailCountsAsLocalUpdate();
    void setPathClearsTheUpdateFlags();
    void isPublishedGoesByTheItemId();
    void sortKeyIsTheLowerCaseTitle();

    void valueReadsBothMaps();
    void valueOfTheBarePrefixIsTheDefault();
    void setValueWritesIntoTheRightMap();
    void propertyValueReadsTheAuthorsValues();
    void setInfoValueNormalisesScriptValuesAndDates();
    void setInfoValueOnlyIfAbsent();
    void setItemInfoValueEmitsByKey_data();
    void setItemInfoValueEmitsByKey();
    void setLocalInfoStoresAsItIs();
    void itemSettersEmitOnlyForANewText_data();
    void itemSettersEmitOnlyForANewText();
    void setTagsTrimsAndAlwaysEmits();
    void setDependenciesStoresAndAlwaysEmits();

    void versionPartsReadAndWrite();
    void writingZeroOverAnAbsentPartDoesNothing();
    void dependenciesAreMaps();

    void writeAppInfoNeedsALocalApp();
    void writeStoresTheThreeFiles();
    void writeGoesOnAfterAFailure();
    void writeKeepsUnknownKeys();
    void writeItemInfoMayStampTheTime();
    void nothingIsWrittenWithoutAFolder();
    void pinnedIsWrittenAtOnce();
    void fullDiskIsReported();
};

namespace {

const QStringList itemSignals{"itemIdChanged",      "titleChanged",    "snippetChanged",
                              "descriptionChanged", "tagsChanged",     "thumbnailChanged",
                              "createdChanged",     "modifiedChanged", "statusChanged"};
const QStringList itemInfoGroup = itemSignals
                                  + QStringList{"dependenciesChanged", "itemInfoChanged",
                                                "licenseInfoChanged", "accessInformationChanged"};
const QStringList lastOfSetPath =
    QStringList{"statusChanged", "pathChanged"} + itemSignals
    + QStringList{"requirementChanged", "dependenciesChanged", "propertiesChanged",
                  "itemInfoChanged",    "licenseInfoChanged",  "accessInformationChanged",
                  "versionChanged"};

const qint64 portalTime = 1500000000123;

QByteArray modifiedAt(qint64 time)
{
    return "{\"modified\": " + QByteArray::number(time) + "}";
}

QVariantMap json(const QByteArray &text)
{
    return JsonUtility::toVariantMap(text, false);
}

QStringList repeated(const QString &name, int count)
{
    QStringList names;
    while (count-- > 0)
        names.append(name);
    return names;
}

} // namespace

void tst_AppInfo::initTestCase()
{
    // No file of the source tree may be taken for an app by an empty path.
    QVERIFY(QDir::setCurrent(QDir::homePath()));
}

void tst_AppInfo::objectWithoutAPathIsEmpty()
{
    const AppInfo info;

    QCOMPARE(info.path(), QString());
    QVERIFY(!info.isValid() && !info.isEditable());
    QVERIFY(!info.isLocal() && !info.isPublished());
    QVERIFY(!info.isUpdateAvailable() && !info.isUpdatedLocally() && !info.pinned());
    QVERIFY(info.json().isEmpty() && info.itemInfo().isEmpty());
    QCOMPARE(info.version(), QString("1.0.1"));
    QCOMPARE(info.type(), AppInfo::App);
    QCOMPARE(info.thumbnail(), QUrl());
    QCOMPARE(info.sortKey(), QString());
}

void tst_AppInfo::constructorsLeadToTheSameApp()
{
    AppFolder folder;
    folder.appInfo("{}").itemInfo(R"({"title": "Hello"})");

    const AppInfo fromPath(folder.path());
    const AppInfo fromUrl(QUrl::fromLocalFile(folder.path()));
    const AppInfo fromDocument(QUrl::fromLocalFile(folder.filePath("main.qml")));

    for (const AppInfo *info : {&fromPath, &fromUrl, &fromDocument}) {
        QCOMPARE(info->path(), folder.path());
        QCOMPARE(info->pathUrl(), QUrl::fromLocalFile(folder.path()));
        QCOMPARE(info->title(), QString("Hello"));
        QVERIFY(info->isLocal());
    }
}

void tst_AppInfo::constructorFromASearchResultHasNoFolder()
{
    const QVariantMap item{{"id", "abc"}, {"title", "Portal"}};

    QObject parent;
    const AppInfo *info = new AppInfo(item, &parent);

    QCOMPARE(info->parent(), &parent);
    QCOMPARE(info->itemInfo(), item);
    QCOMPARE(info->path(), QString());
    QVERIFY(!info->isLocal() && !info->isValid());
    QVERIFY(info->isPublished());
    QCOMPARE(info->itemId(), QString("abc"));
}

void tst_AppInfo::keysOfAppInfoReadAsProperties()
{
    AppFolder folder;
    folder.appInfo(R"({
        "mainFile": "start.qml", "settingsFile": "settings.qml", "aboutFile": "about.qml",
        "helpFile": "help/index.html", "projectFile": "hello.project",
        "onlineRequired": true, "signInRequired": true,
        "properties": {"color": "red", "size": 3},
        "dependencies": ["abc"],
        "version": {"major": 2, "minor": 3, "micro": 4},
        "type": "Tool", "display": {"desktop": {}}
    })");

    const AppInfo info(folder.path());

    QCOMPARE(info.mainFile(), QString("start.qml"));
    QCOMPARE(info.source(), QUrl::fromLocalFile(folder.filePath("start.qml")));
    QCOMPARE(info.settingsSource(), QUrl::fromLocalFile(folder.filePath("settings.qml")));
    QCOMPARE(info.aboutSource(), QUrl::fromLocalFile(folder.filePath("about.qml")));
    QCOMPARE(info.helpFile(), QString("help/index.html"));
    QCOMPARE(info.helpPath(), folder.filePath("help/index.html"));
    QCOMPARE(info.projectFile(), QString("hello.project"));
    QVERIFY(info.isOnlineRequired() && info.isSignInRequired());
    QCOMPARE(info.properties(), QVariantMap({{"color", "red"}, {"size", 3.0}}));
    QCOMPARE(info.version(), QString("2.3.4"));
    QCOMPARE(info.type(), AppInfo::Tool);
    QCOMPARE(info.typeString(), QString("Tool"));
    QCOMPARE(info.json(), json(folder.read("appinfo.json")));
}

void tst_AppInfo::keysOfItemInfoReadAsProperties()
{
    AppFolder folder;
    folder.itemInfo(R"({
        "id": "abc", "title": "Title", "snippet": "Snippet", "description": "<b>Text</b>",
        "tags": ["a", "b"], "thumbnailUrl": "http://localhost/t.png", "licenseInfo": "Licence",
        "accessInformation": "Credits", "access": "public", "owner": "jo", "avgRating": 4.2,
        "numRatings": 7, "created": 1400000000123, "modified": 1500000000123
    })");

    const AppInfo info(folder.path());

    QVERIFY(!info.isLocal());
    QCOMPARE(info.itemId(), QString("abc"));
    QVERIFY(info.isPublished());
    QCOMPARE(info.title(), QString("Title"));
    QCOMPARE(info.snippet(), QString("Snippet"));
    QCOMPARE(info.description(), QString("<b>Text</b>"));
    QCOMPARE(info.tags(), QStringList({"a", "b"}));
    QCOMPARE(info.thumbnail(), QUrl("http://localhost/t.png"));
    QCOMPARE(info.licenseInfo(), QString("Licence"));
    QCOMPARE(info.accessInformation(), QString("Credits"));
    QCOMPARE(info.access(), QString("public"));
    QCOMPARE(info.owner(), QString("jo"));
    QCOMPARE(info.avgRating(), 4);
    QCOMPARE(info.numRatings(), 7);
    QCOMPARE(info.created(), QDateTime::fromMSecsSinceEpoch(1400000000123));
    QCOMPARE(info.modified(), QDateTime::fromMSecsSinceEpoch(1500000000123));
    QCOMPARE(info.itemInfo(), json(folder.read("iteminfo.json")));
}

void tst_AppInfo::absentKeysHaveDefaults()
{
    AppFolder folder;
    folder.appInfo("{}");

    const AppInfo info(folder.path());

    QVERIFY(info.isLocal() && !info.isValid() && !info.isEditable());
    QCOMPARE(info.itemId(), QString());
    QVERIFY(!info.isPublished() && !info.pinned());
    QCOMPARE(info.source(), QUrl::fromLocalFile(folder.filePath("main.qml")));
    QCOMPARE(info.settingsSource(), QUrl());
    QCOMPARE(info.aboutSource(), QUrl());
    QCOMPARE(info.helpFile(), QString());
    QCOMPARE(info.helpPath(), folder.path());
    QCOMPARE(info.projectFile(), QString());
    QVERIFY(!info.isOnlineRequired() && !info.isSignInRequired());
    QCOMPARE(info.properties(), QVariantMap());
    QCOMPARE(info.dependencies(), QVariantList());
    QCOMPARE(info.version(), QString("1.0.1"));
    QCOMPARE(info.type(), AppInfo::App);
    QCOMPARE(info.typeString(), QString("App"));
    QCOMPARE(info.tags(), QStringList());
    QCOMPARE(info.thumbnail(), QUrl());
    QCOMPARE(info.avgRating(), 0);
    QCOMPARE(info.numRatings(), 0);
    QVERIFY(info.created().isValid());
    QCOMPARE(info.created().toMSecsSinceEpoch(), qint64(0));
}

void tst_AppInfo::keysAreCaseSensitive()
{
    AppFolder folder;
    folder.appInfo(R"({"Mainfile": "x.qml", "VERSION": {"major": 9}})").itemInfo(R"({"ID": "x"})");

    const AppInfo info(folder.path());

    QCOMPARE(info.mainFile(), QString("main.qml"));
    QCOMPARE(info.version(), QString("1.0.1"));
    QCOMPARE(info.itemId(), QString());
}

void tst_AppInfo::filesThatAreNoObjectsReadAsEmpty_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("array") << QByteArray("[1, 2]");
    QTest::newRow("text") << QByteArray("hello");
    QTest::newRow("cut off") << QByteArray("{\"id\": \"a");
    QTest::newRow("zeros") << QByteArray(64, '\0');
    QTest::newRow("binary JSON") << QByteArray("qbjs\1\0\0\0", 8);
}

void tst_AppInfo::filesThatAreNoObjectsReadAsEmpty()
{
    QFETCH(QByteArray, content);
    AppFolder folder;
    folder.appInfo(content).itemInfo(content).localInfo(content);

    LogCapture log;
    const AppInfo info(folder.path());

    QVERIFY(info.isLocal() && info.isValid());
    QCOMPARE(info.json(), QVariantMap({{"type", "App"}, {"mainFile", "main.qml"}}));
    QVERIFY(info.itemInfo().isEmpty());
    QVERIFY(!info.pinned());
    QVERIFY2(log.count(QtWarningMsg) + log.count(QtCriticalMsg) == 0, qPrintable(log.dump()));
}

void tst_AppInfo::valuesOfAWrongTypeAreHarmless_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("number");

    QTest::newRow("null") << QByteArray("null") << QString() << 0;
    QTest::newRow("bool") << QByteArray("true") << QString("true") << 1;
    QTest::newRow("number") << QByteArray("7") << QString("7") << 7;
    QTest::newRow("text") << QByteArray("\"7x\"") << QString("7x") << 0;
    QTest::newRow("array") << QByteArray("[[1], {\"a\": 2}]") << QString() << 0;
    QTest::newRow("object") << QByteArray("{\"a\": {}}") << QString() << 0;
    QTest::newRow("huge number") << QByteArray("1e300") << QString("1e+300") << INT_MIN;
}

void tst_AppInfo::valuesOfAWrongTypeAreHarmless()
{
    QFETCH(QByteArray, value);
    QFETCH(QString, text);
    QFETCH(int, number);
    const auto object = [&](const QStringList &keys) {
        QByteArray json = "{";
        for (const QString &key : keys)
            json += (json.size() > 1 ? ", \"" : "\"") + key.toUtf8() + "\": " + value;
        return json + "}";
    };
    AppFolder folder;
    folder.appInfo(object({"mainFile", "settingsFile", "aboutFile", "helpFile", "projectFile",
                           "onlineRequired", "signInRequired", "properties", "dependencies",
                           "version", "environment"}));
    folder.itemInfo(object({"id", "title", "snippet", "description", "tags", "typeKeywords",
                            "thumbnailUrl", "licenseInfo", "accessInformation", "access", "owner",
                            "avgRating", "numRatings", "created", "modified"}));
    folder.localInfo(object({"pinned"}));

    const AppInfo info(folder.path());

    for (const QString &read :
         {info.mainFile(), info.helpFile(), info.projectFile(), info.itemId(), info.title(),
          info.snippet(), info.description(), info.licenseInfo(), info.accessInformation(),
          info.access(), info.owner()})
        QCOMPARE(read, text);
    QCOMPARE(info.source().isEmpty(), text.isEmpty());
    QCOMPARE(info.settingsSource().isEmpty(), text.isEmpty());
    QCOMPARE(info.aboutSource().isEmpty(), text.isEmpty());
    if (number != INT_MIN) {
        QCOMPARE(info.avgRating(), number);
        QCOMPARE(info.numRatings(), number);
        QCOMPARE(info.created().toMSecsSinceEpoch(), qint64(number));
    }
    QCOMPARE(info.isOnlineRequired(), info.isSignInRequired());
    QCOMPARE(info.isOnlineRequired(), info.pinned());
    QCOMPARE(info.version(), QString("1.0.1"));
    QCOMPARE(info.type(), AppInfo::App);
    for (const QVariant &dependency : info.dependencies())
        QCOMPARE(dependency.type(), QVariant::Map);
    info.properties();
    info.tags();
    info.thumbnail();
    info.modified();
}

void tst_AppInfo::datesKeepSixtyFourBits()
{
    const qint64 time = Q_INT64_C(32503680000999); // the year 3000

    const AppInfo info(QVariantMap{{"created", time}, {"modified", double(time)}});

    QCOMPARE(info.created().toMSecsSinceEpoch(), time);
    QCOMPARE(info.modified().toMSecsSinceEpoch(), time);
}

void tst_AppInfo::typeAndMainFileAreCompletedInMemory()
{
    AppFolder folder;
    folder.appInfo(R"({"a": 1})").itemInfo(R"({"typeKeywords": ["Template"]})");

    AppInfo info(folder.path());

    QCOMPARE(info.json(),
             QVariantMap({{"a", 1.0}, {"type", "Template"}, {"mainFile", "main.qml"}}));
    QCOMPARE(folder.read("appinfo.json"), QByteArray(R"({"a": 1})"));
    QVERIFY(info.writeAppInfo());
    QCOMPARE(json(folder.read("appinfo.json")), info.json());
}

void tst_AppInfo::declaredTypeAndMainFileAreKept()
{
    AppFolder folder;
    folder.appInfo(R"({"type": 2, "mainFile": ""})");

    const AppInfo info(folder.path());

    QCOMPARE(info.type(), AppInfo::Template);
    QCOMPARE(info.appInfoValue("type"), QVariant(2.0));
    QCOMPARE(info.mainFile(), QString());
    QCOMPARE(info.source(), QUrl());
}

void tst_AppInfo::typeIsDerived_data()
{
    QTest::addColumn<QByteArray>("declared");
    QTest::addColumn<QByteArray>("keywords");
    QTest::addColumn<AppInfo::AppType>("type");
    QTest::addColumn<QString>("name");

    const QByteArray none = "[]";
    QTest::newRow("nothing") << QByteArray() << none << AppInfo::App << "App";
    QTest::newRow("keyword template")
        << QByteArray() << QByteArray(R"(["tEMPLATE"])") << AppInfo::Template << "Template";
    QTest::newRow("keyword tool") << QByteArray() << QByteArray(R"(["x", "Tool"])") << AppInfo::Tool
                                  << "Tool";
    QTest::newRow("template wins over tool")
        << QByteArray() << QByteArray(R"(["Tool", "Template"])") << AppInfo::Template << "Template";
    QTest::newRow("keyword must match as a whole")
        << QByteArray() << QByteArray(R"(["Toolbox"])") << AppInfo::App << "App";
    QTest::newRow("null counts as absent")
        << QByteArray("null") << QByteArray(R"(["Tool"])") << AppInfo::Tool << "Tool";
    QTest::newRow("declared beats keywords")
        << QByteArray("\"Tool\"") << QByteArray(R"(["Template"])") << AppInfo::Tool << "Tool";
    QTest::newRow("declared in any case")
        << QByteArray("\"tOOL\"") << none << AppInfo::Tool << "Tool";
    QTest::newRow("declared number") << QByteArray("4") << none << AppInfo::Tool << "Tool";
    QTest::newRow("number that isn't in the enum")
        << QByteArray("3") << none << AppInfo::Unknown << "Unknown";
    QTest::newRow("unknown name") << QByteArray("\"foo\"") << QByteArray(R"(["Tool"])")
                                  << AppInfo::Unknown << "Unknown";
    QTest::newRow("empty name") << QByteArray("\"\"") << none << AppInfo::Unknown << "Unknown";
    QTest::newRow("object") << QByteArray("{}") << none << AppInfo::Unknown << "Unknown";
}

void tst_AppInfo::typeIsDerived()
{
    QFETCH(QByteArray, declared);
    QFETCH(QByteArray, keywords);
    QFETCH(AppInfo::AppType, type);
    QFETCH(QString, name);
    AppFolder folder;
    folder.appInfo(declared.isEmpty() ? QByteArray("{}") : "{\"type\": " + declared + "}");
    folder.itemInfo("{\"typeKeywords\": " + keywords + "}");

    const AppInfo info(folder.path());

    QCOMPARE(info.type(), type);
    QCOMPARE(info.typeString(), name);
    if (declared.isEmpty())
        QCOMPARE(info.appInfoValue("type").toString(), name);
}

void tst_AppInfo::setPathEmitsInOrder_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("statusSignals");

    QTest::newRow("folder") << "" << 4;
    QTest::newRow("document") << "main.qml" << 4;
    QTest::newRow("item file") << "item.json" << 5;
    QTest::newRow("missing file") << "nothing.txt" << 4;
}

void tst_AppInfo::setPathEmitsInOrder()
{
    QFETCH(QString, file);
    QFETCH(int, statusSignals);
    AppFolder folder;
    folder.appInfo("{}").itemInfo("{}").write("main.qml").write("item.json", "{}");
    const QString path = file.isEmpty() ? folder.path() : folder.filePath(file);
    const QStringList expected = repeated("statusChanged", statusSignals) + lastOfSetPath;

    AppInfo info;
    SignalRecorder recorder(&info);

    info.setPath(path);
    QCOMPARE(recorder.take(), expected);
    info.setPath(path);
    QCOMPARE(recorder.take(), expected);
    info.setPathUrl(QUrl::fromLocalFile(path));
    QCOMPARE(recorder.take(), expected);
}

void tst_AppInfo::setPathReplacesWhatWasKnown()
{
    AppFolder first;
    first.appInfo(R"({"a": 1})")
        .itemInfo(R"({"id": "one", "owner": "jo"})")
        .localInfo(R"({"pinned": true})");
    AppFolder second;
    second.appInfo(R"({"b": 2})").itemInfo(R"({"id": "two"})");

    AppInfo info(first.path());
    QVERIFY(info.pinned());
    info.setPath(second.path());

    QCOMPARE(info.itemId(), QString("two"));
    QCOMPARE(info.owner(), QString());
    QVERIFY(!info.json().contains("a") && info.json().contains("b"));
    QVERIFY(!info.pinned());
}

void tst_AppInfo::setPathResolvesVariables()
{
    const QDir home = QDir::home();
    QVERIFY(home.mkpath("apps/hello"));
    QFile file(home.filePath("apps/hello/appinfo.json"));
    QVERIFY(file.open(QIODevice::WriteOnly));

    const AppInfo info(QString("~/apps/hello"));

    QCOMPARE(info.path(), home.filePath("apps/hello"));
    QVERIFY(info.isLocal());
}

void tst_AppInfo::documentStandsForItsFolder()
{
    AppFolder folder;
    folder.appInfo(R"({"mainFile": "start.qml"})").itemInfo(R"({"title": "Hello"})");

    const AppInfo info(folder.filePath("other.qml"));

    QCOMPARE(info.path(), folder.path());
    QCOMPARE(info.title(), QString("Hello"));
    QVERIFY(info.isLocal() && info.isValid());
    QCOMPARE(info.mainFile(), QString("start.qml"));
}

void tst_AppInfo::documentWithoutAppInfoIsNotLocal()
{
    AppFolder folder;
    folder.write("foo.qml");

    const AppInfo info(folder.filePath("foo.qml"));

    QVERIFY(AppInfo::exists(folder.filePath("foo.qml")));
    QCOMPARE(info.path(), folder.path());
    QVERIFY(!info.isLocal());
    QCOMPARE(info.mainFile(), QString("main.qml"));
}

void tst_AppInfo::jsonFileIsTheItemWithAPicture()
{
    AppFolder folder;
    folder.write("abc.json", R"({"id": "abc", "title": "From the file"})");
    folder.itemInfo(R"({"id": "other"})");

    AppInfo info(folder.filePath("abc.json"));

    QCOMPARE(info.path(), folder.path());
    QCOMPARE(info.itemId(), QString("abc"));
    QCOMPARE(info.thumbnailPath(), folder.filePath("abc.png"));
    QVERIFY(!info.isLocal() && !info.isValid());

    folder.appInfo("{}");
    QVERIFY(info.isValid());
    info.setPath(folder.filePath("abc.json"));
    QVERIFY(info.isLocal());

    // A later refresh goes back to the folder's own file.
    info.refresh();
    QCOMPARE(info.itemId(), QString("other"));
}

void tst_AppInfo::jsonSuffixIsMatchedWithoutCase()
{
    AppFolder folder;
    folder.write("a.b.JSON", R"({"id": "abc"})");

    const AppInfo info(folder.filePath("a.b.JSON"));

    QCOMPARE(info.itemId(), QString("abc"));
    QCOMPARE(info.thumbnailPath(), folder.filePath("a.png"));
}

void tst_AppInfo::folderForgetsThePictureOfAnItemFile()
{
    AppFolder folder;
    folder.appInfo("{}").write("abc.json", "{}").write("main.qml");

    AppInfo info(folder.filePath("abc.json"));
    info.setPath(folder.filePath("main.qml"));
    QCOMPARE(info.thumbnailPath(), folder.filePath("abc.png"));

    info.setPath(folder.path());
    QCOMPARE(info.thumbnailPath(), folder.filePath("thumbnail.png"));
}

void tst_AppInfo::clearStandsForTheCurrentFolder()
{
    AppFolder folder;
    folder.appInfo("{}").itemInfo(R"({"id": "abc"})");
    AppInfo info(folder.path());
    SignalRecorder recorder(&info);

    info.clear();

    QCOMPARE(info.path(), QString("."));
    QVERIFY(!info.isLocal() && !info.isValid() && !info.isPublished());
    QVERIFY(info.itemInfo().isEmpty());
    QCOMPARE(recorder.names(), repeated("statusChanged", 4) + lastOfSetPath);
}

void tst_AppInfo::refreshReadsAgainAndEmitsInOrder()
{
    AppFolder folder;
    folder.appInfo("{}").itemInfo("{}");
    AppInfo info(folder.path());
    SignalRecorder recorder(&info);

    folder.appInfo(R"({"mainFile": "new.qml"})").itemInfo(R"({"title": "New"})");
    folder.localInfo(R"({"pinned": true})");
    info.refresh();

    QCOMPARE(recorder.names(), itemInfoGroup);
    QCOMPARE(info.mainFile(), QString("new.qml"));
    QCOMPARE(info.appInfoValue("type").toString(), QString("App"));
    QCOMPARE(info.title(), QString("New"));
    QVERIFY(info.pinned());
}

void tst_AppInfo::setItemInfoReplacesTheMapAndEmitsTheSameGroup()
{
    AppInfo info(QVariantMap{{"id", "abc"}, {"owner", "jo"}});
    SignalRecorder recorder(&info);

    info.setItemInfo({{"id", "def"}});

    QCOMPARE(recorder.names(), itemInfoGroup);
    QCOMPARE(info.itemInfo(), QVariantMap({{"id", "def"}}));
}

void tst_AppInfo::readFunctionsEmitNothing()
{
    AppFolder folder;
    folder.appInfo("{}").itemInfo("{}");
    AppInfo info(folder.path());
    SignalRecorder recorder(&info);
    folder.appInfo(R"({"helpFile": "a"})").localInfo(R"({"pinned": true})");
    folder.write("other.json", R"({"title": "b"})");

    info.readAppInfo();
    info.readItemInfo(folder.filePath("other.json"));
    info.readLocalInfo();

    QCOMPARE(info.helpFile(), QString("a"));
    QCOMPARE(info.title(), QString("b"));
    QVERIFY(info.pinned());
    QCOMPARE(recorder.names(), QStringList());
}

void tst_AppInfo::clearAppInfoEmptiesTheMapSilently()
{
    AppFolder folder;
    folder.appInfo(R"({"type": "Tool"})").itemInfo(R"({"id": "abc"})");
    AppInfo info(folder.path());
    SignalRecorder recorder(&info);

    info.clearAppInfo();

    QCOMPARE(info.json(), QVariantMap());
    QCOMPARE(info.type(), AppInfo::App);
    QCOMPARE(info.itemId(), QString("abc"));
    QCOMPARE(recorder.names(), QStringList());
}

void tst_AppInfo::validNeedsBothFiles_data()
{
    QTest::addColumn<bool>("appInfo");
    QTest::addColumn<bool>("itemInfo");
    QTest::addColumn<bool>("local");
    QTest::addColumn<bool>("valid");

    QTest::newRow("none") << false << false << false << false;
    QTest::newRow("appinfo.json only") << true << false << true << false;
    QTest::newRow("iteminfo.json only") << false << true << false << false;
    QTest::newRow("both") << true << true << true << true;
}

void tst_AppInfo::validNeedsBothFiles()
{
    QFETCH(bool, appInfo);
    QFETCH(bool, itemInfo);
    AppFolder folder;
    if (appInfo)
        folder.appInfo("{}");
    if (itemInfo)
        folder.itemInfo("{}");

    const AppInfo info(folder.path());

    QTEST(info.isLocal(), "local");
    QTEST(info.isValid(), "valid");
    QTEST(info.isEditable(), "valid");
}

void tst_AppInfo::editableNeedsWriteAccess_data()
{
    QTest::addColumn<QString>("readOnly");
    QTest::addColumn<bool>("editable");

    QTest::newRow("all writable") << "" << true;
    QTest::newRow("folder") << "." << false;
    QTest::newRow("appinfo.json") << "appinfo.json" << false;
    QTest::newRow("iteminfo.json") << "iteminfo.json" << false;
}

void tst_AppInfo::editableNeedsWriteAccess()
{
    QFETCH(QString, readOnly);
    QFETCH(bool, editable);
    const auto everybody = [](bool write) {
        const auto read = QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther;
        return write ? read | QFile::WriteOwner | QFile::WriteOther : read;
    };
    AppFolder folder;
    folder.appInfo("{}").itemInfo("{}");
    for (const char *name : {"appinfo.json", "iteminfo.json", "."})
        QVERIFY(QFile::setPermissions(folder.filePath(name), everybody(name != readOnly)));
    const AppInfo info(folder.path());

    bool valid, result;
    {
        const UnprivilegedUser user;
        valid = info.isValid();
        result = info.isEditable();
    }
    QFile::setPermissions(folder.path(), everybody(true));

    QVERIFY(valid);
    QCOMPARE(result, editable);
}

void tst_AppInfo::resourceAppIsValidButNotEditable()
{
    const AppInfo info(QUrl("qrc:/tests/resourceapp/main.qml"));

    QCOMPARE(info.path(), QString(":/tests/resourceapp"));
    QCOMPARE(info.pathUrl(), QUrl("qrc:///tests/resourceapp"));
    QVERIFY(info.isLocal() && info.isValid() && !info.isEditable());
    QCOMPARE(info.title(), QString("From the resources"));
    QCOMPARE(info.source(), QUrl("qrc:/tests/resourceapp/main.qml"));
}

void tst_AppInfo::existsAnswersForFoldersAndFiles_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("exists");

    // Relative to a folder with app/appinfo.json, empty/ and folder.qml/.
    QTest::newRow("app folder") << "app" << true;
    QTest::newRow("folder without an app") << "empty" << false;
    QTest::newRow("missing folder, none above") << "empty/missing" << false;
    QTest::newRow("missing name in an app folder") << "app/missing" << true;
    QTest::newRow("document") << "app/main.qml" << true;
    QTest::newRow("document that doesn't exist") << "nowhere/main.QML" << true;
    QTest::newRow("folder named like a document") << "folder.qml" << false;
    QTest::newRow("file in an app folder") << "app/data.txt" << true;
    QTest::newRow("file elsewhere") << "empty/data.txt" << false;
    QTest::newRow("resource folder") << ":/tests/resourceapp" << true;
    QTest::newRow("qrc text") << "qrc:/tests/resourceapp" << true;
    QTest::newRow("qrc text in capitals") << "QRC:/tests/resourceapp" << false;
    QTest::newRow("resource folder without an app") << ":/tests" << false;
}

void tst_AppInfo::existsAnswersForFoldersAndFiles()
{
    QFETCH(QString, path);
    AppFolder folder;
    folder.write("app/appinfo.json").write("app/data.txt").write("empty/data.txt");
    folder.write("folder.qml/data.txt");
    QVERIFY(QDir::setCurrent(folder.path()));

    const bool exists = AppInfo::exists(path);

    QVERIFY(QDir::setCurrent(QDir::homePath()));
    QTEST(exists, "exists");
}

void tst_AppInfo::adjustPathOnlyChangesQrcPaths_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("adjusted");

    QTest::newRow("qrc") << "qrc:/a"
                         << ":/a";
    QTest::newRow("capitals") << "QRC:/a"
                              << "QRC:/a";
    QTest::newRow("not at the beginning") << "/qrc:/a"
                                          << "/qrc:/a";
    QTest::newRow("resource") << ":/a"
                              << ":/a";
    QTest::newRow("empty") << ""
                           << "";
}

void tst_AppInfo::adjustPathOnlyChangesQrcPaths()
{
    QFETCH(QString, path);
    QTEST(AppInfo::adjustPath(path), "adjusted");
}

void tst_AppInfo::isLocalIsDecidedWhenThePathIsSet()
{
    AppFolder folder;
    folder.appInfo("{}");
    AppInfo info(folder.path());

    QVERIFY(folder.remove("appinfo.json"));

    QVERIFY(info.isLocal());
    info.refresh();
    QVERIFY(info.isLocal());
    info.setPath(folder.path());
    QVERIFY(!info.isLocal());
}

void tst_AppInfo::contentUrlFollowsTheFolder()
{
    AppFolder folder;
    const AppInfo info(folder.path());
    const AppInfo resource(QString(":/tests/resourceapp"));

    QCOMPARE(info.contentUrl(QString()), QUrl());
    QCOMPARE(info.contentUrl("a b#c.qml"), QUrl::fromLocalFile(folder.filePath("a b#c.qml")));
    QCOMPARE(info.contentUrl("sub/a.qml"), QUrl::fromLocalFile(folder.filePath("sub/a.qml")));
    QCOMPARE(resource.contentUrl("a.qml"), QUrl("qrc:/tests/resourceapp/a.qml"));
}

void tst_AppInfo::thumbnailComesFromTheFolderOrThePortal()
{
    AppFolder folder;
    folder.appInfo("{}").itemInfo(R"({"thumbnailUrl": "http://localhost/t.png"})");
    const AppInfo info(folder.path());

    QCOMPARE(info.thumbnail(), QUrl("http://localhost/t.png"));
    folder.write("thumbnail.png");
    QCOMPARE(info.thumbnail(), QUrl::fromLocalFile(folder.filePath("thumbnail.png")));

    // The picture in the folder of something that is no app doesn't count.
    QVERIFY(folder.remove("appinfo.json"));
    const AppInfo notLocal(folder.path());
    QCOMPARE(notLocal.thumbnail(), QUrl("http://localhost/t.png"));
}

void tst_AppInfo::thumbnailPathFromOutsideWins()
{
    AppFolder folder;
    folder.appInfo("{}").write("thumbnail.png").write("mine.png");
    AppInfo info(folder.path());

    info.setThumbnailPath(folder.filePath("mine.png"));
    QCOMPARE(info.thumbnailPath(), folder.filePath("mine.png"));
    QCOMPARE(info.thumbnail(), QUrl::fromLocalFile(folder.filePath("mine.png")));

    info.setThumbnailPath(QUrl::fromLocalFile(folder.filePath("missing.png")));
    QCOMPARE(info.thumbnailPath(), folder.filePath("missing.png"));
    QCOMPARE(info.thumbnail(), QUrl());

    info.setThumbnailPath(QUrl("qrc:/images/defaultThumbnail.png"));
    QCOMPARE(info.thumbnailPath(), QString(":/images/defaultThumbnail.png"));
    QCOMPARE(info.thumbnail(), QUrl("qrc:///images/defaultThumbnail.png"));
}

void tst_AppInfo::thumbnailUrlMayBeAUrlValue()
{
    const QUrl url("http://localhost/info/t%2Fx.png?token=a%2Bb");

    const AppInfo info(QVariantMap{{"thumbnailUrl", url}});

    QCOMPARE(info.thumbnail(), url);
}

void tst_AppInfo::nullEntryShowsItsThumbnailAndSortsFirst()
{
    AppInfo info(QString(""));
    info.setTitle("None");
    info.setThumbnailPath(QUrl("qrc:/images/defaultThumbnail.png"));
    SignalRecorder recorder(&info);

    info.setNullEntry();

    QCOMPARE(recorder.names(), repeated("statusChanged", 2));
    QVERIFY(!info.isLocal() && !info.isPublished());
    QCOMPARE(info.thumbnail(), QUrl("qrc:///images/defaultThumbnail.png"));
    QCOMPARE(info.sortKey(), QString());
}

void tst_AppInfo::modifiedOfALocalAppIsItsNewestFile()
{
    const QDateTime old = QDateTime::fromMSecsSinceEpoch(1400000000000);
    AppFolder folder;
    folder.appInfo("{}").itemInfo(modifiedAt(portalTime)).write("main.qml").write("new.txt");
    folder.write("sub/newer.txt").write(".newer").write("newer.user").write("newer.USER");
    for (const char *name : {"appinfo.json", "iteminfo.json", "main.qml"})
        QVERIFY(folder.setTime(name, old));
    QVERIFY(folder.setTime("new.txt", old.addSecs(10)));
    for (const char *name : {"sub/newer.txt", ".newer", "newer.user", "newer.USER"})
        QVERIFY(folder.setTime(name, old.addSecs(20)));

    AppInfo info(folder.path());

    QCOMPARE(info.modified(), old.addSecs(10));

    // Neither the user's marks nor a file in a sub-folder is a change of the app.
    info.setPinned(true);
    QVERIFY(folder.contains(".info.json"));
    QCOMPARE(info.modified(), old.addSecs(10));

    QVERIFY(folder.setTime("main.qml", old.addSecs(30)));
    QCOMPARE(info.modified(), old.addSecs(30));
}

void tst_AppInfo::modifiedIsNullWithoutACountedFile()
{
    AppFolder folder;
    folder.appInfo("{}").write("a.user").write(".hidden");
    const AppInfo info(folder.path());
    QVERIFY(info.modified().isValid());

    QVERIFY(folder.remove("appinfo.json"));

    QVERIFY(info.isLocal());
    QVERIFY(info.modified().isNull());
}

void tst_AppInfo::modifiedOfAPortalAppIsTheItems()
{
    AppFolder folder;
    folder.itemInfo(modifiedAt(portalTime));

    QCOMPARE(AppInfo(folder.path()).modified().toMSecsSinceEpoch(), portalTime);
    QCOMPARE(AppInfo(json(modifiedAt(portalTime))).modified().toMSecsSinceEpoch(), portalTime);
}

void tst_AppInfo::statusUpdateComparesTheDates_data()
{
    QTest::addColumn<qint64>("ahead");
    QTest::addColumn<bool>("available");
    QTest::addColumn<bool>("locally");

    QTest::newRow("portal is newer") << qint64(1000) << true << false;
    QTest::newRow("equal") << qint64(0) << false << false;
    QTest::newRow("local is newer") << qint64(-1000) << false << true;
}

void tst_AppInfo::statusUpdateComparesTheDates()
{
    QFETCH(qint64, ahead);
    AppFolder folder;
    folder.appInfo("{}");
    QVERIFY(folder.setTime("appinfo.json", QDateTime::fromMSecsSinceEpoch(portalTime)));
    AppInfo info(folder.path());

    QVERIFY(info.statusUpdate(json(modifiedAt(portalTime + ahead))));

    QTEST(info.isUpdateAvailable(), "available");
    QTEST(info.isUpdatedLocally(), "locally");
    QVERIFY(info.isLocal());
    QVERIFY(info.itemInfo().isEmpty());
}

void tst_AppInfo::statusUpdateEmitsAtEachStep()
{
    AppInfo info(json(modifiedAt(portalTime)));
    SignalRecorder recorder(&info);

    info.statusUpdate(json(modifiedAt(portalTime)));

    QCOMPARE(recorder.names(), repeated("statusChanged", 6));
}

void tst_AppInfo::statusUpdateWithoutAnEntryWarns()
{
    AppInfo info(json(modifiedAt(portalTime)));
    info.statusUpdate(json(modifiedAt(portalTime + 1)));
    QVERIFY(info.isUpdateAvailable());
    SignalRecorder recorder(&info);
    LogCapture log;

    QVERIFY(info.statusUpdate(QVariantMap()));

    QVERIFY(!info.isUpdateAvailable() && !info.isUpdatedLocally());
    QCOMPARE(recorder.names(), repeated("statusChanged", 3));
    QCOMPARE(log.count(QtWarningMsg, "Zemrik.Tessaline.Core", "Cache entry empty"), 1);
}

void tst_AppInfo::freshThumbnailCountsAsLocalUpdate()
{
    const QDateTime portalDate = QDateTime::fromMSecsSinceEpoch(portalTime);
    AppFolder folder;
    folder.appInfo("{}").itemInfo(modifiedAt(portalTime)).write("thumbnail.png");
    QVERIFY(folder.setTime("appinfo.json", portalDate));
    QVERIFY(folder.setTime("iteminfo.json", portalDate));
    AppInfo info(folder.path());

    info.statusUpdate(json(modifiedAt(portalTime)));

    QVERIFY(info.isUpdatedLocally() && !info.isUpdateAvailable());
}

void tst_AppInfo::setPathClearsTheUpdateFlags()
{
    AppFolder folder;
    folder.appInfo("{}");
    AppInfo info(folder.path());
    info.statusUpdate(json(modifiedAt(0)));
    QVERIFY(info.isUpdatedLocally());

    info.setPath(folder.path());

    QVERIFY(!info.isUpdatedLocally() && !info.isUpdateAvailable());
}

void tst_AppInfo::isPublishedGoesByTheItemId()
{
    AppFolder folder;
    folder.write("abc.json", R"({"title": "No id"})");
    AppInfo info(folder.filePath("abc.json"));

    QVERIFY(!info.isPublished());
    info.setItemId("abc");
    QVERIFY(info.isPublished());
    info.setItemId(QString());
    QVERIFY(!info.isPublished());
}

void tst_AppInfo::sortKeyIsTheLowerCaseTitle()
{
    AppFolder folder;
    folder.appInfo("{}").itemInfo(R"({"title": "ÄB c"})");

    QCOMPARE(AppInfo(folder.path()).sortKey(), QString("äb c"));
    QCOMPARE(AppInfo(QVariantMap{{"id", "x"}, {"title", "Portal"}}).sortKey(), QString("portal"));
    QCOMPARE(AppInfo(QVariantMap{{"title", "Neither"}}).sortKey(), QString());
}

void tst_AppInfo::valueReadsBothMaps()
{
    AppFolder folder;
    folder.appInfo(R"({"title": "app", "itemInfo": 1, "ItemInfo/title": 2, "null": null})");
    folder.itemInfo(R"({"title": "item"})");
    const AppInfo info(folder.path());

    QCOMPARE(info.value("title"), QVariant("app"));
    QCOMPARE(info.value("itemInfo/title"), QVariant("item"));
    QCOMPARE(info.value("itemInfo"), QVariant(1.0));
    QCOMPARE(info.value("ItemInfo/title"), QVariant(2.0));
    QVERIFY(!info.value("missing").isValid());
    QCOMPARE(info.value("missing", 5), QVariant(5));
    QCOMPARE(info.value("itemInfo/missing", "d"), QVariant("d"));
    QVERIFY(!info.value("null", 5).isValid());
    QCOMPARE(AppInfo::infoValue(info.itemInfo(), "title", 1), QVariant("item"));
    QCOMPARE(AppInfo::infoValue(info.itemInfo(), "missing", 1), QVariant(1));
}

void tst_AppInfo::valueOfTheBarePrefixIsTheDefault()
{
    const AppInfo info(QVariantMap{{"id", "abc"}});

    QCOMPARE(info.value("itemInfo/", 3), QVariant(3));
}

void tst_AppInfo::setValueWritesIntoTheRightMap()
{
    AppFolder folder;
    folder.appInfo("{}").itemInfo(R"({"title": "old"})");
    AppInfo info(folder.path());
    SignalRecorder recorder(&info);

    info.setValue("itemInfo/title", "new");
    QCOMPARE(recorder.take(), QStringList({"titleChanged", "itemInfoChanged"}));
    QCOMPARE(info.title(), QString("new"));

    info.setValue("title", "app");
    QCOMPARE(recorder.take(), QStringList());
    QCOMPARE(info.title(), QString("new"));
    QCOMPARE(info.appInfoValue("title"), QVariant("app"));

    info.setValue("properties", QVariantMap{{"a", 1}});
    QCOMPARE(recorder.take(), QStringList("propertiesChanged"));
    info.setValue("Properties", 1);
    QCOMPARE(recorder.take(), QStringList());
}

void tst_AppInfo::propertyValueReadsTheAuthorsValues()
{
    AppFolder folder;
    folder.appInfo(R"({"properties": {"color": "red"}})");
    const AppInfo info(folder.path());

    QCOMPARE(info.propertyValue("color"), QVariant("red"));
    QVERIFY(!info.propertyValue("missing").isValid());
    QCOMPARE(info.propertyValue("missing", 3), QVariant(3));
}

void tst_AppInfo::setInfoValueNormalisesScriptValuesAndDates()
{
    const auto fromScript = [](const QJSValue &value) { return QVariant::fromValue(value); };
    QJSEngine engine;
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(portalTime);
    QVariantMap map;

    LogCapture log;
    QVERIFY(
        AppInfo::setInfoValue(map, "list", fromScript(engine.evaluate("[1, {a: [2]}]")), false));
    QCOMPARE(log.count(QtDebugMsg, "Zemrik.Tessaline.Core", "\"list\" ="), 1);
    QVERIFY(AppInfo::setInfoValue(map, "map", fromScript(engine.evaluate("({a: {b: 1}})")), false));
    QVERIFY(AppInfo::setInfoValue(map, "date", time, false));
    QVERIFY(AppInfo::setInfoValue(map, "text", "plain", false));

    QCOMPARE(map.value("list").type(), QVariant::List);
    QCOMPARE(map.value("list"), QVariant(QVariantList{1, QVariantMap{{"a", QVariantList{2}}}}));
    QCOMPARE(map.value("map"), QVariant(QVariantMap{{"a", QVariantMap{{"b", 1}}}}));
    QCOMPARE(map.value("date").userType(), int(QMetaType::LongLong));
    QCOMPARE(map.value("date").toLongLong(), portalTime);
    QCOMPARE(map.value("text"), QVariant("plain"));
}

void tst_AppInfo::setInfoValueOnlyIfAbsent()
{
    QVariantMap map{{"null", QVariant()}};

    QVERIFY(AppInfo::setInfoValue(map, "a", 1, true));
    QVERIFY(!AppInfo::setInfoValue(map, "a", 2, true));
    QCOMPARE(map.value("a"), QVariant(1));
    QVERIFY(!AppInfo::setInfoValue(map, "null", 2, true));
    QVERIFY(AppInfo::setInfoValue(map, "a", 1, false)); // an equal value is written as well
    QVERIFY(AppInfo::setInfoValue(map, "a", 3, false));
    QCOMPARE(map.value("a"), QVariant(3));
}

void tst_AppInfo::setItemInfoValueEmitsByKey_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QStringList>("names");

    QTest::newRow("id") << "id" << QStringList{"itemIdChanged", "itemInfoChanged"};
    QTest::newRow("title") << "title" << QStringList{"titleChanged", "itemInfoChanged"};
    QTest::newRow("owner") << "owner" << QStringList{"ownerChanged", "itemInfoChanged"};
    QTest::newRow("snippet") << "snippet" << QStringList{"snippetChanged", "itemInfoChanged"};
    QTest::newRow("description") << "description"
                                 << QStringList{"descriptionChanged", "itemInfoChanged"};
    QTest::newRow("tags") << "tags" << QStringList{"itemInfoChanged"};
    QTest::newRow("any other") << "Title" << QStringList{"itemInfoChanged"};
}

void tst_AppInfo::setItemInfoValueEmitsByKey()
{
    QFETCH(QString, key);
    QFETCH(QStringList, names);
    AppInfo info;
    SignalRecorder recorder(&info);

    QVERIFY(info.setItemInfoValue(key, "x", true));
    QCOMPARE(recorder.take(), names);
    QVERIFY(!info.setItemInfoValue(key, "y", true));
    QCOMPARE(recorder.take(), QStringList());
    QCOMPARE(info.itemInfoValue(key), QVariant("x"));
    QVERIFY(info.setItemInfoValue(key, "x", false));
    QCOMPARE(recorder.take(), names);

    QVERIFY(info.setAppInfoValue(key, "x", true));
    QVERIFY(!info.setAppInfoValue(key, "y", true));
    QCOMPARE(info.appInfoValue(key), QVariant("x"));
    QCOMPARE(recorder.take(), QStringList());
}

void tst_AppInfo::setLocalInfoStoresAsItIs()
{
    const QDateTime time = QDateTime::currentDateTime();
    AppInfo info;
    SignalRecorder recorder(&info);

    QVERIFY(info.setLocalInfo("date", time, true));
    QVERIFY(!info.setLocalInfo("date", 1, true));
    QCOMPARE(info.localInfo("date"), QVariant(time));
    QVERIFY(info.setLocalInfo("date", 1, false));
    QCOMPARE(info.localInfo("date"), QVariant(1));
    QCOMPARE(info.localInfo("missing", 2), QVariant(2));
    QCOMPARE(recorder.names(), QStringList());
}

void tst_AppInfo::itemSettersEmitOnlyForANewText_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QStringList>("names");

    const auto row = [](const char *property, const char *key, const QStringList &names) {
        QTest::newRow(property) << QByteArray(property) << QString(key) << names;
    };
    row("itemId", "id", {"itemIdChanged", "itemInfoChanged"});
    row("title", "title", {"titleChanged", "itemInfoChanged"});
    row("snippet", "snippet", {"snippetChanged", "itemInfoChanged"});
    row("description", "description", {"descriptionChanged", "itemInfoChanged"});
    row("licenseInfo", "licenseInfo", {"itemInfoChanged", "licenseInfoChanged"});
    row("accessInformation", "accessInformation", {"itemInfoChanged", "accessInformationChanged"});
}

void tst_AppInfo::itemSettersEmitOnlyForANewText()
{
    QFETCH(QByteArray, property);
    QFETCH(QString, key);
    QFETCH(QStringList, names);
    AppInfo info;
    SignalRecorder recorder(&info);

    QVERIFY(info.setProperty(property.constData(), ""));
    QCOMPARE(recorder.take(), QStringList());
    QVERIFY(!info.itemInfo().contains(key));

    QVERIFY(info.setProperty(property.constData(), " a "));
    QCOMPARE(recorder.take(), names);
    QCOMPARE(info.itemInfoValue(key), QVariant(" a "));

    QVERIFY(info.setProperty(property.constData(), " a "));
    QCOMPARE(recorder.take(), QStringList());
}

void tst_AppInfo::setTagsTrimsAndAlwaysEmits()
{
    AppInfo info;
    SignalRecorder recorder(&info);

    info.setTags({" a ", "", "  ", "b", "b"});
    QCOMPARE(info.tags(), QStringList({"a", "b", "b"}));
    QCOMPARE(recorder.take(), QStringList({"itemInfoChanged", "tagsChanged"}));

    info.setTags({"a", "b", "b"});
    QCOMPARE(recorder.take(), QStringList({"itemInfoChanged", "tagsChanged"}));
}

void tst_AppInfo::setDependenciesStoresAndAlwaysEmits()
{
    AppInfo info;
    SignalRecorder recorder(&info);

    info.setDependencies({"abc"});
    info.setDependencies({"abc"});

    QCOMPARE(recorder.names(), repeated("dependenciesChanged", 2));
    QCOMPARE(info.appInfoValue("dependencies"), QVariant(QVariantList{"abc"}));
}

void tst_AppInfo::versionPartsReadAndWrite()
{
    AppFolder folder;
    folder.appInfo(R"({"version": {"minor": 5, "extra": "kept"}})");
    AppInfo info(folder.path());
    SignalRecorder recorder(&info);
    QCOMPARE(info.version(), QString("1.5.1"));

    info.setMajorVersion(2);
    info.setMinorVersion(5);
    info.setMicroVersion(7);

    QCOMPARE(recorder.names(), repeated("versionChanged", 2));
    QCOMPARE(info.majorVersion(), 2);
    QCOMPARE(info.minorVersion(), 5);
    QCOMPARE(info.microVersion(), 7);
    QCOMPARE(info.version(), QString("2.5.7"));
    QCOMPARE(info.appInfoValue("version").toMap().value("extra"), QVariant("kept"));
    info.setMajorVersion(0);
    QCOMPARE(info.version(), QString("0.5.7"));
}

void tst_AppInfo::writingZeroOverAnAbsentPartDoesNothing()
{
    AppInfo info;
    SignalRecorder recorder(&info);

    info.setMajorVersion(0);
    info.setMicroVersion(0);

    QCOMPARE(info.version(), QString("1.0.1"));
    QVERIFY(!info.json().contains("version"));
    QCOMPARE(recorder.names(), QStringList());

    // The default isn't stored, so writing it counts as a change.
    info.setMajorVersion(1);
    QCOMPARE(recorder.names(), QStringList("versionChanged"));
}

void tst_AppInfo::dependenciesAreMaps()
{
    AppFolder folder;
    folder.appInfo(R"({"dependencies": [
        "abc", 7, {"itemId": "def", "name": "map", "x": 1}, null, ["a"], {}, ""]})");

    const AppInfo info(folder.path());

    const QVariantList expected{
        QVariantMap{{"itemId", "abc"}, {"name", "abc"}},
        QVariantMap{{"itemId", "def"}, {"name", "map"}, {"x", 1.0}},
        QVariantMap(),
        QVariantMap{{"itemId", ""}, {"name", ""}},
    };
    QCOMPARE(info.dependencies(), expected);
}

void tst_AppInfo::writeAppInfoNeedsALocalApp()
{
    AppFolder folder;
    AppInfo info(folder.path());
    LogCapture log;

    QVERIFY(!info.writeAppInfo());

    QVERIFY(!folder.contains("appinfo.json"));
    QCOMPARE(log.count(QtCriticalMsg, "Zemrik.Tessaline.Core", "Not a local app"), 1);
}

void tst_AppInfo::writeStoresTheThreeFiles()
{
    AppFolder folder;
    folder.appInfo("{}").itemInfo(modifiedAt(portalTime));
    AppInfo info(folder.path());
    info.setValue("helpFile", "help.html");
    info.setTitle("Title");
    info.setLocalInfo("pinned", true, false);
    QVERIFY(!folder.contains(".info.json"));

    info.write();

    QCOMPARE(json(folder.read("appinfo.json")), info.json());
    QVERIFY2(folder.read("appinfo.json").contains("\n    \"helpFile\""), "indented");
    QCOMPARE(json(folder.read("iteminfo.json")),
             QVariantMap({{"title", "Title"}, {"modified", double(portalTime)}}));
    QCOMPARE(json(folder.read(".info.json")), QVariantMap({{"pinned", true}}));
}

void tst_AppInfo::writeGoesOnAfterAFailure()
{
    AppFolder folder;
    AppInfo info(folder.path());
    info.setTitle("Title");
    LogCapture log;

    info.write();

    QCOMPARE(log.count(QtCriticalMsg, "Zemrik.Tessaline.Core", "Not a local app"), 1);
    QVERIFY(!folder.contains("appinfo.json"));
    QVERIFY(folder.contains(".info.json"));
    QCOMPARE(json(folder.read("iteminfo.json")), QVariantMap({{"title", "Title"}}));
}

void tst_AppInfo::writeKeepsUnknownKeys()
{
    AppFolder folder;
    folder.appInfo(R"({"zzz": {"deep": [1, {"x": true}]}})").itemInfo(R"({"culture": "en"})");
    AppInfo info(folder.path());

    info.write();

    const AppInfo again(folder.path());
    QCOMPARE(again.appInfoValue("zzz"), info.appInfoValue("zzz"));
    QCOMPARE(json(folder.read("appinfo.json")).value("zzz"), info.appInfoValue("zzz"));
    QCOMPARE(again.itemInfoValue("culture"), QVariant("en"));
}

void tst_AppInfo::writeItemInfoMayStampTheTime()
{
    AppFolder folder;
    folder.itemInfo(modifiedAt(portalTime));
    AppInfo info(folder.path());
    const qint64 before = QDateTime::currentMSecsSinceEpoch();

    QVERIFY(info.writeItemInfo(folder.filePath("copy.json"), false));
    QCOMPARE(json(folder.read("copy.json")).value("modified").toLongLong(), portalTime);

    SignalRecorder recorder(&info);
    QVERIFY(info.writeItemInfo(QString(), true));
    QCOMPARE(recorder.names(), QStringList("itemInfoChanged"));
    const qint64 stamp = json(folder.read("iteminfo.json")).value("modified").toLongLong();
    QVERIFY(stamp >= before && stamp <= QDateTime::currentMSecsSinceEpoch());
}

void tst_AppInfo::nothingIsWrittenWithoutAFolder()
{
    AppInfo info(QVariantMap{{"id", "abc"}});
    LogCapture log;

    info.write();
    info.setPinned(true);

    QVERIFY(info.pinned());
    QVERIFY(!info.writeLocalInfo());
    QVERIFY(!info.writeItemInfo(QString(), false));
    QVERIFY(!QFile::exists(".info.json") && !QFile::exists("iteminfo.json"));

    AppFolder folder;
    QVERIFY(info.writeItemInfo(folder.filePath("item.json"), false));
    QCOMPARE(json(folder.read("item.json")), QVariantMap({{"id", "abc"}}));
}

void tst_AppInfo::pinnedIsWrittenAtOnce()
{
    AppFolder folder;
    folder.appInfo("{}").localInfo(R"({"other": 1})");
    AppInfo info(folder.path());
    SignalRecorder recorder(&info);

    info.setPinned(false);
    QCOMPARE(recorder.take(), QStringList());
    QVERIFY(!info.json().contains("pinned"));
    QCOMPARE(folder.read(".info.json"), QByteArray(R"({"other": 1})"));

    info.setPinned(true);
    QCOMPARE(recorder.take(), QStringList("pinnedChanged"));
    QCOMPARE(json(folder.read(".info.json")), QVariantMap({{"other", 1.0}, {"pinned", true}}));
    QVERIFY(AppInfo(folder.path()).pinned());

    info.setPinned(true);
    QCOMPARE(recorder.take(), QStringList());
    info.setPinned(false);
    QVERIFY(!AppInfo(folder.path()).pinned());
}

void tst_AppInfo::fullDiskIsReported()
{
    AppFolder folder;
    folder.appInfo("{}").itemInfo("{}");
    AppInfo info(folder.path());
    for (const char *name : {"appinfo.json", "iteminfo.json", ".info.json"})
        QVERIFY(folder.fillDisk(name));

    QVERIFY(!info.writeAppInfo());
    QVERIFY(!info.writeItemInfo(QString(), false));
    QVERIFY(!info.writeLocalInfo());

    SignalRecorder recorder(&info);
    info.setPinned(true);
    QCOMPARE(recorder.names(), QStringList("pinnedChanged"));
}

TESSALINE_TEST_MAIN(tst_AppInfo)
#include "tst_AppInfo.moc"
