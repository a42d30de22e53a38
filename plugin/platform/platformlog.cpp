#include "platformlog.h"

Q_LOGGING_CATEGORY(lcPlatform, "tavro.settings.platform")
