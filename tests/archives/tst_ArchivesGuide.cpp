#include "support/IsolatedHome.h"
#include "support/LogCapture.h"

#include <QDir>
#include <QFile>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QTest>

#include <memory>

// What docs/archives.md shows, run as it stands there.
class tst_ArchivesGuide : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void examplesWriteAndReadAnArchive();

private:
    bool run(const QString &document);

    QStringList m_documents;
    QQmlEngine m_engine;
};

void tst_ArchivesGuide::initTestCase()
{
    QFile file(qEnvironmentVariable("TESSALINE_SOURCE_DIR") + "/docs/archives.md");
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QStringList parts = QString::fromUtf8(file.readAll()).split("```qml\n").mid(1);
    for (const QString &part : parts)
        m_documents.append(part.left(part.indexOf("```")));
    m_engine.addImportPath(qEnvironmentVariable("TESSALINE_QML_IMPORT_DIR"));
}

bool tst_ArchivesGuide::run(const QString &document)
{
    QQmlComponent component(&m_engine);
    component.setData(document.toUtf8(), QUrl());
    const std::unique_ptr<QObject> object(component.create());
    if (!object)
        qWarning() << component.errors();
    return object != nullptr;
}

void tst_ArchivesGuide::examplesWriteAndReadAnArchive()
{
    QCOMPARE(m_documents.size(), 2);
    const QString &reading = m_documents.at(0);
    const QString &writing = m_documents.at(1);
    LogCapture log;

    QVERIFY(run(writing));
    QVERIFY(QFile::exists(QDir::homePath() + "/Archives/guide.zip"));
    QVERIFY(run(reading));

    QCOMPARE(QDir(QDir::homePath() + "/Archives/unpacked/notes").entryList(QDir::Files),
             QStringList({"today.txt", "yesterday.txt"}));
    QVERIFY(log.dump().contains("It rained."));
    QVERIFY(log.dump().contains("notes/today.txt 100 %"));
    QVERIFY(log.dump().contains("Done"));
    QVERIFY2(log.count(QtWarningMsg) + log.count(QtCriticalMsg) == 0, qPrintable(log.dump()));

    QVERIFY(run(writing)); // replaces the archive
    QVERIFY(run(reading));
    QVERIFY2(log.count(QtWarningMsg) + log.count(QtCriticalMsg) == 0, qPrintable(log.dump()));
}

TESSALINE_TEST_MAIN(tst_ArchivesGuide)
#include "tst_ArchivesGuide.moc"
