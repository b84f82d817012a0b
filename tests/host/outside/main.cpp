// Plays one applet, and tells whether what the applet imported is what this program links.
#include <Tessaline/App.h>
#include <Tessaline/AppletsPlayer.h>
#include <Tessaline/AppView.h>
#include <Tessaline/TessalinePlugin.h>

#include <QGuiApplication>
#include <QQuickItem>

#include <memory>

namespace {

class OutsidePlayer : public AppletsPlayer
{
public:
    AppView *createAppView(const QString &path, QWindow *parent) override
    {
        m_view = std::make_unique<AppView>(this, parent);
        m_view->addImportPath(QStringLiteral(QML_DIR), true);
        return showApplet(m_view.get(), path);
    }

    const AppView &view() const { return *m_view; }

private:
    std::unique_ptr<AppView> m_view;
};

bool sharesTheLibrary(const AppView &view)
{
    QQuickItem *root = view.rootObject();
    return qobject_cast<App *>(root)
           && root->property("singleton").value<QObject *>()
                  == TessalinePlugin::tessalineProvider(view.engine(), nullptr);
}

} // namespace

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Outside"));
    QCoreApplication::setApplicationName(QStringLiteral("Host"));

    OutsidePlayer player;
    const int code = player.start(application, QStringLiteral(APPLET_DIR));
    if (code != 0 || QGuiApplication::exec() != 0)
        return 1;
    return sharesTheLibrary(player.view()) ? 0 : 2;
}
