#include "eeinfohandle.h"

#include "panelroot.h"
#include "platformlog.h"
#include "resolverfile.h"
#include "sigpipeguard.h"

#include <QFile>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <unistd.h>

namespace {

const char ReadImageTool[] = "/root/plat-intf/readee";
const char WriteImageTool[] = "/root/plat-intf/writeee count=16";
const char GetBrightTool[] = "/root/plat-intf/getbright";
const char SetBrightFormat[] = "/root/plat-intf/setbright %d";
const char SetBeepFormat[] = "/root/plat-intf/setbeep %s";
const char SetMpiTool[] = "/root/plat-intf/setmpi";
const char SetSerialTool[] = "/root/plat-intf/setserial";
const char ReadLogoTool[] = "/root/plat-intf/readlogo";
const char WriteLogoTool[] = "/root/plat-intf/writelogo";
const char GetUsbSlaveTool[] = "/root/plat-intf/getusbslave";
const char ResolverPath[] = "/etc/resolv.conf";
const char BackupResolverCommand[] = "cp /etc/resolv.conf /etc/resolvbak.conf";
const char UsbSlaveAnswer[] = "plug-in";

// Command texts are at most this long, like the firmware tools expect.
constexpr int CommandSize = 128;
// Answers of the query tools are short numbers or words.
constexpr int AnswerSize = 32;
// The identity tools always take this many bytes.
constexpr int TextBlockSize = 32;
// readLogo copies the tool's output in pieces of this size.
constexpr int LogoChunkSize = 254;

// Formats a command into a bounded, zero-filled buffer and runs it with the
// panel root applied to every absolute path in it.
int runCommand(const char *format, ...) __attribute__((format(printf, 1, 2)));

int runCommand(const char *format, ...)
{
    char text[CommandSize];
    std::memset(text, 0, sizeof(text));
    va_list args;
    va_start(args, format);
    vsnprintf(text, sizeof(text), format, args);
    va_end(args);
    return system(PanelRoot::command(text).constData());
}

int runSync()
{
    return system("sync");
}

} // namespace

EEInfoHandle *EEInfoHandle::instance()
{
    // Deliberately leaked: pages may still hold it while the host unloads.
    static EEInfoHandle *handle = new EEInfoHandle;
    return handle;
}

EEInfoHandle::EEInfoHandle()
{
    std::memset(m_image, 0, sizeof(m_image));
}

void EEInfoHandle::readImage()
{
    // Raw bytes, no length check: a short answer keeps the previous tail.
    m_image[0] = 0;
    m_platform.readcmd(PanelRoot::command(ReadImageTool).constData(),
                       reinterpret_cast<char *>(m_image), int(sizeof(m_image)));
}

void EEInfoHandle::writeImage()
{
    m_platform.writecmd(PanelRoot::command(WriteImageTool).constData(),
                        reinterpret_cast<char *>(m_image), int(sizeof(m_image)));
}

void EEInfoHandle::read_flash_wr1_info(EEInfoDetail::Flash_WR_1 *record)
{
    if (!record)
        return;
    readImage();
    EEInfoDetail::recordFromImage(*record, m_image);
}

void EEInfoHandle::read_flash_r_info(EEInfoDetail::Flash_ROnly *record)
{
    if (!record)
        return;
    readImage();
    EEInfoDetail::recordFromImage(*record, m_image);
}

void EEInfoHandle::read_flash_wr2_info(EEInfoDetail::Flash_WR_2 *record)
{
    if (!record)
        return;
    readImage();
    EEInfoDetail::recordFromImage(*record, m_image);
}

void EEInfoHandle::write_flash_wr1_info(EEInfoDetail::Flash_WR_1 *record)
{
    if (!record)
        return;
    readImage();
    EEInfoDetail::recordToImage(*record, m_image);
    writeImage();
}

void EEInfoHandle::write_flash_wr2_info(EEInfoDetail::Flash_WR_2 *record)
{
    if (!record)
        return;
    readImage();
    EEInfoDetail::recordToImage(*record, m_image);
    writeImage();
}

int EEInfoHandle::getbright()
{
    char answer[AnswerSize];
    std::memset(answer, 0, sizeof(answer));
    // One byte short of the buffer keeps the text terminated for strtol.
    m_platform.readcmd(PanelRoot::command(GetBrightTool).constData(), answer,
                       int(sizeof(answer)) - 1);
    return int(strtol(answer, nullptr, 10));
}

int EEInfoHandle::setBright(int level)
{
    return runCommand(SetBrightFormat, level);
}

int EEInfoHandle::setBeep(bool longBeep)
{
    return runCommand(SetBeepFormat, longBeep ? "long" : "short");
}

int EEInfoHandle::writeText(const char *command, const char *text)
{
    char block[TextBlockSize];
    std::memset(block, 0, sizeof(block));
    // Up to the whole block, unterminated when the text fills it.
    if (text)
        std::memcpy(block, text, strnlen(text, sizeof(block)));
    return m_platform.writecmd(PanelRoot::command(command).constData(), block,
                               int(sizeof(block)));
}

