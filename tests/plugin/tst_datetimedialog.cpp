// Placeholder: being written.
#include "testharness.h"
#include <QtTest>

class TestDatetimedialog : public QObject
{
    Q_OBJECT
private slots:
    void placeholder() { QSKIP("not written yet"); }
};

PANEL_GUI_TEST_MAIN(TestDatetimedialog)
#include "tst_datetimedialog.moc"
