#ifndef SIMULATORRUN_H
#define SIMULATORRUN_H

#include <QByteArray>
#include <QImage>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

// Runs the built panel simulator as a separate program for the simulator's
// tests, and reads what it printed.
namespace SimulatorRun {

struct Run {
    bool finished = false;
    int exitCode = -1;
    QStringList out;     // stdout lines
    QString err;
};

// No display: the simulator takes its headless paths.
QProcessEnvironment headless();
// A desktop: an X display, as when the user starts the simulator there.
QProcessEnvironment onDesktop(const QString &display);

void collect(QProcess &process, Run *run);
// Starts the built simulator (under the build's emulator in a cross build).
void startSimulator(QProcess &process, const QStringList &arguments);
Run runSimulator(const QStringList &arguments, int timeoutMs, const QProcessEnvironment &environment = headless());
// Waits until the running simulator has printed a line equal to text.
bool waitForLine(QProcess &process, const QString &text, QByteArray *seen, int timeoutMs = 20000);
// Waits until it has printed a line matching pattern; the line, or empty.
QString waitForMatch(QProcess &process, const QRegularExpression &pattern, QByteArray *seen, int timeoutMs);
QString describe(const Run &run);
int indexOfLine(const QStringList &lines, const QString &text, int from = 0);
QStringList pngLines(const QStringList &lines);
// A picture with a handful of colours at most is a blank or failed grab.
int distinctColours(const QImage &image);

} // namespace SimulatorRun

#endif // SIMULATORRUN_H
