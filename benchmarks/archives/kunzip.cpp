#include <cstdio>
#include <KZip>

// Extracts an archive as applications do it with KArchive: "kunzip ARCHIVE FOLDER". For
// tests/archives/compare-hostile.
int main(int argc, char **argv)
{
    if (argc != 3)
        return 2;
    KZip zip(QString::fromLocal8Bit(argv[1]));
    if (!zip.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "%s\n", qPrintable(zip.errorString()));
        return 1;
    }
    return zip.directory()->copyTo(QString::fromLocal8Bit(argv[2]), true) ? 0 : 1;
}
