// A pid file is written by the DHCP client; whatever it holds, the reader
// gives a number only when the file's first line is one, and a kill
// command is built only for a pid that names a single real process.
#include "commandtext.h"
#include "fuzzsupport.h"
#include "pidfile.h"

namespace {
const QString PidPath = QStringLiteral("/var/run/udhcpc.eth0.pid");
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray input = FuzzSupport::bytes(data, size);
    FuzzSupport::writePanelFile(PidPath, input);
    const qint64 pid = PidFile::read(PidPath);

    // A short first line without carriage returns gives the same answer
    // as parsing it by hand; longer ones are cut at the reader's bound.
    const int end = input.indexOf('\n');
    const QByteArray firstLine = end < 0 ? input : input.left(end);
    if (firstLine.size() <= 32 && !firstLine.contains('\r')) {
        bool ok = false;
        const qint64 expected = firstLine.trimmed().toLongLong(&ok);
        FUZZ_CHECK(pid == (ok ? expected : 0), input);
    }

    const CommandText kill = CommandText("kill %d").processId(pid);
    FUZZ_CHECK(kill.isValid() == (pid > 1), input);
    if (kill.isValid())
        FUZZ_CHECK(kill.text() == "kill " + QByteArray::number(pid), kill.text());
    return 0;
}
