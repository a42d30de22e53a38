// Placeholder: being written.
#include "testharness.h"
#include <QtTest>

class TestGeneralsettings : public QObject
{
    Q_OBJECT
private slots:
    void placeholder() { QSKIP("not written yet"); }
};

PANEL_GUI_TEST_MAIN(TestGeneralsettings)
#include "tst_generalsettings.moc"
