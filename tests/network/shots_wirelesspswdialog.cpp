// Throw-away: screenshots of the password dialog and its keyboard.
#include "passwordkeyboard.h"
#include "testharness.h"
#include "testpanel.h"
#include "wirelesspswdialog.h"

#include <QFile>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QTranslator>
#include <QtTest>

class Shots : public QObject
{
    Q_OBJECT
private slots:
    void shots();
};

static void shoot(const QSize &screen, const QString &lang, const QString &ssid, const QString &tag)
{
    QWidget page;
    QFile qss(":/style.qss");
    qss.open(QIODevice::ReadOnly);
    page.setStyleSheet(QString::fromUtf8(qss.readAll()));
    page.setStyleSheet(page.styleSheet() + "QWidget#page{background: rgb(240,240,240);}");
    page.setObjectName("page");
    page.resize(screen);
    page.show();
    QTest::qWaitForWindowExposed(&page);
    auto *d = new WirelessPswDialog(ssid, &page);
    qWarning() << "fonts0" << d->font() << d->findChild<QWidget*>("label_title")->font() << d->findChild<QWidget*>("frame_title")->font();
    d->resizeUIWgt(screen);
    qWarning() << "fonts1" << d->font() << d->findChild<QWidget*>("label_title")->font()<< d->findChild<QWidget*>("frame_title")->font();
    d->show();
    qWarning() << "fonts" << d->font() << d->findChild<QWidget*>("label_title")->font() << d->findChild<QWidget*>("label")->font();
    QTest::qWaitForWindowExposed(d);
    d->findChild<QLineEdit *>("lineEdit_psw")->setText("secret12");
    QTest::mousePress(d->findChild<QLineEdit *>("lineEdit_psw"), Qt::LeftButton);
    PasswordKeyboard *k = d->keyboard();
    QTest::qWaitForWindowExposed(k);
    for (const char *key : {"button_h", "button_o", "button_m", "button_e", "button_1"})
        QTest::mouseClick(k->key(QLatin1String(key)), Qt::LeftButton);
    for (bool caps : {false, true}) {
        if (caps)
            QTest::mouseClick(k->key(QStringLiteral("button_caps")), Qt::LeftButton);
        QTest::qWait(50);
        QPixmap canvas(screen);
        canvas.fill(QColor(200, 200, 200));
        QPainter p(&canvas);
        const QPixmap dp = d->grab();
        const QPoint dpos((screen.width() - dp.width()) / 2, (screen.height() - dp.height()) / 2);
        p.drawPixmap(dpos, dp);
        const QPixmap kp = k->grab();
        p.drawPixmap(QPoint((screen.width() - kp.width()) / 2, screen.height() - kp.height()), kp);
        p.end();
        const QString base = QString("/tmp/shots-dialog/%1x%2-%3-%4").arg(screen.width()).arg(screen.height()).arg(lang).arg(tag);
        canvas.save(base + (caps ? "-caps-on.png" : "-caps-off.png"));
        if (!caps)
            dp.save(base + "-dialog.png");
    }
    delete d;
}

void Shots::shots()
{
    TestPanel panel;
    for (const QString lang : {"en", "zh"}) {
        QTranslator t;
        if (lang == "zh") {
            QVERIFY(t.load(":/Languages/Translate_CN.qm"));
            qApp->installTranslator(&t);
        }
        for (QSize s : {QSize(800, 480), QSize(1920, 1080)}) {
            shoot(s, lang, "TP-LINK_5G_3A2B", "short");
            shoot(s, lang, "ABCDEFGHIJKLMNOPQRSTUVWXYZ012345", "long");
        }
        qApp->removeTranslator(&t);
    }
}

PANEL_GUI_TEST_MAIN(Shots)
#include "shots_wirelesspswdialog.moc"
