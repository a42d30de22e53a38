#include "iplineedit.h"
