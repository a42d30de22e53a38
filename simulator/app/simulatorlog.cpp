#include "simulatorlog.h"

Q_LOGGING_CATEGORY(lcSimulator, "tavro.settings.simulator", QtInfoMsg)
