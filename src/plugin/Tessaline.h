#pragma once

#include "plugin/TessalineGlobal.h"

#include <QObject>
#include <QString>

class TESSALINE_EXPORT Tessaline : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString version READ version CONSTANT)

public:
    explicit Tessaline(QObject *parent = nullptr);

    QString version() const;
};
