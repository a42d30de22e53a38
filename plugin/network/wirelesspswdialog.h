#ifndef WIRELESSPSWDIALOG_H
#define WIRELESSPSWDIALOG_H

#include "passworddialoglayout.h"

#include <QDialog>
#include <QPointer>
#include <QSettings>
#include <QString>

class PasswordKeyboard;

namespace Ui {
class WirelessPswDialog;
}

// Asks for the password of a protected WLAN and hands the connection
// request to the host application. frame_close tells the WLAN page how it
// ended: 1 after a request, 0 after cancel or close.
//
// The dialog deletes itself once it is done (connect, cancel, close), after
// frame_close: the page opens a new one for every attempt and only forgets
// the old one, so a kept dialog would pile up under the page.
class WirelessPswDialog : public QDialog
{
    Q_OBJECT

public:
    WirelessPswDialog(QString ssid, QWidget *parent);
    ~WirelessPswDialog() override;

    QString ssid() const { return m_ssid; }

    // Sizes the dialog from the panel's screen, or from the screen given.
    void resizeUIWgt();
    void resizeUIWgt(const QSize &screen);

    // The configuration whose "General/buzzer" decides the key click. Without
    // one the dialog uses the configuration the settings window keeps as its
    // child, if the dialog sits in one; with neither, the keys stay silent.
    void setSettings(QSettings *settings);

    // The keyboard opened by the last press on the password field, while it
    // is open; its caps state.
    PasswordKeyboard *keyboard() const;
    bool capsOn() const { return m_caps; }

    // Cancels, like the close button: also what Esc and a window close do.
    void reject() override;

signals:
    void frame_close(int result);

public slots:
    void passwordKeyboard();

    void on_pushButton_connect_clicked();
    void on_pushButton_cancel_clicked();
    void on_pushButton_close_clicked();
    void on_checkBox_showPsw_toggled(bool checked);

    void on_pushButton_button_1_keyboard_clicked();
    void on_pushButton_button_2_keyboard_clicked();
    void on_pushButton_button_3_keyboard_clicked();
    void on_pushButton_button_4_keyboard_clicked();
    void on_pushButton_button_5_keyboard_clicked();
    void on_pushButton_button_6_keyboard_clicked();
    void on_pushButton_button_7_keyboard_clicked();
    void on_pushButton_button_8_keyboard_clicked();
    void on_pushButton_button_9_keyboard_clicked();
    void on_pushButton_button_0_keyboard_clicked();
    void on_pushButton_button_q_keyboard_clicked();
    void on_pushButton_button_w_keyboard_clicked();
    void on_pushButton_button_e_keyboard_clicked();
    void on_pushButton_button_r_keyboard_clicked();
    void on_pushButton_button_t_keyboard_clicked();
    void on_pushButton_button_y_keyboard_clicked();
    void on_pushButton_button_u_keyboard_clicked();
    void on_pushButton_button_i_keyboard_clicked();
    void on_pushButton_button_o_keyboard_clicked();
    void on_pushButton_button_p_keyboard_clicked();
    void on_pushButton_button_denghao_keyboard_clicked();
    void on_pushButton_button_a_keyboard_clicked();
    void on_pushButton_button_s_keyboard_clicked();
    void on_pushButton_button_d_keyboard_clicked();
    void on_pushButton_button_f_keyboard_clicked();
    void on_pushButton_button_g_keyboard_clicked();
    void on_pushButton_button_h_keyboard_clicked();
    void on_pushButton_button_j_keyboard_clicked();
    void on_pushButton_button_k_keyboard_clicked();
    void on_pushButton_button_l_keyboard_clicked();
    void on_pushButton_button_youxie_keyboard_clicked();
    void on_pushButton_button_zuoxie_keyboard_clicked();
    void on_pushButton_button_z_keyboard_clicked();
    void on_pushButton_button_x_keyboard_clicked();
    void on_pushButton_button_c_keyboard_clicked();
    void on_pushButton_button_v_keyboard_clicked();
    void on_pushButton_button_b_keyboard_clicked();
    void on_pushButton_button_n_keyboard_clicked();
    void on_pushButton_button_m_keyboard_clicked();
    void on_pushButton_button_zuoZhongKuohao_keyboard_clicked();
    void on_pushButton_button_youZhongKuohao_keyboard_clicked();
    void on_pushButton_button_xiaHuaXian_keyboard_clicked();
    void on_pushButton_button_maoHao_keyboard_clicked();
    void on_pushButton_button_dian_keyboard_clicked();
    void on_pushButton_button_douhao_keyboard_clicked();

    void on_pushButton_button_back_keyboard_clicked();
    void on_pushButton_button_clear_keyboard_clicked();
    void on_pushButton_button_kongge_keyboard_clicked();
    void on_pushButton_button_caps_keyboard_clicked();
    void on_pushButton_button_enter_keyboard_clicked();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void addUIStyles();
    void connectSlots();
    void connectKeys();
    // Every key of the keyboard: the key click, then the table's effect on
    // the keyboard line.
    void pressKey(const char *name);
    void keyClick();
    QSettings *settings() const;
    // frame_close, once whichever way the dialog ends.
    void announce(int result);

    Ui::WirelessPswDialog *ui;
    QString m_ssid;
    PasswordDialogLayout m_layout;
    QPointer<PasswordKeyboard> m_keyboard;
    QPointer<QSettings> m_settings;
    bool m_caps = false;
    bool m_announced = false;
};

#endif // WIRELESSPSWDIALOG_H
