#ifndef TESTBUTTONSTYLE_H
#define TESTBUTTONSTYLE_H

#include <QString>

// The outer-network test buttons of the wired, WLAN and 4G pages: idle, and
// orange while a test runs. The rules name the button, so that they reach
// it and nothing inside it.
namespace TestButtonStyle {

inline QString idle(const QString &objectName = QStringLiteral("TestButton"))
{
    return QStringLiteral("QPushButton#%1{border-radius:8px;margin:4px 2px;color:black;"
                          "background-color:rgba(163, 198, 218, 200);border:2px solid #008cba;}"
                          "QPushButton#%1:pressed{background-color:#008cba;color:white;}")
        .arg(objectName);
}

inline QString running(const QString &objectName = QStringLiteral("TestButton"))
{
    return QStringLiteral("QPushButton#%1{border-radius:8px;margin:4px 2px;color:black;"
                          "background-color:rgba(255,170,0,150);border:2px solid rgba(255,170,0,255);}"
                          "QPushButton#%1:pressed{background-color:rgba(255,170,0,255);color:white;}")
        .arg(objectName);
}

} // namespace TestButtonStyle

#endif // TESTBUTTONSTYLE_H
