// regmap: prints the integrator's register map (docs/register-map.md).
//
//   regmap                  the map on standard output
//   regmap --output FILE    writes it to FILE
//   regmap --check FILE     exit 1 when FILE is not what the code gives

#include "registermap.h"

#include <QByteArray>
#include <QFile>

#include <cstdio>
#include <cstring>

namespace {

constexpr qint64 MaxMapSize = 1 << 20;

int usage()
{
    std::fprintf(stderr, "usage: regmap [--output FILE | --check FILE]\n");
    return 2;
}

int writeMap(const char *path, const QByteArray &map)
{
    QFile file(QString::fromLocal8Bit(path));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(map) != map.size()) {
        std::fprintf(stderr, "regmap: cannot write %s: %s\n", path, qPrintable(file.errorString()));
        return 1;
    }
    return 0;
}

int checkMap(const char *path, const QByteArray &map)
{
    QFile file(QString::fromLocal8Bit(path));
    const QByteArray committed = file.open(QIODevice::ReadOnly) ? file.read(MaxMapSize) : QByteArray();
    if (committed == map)
        return 0;
    const QList<QByteArray> expected = map.split('\n');
    const QList<QByteArray> found = committed.split('\n');
    int line = 0;
    while (line < expected.size() && line < found.size() && expected.at(line) == found.at(line))
        ++line;
    std::fprintf(stderr,
                 "%s is not what the code generates (first difference at line %d).\n"
                 "  expected: %s\n"
                 "  found:    %s\n"
                 "Regenerate it with: cmake --build <build dir> --target register-map\n"
                 "and commit the result together with the register change.\n",
                 path, line + 1, expected.value(line).constData(), found.value(line).constData());
    return 1;
}

} // namespace

int main(int argc, char **argv)
{
    const QByteArray map = RegisterMap::markdown().toUtf8();
    if (argc == 1) {
        std::fwrite(map.constData(), 1, size_t(map.size()), stdout);
        return 0;
    }
    if (argc != 3)
        return usage();
    if (std::strcmp(argv[1], "--output") == 0)
        return writeMap(argv[2], map);
    if (std::strcmp(argv[1], "--check") == 0)
        return checkMap(argv[2], map);
    return usage();
}
