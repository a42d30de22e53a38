#include "commandscanner.h"

#include "argumentgrammar.h"
#include "commandtext.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

namespace {

constexpr qint64 MaxSourceSize = 1 << 20;

// The builder and the runner name CommandText and start programs by
// design; they are what every other file is audited against.
const char *const ExcludedFiles[] = {
    "platform/commandtext.h",
    "platform/commandtext.cpp",
    "platform/processrunner.h",
    "platform/processrunner.cpp",
};

// Calls on a finished command that end its chain of arguments.
const char *const Finishers[] = {"isValid", "text", "errorString"};

// Definitions start in column 0; these starts never begin one.
const char *const NotDefinitions[] = {"namespace", "using", "class", "struct", "enum",
                                      "template", "typedef", "return", "extern"};

// Index just past the literal that opens at `i` ('"' or '\'').
int skipLiteral(const QString &s, int i)
{
    const QChar quote = s.at(i);
    for (++i; i < s.size(); ++i) {
        if (s.at(i) == QLatin1Char('\\'))
            ++i;
        else if (s.at(i) == quote)
            return i + 1;
    }
    return s.size();
}

// The index of the ')' that closes the '(' at `open`, or -1.
int closingParen(const QString &s, int open)
{
    int depth = 0;
    for (int i = open; i < s.size();) {
        const QChar c = s.at(i);
        if (c == QLatin1Char('"') || c == QLatin1Char('\'')) {
            i = skipLiteral(s, i);
            continue;
        }
        if (c == QLatin1Char('('))
            ++depth;
        else if (c == QLatin1Char(')') && --depth == 0)
            return i;
        ++i;
    }
    return -1;
}

// Splits at the commas outside parentheses and literals.
QStringList topLevelArguments(const QString &s)
{
    QStringList parts;
    int depth = 0;
    int start = 0;
    for (int i = 0; i < s.size();) {
        const QChar c = s.at(i);
        if (c == QLatin1Char('"') || c == QLatin1Char('\'')) {
            i = skipLiteral(s, i);
            continue;
        }
        if (c == QLatin1Char('(') || c == QLatin1Char('{') || c == QLatin1Char('['))
            ++depth;
        else if (c == QLatin1Char(')') || c == QLatin1Char('}') || c == QLatin1Char(']'))
            --depth;
        else if (c == QLatin1Char(',') && depth == 0) {
            parts << s.mid(start, i - start).trimmed();
            start = i + 1;
        }
        ++i;
    }
    parts << s.mid(start).trimmed();
    return parts;
}

int lineOf(const QString &s, int position)
{
    return s.leftRef(position).count(QLatin1Char('\n')) + 1;
}

QString simplified(const QString &expression)
{
    return expression.simplified();
}

bool contains(const char *const *list, int count, const QString &name)
{
    for (int i = 0; i < count; ++i) {
        if (name == QLatin1String(list[i]))
            return true;
    }
    return false;
}

// The body of a single string literal, or null when `expression` is not one.
QString literalBody(const QString &expression)
{
    if (expression.size() < 2 || !expression.startsWith(QLatin1Char('"')))
        return QString();
    return skipLiteral(expression, 0) == expression.size() ? expression.mid(1, expression.size() - 2) : QString();
}

int capacityOf(const QString &source, const QString &expression, bool *ok)
{
    *ok = true;
    if (expression.isEmpty())
        return CommandText::DefaultCapacity;
    bool number = false;
    const int value = expression.toInt(&number);
    if (number)
        return value;
    const QRegularExpression constant(
        QStringLiteral("\\bconstexpr\\s+int\\s+%1\\s*=\\s*(\\d+)\\s*;").arg(QRegularExpression::escape(expression)));
    const QRegularExpressionMatch match = constant.match(source);
    *ok = match.hasMatch();
    return match.hasMatch() ? match.captured(1).toInt() : 0;
}

// Reads the chain of calls after the constructor's ')' at `close`.
void readChain(const QString &clean, int close, CommandScanner::Construction &found)
{
    const QRegularExpression call(QStringLiteral("\\G\\s*\\.\\s*(\\w+)\\s*\\("));
    int position = close + 1;
    for (;;) {
        const QRegularExpressionMatch match = call.match(clean, position);
        if (!match.hasMatch())
            return;
        const QString method = match.captured(1);
        if (contains(Finishers, int(sizeof Finishers / sizeof *Finishers), method))
            return;
        const int open = match.capturedEnd() - 1;
        const int end = closingParen(clean, open);
        if (!ArgumentGrammar::isKind(method) || end < 0) {
            found.problem = QStringLiteral("unknown call .%1() on the command").arg(method);
            return;
        }
        found.arguments.append({method, simplified(clean.mid(open + 1, end - open - 1))});
        position = end + 1;
    }
}

void resolvePattern(const QString &clean, CommandScanner::Construction &found)
{
    const QString body = literalBody(found.patternSource);
    if (!body.isNull())
        found.patternText = body;
    else if (QRegularExpression(QStringLiteral("\\A\\w+\\z")).match(found.patternSource).hasMatch())
        found.patternText = CommandScanner::constantText(clean, found.patternSource);
    if (found.patternText.isNull()) {
        found.problem = QStringLiteral("pattern %1 is neither a literal nor a text constant of the file")
                            .arg(found.patternSource);
        return;
    }
    found.pattern = CommandScanner::unescape(found.patternText);
    if (found.pattern.isNull())
        found.problem = QStringLiteral("pattern holds an escape the audit does not read");
}

void checkConversions(CommandScanner::Construction &found)
{
    const QByteArray wanted = ArgumentGrammar::conversions(found.pattern);
    QByteArray given("");
    for (const CommandScanner::Argument &argument : found.arguments)
        given += ArgumentGrammar::conversion(argument.kind);
    if (wanted.isNull())
        found.problem = QStringLiteral("pattern has a conversion other than %d and %s");
    else if (wanted != given)
        found.problem = QStringLiteral("arguments %1 do not suit the conversions %2")
                            .arg(QString::fromLatin1(given), QString::fromLatin1(wanted));
}

} // namespace

