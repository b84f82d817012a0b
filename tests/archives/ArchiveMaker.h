#pragma once

#include <QByteArray>
#include <QDir>
#include <QString>
#include <QStringList>

// Archives made by other tools, good and hostile, for the reader's tests.
namespace ArchiveMaker {

QString python();

// Runs make_archive.py, which writes the archive of that kind (see there) with Python's zipfile or,
// for what no tool writes, byte by byte.
bool make(const QString &kind, const QString &path);

// Runs a program in `folder`; its output, or a null array if it failed.
QByteArray run(const QString &program, const QStringList &arguments, const QString &folder = {});

bool write(const QString &path, const QByteArray &bytes);
QByteArray read(const QString &path);

// Every file below the folder as "relative/path=content", sorted; folders that are empty as
// "path/".
QStringList tree(const QString &folder);

} // namespace ArchiveMaker
