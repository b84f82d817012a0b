#pragma once

#include "plugin/TessalineGlobal.h"

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

// The player's command line:
//     [--show STATE] [--import PATH]... [--nosplash] [--frameless] [--home PATH] [FOLDER | FILE]
// The read-outs are valid after process() or parse(). Some fall back to the player's settings.
class TESSALINE_EXPORT AppletsCommandLineParser : public QCommandLineParser
{
public:
    AppletsCommandLineParser();

    // A Qt::WindowState as an integer. Qt::WindowActive (8) stands for "as the platform likes it"
    // and is the answer for every unknown word, also when the option is left out. An empty option
    // value asks the settings key "show".
    int showState() const;

    // False with --nosplash, or if the settings key "nosplash" is true.
    bool showSplash() const;

    // The values of all --import options, in order.
    QStringList importPaths() const;

    // True with --frameless, or if the settings key "frameless" is true.
    bool frameless() const;

    // The value of --home; empty without the option.
    QString homePath() const;

    // The first positional argument; empty without one.
    QString appletPath() const;
};
