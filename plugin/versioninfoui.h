#ifndef VERSIONINFOUI_H
#define VERSIONINFOUI_H

#include "flash_wr_2.h"
#include "settings.h"

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QTableView>

class QTranslator;

namespace Ui {
class VersionInfoUI;
}

// The version page: the device's cloud identity as text and QR code.
// A QTableView only as a plain container, like the general page.
class VersionInfoUI : public QTableView
{
    Q_OBJECT

public:
    explicit VersionInfoUI(QWidget *parent = nullptr);
    ~VersionInfoUI() override;

    void init(int fontId);
    void refresh();

    // The page's fixed sizes for a panel screen of the given size.
    struct WidgetSizes {
        int spaceWidth = 0;          // label_space, label_space2
        int titleHeight = 0;
        QSize devNameSize;
        int barcodeSide = 0;
        int numHeight = 0;
        int numMinWidth = 0;
    };
    static WidgetSizes widgetSizes(const QSize &screen);

    // Where a symbol of `modules` modules lands in a square picture of
    // `side` pixels: module size 0 means it does not fit at all.
    struct QrPlacement {
        int moduleSize = 0;
        int origin = 0;              // left and top, in pixels
    };
    static QrPlacement qrPlacement(int side, int modules);

    // The text of the record: from qrCodeText up to the first NUL anywhere
    // in the record, so a full 64-byte field runs on into the next block.
    static QByteArray recordText(const EEInfoDetail::Flash_WR_2 &record);

    // A white side x side picture with the QR code of text drawn in it.
    static QImage qrImage(const QByteArray &text, int side);

public slots:
    void onChangeLanguage(Settings::Language lang);

private:
    void adjustWgtSize();

    Ui::VersionInfoUI *ui;
    int m_fontId = -1;
    QTranslator *m_translator;
};

#endif // VERSIONINFOUI_H
