#include "mtdwrinterface.h"

#include <mtd/mtd-user.h>

#include <cstddef>

// The nested structures are handed straight to the kernel's ioctls, so they
// must match its user interface byte for byte.
static_assert(sizeof(MtdWRInterface::mtd_info_user) == sizeof(struct mtd_info_user),
              "mtd_info_user size differs from the kernel's");
static_assert(offsetof(MtdWRInterface::mtd_info_user, type) == offsetof(struct mtd_info_user, type), "type");
static_assert(offsetof(MtdWRInterface::mtd_info_user, flags) == offsetof(struct mtd_info_user, flags), "flags");
static_assert(offsetof(MtdWRInterface::mtd_info_user, size) == offsetof(struct mtd_info_user, size), "size");
static_assert(offsetof(MtdWRInterface::mtd_info_user, erasesize) == offsetof(struct mtd_info_user, erasesize),
              "erasesize");
static_assert(offsetof(MtdWRInterface::mtd_info_user, writesize) == offsetof(struct mtd_info_user, writesize),
              "writesize");
static_assert(offsetof(MtdWRInterface::mtd_info_user, oobsize) == offsetof(struct mtd_info_user, oobsize),
              "oobsize");
static_assert(offsetof(MtdWRInterface::mtd_info_user, padding) == offsetof(struct mtd_info_user, padding),
              "padding");

static_assert(sizeof(MtdWRInterface::erase_info_user) == sizeof(struct erase_info_user),
              "erase_info_user size differs from the kernel's");
static_assert(offsetof(MtdWRInterface::erase_info_user, start) == offsetof(struct erase_info_user, start), "start");
static_assert(offsetof(MtdWRInterface::erase_info_user, length) == offsetof(struct erase_info_user, length),
              "length");

MtdWRInterface::~MtdWRInterface() = default;
