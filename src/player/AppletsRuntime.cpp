#include "player/AppletsRuntime.h"

#include "player/AppletsPlayer.h"

#include <QCoreApplication>
#include <QDebug>
#include <QQmlEngine>
#include <QVariant>

namespace {

const char *propertyName()
{
    return AppletsPlayer::staticMetaObject.className();
}

QVariant playerProperty()
{
    const QCoreApplication *application = QCoreApplication::instance();
    return application ? application->property(propertyName()) : QVariant();
}

} // namespace

void AppletsRuntime::initialize(AppletsPlayer *player)
{
    if (playerProperty().value<AppletsPlayer *>())
        qFatal("AppletsRuntime already initialized");
    setAppletsPlayer(player);
}

void AppletsRuntime::setAppletsPlayer(AppletsPlayer *player)
{
    QQmlEngine::setObjectOwnership(player, QQmlEngine::CppOwnership);
    const QVariant property = QVariant::fromValue(player);
    qDebug() << Q_FUNC_INFO << "playerProperty=" << property;
    if (QCoreApplication *application = QCoreApplication::instance())
        application->setProperty(propertyName(), property);
    else
        qCritical() << Q_FUNC_INFO << "Null application";
}

AppletsPlayer *AppletsRuntime::appletsPlayer()
{
    const QVariant property = playerProperty();
    qDebug() << Q_FUNC_INFO << "playerProperty=" << property;
    if (property.canConvert<AppletsPlayer *>())
        return qobject_cast<AppletsPlayer *>(property.value<QObject *>());

    qCritical() << Q_FUNC_INFO << "Applet player is NULL, creating default player instance";
    auto *player = new AppletsPlayer(nullptr);
    setAppletsPlayer(player);
    return player;
}

void AppletsRuntime::release(const AppletsPlayer *player)
{
    if (playerProperty().value<AppletsPlayer *>() == player)
        QCoreApplication::instance()->setProperty(propertyName(), QVariant());
}