int EEInfoHandle::setmpi(const char *text)
{
    return writeText(SetMpiTool, text);
}

int EEInfoHandle::setserial(const char *text)
{
    return writeText(SetSerialTool, text);
}

void EEInfoHandle::readLogo(const std::string &path)
{
    FILE *tool = popen(PanelRoot::command(ReadLogoTool).constData(), "r");
    if (!tool) {
        perror("readLogo Fail to popen fp1\n");
        return;
    }
    FILE *out = fopen(PanelRoot::path(path.c_str()).constData(), "wb");
    if (!out) {
        perror("readLogo Fail to popen fp2\n");
        pclose(tool);   // closing our end stops a tool still writing
        return;
    }
    qCDebug(lcPlatform, "------start------");
    // On a pipe the size query fails, so the logo file stays empty; the
    // firmware's reader relies on this behaviour and it is kept.
    long size = -1;
    if (fseek(tool, 0, SEEK_END) == 0)
        size = ftell(tool);
    rewind(tool);
    if (size > 0) {
        char chunk[LogoChunkSize];
        size_t got = 0;
        while ((got = fread(chunk, 1, sizeof(chunk), tool)) > 0) {
            fwrite(chunk, 1, got, out);
            qCDebug(lcPlatform, "------------write------fp2");
        }
    }
    fclose(out);
    pclose(tool);
}

void EEInfoHandle::setLogo(const std::string &path)
{
    FILE *tool = popen(PanelRoot::command(WriteLogoTool).constData(), "w");
    if (!tool) {
        perror("writelogo Fail to popen fp1\n");
        return;
    }
    SigPipeGuard guard;
    if (path.empty()) {
        pclose(tool);
        return;
    }
    FILE *in = fopen(PanelRoot::path(path.c_str()).constData(), "rb");
    long size = -1;
    if (in && fseek(in, 0, SEEK_END) == 0)
        size = ftell(in);
    if (!in || size < 0 || size > MaxLogoSize) {
        qCWarning(lcPlatform, "pic size is out of 6M");
        if (in)
            fclose(in);
        pclose(tool);
        return;
    }
    if (size == 0) {
        fclose(in);
        pclose(tool);
        return;
    }
    rewind(in);
    std::unique_ptr<char[]> data(new char[size_t(size)]);
    const size_t got = fread(data.get(), 1, size_t(size), in);
    fwrite(data.get(), 1, got, tool);
    fclose(in);
    sync();
    data.reset();
    pclose(tool);
}

int EEInfoHandle::setIP(int adapter, std::string address)
{
    runCommand("ifconfig eth%d %s", adapter, address.c_str());
    return runSync();
}

int EEInfoHandle::setMask(int adapter, std::string mask)
{
    runCommand("ifconfig eth%d netmask %s", adapter, mask.c_str());
    return runSync();
}

int EEInfoHandle::setGateway(int adapter, std::string gateway)
{
    Q_UNUSED(adapter)
    runCommand("route add default gw %s", gateway.c_str());
    return runSync();
}

int EEInfoHandle::enableNetwork(int adapter)
{
    runCommand("ifconfig eth%d up", adapter);
    return runSync();
}

int EEInfoHandle::disableNetwork(int adapter)
{
    runCommand("ifconfig eth%d down", adapter);
    return runSync();
}

int EEInfoHandle::reboot()
{
    return runCommand("reboot");
}

int EEInfoHandle::isusbslave()
{
    char answer[AnswerSize];
    std::memset(answer, 0, sizeof(answer));
    m_platform.readcmd(PanelRoot::command(GetUsbSlaveTool).constData(), answer,
                       int(sizeof(answer)) - 1);
    std::string text(answer);
    // The tool ends its answer with a line feed; the last character always
    // goes, whatever it is.
    if (text.size() >= 3)
        text.pop_back();
    return text == UsbSlaveAnswer ? 1 : 0;
}

void EEInfoHandle::setDNSToSys(int adapter, int which, QString server)
{
    QFile file(PanelRoot::path(QString::fromLatin1(ResolverPath)));
    replaceDns(file, adapter, which, server);
}

void EEInfoHandle::replaceDns(QFile &file, int adapter, int which, QString server)
{
    if (file.isOpen())
        file.close();
    // An unreadable file is treated as empty: the new line alone is written.
    QString text;
    if (file.open(QIODevice::ReadWrite | QIODevice::Text)) {
        text = QString::fromUtf8(file.readAll());
        file.close();
    }
    const QString tag = ResolverFile::ethTag(adapter);
    const QString updated = ResolverFile::replaced(
        text, tag, which, ResolverFile::nameserverLine(server, tag));
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text)) {
        file.write(updated.toUtf8());
        file.close();
    }
    // The backup restores the resolver file after a volatile restart, so it
    // is refreshed even when the rewrite failed.
    runCommand("%s", BackupResolverCommand);
}
