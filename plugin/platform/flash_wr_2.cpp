#include "flash_wr_2.h"

namespace EEInfoDetail {

const CopyUnit Flash_WR_2::units[] = {
    {0, 64}, {64, 64}, {128, 64},
};
const int Flash_WR_2::unitCount = sizeof(units) / sizeof(units[0]);

QByteArray Flash_WR_2::qrCode() const
{
    return QByteArray(qrCodeText, int(qstrnlen(qrCodeText, BlockSize)));
}

} // namespace EEInfoDetail
