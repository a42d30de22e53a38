// cmdaudit: prints the command audit of the plug-in (docs/commands.md).
//
//   cmdaudit                  the audit on standard output
//   cmdaudit --output FILE    writes it to FILE
//   cmdaudit --check FILE     exit 1 when FILE is not what the sources give
//
// Any command without a description is named on standard error, and the
// tool fails, so an unaudited command cannot reach the document.

#include "commandaudit.h"

#include <QByteArray>
#include <QFile>

#include <cstdio>
#include <cstring>

namespace {

constexpr qint64 MaxAuditSize = 1 << 20;

int usage()
{
    std::fprintf(stderr, "usage: cmdaudit [--output FILE | --check FILE]\n");
    return 2;
}

int writeAudit(const char *path, const QByteArray &audit)
{
    QFile file(QString::fromLocal8Bit(path));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(audit) != audit.size()) {
        std::fprintf(stderr, "cmdaudit: cannot write %s: %s\n", path, qPrintable(file.errorString()));
        return 1;
    }
    return 0;
}

int checkAudit(const char *path, const QByteArray &audit)
{
    QFile file(QString::fromLocal8Bit(path));
    const QByteArray committed = file.open(QIODevice::ReadOnly) ? file.read(MaxAuditSize) : QByteArray();
    if (committed == audit)
        return 0;
    const QList<QByteArray> expected = audit.split('\n');
    const QList<QByteArray> found = committed.split('\n');
    int line = 0;
    while (line < expected.size() && line < found.size() && expected.at(line) == found.at(line))
        ++line;
    std::fprintf(stderr,
                 "%s is not what the sources give (first difference at line %d).\n"
                 "  expected: %s\n"
                 "  found:    %s\n"
                 "Regenerate it with: cmake --build <build dir> --target command-audit\n"
                 "and commit the result together with the command change.\n",
                 path, line + 1, expected.value(line).constData(), found.value(line).constData());
    return 1;
}

} // namespace

int main(int argc, char **argv)
{
    const CommandAudit audit(QStringLiteral(PLUGIN_SOURCE_DIR));
    const QStringList problems = audit.problems();
    for (const QString &problem : problems)
        std::fprintf(stderr, "cmdaudit: %s\n", qPrintable(problem));
    if (!problems.isEmpty())
        return 1;
    const QByteArray text = audit.markdown().toUtf8();
    if (argc == 1) {
        std::fwrite(text.constData(), 1, size_t(text.size()), stdout);
        return 0;
    }
    if (argc != 3)
        return usage();
    if (std::strcmp(argv[1], "--output") == 0)
        return writeAudit(argv[2], text);
    if (std::strcmp(argv[1], "--check") == 0)
        return checkAudit(argv[2], text);
    return usage();
}
