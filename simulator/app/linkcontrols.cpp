#include "linkcontrols.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

LinkControls::LinkControls(QWidget *parent)
    : QGroupBox(tr("Host links: what the host does next"), parent)
    , m_signal(new QSpinBox(this))
    , m_network(new QLineEdit(this))
{
    auto *drops = new QHBoxLayout;
    const QList<QPair<QString, QString>> buttons = {
        {tr("Drop WLAN"), QStringLiteral("wlan-drop")},
        {tr("Drop 4G"), QStringLiteral("4g-drop")},
        {tr("Drop VPN"), QStringLiteral("vpn-drop")},
        {tr("Wrong WLAN password next time"), QStringLiteral("wlan-password-wrong")},
    };
    for (const auto &entry : buttons) {
        auto *button = new QPushButton(entry.first, this);
        const QString step = entry.second;
        connect(button, &QPushButton::clicked, this, [this, step]() { emit command(step); });
        drops->addWidget(button);
    }
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(drops);
    layout->addWidget(signalRow());
    layout->addWidget(networkRow());
}

QWidget *LinkControls::signalRow()
{
    auto *row = new QWidget(this);
    auto *drift = new QCheckBox(tr("drifts"), row);
    drift->setChecked(true);
    m_signal->setRange(0, 100);
    m_signal->setValue(68);
    m_signal->setSuffix(QStringLiteral(" %"));
    connect(m_signal, QOverload<int>::of(&QSpinBox::valueChanged), this, [this, drift](int level) {
        drift->setChecked(false);
        emit command(QStringLiteral("signal=%1").arg(level));
    });
    connect(drift, &QCheckBox::clicked, this, [this](bool on) {
        emit command(on ? QStringLiteral("signal=drift") : QStringLiteral("signal=%1").arg(m_signal->value()));
    });
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new QLabel(tr("4G signal:"), row));
    layout->addWidget(m_signal);
    layout->addWidget(drift);
    layout->addStretch();
    return row;
}

QWidget *LinkControls::networkRow()
{
    auto *row = new QWidget(this);
    m_network->setPlaceholderText(tr("name or name:password"));
    auto *add = new QPushButton(tr("Network in range"), row);
    auto *remove = new QPushButton(tr("Out of range"), row);
    connect(add, &QPushButton::clicked, this, [this]() {
        if (!m_network->text().isEmpty())
            emit command(QStringLiteral("scan-add=") + m_network->text());
    });
    connect(remove, &QPushButton::clicked, this, [this]() {
        const QString name = m_network->text().section(QLatin1Char(':'), 0, 0);
        if (!name.isEmpty())
            emit command(QStringLiteral("scan-remove=") + name);
    });
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new QLabel(tr("WLAN scan:"), row));
    layout->addWidget(m_network, 1);
    layout->addWidget(add);
    layout->addWidget(remove);
    return row;
}
