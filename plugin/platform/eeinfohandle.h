#ifndef EEINFOHANDLE_H
#define EEINFOHANDLE_H

#include "eeinfodetail.h"
#include "plateforminterface.h"

#include <QString>
#include <string>

class QFile;

// The process's one door to the device-information image and to the
// firmware and network commands behind the settings pages. GUI thread only:
// the image buffer is shared by every call and has no lock.
class EEInfoHandle
{
public:
    static EEInfoHandle *instance();     // created on first use, never destroyed

    // Each read runs the image tool once and copies one record out of the
    // fresh image. A null pointer runs nothing.
    void read_flash_wr1_info(EEInfoDetail::Flash_WR_1 *record);
    void read_flash_r_info(EEInfoDetail::Flash_ROnly *record);
    void read_flash_wr2_info(EEInfoDetail::Flash_WR_2 *record);
    // Read-modify-write of the whole image, so bytes other programs changed
    // since our last read survive. A null pointer runs nothing.
    // Nothing is written when that fresh read does not return the whole
    // image (a warning is logged instead).
    void write_flash_wr1_info(EEInfoDetail::Flash_WR_1 *record);
    void write_flash_wr2_info(EEInfoDetail::Flash_WR_2 *record);

    // Whether the last run of the image reader returned all 1024 bytes.
    // A record read after a failed or short read holds stale bytes.
    bool lastReadComplete() const { return m_lastReadComplete; }

    // How many times this process has written the image. A copy of a record
    // taken before the count last changed may hold fields that another
    // page has written since.
    quint64 writeCount() const { return m_writeCount; }

    int getbright();                     // 0 when the tool printed nothing
    int setBright(int level);
    int setBeep(bool longBeep);
    int setmpi(const char *text);        // always 32 bytes to the tool
    int setserial(const char *text);
    void readLogo(const std::string &path);
    void setLogo(const std::string &path);

    // Network commands; each returns the status of the "sync" that follows,
    // or -1 without running anything when the adapter is not 0 or 1 or the
    // address is not a dotted IPv4 address.
    int setIP(int adapter, std::string address);
    int setMask(int adapter, std::string mask);
    int setGateway(int adapter, std::string gateway);   // adapter unused
    int enableNetwork(int adapter);
    int disableNetwork(int adapter);

    int reboot();
    int isusbslave();                    // 1 when the tool answers "plug-in\n"

    // What the query tools' answers mean, from the `size` bytes they printed
    // (only the first AnswerSize - 1 count): getbright's leading decimal
    // number (0 when there is none), and whether getusbslave's text, its
    // last character dropped, reads "plug-in".
    static constexpr int AnswerSize = 32;
    static int brightnessFromAnswer(const char *answer, int size);
    static int usbSlaveFromAnswer(const char *answer, int size);

    // Puts "nameserver <server> # eth<adapter>" in the resolver file at the
    // adapter's first (which = 0) or backup (1) position.
    void setDNSToSys(int adapter, int which, QString server);
    void replaceDns(QFile &file, int adapter, int which, QString server);

    // The largest boot logo the firmware takes.
    static constexpr long MaxLogoSize = 6L * 1024 * 1024;

private:
    EEInfoHandle();
    EEInfoHandle(const EEInfoHandle &) = delete;
    EEInfoHandle &operator=(const EEInfoHandle &) = delete;

    bool readImage();
    template<class Record>
    void writeRecord(const Record &record);
    int writeText(const char *command, const char *text);

    unsigned char m_image[EEInfoDetail::ImageSize];
    PlateformInterface m_platform;
    bool m_lastReadComplete = false;
    quint64 m_writeCount = 0;
};

#endif // EEINFOHANDLE_H
