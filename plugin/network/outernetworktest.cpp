#include "outernetworktest.h"

#include "commandtext.h"
#include "processrunner.h"

#include <QMessageBox>

namespace {
// A well-known public web host: the test also proves that names resolve.
const char PingHost[] = "www.baidu.com";
// Relative: the ping writes it in the host's working directory.
const char PingFile[] = "ping.txt";
const char ResultBoxTitle[] = "设备详细信息";
const char ResultBoxStyle[] =
    "QMessageBox{background-color:rgb(255, 255, 255);border:2px solid #000000;border-radius:3px;}";
} // namespace

namespace OuterNetworkTest {

void start()
{
    runCommand(CommandText("rm ping.txt"));
    runCommand(CommandText("killall ping"));
    runCommand(CommandText("ping %s -W 3 -c 1 >> ping.txt&").word(PingHost));
}

PingResult::State result()
{
    return PingResult::read(QString::fromLatin1(PingFile));
}

void showResult(bool succeeded, const QString &successText, const QString &failureText,
                const QFont &font)
{
    QMessageBox box(succeeded ? QMessageBox::Information : QMessageBox::Critical,
                    QString::fromUtf8(ResultBoxTitle), succeeded ? successText : failureText,
                    QMessageBox::Ok, nullptr, Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint);
    box.setObjectName(QStringLiteral("pingResultBox"));
    box.setStyleSheet(QLatin1String(ResultBoxStyle));
    box.setFont(font);
    box.exec();
}

} // namespace OuterNetworkTest
