#include "switchbutton.h"
