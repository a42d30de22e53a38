#include "simulatedpanel.h"
#include "networkstandins.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QStandardPaths>
#include <QtEndian>

#include <cstdio>
#include <cstring>
#include <functional>
#include <sys/stat.h>
#include <sys/types.h>

Q_LOGGING_CATEGORY(lcPanel, "tavro.simulator.panel")

namespace {

// Where the device image keeps what the plug-in reads of it.
constexpr int BrightnessOffset = 29;
constexpr int Eth0MacOffset = 32;
constexpr int Eth0IpOffset = 41;
constexpr int Eth0GatewayOffset = 45;
constexpr int Eth0MaskOffset = 49;
constexpr int Eth1MacOffset = 165;
constexpr int Eth1IpOffset = 174;
constexpr int Eth1GatewayOffset = 178;
constexpr int Eth1MaskOffset = 182;
constexpr int ReadOnlyBase = 256;
constexpr int CapabilityByte = ReadOnlyBase + 5;   // bit 3: WLAN fitted
constexpr int HwOptionsByte = ReadOnlyBase + 6;    // bit 0: eth1, bit 5: 4G
constexpr int ScreenWidthLow = ReadOnlyBase + 30;
constexpr int ScreenWidthHigh = ReadOnlyBase + 31; // upper nibble: bits 8..11
constexpr int QrTextOffset = 512;
constexpr int QrTextSize = 64;
constexpr int ImageSize = 1024;

// Register 79 (key click on) is bit 17 of the retained system bits.
const char BuzzerRegisterFile[] = "/hmi_data/sfb.dat";
constexpr int BuzzerRegisterBit = 17;

const char *const RegisterFiles[] = {
    "/tmp/mw.dat", "/tmp/mb.dat", "/hmi_data/fw.dat", "/hmi_data/fb.dat",
    "/tmp/smw.dat", "/tmp/smb.dat", "/hmi_data/sfw.dat", "/hmi_data/sfb.dat",
    "/hmi_data/rw.dat",
};

const char *const Folders[] = {
    "/tmp", "/hmi_data", "/hmi/Config", "/root/plat-intf", "/etc", "/var/run",
    "/var/lib/zerotier-one", "/dev", "/sim/bin",
};

const char LanguageFile[] =
    "{\n"
    "    \"defaultLange\": 0,\n"
    "    \"lange\": [\n"
    "        { \"id\": 0, \"name\": \"Chinese(Simplified Han)\" },\n"
    "        { \"id\": 1, \"name\": \"English(Latin)\" }\n"
    "    ]\n"
    "}\n";

// QSettings keeps a group named "General" as "[%General]": a plain
// "[General]" section holds top-level keys.
const char SettingsFile[] = "[%General]\nbuzzer=on\n";

const char ResolverFile[] =
    "nameserver 114.114.114.114 # eth0\n"
    "nameserver 8.8.8.8 # eth0\n";

// Shared head of every stand-in: append one tab-separated line per call.
const char LogFunction[] =
    "log_call() {\n"
    "    line=$(basename \"$0\")\n"
    "    for a in \"$@\"; do line=\"$line\t$a\"; done\n"
    "    printf '%s\\n' \"$line\" >> \"$CALL_LOG\"\n"
    "}\n";

struct FirmwareTool {
    const char *name;
    const char *body;   // after log_call; $STATE is the simulator's state folder
};

const FirmwareTool FirmwareTools[] = {
    {"readee", "cat \"$STATE/eeprom.bin\"\n"},
    {"writeee", "cat > \"$STATE/eeprom.new\" && mv \"$STATE/eeprom.new\" \"$STATE/eeprom.bin\"\n"},
    {"getbright", "cat \"$STATE/brightness\"\n"},
    {"setbright", "printf '%s\\n' \"$1\" > \"$STATE/brightness\"\n"},
    {"setbeep", "printf '%s\\n' \"$1\" >> \"$STATE/beeps.log\"\n"},
    {"setmpi", "cat > \"$STATE/mpi.bin\"\n"},
    {"setserial", "cat > \"$STATE/serial.bin\"\n"},
    {"readlogo", "cat \"$STATE/logo.bin\" 2>/dev/null\n"},
    {"writelogo", "cat > \"$STATE/logo.bin\"\n"},
    {"getusbslave", "cat \"$STATE/usbslave\"\n"},
};

const char *const HostTools[] = {
    "reboot", "date", "hwclock", "ifconfig", "route", "ip", "udhcpc", "killall", "ping",
};

bool writeFile(const QString &path, const QByteArray &data, QString *error,
               QFileDevice::Permissions extra = {})
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(data) != data.size()) {
        if (error)
            *error = QStringLiteral("cannot write %1: %2").arg(path, file.errorString());
        return false;
    }
    if (extra)
        file.setPermissions(file.permissions() | extra);
    return true;
}

