#include "screenshotpass.h"
#include "simulatoroptions.h"
#include "windowdriver.h"

#include <QDir>
#include <QTimer>

ScreenshotPass::ScreenshotPass(WindowDriver *driver, const QString &dir, const QSize &panelSize,
                               QObject *parent)
    : QObject(parent)
    , m_driver(driver)
    , m_dir(dir)
    , m_size(panelSize)
{
    for (const QString &language : WindowDriver::languageNames()) {
        for (const QString &page : WindowDriver::pageNames() + WindowDriver::dialogNames())
            m_shots << qMakePair(language, page);
    }
}

QString ScreenshotPass::fileName(const QString &dir, const QSize &panelSize,
                                 const QString &page, const QString &language)
{
    return QDir(dir).absoluteFilePath(SimulatorOptions::sizeName(panelSize) + QLatin1Char('/')
                                      + page + QLatin1Char('_') + language + QStringLiteral(".png"));
}

void ScreenshotPass::start(int settleMs)
{
    m_settleMs = settleMs;
    m_next = 0;
    QTimer::singleShot(m_settleMs, this, &ScreenshotPass::prepareNext);
}

void ScreenshotPass::prepareNext()
{
    if (m_next >= m_shots.size()) {
        emit finished();
        return;
    }
    const QPair<QString, QString> &shot = m_shots.at(m_next);
    const bool dialog = WindowDriver::dialogNames().contains(shot.second);
    // The dialogs belong to the general page.
    const QString page = dialog ? WindowDriver::pageNames().first() : shot.second;
    QString error;
    if (!m_driver->selectLanguage(shot.first, &error) || !m_driver->showPage(page, &error)) {
        emit failed(error);
        return;
    }
    QTimer::singleShot(m_settleMs, this, dialog ? &ScreenshotPass::openDialog : &ScreenshotPass::grabCurrent);
}

void ScreenshotPass::openDialog()
{
    QString error;
    if (!m_driver->openDialog(m_shots.at(m_next).second, &error)) {
        emit failed(error);
        return;
    }
    QTimer::singleShot(m_settleMs, this, &ScreenshotPass::grabCurrent);
}

void ScreenshotPass::grabCurrent()
{
    const QPair<QString, QString> &shot = m_shots.at(m_next++);
    const QString file = fileName(m_dir, m_size, shot.second, shot.first);
    QString error;
    if (!m_driver->saveImage(file, &error)) {
        emit failed(error);
        return;
    }
    emit saved(file);
    // The dialog's own event loop is running under this call: close it and
    // go on from the window's loop.
    if (WindowDriver::dialogNames().contains(shot.second) && !m_driver->dismissDialog(&error)) {
        emit failed(error);
        return;
    }
    QTimer::singleShot(0, this, &ScreenshotPass::prepareNext);
}
