#ifndef TESTBUTTONSTYLE_H
#define TESTBUTTONSTYLE_H

// The outer-network test buttons of the wired, WLAN and 4G pages: idle, and
// orange while a test runs.
namespace TestButtonStyle {

inline const char *idle()
{
    return "QPushButton#TestButton{border-radius:8px;margin:4px 2px;color:black;"
           "background-color:rgba(163, 198, 218, 200);border:2px solid #008cba;}"
           "QPushButton#TestButton:pressed{background-color:#008cba;color:white;}";
}

inline const char *running()
{
    return "QPushButton#TestButton{border-radius:8px;margin:4px 2px;color:black;"
           "background-color:rgba(255,170,0,150);border:2px solid rgba(255,170,0,255);}"
           "QPushButton#TestButton:pressed{background-color:rgba(255,170,0,255);color:white;}";
}

} // namespace TestButtonStyle

#endif // TESTBUTTONSTYLE_H
