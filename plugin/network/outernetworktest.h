#ifndef OUTERNETWORKTEST_H
#define OUTERNETWORKTEST_H

#include "pingresult.h"

#include <QFont>
#include <QString>

// The outer-network test shared by the wired, WLAN and 4G tabs: one ping of
// a well-known public web host in the background, its answer read from
// "ping.txt" in the working directory some seconds later.
namespace OuterNetworkTest {

// The ping waits 3 s at most; the answer is read after this.
constexpr int ResultDelayMs = 6000;

// Ends a ping still running, drops the old answer and starts a new ping.
void start();

// The answer so far: Missing while the file is not there yet.
PingResult::State result();

// The modal box that tells the operator the outcome.
// It has no parent, as on every panel; the panel font keeps it readable on
// large screens.
void showResult(bool succeeded, const QString &successText, const QString &failureText,
                const QFont &font);

} // namespace OuterNetworkTest

#endif // OUTERNETWORKTEST_H
