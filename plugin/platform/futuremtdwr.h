#ifndef FUTUREMTDWR_H
#define FUTUREMTDWR_H

#include "commondevmtdwr.h"

// The "Future" panel family: same flash handling as the common family,
// told apart only by its panel type.
class FutureMtdWR : public CommonDevMtdWR
{
public:
    explicit FutureMtdWR(MtdDeviceIo *io = nullptr);
    ~FutureMtdWR() override;

    int hmi_type() override;
};

#endif // FUTUREMTDWR_H
