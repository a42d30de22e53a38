#include "svgpushbutton.h"
