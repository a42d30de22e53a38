// Placeholder: being written.
#include "testharness.h"
#include <QtTest>

class TestInputdialog : public QObject
{
    Q_OBJECT
private slots:
    void placeholder() { QSKIP("not written yet"); }
};

PANEL_GUI_TEST_MAIN(TestInputdialog)
#include "tst_inputdialog.moc"
