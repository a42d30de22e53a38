// Placeholder: being written.
#include "testharness.h"
#include <QtTest>

class TestVersioninfoui : public QObject
{
    Q_OBJECT
private slots:
    void placeholder() { QSKIP("not written yet"); }
};

PANEL_GUI_TEST_MAIN(TestVersioninfoui)
#include "tst_versioninfoui.moc"
