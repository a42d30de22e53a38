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

// True when the suite was built for a panel and runs under an emulator:
// there, CPU and elapsed time say little of the panel's (qemu-user runs the
// same code several times slower), so time budgets get this allowance.
bool underEmulator();
constexpr double EmulatorAllowance = 5.0;
inline double timeAllowance() { return underEmulator() ? EmulatorAllowance : 1.0; }

#endif // TARGETPROGRAM_H
