#include "dhcpclient.h"

#include "commandtext.h"
#include "pidfile.h"
#include "processrunner.h"

namespace {
const char PidFilePattern[] = "/var/run/udhcpc%1.pid";
// Up to 100 discovery packets 1 s apart, and 1 s of rest after a failed try.
const char ClientCommand[] = "udhcpc -i eth%d -t 100 -T 1 -A 1 -p /var/run/udhcpc%d.pid&";

bool validPort(int port)
{
    return port == 0 || port == 1;
}
} // namespace

namespace DhcpClient {

QString pidFile(int port)
{
    return QString::fromLatin1(PidFilePattern).arg(port);
}

void start(int port)
{
    if (!validPort(port))
        return;
    stop(port);
    runCommand(CommandText(ClientCommand).adapter(port).adapter(port));
}

void stop(int port)
{
    if (!validPort(port) || !PidFile::exists(pidFile(port)))
        return;
    runCommand(CommandText("kill %d").processId(PidFile::read(pidFile(port))));
}

} // namespace DhcpClient
