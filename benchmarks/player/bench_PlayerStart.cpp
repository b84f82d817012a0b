#include "support/Ratio.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <functional>

// Whole runs of programs, off screen: from their start until an applet has been drawn for the first
// time and has left. All have the same home, with warm caches of compiled documents.
namespace {

// A document that leaves at its first frame.
QByteArray document(const QByteArray &import)
{
    return "import QtQuick 2.15\nimport QtQuick.Window 2.15\n" + import
           + "Rectangle {\n    id: root\n    width: 300; height: 200\n"
             "    Connections {\n        target: root.Window.window\n"
             "        function onFrameSwapped() { Qt.quit() }\n    }\n}\n";
}

struct Program
{
    QString file;
    QStringList arguments;
};

class Scene
{
public:
    Scene()
    {
        const QByteArray ours = document("import Zemrik.Tessaline 1.0\n");
        write("applet/appinfo.json", "{}");
        write("applet/main.qml", ours);
        write("plain.qml", document(""));
        write("tessaline.qml", ours);
        write("kirigami.qml", document("import org.kde.kirigami 2.0\n"));
        write(".local/share/kpackage/genericqml/bench.start/metadata.json",
              "{ \"KPlugin\": { \"Id\": \"bench.start\", \"Name\": \"Start\" },"
              " \"KPackageStructure\": \"KPackage/GenericQML\","
              " \"X-Plasma-MainScript\": \"ui/main.qml\" }");
        write(".local/share/kpackage/genericqml/bench.start/contents/ui/main.qml", document(""));

        m_environment = QProcessEnvironment::systemEnvironment();
        m_environment.insert("HOME", m_dir.path());
        m_environment.insert("XDG_CONFIG_HOME", m_dir.filePath(".config"));
        m_environment.insert("XDG_DATA_HOME", m_dir.filePath(".local/share"));
        m_environment.insert("XDG_CACHE_HOME", m_dir.filePath(".cache"));
        m_environment.insert("XDG_RUNTIME_DIR", m_dir.path());
        m_environment.insert("QT_QPA_PLATFORM", "offscreen");
        m_environment.insert("QT_QUICK_BACKEND", "software");
        m_environment.insert("QT_LOGGING_RULES", "*.debug=false");
    }

    Program player() const { return {PLAYER_PROGRAM, {m_dir.filePath("applet")}}; }
    Program kpackageLauncher() const { return {"kpackagelauncherqml", {"-a", "bench.start"}}; }
    Program qml(const QString &name) const
    {
        return {"qml", {"-I", MODULE_DIR, m_dir.filePath(name)}};
    }

    bool run(const Program &program) const
    {
        QProcess process;
        process.setProcessEnvironment(m_environment);
        process.setStandardErrorFile(QProcess::nullDevice());
        process.start(program.file, program.arguments);
        if (process.waitForFinished() && process.exitStatus() == QProcess::NormalExit
            && process.exitCode() == 0)
            return true;
        process.kill();
        process.waitForFinished();
        return false;
    }

    RatioTable::Function measured(const Program &program) const
    {
        return [this, program](benchmark::State &state) {
            for (auto _ : state) {
                if (!run(program)) {
                    state.SkipWithError("did not run to its end");
                    return;
                }
            }
        };
    }

    // What a document's import adds to the fastest of many runs of qml, in milliseconds. The runs
    // take turns, so that a busy machine weighs on all of them.
    std::pair<double, double> addedByImports(const QString &first, const QString &second) const
    {
        const Program programs[] = {qml("plain.qml"), qml(first), qml(second)};
        double fastest[] = {1e9, 1e9, 1e9};
        for (int round = 0; round < 20; ++round) {
            for (int i = 0; i < 3; ++i) {
                QElapsedTimer timer;
                timer.start();
                if (!run(programs[i]))
                    qFatal("qml %s failed", qPrintable(programs[i].arguments.last()));
                fastest[i] = std::min(fastest[i], double(timer.nsecsElapsed()) / 1e6);
            }
        }
        return {fastest[1] - fastest[0], fastest[2] - fastest[0]};
    }

private:
    void write(const QString &name, const QByteArray &content)
    {
        const QString path = m_dir.filePath(name);
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("Can't write %s", qPrintable(path));
    }

    QTemporaryDir m_dir;
    QProcessEnvironment m_environment;
};

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const Scene scene;

    RatioTable table;
    table
        .add("start of the player, against qml without the module", scene.measured(scene.player()),
             scene.measured(scene.qml("plain.qml")))
        .limit(1.25)
        .realTime()
        .iterations(15);
    table
        .add("start of the player, against kpackagelauncherqml", scene.measured(scene.player()),
             scene.measured(scene.kpackageLauncher()))
        .limit(0.8)
        .realTime()
        .iterations(15);
    const auto [ours, kirigami] = scene.addedByImports("tessaline.qml", "kirigami.qml");
    table.value("ms that the import adds to qml, against Kirigami", ours, kirigami).limit(1.2);
    return table.run(argc, argv);
}
