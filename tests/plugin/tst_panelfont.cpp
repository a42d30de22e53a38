// The panel font is registered once per process, however often windows
// open and octets are touched: the host runtime runs for months, and every
// registration would stay in the font database until it exits.
#include "iplineedit.h"
#include "modaldriver.h"
#include "panelfont.h"
#include "processsampler.h"
#include "settings.h"
#include "testharness.h"
#include "testpanel.h"
#include "wirelesswgtui.h"

#include <QFontDatabase>
#include <QLabel>
#include <QLineEdit>
#include <QtTest>

namespace {

constexpr int Opens = 12;
constexpr int Touches = 12;
const char OtherFont[] = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

void touchOctet(IPLineEdit *edit)
{
    ModalDriver::typeOnKeypad({QStringLiteral("close")});
    QTest::mouseClick(edit->findChild<QLineEdit *>(QStringLiteral("lineEdit_ip1")), Qt::LeftButton);
}

} // namespace

class TestPanelFont : public QObject
{
    Q_OBJECT

private slots:
    void oneRegistrationForManyOpensAndTouches();
    void registeredAgainWhenTheHostRemovedIt();
    void sameFamilyAsTheFontFile();
};

void TestPanelFont::oneRegistrationForManyOpensAndTouches()
{
    TestPanel panel;
    QVERIFY(panel.isValid());
    const int before = ProcessSampler::applicationFonts();
    QSet<int> ids;
    for (int i = 0; i < Opens; ++i) {
        Settings window;
        window.init();
        window.show();
        ids << PanelFont::registerPanelFont();
    }
    WirelessWgtUI::m_isStaticIP = true;
    IPLineEdit edit;
    edit.show();
    for (int i = 0; i < Touches; ++i)
        touchOctet(&edit);
    QTRY_COMPARE(ModalDriver::pending(), 0);
    WirelessWgtUI::m_isStaticIP = false;

    if (QFontDatabase::applicationFontFamilies(*ids.begin()).isEmpty())
        QSKIP("this machine has no font for the panel's /hmi/default.ttf");
    QCOMPARE(ProcessSampler::applicationFonts() - before, 1);
    QCOMPARE(ids.size(), 1);
}

void TestPanelFont::registeredAgainWhenTheHostRemovedIt()
{
    TestPanel panel;
    const int first = PanelFont::registerPanelFont();
    if (first < 0)
        QSKIP("this machine has no font for the panel's /hmi/default.ttf");
    const QString family = PanelFont::family(first);
    const int before = ProcessSampler::applicationFonts();
    QVERIFY(QFontDatabase::removeApplicationFont(first));

    const int second = PanelFont::registerPanelFont();
    QVERIFY(second >= 0);
    QCOMPARE(PanelFont::family(second), family);
    QCOMPARE(PanelFont::registerPanelFont(), second);
    QCOMPARE(ProcessSampler::applicationFonts(), before);

    // The database hands a freed id to the next font it loads: an id that
    // now names the host's own font is not taken for the panel's.
    QVERIFY(QFontDatabase::removeApplicationFont(second));
    const int hostFont = QFontDatabase::addApplicationFont(QString::fromLatin1(OtherFont));
    if (hostFont < 0 || PanelFont::family(hostFont) == family)
        QSKIP("no second font family on this machine");
    QCOMPARE(hostFont, second);
    const int third = PanelFont::registerPanelFont();
    QVERIFY(third != hostFont);
    QCOMPARE(PanelFont::family(third), family);
    QFontDatabase::removeApplicationFont(hostFont);
}

void TestPanelFont::sameFamilyAsTheFontFile()
{
    TestPanel panel;
    const int direct = QFontDatabase::addApplicationFont(panel.path(QStringLiteral("/hmi/default.ttf")));
    if (direct < 0)
        QSKIP("this machine has no font for the panel's /hmi/default.ttf");
    const QString family = PanelFont::family(direct);
    QFontDatabase::removeApplicationFont(direct);

    Settings window;
    window.init();
    QCOMPARE(PanelFont::family(PanelFont::registerPanelFont()), family);
    auto *title = window.findChild<QLabel *>(QStringLiteral("titleobject"));
    QVERIFY(title);
    QCOMPARE(title->font().family(), family);
    QCOMPARE(title->font().pointSize(), 20);
}

PANEL_GUI_TEST_MAIN(TestPanelFont)
#include "tst_panelfont.moc"