QStringList CommandScanner::Construction::kinds() const
{
    QStringList names;
    for (const Argument &argument : arguments)
        names << argument.kind;
    return names;
}

QString CommandScanner::withoutComments(const QString &source)
{
    QString out = source;
    for (int i = 0; i < out.size();) {
        const QChar c = out.at(i);
        const QChar next = i + 1 < out.size() ? out.at(i + 1) : QChar();
        if (c == QLatin1Char('"') || c == QLatin1Char('\'')) {
            i = skipLiteral(out, i);
        } else if (c == QLatin1Char('/') && next == QLatin1Char('/')) {
            for (; i < out.size() && out.at(i) != QLatin1Char('\n'); ++i)
                out[i] = QLatin1Char(' ');
        } else if (c == QLatin1Char('/') && next == QLatin1Char('*')) {
            const int end = out.indexOf(QLatin1String("*/"), i + 2);
            const int stop = end < 0 ? out.size() : end + 2;
            for (; i < stop; ++i) {
                if (out.at(i) != QLatin1Char('\n'))
                    out[i] = QLatin1Char(' ');
            }
        } else {
            ++i;
        }
    }
    return out;
}

QString CommandScanner::constantText(const QString &source, const QString &name)
{
    const QRegularExpression constant(
        QStringLiteral("\\b(?:constexpr\\s+)?(?:const\\s+)?char\\s+%1\\s*\\[\\s*\\]\\s*=\\s*(\"(?:[^\"\\\\\\n]|\\\\.)*\")\\s*;")
            .arg(QRegularExpression::escape(name)));
    const QRegularExpressionMatch match = constant.match(source);
    return match.hasMatch() ? literalBody(match.captured(1)) : QString();
}

QByteArray CommandScanner::unescape(const QString &body)
{
    QByteArray out("");
    for (int i = 0; i < body.size(); ++i) {
        const QChar c = body.at(i);
        if (c.unicode() > 0x7e || c.unicode() < 0x20)
            return QByteArray();
        if (c != QLatin1Char('\\')) {
            out += char(c.unicode());
            continue;
        }
        const char escaped = ++i < body.size() ? char(body.at(i).unicode()) : '\0';
        switch (escaped) {
        case 'n': out += '\n'; break;
        case 't': out += '\t'; break;
        case '\\': out += '\\'; break;
        case '"': out += '"'; break;
        case '\'': out += '\''; break;
        default: return QByteArray();
        }
    }
    return out;
}

