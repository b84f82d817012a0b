#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

// Archives made by other tools, good and hostile, for the reader's tests.
namespace ArchiveMaker {

QString python();

// Runs make_archive.py, which writes the archive of that kind (see there) with Python's zipfile or,
// for what no tool writes, byte by byte.
bool make(const QString &kind, const QString &path);

// The same as "kind.zip" in `folder`, its path; without it there is no test.
QString archive(const QString &kind, const QString &folder);
// The folder "out" in `folder`, which is made.
QString outputFolder(const QString &folder);

// The kinds of archives whose entries claim the same bytes, most of them hidden from a reader that
// looks for the directory in another place than minizip does.
QStringList overlappingKinds();

// A test's rows of archives whose first entry can't be read: its "kind", how many are "refused", and
// the "files" that come out, as tree() has them.
void addUnreadableRows();

// Runs a program in `folder`; its output, or a null array if it failed.
QByteArray run(const QString &program, const QStringList &arguments, const QString &folder = {});

bool write(const QString &path, const QByteArray &bytes);
QByteArray read(const QString &path);

// Every file below the folder as "relative/path=content", sorted; folders that are empty as
// "path/".
QStringList tree(const QString &folder);

} // namespace ArchiveMaker
