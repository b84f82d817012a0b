#pragma once

#include <QString>

// What the archives' benchmarks work on.
namespace Archives {

// Files "d00/f0.txt" and so on, 100 folders, words of `minimum` to `maximum` bytes each.
bool makeTextTree(const QString &top, int files, int minimum, int maximum);

// An archive of `entries` stored files of a few bytes, in folders of 100.
bool makeListing(const QString &path, int entries);

// An archive of one deflated entry, "big.txt", of so many times 4 MiB of words.
bool makeBig(const QString &path, int blocks);

bool runProgram(const QString &program, const QStringList &arguments, const QString &folder = {});

// Whether two folders hold the same files.
bool sameTree(const QString &a, const QString &b);

} // namespace Archives
