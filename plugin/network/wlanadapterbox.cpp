#include "wlanadapterbox.h"

#include "adapterlist.h"

#include <QComboBox>
#include <QCoreApplication>

namespace {

constexpr int FullCount = 4;

QString wired0() { return QCoreApplication::translate("WirelessWgtUI", "wired network0"); }
QString wired1() { return QCoreApplication::translate("WirelessWgtUI", "wired network1"); }
QString wireless() { return QCoreApplication::translate("WirelessWgtUI", "wireless network"); }

} // namespace

namespace WlanAdapterBox {

void fill(QComboBox *box, bool secondPort, bool wlanOn, int stored)
{
    box->clear();
    box->addItem(QString());
    box->addItem(wired0());
    if (secondPort)
        box->addItem(wired1());
    if (wlanOn)
        box->addItem(wireless());
    box->setCurrentIndex(stored < box->count() ? stored : 0);
}

void retranslate(QComboBox *box, bool wlanOn)
{
    if (box->count() > 0)
        box->setItemText(0, QString());
    if (box->count() > 1)
        box->setItemText(1, wired0());
    if (box->count() == FullCount) {
        box->setItemText(2, wired1());
        if (wlanOn)
            box->setItemText(3, wireless());
    } else if (box->count() > 2) {
        box->setItemText(2, wlanOn ? wireless() : wired1());
    }
}

void setWlanShown(QComboBox *box, bool shown, bool secondPort)
{
    const int row = AdapterList::linkRow(secondPort);
    if (shown) {
        box->addItem(wireless());
        box->setItemText(row, wireless());
    } else {
        box->removeItem(row);
    }
}

} // namespace WlanAdapterBox
