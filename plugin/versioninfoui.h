#ifndef VERSIONINFOUI_H
#define VERSIONINFOUI_H

#include "settings.h"

#include <QTableView>

class QTranslator;

// The version page: the device's cloud identity as text and QR code.
class VersionInfoUI : public QTableView
{
    Q_OBJECT

public:
    explicit VersionInfoUI(QWidget *parent = nullptr);

    void init(int fontId);
    void refresh();

public slots:
    void onChangeLanguage(Settings::Language lang);

private:
    int m_fontId = -1;
    QTranslator *m_translator;
};

#endif // VERSIONINFOUI_H
