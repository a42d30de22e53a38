#include "commandaudit.h"

#include "argumentgrammar.h"
#include "commandtext.h"

#include <QDir>
#include <QFile>

#include <cstring>

namespace {

constexpr qint64 MaxSourceSize = 1 << 20;

QString text(const char *value)
{
    return QString::fromUtf8(value ? value : "");
}

// A table cell: a '|' would open a new column, even inside code.
QString cell(QString value)
{
    return value.replace(QLatin1Char('|'), QLatin1String("\\|"));
}

QString code(const QString &value)
{
    return cell(QStringLiteral("`%1`").arg(value));
}

QString joinRow(const QStringList &cells)
{
    return QStringLiteral("| ") + cells.join(QStringLiteral(" | ")) + QStringLiteral(" |\n");
}

QString place(const QString &file, const QString &function)
{
    return QStringLiteral("`%1` %2").arg(file, code(function + QStringLiteral("()")));
}

int describedArguments(const CommandDescriptions::Command &entry)
{
    int count = 0;
    while (count < CommandDescriptions::MaxArguments && entry.inputs[count])
        ++count;
    return count;
}

QString readSource(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.read(MaxSourceSize)) : QString();
}

} // namespace

CommandAudit::CommandAudit(const QString &pluginFolder)
    : m_folder(pluginFolder)
    , m_constructions(CommandScanner::scanTree(pluginFolder))
    , m_starts(CommandScanner::programStartsInTree(pluginFolder))
{
}

const CommandDescriptions::Command *CommandAudit::describe(const CommandScanner::Construction &construction)
{
    for (int i = 0; i < CommandDescriptions::commandCount(); ++i) {
        const CommandDescriptions::Command &entry = CommandDescriptions::commands()[i];
        if (construction.file == text(entry.file) && construction.function == text(entry.function)
            && construction.patternText == text(entry.pattern)
            && construction.arguments.size() == describedArguments(entry))
            return &entry;
    }
    return nullptr;
}

const CommandDescriptions::Program *CommandAudit::describe(const CommandScanner::ProgramStart &start)
{
    for (int i = 0; i < CommandDescriptions::programCount(); ++i) {
        const CommandDescriptions::Program &entry = CommandDescriptions::programs()[i];
        if (start.file == text(entry.file) && start.function == text(entry.function) && start.call == text(entry.call))
            return &entry;
    }
    return nullptr;
}

QStringList CommandAudit::problems() const
{
    QStringList found;
    QVector<const void *> used;
    for (const CommandScanner::Construction &c : m_constructions) {
        const QString where = QStringLiteral("%1:%2").arg(c.file).arg(c.line);
        const CommandDescriptions::Command *entry = describe(c);
        if (!c.problem.isEmpty())
            found << QStringLiteral("%1: %2").arg(where, c.problem);
        else if (!entry)
            found << QStringLiteral("%1: command \"%2\" in %3() has no description").arg(where, c.patternText, c.function);
        used << entry;
    }
    for (const CommandScanner::ProgramStart &s : m_starts) {
        const CommandDescriptions::Program *entry = describe(s);
        if (!entry)
            found << QStringLiteral("%1:%2: %3 in %4() has no description").arg(s.file).arg(s.line).arg(s.call, s.function);
        for (const QString &name : text(entry ? entry->constants : nullptr).split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
            if (CommandScanner::constantText(readSource(QDir(m_folder).filePath(s.file)), name).isNull())
                found << QStringLiteral("%1: no text constant %2").arg(s.file, name);
        }
        used << entry;
    }
    for (int i = 0; i < CommandDescriptions::commandCount(); ++i) {
        const CommandDescriptions::Command &entry = CommandDescriptions::commands()[i];
        if (!used.contains(&entry))
            found << QStringLiteral("description of \"%1\" in %2 %3() matches no command").arg(text(entry.pattern), text(entry.file), text(entry.function));
    }
    for (int i = 0; i < CommandDescriptions::programCount(); ++i) {
        const CommandDescriptions::Program &entry = CommandDescriptions::programs()[i];
        if (!used.contains(&entry))
            found << QStringLiteral("description of %1 in %2 %3() matches no program start").arg(text(entry.call), text(entry.file), text(entry.function));
    }
    return found;
}

