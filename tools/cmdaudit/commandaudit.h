#ifndef COMMANDAUDIT_H
#define COMMANDAUDIT_H

#include "commanddescriptions.h"
#include "commandscanner.h"

#include <QString>
#include <QStringList>
#include <QVector>

// The command audit of docs/commands.md: what the scanner finds in the
// sources joined with the hand-kept descriptions of their inputs.
class CommandAudit
{
public:
    explicit CommandAudit(const QString &pluginFolder);

    const QVector<CommandScanner::Construction> &constructions() const { return m_constructions; }
    const QVector<CommandScanner::ProgramStart> &programStarts() const { return m_starts; }

    // The description of a construction or start, or null.
    static const CommandDescriptions::Command *describe(const CommandScanner::Construction &construction);
    static const CommandDescriptions::Program *describe(const CommandScanner::ProgramStart &start);

    // Everything that keeps the audit from being complete; empty when it is.
    QStringList problems() const;

    QString markdown() const;

private:
    QString commandRow(const CommandScanner::Construction &construction) const;
    QString programRow(const CommandScanner::ProgramStart &start) const;

    QString m_folder;
    QVector<CommandScanner::Construction> m_constructions;
    QVector<CommandScanner::ProgramStart> m_starts;
};

#endif // COMMANDAUDIT_H