QByteArray script(const QByteArray &prelude, const QByteArray &body)
{
    return "#!/bin/sh\n" + prelude + LogFunction + "log_call \"$@\"\n" + body;
}

template <typename T>
void putLittleEndian(QByteArray &image, int offset, T value)
{
    const T stored = qToLittleEndian(value);
    image.replace(offset, int(sizeof stored), reinterpret_cast<const char *>(&stored), int(sizeof stored));
}

void putIp(QByteArray &image, int offset, quint8 a, quint8 b, quint8 c, quint8 d)
{
    putLittleEndian(image, offset, quint32(a) | quint32(b) << 8 | quint32(c) << 16 | quint32(d) << 24);
}

QString findCjkFont()
{
    const char *const candidates[] = {
        "/usr/share/fonts/truetype/wqy/wqy-microhei.ttc",
        "/usr/share/fonts/truetype/wqy/wqy-zenhei.ttc",
        "/usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc",
        "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf",
    };
    for (const char *candidate : candidates) {
        if (QFileInfo::exists(QString::fromLatin1(candidate)))
            return QString::fromLatin1(candidate);
    }
    return QString();
}

} // namespace

QStringList SimulatedPanel::hostToolNames()
{
    QStringList names;
    for (const char *tool : HostTools)
        names << QString::fromLatin1(tool);
    return names;
}

QStringList SimulatedPanel::firmwareToolNames()
{
    QStringList names;
    for (const FirmwareTool &tool : FirmwareTools)
        names << QString::fromLatin1(tool.name);
    return names;
}

QString SimulatedPanel::stateDir(const QString &root) { return root + QStringLiteral("/sim"); }
QString SimulatedPanel::callLogPath(const QString &root) { return stateDir(root) + QStringLiteral("/calls.log"); }
QString SimulatedPanel::imagePath(const QString &root) { return stateDir(root) + QStringLiteral("/eeprom.bin"); }
QString SimulatedPanel::brightnessPath(const QString &root) { return stateDir(root) + QStringLiteral("/brightness"); }
QString SimulatedPanel::beepLogPath(const QString &root) { return stateDir(root) + QStringLiteral("/beeps.log"); }
QString SimulatedPanel::hostToolDir(const QString &root) { return stateDir(root) + QStringLiteral("/bin"); }
QString SimulatedPanel::routeTablePath(const QString &root) { return stateDir(root) + QStringLiteral("/routes"); }
QString SimulatedPanel::interfacesPath(const QString &root) { return stateDir(root) + QStringLiteral("/interfaces"); }
QString SimulatedPanel::outerNetworkPath(const QString &root) { return stateDir(root) + QStringLiteral("/outer-net"); }

bool SimulatedPanel::setOuterNetwork(const QString &root, bool up)
{
    return writeFile(outerNetworkPath(root), up ? "up\n" : "down\n", nullptr);
}

bool SimulatedPanel::setLinkInterface(const QString &root, const QString &port, const QString &address,
                                      const QString &mask)
{
    auto update = [](const QString &path, const std::function<QByteArray(const QByteArray &)> &change) {
        QFile file(path);
        const QByteArray before = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        file.close();
        // Replaced whole, as the stand-ins replace it: a reader sees old or new.
        return writeFile(path + QStringLiteral(".new"), change(before), nullptr)
            && ::rename(QFile::encodeName(path + QStringLiteral(".new")).constData(), QFile::encodeName(path).constData()) == 0;
    };
    const bool up = !address.isEmpty();
    return update(stateDir(root) + QStringLiteral("/ports"),
                  [&](const QByteArray &text) { return NetworkStandIns::portsWithLink(text, port, up); })
        && update(interfacesPath(root),
                  [&](const QByteArray &text) { return NetworkStandIns::interfacesWithLink(text, port, address, mask); })
        && update(routeTablePath(root),
                  [&](const QByteArray &text) { return NetworkStandIns::routesWithLink(text, port, address, mask); });
}

