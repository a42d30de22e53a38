#include "futuremtdwr.h"

FutureMtdWR::FutureMtdWR(MtdDeviceIo *io)
    : CommonDevMtdWR(io)
{
}

FutureMtdWR::~FutureMtdWR() = default;

int FutureMtdWR::hmi_type()
{
    return 6;
}
