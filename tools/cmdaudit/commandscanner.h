#ifndef COMMANDSCANNER_H
#define COMMANDSCANNER_H

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

// Reads the plug-in's sources the way a reviewer would and lists every
// command text they build (each `CommandText(...)` with its chained typed
// arguments, named pattern constants resolved) and every other place that
// starts a program. It understands only the plain forms the plug-in uses;
// anything else is reported as a problem rather than guessed at.
class CommandScanner
{
public:
    struct Argument
    {
        QString kind;           // the CommandText method: number, ipv4, ...
        QString expression;     // its argument as written
    };

    struct Construction
    {
        QString file;           // relative to the scanned folder
        QString function;       // the function it stands in
        int line = 0;
        QString patternSource;  // the literal or constant name as written
        QString patternText;    // the pattern as C source shows it, quotes off
        QByteArray pattern;     // the bytes the program uses
        int capacity = 0;
        QVector<Argument> arguments;
        QString problem;        // empty when understood

        QStringList kinds() const;
    };

    struct ProgramStart
    {
        QString file;
        QString function;
        int line = 0;
        QString call;           // popen-like call found, e.g. "readcmd"
    };

    // Every *.cpp below `folder`, except the builder and runner themselves.
    static QVector<Construction> scanTree(const QString &folder);
    static QVector<ProgramStart> programStartsInTree(const QString &folder);

    // One source text; `file` only names it in the results.
    static QVector<Construction> scanSource(const QString &file, const QString &source);
    static QVector<ProgramStart> programStarts(const QString &file, const QString &source);

    // The text of a `const char Name[] = "..."` (or constexpr) of the
    // source, as C source shows it; null when there is none.
    static QString constantText(const QString &source, const QString &name);
    // A C string literal's body with its escapes taken; null for an escape
    // the scanner does not know.
    static QByteArray unescape(const QString &body);
    // The function whose body holds `position`, as its definition names it.
    static QString enclosingFunction(const QString &source, int position);
    // Comments replaced by blanks, line breaks kept, literals untouched.
    static QString withoutComments(const QString &source);

    static QStringList sourceFiles(const QString &folder);
};

#endif // COMMANDSCANNER_H
