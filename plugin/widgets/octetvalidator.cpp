#include "octetvalidator.h"
