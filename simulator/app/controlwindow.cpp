#include "controlwindow.h"
#include "linkcontrols.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QSignalBlocker>
#include <QTime>
#include <QVBoxLayout>

ControlWindow::ControlWindow(const QString &root, const QString &pluginPath, QWidget *parent)
    : QWidget(parent)
    , m_where(new QLabel(this))
    , m_pluginPath(pluginPath)
    , m_log(new QPlainTextEdit(this))
    , m_outer(new QCheckBox(tr("Outer network answers"), this))
    , m_links(new LinkControls(this))
{
    connect(m_links, &LinkControls::command, this, &ControlWindow::hostCommand);
    setWindowTitle(tr("Panel simulator: host side"));
    setPanelRoot(root);
    m_where->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_log->setReadOnly(true);
    // A long session must not grow without bound.
    m_log->setMaximumBlockCount(5000);
    m_log->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    auto *openButton = new QPushButton(tr("Show settings window"), this);
    auto *quitButton = new QPushButton(tr("Quit"), this);
    connect(openButton, &QPushButton::clicked, this, &ControlWindow::openSettingsRequested);
    connect(quitButton, &QPushButton::clicked, this, &ControlWindow::quitRequested);
    m_outer->setChecked(true);
    m_outer->setToolTip(tr("Whether the outer-network test's ping gets an answer"));
    connect(m_outer, &QCheckBox::toggled, this, &ControlWindow::outerNetworkToggled);

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(openButton);
    buttons->addWidget(m_outer);
    buttons->addStretch();
    buttons->addWidget(quitButton);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_where);
    layout->addWidget(m_log, 1);
    layout->addWidget(m_links);
    layout->addLayout(buttons);
    resize(560, 560);
}

void ControlWindow::placeBeside(const QSize &panelSize)
{
    const QRect desktop = QGuiApplication::primaryScreen()->availableGeometry();
    if (desktop.width() >= panelSize.width() + width())
        move(desktop.left() + panelSize.width(), desktop.top());
}

void ControlWindow::setPanelRoot(const QString &root)
{
    const QString shown = root.isEmpty() ? tr("(being built)") : root;
    m_where->setText(tr("Panel root: %1\nPlug-in: %2").arg(shown, m_pluginPath));
}

void ControlWindow::setOuterNetworkUp(bool up)
{
    const QSignalBlocker blocker(m_outer);
    m_outer->setChecked(up);
}

void ControlWindow::appendLine(const QString &line)
{
    m_log->appendPlainText(QTime::currentTime().toString(QStringLiteral("HH:mm:ss.zzz  ")) + line);
}

void ControlWindow::closeEvent(QCloseEvent *event)
{
    // Closing the host side ends the simulation, as quitting the runtime
    // would; the settings window must not outlive it.
    event->accept();
    emit quitRequested();
}