QString CommandAudit::commandRow(const CommandScanner::Construction &c) const
{
    const CommandDescriptions::Command *entry = describe(c);
    QString command = code(c.patternText);
    if (c.capacity != CommandText::DefaultCapacity)
        command += QStringLiteral(" (buffer %1)").arg(c.capacity);
    if (entry && entry->note)
        command += QStringLiteral("<br>") + cell(text(entry->note));
    const QString where = place(c.file, c.function);
    if (c.arguments.isEmpty())
        return joinRow({command, where, QStringLiteral("—"), QStringLiteral("constant"), QStringLiteral("—"),
                        QStringLiteral("fixed text")});
    QString rows;
    for (int i = 0; i < c.arguments.size(); ++i) {
        const CommandScanner::Argument &argument = c.arguments.at(i);
        const QString kind = QStringLiteral("%1: %2 %3")
                                 .arg(i + 1)
                                 .arg(argument.kind, code(argument.kind + QLatin1Char('(') + argument.expression + QLatin1Char(')')));
        const QString before = entry && entry->checks[i] ? cell(text(entry->checks[i])) : QStringLiteral("—");
        rows += joinRow({i == 0 ? command : QString(), i == 0 ? where : QString(), kind,
                         cell(text(entry ? entry->inputs[i] : nullptr)), before,
                         cell(ArgumentGrammar::summary(argument.kind))});
    }
    return rows;
}

QString CommandAudit::programRow(const CommandScanner::ProgramStart &s) const
{
    const CommandDescriptions::Program *entry = describe(s);
    QStringList programs;
    const QString source = readSource(QDir(m_folder).filePath(s.file));
    for (const QString &name : text(entry ? entry->constants : nullptr).split(QLatin1Char(' '), Qt::SkipEmptyParts))
        programs << code(CommandScanner::constantText(source, name));
    return joinRow({programs.isEmpty() ? QStringLiteral("(given by the caller)") : programs.join(QStringLiteral("<br>")),
                    place(s.file, s.function), code(s.call), cell(text(entry ? entry->input : nullptr)),
                    cell(text(entry ? entry->check : nullptr))});
}

QString CommandAudit::markdown() const
{
    QString out = QStringLiteral(
        "# Command audit\n"
        "\n"
        "<!-- Generated by tools/cmdaudit from the sources under plugin/ and\n"
        "     tools/cmdaudit/commanddescriptions.cpp. Do not edit: run\n"
        "     cmake --build build --target command-audit -->\n"
        "\n"
        "Every shell command the plug-in can run is built by `CommandText` from a\n"
        "printf-style pattern and typed arguments, and run by `runCommand`. Each\n"
        "argument is checked for its kind before it is placed; a value that fails\n"
        "makes the whole command invalid and it is not run, so no byte of a value\n"
        "can become shell syntax. The builder's buffer is %1 bytes with the\n"
        "terminating NUL unless a row says otherwise. Absolute paths in a command\n"
        "are mapped below `PANEL_ROOT` when it is set (test and simulator runs).\n"
        "\n"
        "## Argument kinds\n"
        "\n"
        "| kind | conversion | what the builder accepts | placed text matches |\n"
        "|---|---|---|---|\n")
        .arg(CommandText::DefaultCapacity);
    for (const QString &kind : ArgumentGrammar::kinds()) {
        out += joinRow({QStringLiteral("`%1`").arg(kind), QStringLiteral("`%%1`").arg(QLatin1Char(ArgumentGrammar::conversion(kind))),
                        cell(ArgumentGrammar::summary(kind)), code(ArgumentGrammar::expression(kind))});
    }
    out += QStringLiteral(
        "\n## Commands\n"
        "\n"
        "One row per argument. \"Checked on the way\" is what the value went\n"
        "through before it reached the builder; the builder's own check always\n"
        "follows.\n"
        "\n"
        "| command | built in | argument | input | checked on the way | checked by the builder |\n"
        "|---|---|---|---|---|---|\n");
    for (const CommandScanner::Construction &c : m_constructions)
        out += commandRow(c);
    out += QStringLiteral(
        "\n## Programs started without a command pattern\n"
        "\n"
        "The firmware tools that exchange data through a pipe are started with a\n"
        "fixed text; no value reaches their command line.\n"
        "\n"
        "| program | started in | call | input | check |\n"
        "|---|---|---|---|---|\n");
    for (const CommandScanner::ProgramStart &s : m_starts)
        out += programRow(s);
    return out;
}
