#pragma once

#include <QString>

// Where the things are that belong to this program, in the build tree and when installed.
namespace Installation {

// The import path below which the module Zemrik.Tessaline lies.
QString moduleFolder();

// The folder of the applet to play when none is named.
QString defaultApplet();

} // namespace Installation