QByteArray SimulatedPanel::sampleImage(const Options &options)
{
    QByteArray image(ImageSize, '\0');
    for (int i = 0; i < ImageSize; ++i)   // bytes owned by other programs: keep them recognisable
        image[i] = char((i * 37 + 11) & 0xff);
    for (int i = 0; i < 187; ++i)
        image[i] = '\0';
    putLittleEndian(image, BrightnessOffset, quint16(options.brightness));
    const char mac0[] = {'\x00', '\x1a', '\x2b', '\x3c', '\x4d', '\x5e'};
    const char mac1[] = {'\x00', '\x1a', '\x2b', '\x3c', '\x4d', '\x5f'};
    memcpy(image.data() + Eth0MacOffset, mac0, sizeof mac0);
    memcpy(image.data() + Eth1MacOffset, mac1, sizeof mac1);
    putIp(image, Eth0IpOffset, 192, 168, 1, 100);
    putIp(image, Eth0GatewayOffset, 192, 168, 1, 1);
    putIp(image, Eth0MaskOffset, 255, 255, 255, 0);
    putIp(image, Eth1IpOffset, 192, 168, 2, 100);
    putIp(image, Eth1GatewayOffset, 192, 168, 2, 1);
    putIp(image, Eth1MaskOffset, 255, 255, 255, 0);
    image[CapabilityByte] = char(1 << 3);
    image[HwOptionsByte] = char((options.wiredPorts > 1 ? 1 << 0 : 0) | 1 << 5);
    image[ScreenWidthLow] = char(options.screenWidth & 0xff);
    image[ScreenWidthHigh] = char(((options.screenWidth >> 8) & 0x0f) << 4);
    const QByteArray text = options.qrCodeText.left(QrTextSize);
    memset(image.data() + QrTextOffset, 0, QrTextSize);
    memcpy(image.data() + QrTextOffset, text.constData(), size_t(text.size()));
    return image;
}

bool SimulatedPanel::writeHostToolFakes(const QString &dir, QString *error)
{
    return writeHostTools(dir, false, error);
}

bool SimulatedPanel::writeHostToolPassThroughs(const QString &dir, QString *error)
{
    return writeHostTools(dir, true, error);
}

bool SimulatedPanel::writeHostTools(const QString &dir, bool passThrough, QString *error)
{
    if (!QDir().mkpath(dir)) {
        if (error)
            *error = QStringLiteral("cannot create %1").arg(dir);
        return false;
    }
    const QByteArray here = QFile::encodeName(dir);
    const QByteArray prelude =
        "if [ -n \"$PANEL_ROOT\" ]; then STATE=\"$PANEL_ROOT/sim\"; mkdir -p \"$STATE\"\n"
        "else STATE='" + here + "'; fi\n"
        "CALL_LOG=\"$STATE/calls.log\"\n";
    // The real tools only from the system's folders: PATH may hold other
    // stand-ins (a test's) before them.
    const QStringList searchPath = {QStringLiteral("/usr/sbin"), QStringLiteral("/usr/bin"), QStringLiteral("/sbin"),
                                    QStringLiteral("/bin")};
    for (const char *tool : HostTools) {
        const QString name = QLatin1String(tool);
        QByteArray body = NetworkStandIns::body(name) + "exit 0\n";
        if (passThrough && NetworkStandIns::toolNames().contains(name)) {
            const QString real = QStandardPaths::findExecutable(name, searchPath);
            if (real.isEmpty()) {
                if (error)
                    *error = QStringLiteral("no real %1 to pass on to").arg(name);
                return false;
            }
            body = NetworkStandIns::passThrough(real);
        }
        if (!writeFile(dir + QLatin1Char('/') + name, script(prelude, body),
                       error, QFileDevice::ExeOwner | QFileDevice::ExeGroup | QFileDevice::ExeOther))
            return false;
    }
    return true;
}

