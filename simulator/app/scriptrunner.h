#ifndef SCRIPTRUNNER_H
#define SCRIPTRUNNER_H

#include <QObject>
#include <QString>
#include <QStringList>

class WindowDriver;

// Plays a short script against the settings window, one step every
// stepDelay ms so that each step sees the window settled after the last.
// Steps (given comma-separated on the command line):
//   general | network | version   click that page's button
//   zh | en                       select that language row
//   wait=MS                       pause
//   shot=FILE                     write a PNG of the window
//   close                         press the window's close button
//   quit                          end the simulator (exit status 0)
class ScriptRunner : public QObject
{
    Q_OBJECT

public:
    ScriptRunner(const QStringList &steps, WindowDriver *driver, QObject *parent = nullptr);

    // Checks a script before anything starts; false with a message.
    static bool validate(const QStringList &steps, QString *error);
    static QString syntax();

    void start(int stepDelayMs = 300);

signals:
    void closePressed();
    void quitRequested();
    void screenshotSaved(const QString &path);
    void failed(const QString &error);
    void finished();

private slots:
    void runNextStep();

private:
    bool runStep(const QString &step, int *pauseMs, QString *error);

    QStringList m_steps;
    WindowDriver *m_driver;
    int m_next = 0;
    int m_stepDelayMs = 300;
};

#endif // SCRIPTRUNNER_H
