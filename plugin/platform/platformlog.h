#ifndef PLATFORMLOG_H
#define PLATFORMLOG_H

#include <QLoggingCategory>

// Filter with QT_LOGGING_RULES="tavro.settings.platform.debug=true".
Q_DECLARE_LOGGING_CATEGORY(lcPlatform)

#endif // PLATFORMLOG_H
