#include "eeinfohandle.h"

#include "commandtext.h"
#include "devicecommands.h"
#include "panelroot.h"
#include "platformlog.h"
#include "processrunner.h"
#include "resolverfile.h"

#include <QFile>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <unistd.h>

namespace {

const char ReadImageTool[] = "/root/plat-intf/readee";
const char WriteImageTool[] = "/root/plat-intf/writeee count=16";
const char GetBrightTool[] = "/root/plat-intf/getbright";
const char SetMpiTool[] = "/root/plat-intf/setmpi";
const char SetSerialTool[] = "/root/plat-intf/setserial";
const char ReadLogoTool[] = "/root/plat-intf/readlogo";
const char WriteLogoTool[] = "/root/plat-intf/writelogo";
const char GetUsbSlaveTool[] = "/root/plat-intf/getusbslave";
const char UsbSlaveAnswer[] = "plug-in";

// The identity tools always take this many bytes.
constexpr int TextBlockSize = 32;

// Runs a network command and then "sync"; the status of "sync", or -1 with
// neither run when the command's values failed their checks.
int runWithSync(const CommandText &command)
{
    const bool valid = command.isValid();
    runCommand(command);        // an invalid one is only logged
    return valid ? runCommand(DeviceCommands::sync()) : -1;
}

// Starts a logo tool with nothing to exchange, as the firmware expects when
// there is no logo to pass: it runs and ends on the closed stream.
int runIdle(const char *command, bool input)
{
    const QByteArray text = PanelRoot::command(command);
    return input ? ProcessRunner::writeTo(text.constData(), nullptr, 0, WaitBound::LogoTool)
                 : ProcessRunner::readFrom(text.constData(), nullptr, 0, WaitBound::LogoTool);
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

bool EEInfoHandle::readImage()
{
    // Raw bytes, no parsing: a short answer keeps the previous tail, and the
    // caller's record gets the buffer as it stands.
    m_image[0] = 0;
    int count = 0;
    const int result = m_platform.readcmd(PanelRoot::command(ReadImageTool).constData(),
                                          reinterpret_cast<char *>(m_image), int(sizeof(m_image)),
                                          &count, WaitBound::ImageTool);
    m_lastReadComplete = result == 0 && count == int(sizeof(m_image));
    return m_lastReadComplete;
}

template<class Record>
void EEInfoHandle::writeRecord(const Record &record)
{
    // Only over a whole, fresh image: a short or failed read would put stale
    // or zeroed bytes over records and identities this plug-in does not own.
    if (!readImage()) {
        qCWarning(lcPlatform, "device image not written: its read did not return all %d bytes",
                  int(sizeof(m_image)));
        return;
    }
    EEInfoDetail::recordToImage(record, m_image);
    m_platform.writecmd(PanelRoot::command(WriteImageTool).constData(),
                        reinterpret_cast<char *>(m_image), int(sizeof(m_image)), WaitBound::ImageTool);
    ++m_writeCount;
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
    if (record)
        writeRecord(*record);
}

void EEInfoHandle::write_flash_wr2_info(EEInfoDetail::Flash_WR_2 *record)
{
    if (record)
        writeRecord(*record);
}

namespace {

// The answer as text: at most AnswerSize - 1 bytes, always terminated.
void answerText(const char *answer, int size, char (&text)[EEInfoHandle::AnswerSize])
{
    std::memset(text, 0, sizeof(text));
    if (answer && size > 0)
        std::memcpy(text, answer, size_t(qMin(size, EEInfoHandle::AnswerSize - 1)));
}

} // namespace

int EEInfoHandle::brightnessFromAnswer(const char *answer, int size)
{
    char text[AnswerSize];
    answerText(answer, size, text);
    // Held to the int range: a cut-off narrowing would turn a huge answer
    // into an ordinary-looking level.
    return int(qBound<long>(INT_MIN, strtol(text, nullptr, 10), INT_MAX));
}

int EEInfoHandle::usbSlaveFromAnswer(const char *answer, int size)
{
    char text[AnswerSize];
    answerText(answer, size, text);
    std::string word(text);
    // The tool ends its answer with a line feed; the last character always
    // goes, whatever it is.
    if (word.size() >= 3)
        word.pop_back();
    return word == UsbSlaveAnswer ? 1 : 0;
}

int EEInfoHandle::getbright()
{
    char answer[AnswerSize];
    int count = 0;
    m_platform.readcmd(PanelRoot::command(GetBrightTool).constData(), answer, AnswerSize - 1, &count);
    return brightnessFromAnswer(answer, count);
}

int EEInfoHandle::setBright(int level)
{
    return runCommand(DeviceCommands::setBright(level), WaitBound::FirmwareTool);
}

int EEInfoHandle::setBeep(bool longBeep)
{
    return runCommand(DeviceCommands::setBeep(longBeep), WaitBound::FirmwareTool);
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
    // The tool's output is a pipe, whose size cannot be taken, so nothing of
    // it is copied and the logo file is created empty; the firmware's reader
    // relies on this. The tool still runs, and ends on the closed pipe.
    if (runIdle(ReadLogoTool, false) == ProcessRunner::NotStarted) {
        perror("readLogo Fail to popen fp1\n");
        return;
    }
    FILE *out = fopen(PanelRoot::path(path.c_str()).constData(), "wb");
    if (!out) {
        perror("readLogo Fail to popen fp2\n");
        return;
    }
    qCDebug(lcPlatform, "------start------");
    fclose(out);
}

void EEInfoHandle::setLogo(const std::string &path)
{
    FILE *in = path.empty() ? nullptr : fopen(PanelRoot::path(path.c_str()).constData(), "rb");
    const bool opened = in != nullptr;
    long size = -1;
    if (in && fseek(in, 0, SEEK_END) == 0)
        size = ftell(in);
    std::unique_ptr<char[]> data;
    if (in && size > 0 && size <= MaxLogoSize) {
        rewind(in);
        data.reset(new char[size_t(size)]);
        size = long(fread(data.get(), 1, size_t(size), in));
    }
    if (in)
        fclose(in);
    // The tool is started in every case; without a logo it gets no input.
    const QByteArray tool = PanelRoot::command(WriteLogoTool);
    const int result = ProcessRunner::writeTo(tool.constData(), data.get(), data ? int(size) : 0,
                                              WaitBound::LogoTool);
    if (result == ProcessRunner::NotStarted) {
        perror("writelogo Fail to popen fp1\n");
        return;
    }
    if (!path.empty() && (!opened || size < 0 || size > MaxLogoSize))
        qCWarning(lcPlatform, "pic size is out of 6M");
    if (data)
        sync();
}

int EEInfoHandle::setIP(int adapter, std::string address)
{
    return runWithSync(DeviceCommands::address(adapter, address));
}

int EEInfoHandle::setMask(int adapter, std::string mask)
{
    return runWithSync(DeviceCommands::mask(adapter, mask));
}

int EEInfoHandle::setGateway(int adapter, std::string gateway)
{
    Q_UNUSED(adapter)
    return runWithSync(DeviceCommands::gateway(gateway));
}

int EEInfoHandle::enableNetwork(int adapter)
{
    return runWithSync(DeviceCommands::up(adapter));
}

int EEInfoHandle::disableNetwork(int adapter)
{
    return runWithSync(DeviceCommands::down(adapter));
}

int EEInfoHandle::reboot()
{
    return runCommand(DeviceCommands::reboot());
}

int EEInfoHandle::isusbslave()
{
    char answer[AnswerSize];
    int count = 0;
    m_platform.readcmd(PanelRoot::command(GetUsbSlaveTool).constData(), answer, AnswerSize - 1, &count);
    return usbSlaveFromAnswer(answer, count);
}

void EEInfoHandle::setDNSToSys(int adapter, int which, QString server)
{
    QFile file(PanelRoot::path(QString::fromLatin1(ResolverFile::Path)));
    replaceDns(file, adapter, which, server);
}

void EEInfoHandle::replaceDns(QFile &file, int adapter, int which, QString server)
{
    ResolverFile::rewrite(file, ResolverFile::ethTag(adapter), which, server);
}