QString CommandScanner::enclosingFunction(const QString &source, int position)
{
    const QRegularExpression name(QStringLiteral("([\\w:~]+)\\s*\\("));
    const QRegularExpression macro(QStringLiteral("\\A[A-Z0-9_]+\\z"));
    QString function;
    const QStringList lines = source.left(position).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (line.isEmpty() || !(line.at(0).isLetter() || line.at(0) == QLatin1Char('~')))
            continue;
        const QString first = line.section(QLatin1Char(' '), 0, 0);
        const int paren = line.indexOf(QLatin1Char('('));
        if (contains(NotDefinitions, int(sizeof NotDefinitions / sizeof *NotDefinitions), first) || paren < 0
            || line.trimmed().endsWith(QLatin1Char(';')) || line.leftRef(paren).contains(QLatin1Char('=')))
            continue;
        const QRegularExpressionMatch match = name.match(line);
        if (match.hasMatch() && !macro.match(match.captured(1)).hasMatch())
            function = match.captured(1);
    }
    return function;
}

QVector<CommandScanner::Construction> CommandScanner::scanSource(const QString &file, const QString &source)
{
    QVector<Construction> found;
    const QString clean = withoutComments(source);
    const QRegularExpression start(QStringLiteral("\\bCommandText\\s*\\("));
    for (auto it = start.globalMatch(clean); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        Construction construction;
        construction.file = file;
        construction.line = lineOf(clean, match.capturedStart());
        construction.function = enclosingFunction(clean, match.capturedStart());
        const int open = match.capturedEnd() - 1;
        const int close = closingParen(clean, open);
        const QStringList inside = close < 0 ? QStringList() : topLevelArguments(clean.mid(open + 1, close - open - 1));
        construction.patternSource = inside.value(0);
        bool capacityKnown = false;
        construction.capacity = capacityOf(clean, inside.value(1), &capacityKnown);
        if (close < 0 || inside.size() > 2 || !capacityKnown) {
            construction.problem = QStringLiteral("construction not understood");
        } else {
            resolvePattern(clean, construction);
            if (construction.problem.isEmpty())
                readChain(clean, close, construction);
            if (construction.problem.isEmpty())
                checkConversions(construction);
        }
        if (construction.function.isEmpty() && construction.problem.isEmpty())
            construction.problem = QStringLiteral("no enclosing function found");
        found.append(construction);
    }
    return found;
}

QVector<CommandScanner::ProgramStart> CommandScanner::programStarts(const QString &file, const QString &source)
{
    QVector<ProgramStart> found;
    const QString clean = withoutComments(source);
    const QRegularExpression start(QStringLiteral(
        "(?:(ProcessRunner::(?:system|readFrom|writeTo)|(?:\\.|->)(?:readcmd|writecmd)"
        "|std::(?:system|popen)|(?<![\\w:>.*&])(?:popen|system|exec[lv]p?e?|posix_spawnp?|fork|vfork))\\s*\\("
        "|\\b(QProcess)\\b)"));
    for (auto it = start.globalMatch(clean); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        QString call = match.captured(1).isEmpty() ? match.captured(2) : match.captured(1);
        call.remove(QLatin1Char('.')).remove(QLatin1String("->"));
        found.append({file, enclosingFunction(clean, match.capturedStart()), lineOf(clean, match.capturedStart()), call});
    }
    return found;
}

QStringList CommandScanner::sourceFiles(const QString &folder)
{
    QStringList files;
    const QDir root(folder);
    QDirIterator it(folder, {QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString relative = root.relativeFilePath(it.next());
        if (!contains(ExcludedFiles, int(sizeof ExcludedFiles / sizeof *ExcludedFiles), relative))
            files << relative;
    }
    files.sort();
    return files;
}

namespace {
QString readSource(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.read(MaxSourceSize)) : QString();
}
} // namespace

QVector<CommandScanner::Construction> CommandScanner::scanTree(const QString &folder)
{
    QVector<Construction> found;
    for (const QString &file : sourceFiles(folder))
        found += scanSource(file, readSource(QDir(folder).filePath(file)));
    return found;
}

QVector<CommandScanner::ProgramStart> CommandScanner::programStartsInTree(const QString &folder)
{
    QVector<ProgramStart> found;
    for (const QString &file : sourceFiles(folder))
        found += programStarts(file, readSource(QDir(folder).filePath(file)));
    return found;
}
