#ifndef WLANSTATUS_H
#define WLANSTATUS_H

#include <QByteArray>
#include <QString>

// What the WLAN page shows of the host application's WLAN state, decided
// once a second from register 100 and the page's own edge memory.
namespace WlanStatus {

// Register 100 values the page reacts to; anything else is "not connected".
constexpr int Connected = 2;
constexpr int PasswordError = 4;

enum Action {
    ShowOnline,         // connected: show name, addresses, MAC, DNS
    PromptPassword,     // password error just arrived: message box, then a new dialog
    PromptSuppressed,   // password error just arrived, but a dialog is open or it was dealt with
    ShowOffline,        // anything else, or the WLAN is switched off
};

struct Tick
{
    Action action = ShowOffline;
    int lastState = 0;          // the edge memory after this tick
    bool scrollToTop = false;   // the page just went online
};

// One tick: `state` from register 100, `lastState` the edge memory,
// `promptAllowed` whether no dialog is open and the error was not already
// dealt with for the SSID clicked last.
Tick decide(int state, bool disabled, int lastState, bool promptAllowed);

// Source texts of the status label, translated by the page.
const char *statusSource(Action action);

// "aa:bb:cc:dd:ee:ff" from the first 12 characters of register 107 (up to a
// NUL). Empty: `previous`, or all zeros when there was none.
QString macText(const QByteArray &raw, const QString &previous);

} // namespace WlanStatus

#endif // WLANSTATUS_H
