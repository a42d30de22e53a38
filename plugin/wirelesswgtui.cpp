#include "wirelesswgtui.h"
