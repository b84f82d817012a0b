#include "plugin/Tessaline.h"

Tessaline::Tessaline(QObject *parent)
    : QObject(parent)
{
}

QString Tessaline::version() const
{
    return QStringLiteral("1.2.15");
}

#include "moc_Tessaline.cpp"