bool SimulatedPanel::writeNetworkState(const QString &root, const Options &options)
{
    QStringList ports{QStringLiteral("eth0")};
    QList<QStringList> addresses{{QStringLiteral("192.168.1.100"), QStringLiteral("255.255.255.0")}};
    if (options.wiredPorts > 1) {
        ports << QStringLiteral("eth1");
        addresses << QStringList{QStringLiteral("192.168.2.100"), QStringLiteral("255.255.255.0")};
    }
    if (!writeFile(stateDir(root) + QStringLiteral("/ports"), ports.join(QLatin1Char('\n')).toLatin1() + '\n', &m_error)
        || !writeFile(interfacesPath(root), NetworkStandIns::interfacesFile(ports, addresses), &m_error)
        || !writeFile(routeTablePath(root), NetworkStandIns::routesFile(ports, addresses), &m_error))
        return false;
    using Outer = Options::OuterNetwork;
    if (options.outerNetwork != Outer::Unknown && !setOuterNetwork(root, options.outerNetwork == Outer::Up)) {
        m_error = QStringLiteral("cannot write %1").arg(outerNetworkPath(root));
        return false;
    }
    return true;
}

bool SimulatedPanel::build(const QString &root, const Options &options)
{
    m_error.clear();
    const QString state = stateDir(root);
    for (const char *folder : Folders) {
        if (!QDir().mkpath(root + QLatin1String(folder))) {
            m_error = QStringLiteral("cannot create %1%2").arg(root, QLatin1String(folder));
            return false;
        }
    }
    const QByteArray zeros(RegisterFileSize, '\0');
    for (const char *file : RegisterFiles) {
        QByteArray contents = zeros;
        if (options.buzzerOn && qstrcmp(file, BuzzerRegisterFile) == 0)
            contents[BuzzerRegisterBit / 8] = char(1 << (BuzzerRegisterBit % 8));
        if (!writeFile(root + QLatin1String(file), contents, &m_error))
            return false;
    }
    for (const char *fifo : {"/tmp/fifo_sysreg", "/tmp/fifo_localreg"}) {
        const QByteArray path = QFile::encodeName(root + QLatin1String(fifo));
        if (::mkfifo(path.constData(), 0666) != 0 && !QFileInfo(QFile::decodeName(path)).exists()) {
            m_error = QStringLiteral("cannot create FIFO %1").arg(QFile::decodeName(path));
            return false;
        }
    }
    QFile::link(QStringLiteral("/dev/null"), root + QStringLiteral("/dev/null"));

    if ((options.withLanguageFile && !writeFile(root + "/hmi/Config/lange.json", LanguageFile, &m_error))
        || !writeFile(root + "/hmi/Config/system_settings.ini", SettingsFile, &m_error)
        || !writeFile(root + "/etc/resolv.conf", ResolverFile, &m_error)
        || !writeFile(imagePath(root), sampleImage(options), &m_error)
        || !writeFile(brightnessPath(root), QByteArray::number(options.brightness) + '\n', &m_error)
        || !writeFile(state + "/usbslave", "plug-out\n", &m_error)
        || !writeFile(callLogPath(root), QByteArray(), &m_error)
        || !writeNetworkState(root, options))
        return false;

    const QString font = options.fontSource.isEmpty() ? findCjkFont() : options.fontSource;
    if (font.isEmpty() || !QFile::link(font, root + QStringLiteral("/hmi/default.ttf")))
        qCWarning(lcPanel, "no font for /hmi/default.ttf; the panel falls back to Qt's default font");

    const QByteArray prelude = "STATE='" + QFile::encodeName(state) + "'\nCALL_LOG=\"$STATE/calls.log\"\n";
    for (const FirmwareTool &tool : FirmwareTools) {
        if (!writeFile(root + "/root/plat-intf/" + QLatin1String(tool.name), script(prelude, tool.body),
                       &m_error, QFileDevice::ExeOwner | QFileDevice::ExeGroup | QFileDevice::ExeOther))
            return false;
    }
    return writeHostTools(hostToolDir(root), options.realNetwork, &m_error);
}

QList<QStringList> SimulatedPanel::parseCallLog(const QByteArray &log)
{
    QList<QStringList> calls;
    for (const QByteArray &line : log.split('\n')) {
        if (!line.isEmpty())
            calls << QString::fromLocal8Bit(line).split(QLatin1Char('\t'));
    }
    return calls;
}
