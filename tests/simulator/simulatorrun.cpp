#include "simulatorrun.h"
#include "targetprogram.h"

#include <QElapsedTimer>
#include <QSet>

namespace SimulatorRun {

QProcessEnvironment headless()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("DISPLAY"));
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    return environment;
}

QProcessEnvironment onDesktop(const QString &display)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    environment.insert(QStringLiteral("DISPLAY"), display);
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    return environment;
}

void collect(QProcess &process, Run *run)
{
    run->exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run->out = QString::fromLocal8Bit(process.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    run->err = QString::fromLocal8Bit(process.readAllStandardError());
}

void startSimulator(QProcess &process, const QStringList &arguments)
{
    const TargetProgram program = targetProgram(QStringLiteral(PANEL_SIMULATOR_PATH), arguments);
    process.start(program.program, program.arguments);
}

Run runSimulator(const QStringList &arguments, int timeoutMs,
                 const QProcessEnvironment &environment)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    startSimulator(process, arguments);
    Run run;
    run.finished = process.waitForFinished(timeoutMs);
    if (!run.finished) {
        process.kill();
        process.waitForFinished(5000);
    }
    collect(process, &run);
    return run;
}

bool waitForLine(QProcess &process, const QString &text, QByteArray *seen, int timeoutMs)
{
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < timeoutMs) {
        if (QString::fromLocal8Bit(*seen).split(QLatin1Char('\n')).contains(text))
            return true;
        if (process.state() == QProcess::NotRunning)
            return false;
        process.waitForReadyRead(200);
        seen->append(process.readAllStandardOutput());
    }
    return false;
}

QString waitForMatch(QProcess &process, const QRegularExpression &pattern, QByteArray *seen, int timeoutMs)
{
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < timeoutMs) {
        for (const QString &line : QString::fromLocal8Bit(*seen).split(QLatin1Char('\n'))) {
            if (pattern.match(line).hasMatch())
                return line;
        }
        if (process.state() == QProcess::NotRunning)
            return QString();
        process.waitForReadyRead(200);
        seen->append(process.readAllStandardOutput());
    }
    return QString();
}

QString describe(const Run &run)
{
    return QStringLiteral("exit %1\n--- stdout\n%2\n--- stderr\n%3")
        .arg(run.exitCode).arg(run.out.join(QLatin1Char('\n')), run.err);
}

int distinctColours(const QImage &image)
{
    QSet<QRgb> colours;
    for (int y = 0; y < image.height(); y += 4) {
        for (int x = 0; x < image.width(); x += 4)
            colours.insert(image.pixel(x, y));
    }
    return colours.size();
}

QStringList pngLines(const QStringList &lines)
{
    QStringList paths;
    for (const QString &line : lines) {
        if (line.endsWith(QLatin1String(".png")))
            paths << line;
    }
    return paths;
}

int indexOfLine(const QStringList &lines, const QString &text, int from)
{
    for (int i = from; i < lines.size(); ++i) {
        if (lines.at(i) == text)
            return i;
    }
    return -1;
}

} // namespace SimulatorRun
