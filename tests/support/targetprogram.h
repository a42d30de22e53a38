#ifndef TARGETPROGRAM_H
#define TARGETPROGRAM_H

#include <QString>
#include <QStringList>

// A program built in this tree, as a test starts it. When the suite is built
// for a panel and runs under an emulator (qemu-user), the programs it starts
// run under the same emulator; the kernel alone could not start them.
struct TargetProgram
{
    QString program;
    QStringList arguments;
};

TargetProgram targetProgram(const QString &path, const QStringList &arguments = {});

#endif // TARGETPROGRAM_H
