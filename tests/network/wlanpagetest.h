#ifndef WLANPAGETEST_H
#define WLANPAGETEST_H

#include "wirelesspagelook.h"
#include "wirelesswgtui.h"
#include "wlanpagerig.h"

#include "iplineedit.h"

#include <QApplication>
#include <QLabel>
#include <QListWidget>
#include <QTextCodec>
#include <QTimer>

// Small helpers of the WLAN page tests.
namespace WlanPageTest {


template <typename T>
T *child(WirelessWgtUI &page, const char *name)
{
    T *widget = page.findChild<T *>(QLatin1String(name));
    if (!widget)
        qWarning("no child %s", name);
    return widget;
}

inline QListWidget *list(WirelessWgtUI &page) { return child<QListWidget>(page, "listWidget_wifi"); }

inline QStringList itemTexts(WirelessWgtUI &page)
{
    QStringList texts;
    for (int i = 0; i < list(page)->count(); ++i)
        texts << list(page)->item(i)->text();
    return texts;
}

inline QStringList itemIcons(WirelessWgtUI &page)
{
    QStringList icons;
    for (int i = 0; i < list(page)->count(); ++i)
        icons << list(page)->item(i)->data(Qt::UserRole).toString();
    return icons;
}

inline QByteArray gb2312(const QString &text)
{
    return QTextCodec::codecForName("GB2312")->fromUnicode(text);
}

inline QImage labelImage(WirelessWgtUI &page, const char *name)
{
    return child<QLabel>(page, name)->pixmap(Qt::ReturnByValue).toImage();
}

inline QImage pictureImage(const char *path)
{
    return WirelessPageLook::picture(QLatin1String(path), WirelessPageLook::StateIconSize).toImage();
}

inline QByteArray passwordTable(const QList<QByteArray> &names, const QList<QByteArray> &passwords)
{
    QByteArray bytes(480, '\0');
    for (int i = 0; i < names.size(); ++i)
        bytes.replace(i * 32, names.at(i).size(), names.at(i));
    for (int i = 0; i < passwords.size(); ++i)
        bytes.replace(160 + i * 64, passwords.at(i).size(), passwords.at(i));
    return bytes;
}

inline QListWidgetItem *itemNamed(WirelessWgtUI &page, const QString &ssid)
{
    const QList<QListWidgetItem *> found = list(page)->findItems(ssid, Qt::MatchExactly);
    return found.isEmpty() ? nullptr : found.first();
}

// Closes any modal widget that shows up, and remembers that one did.
class ModalGuard
{
public:
    ModalGuard()
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this]() {
            if (QWidget *modal = QApplication::activeModalWidget()) {
                m_seen = true;
                modal->close();
            }
        });
        m_timer.start(10);
    }
    bool seen() const { return m_seen; }

private:
    QTimer m_timer;
    bool m_seen = false;
};

inline QString ipOf(WirelessWgtUI &page, const char *name)
{
    return child<IPLineEdit>(page, name)->getIPVal();
}

} // namespace WlanPageTest

#endif // WLANPAGETEST_H
