#ifndef EEINFODETAIL_H
#define EEINFODETAIL_H

// The three records of the 1024-byte device-information image. Pages include
// this one header and keep plain copies of the records they need.
#include "flash_ronly.h"
#include "flash_wr_1.h"
#include "flash_wr_2.h"
#include "recordcopy.h"

#endif // EEINFODETAIL_H
