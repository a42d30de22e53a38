#include "languagemessage.h"

#include "sysreg.h"

#include <QMessageBox>

bool LanguageMessage::chineseSelected()
{
    // The register is wider than the byte that holds the language.
    quint8 value[4] = {};
    if (SysReg_Read(SysRegIdx::Language, value) != 0)
        return false;
    return value[0] == 0;
}

void LanguageMessage::warn(QWidget *parent, const QString &english, const QString &chinese)
{
    if (!chineseSelected()) {
        QMessageBox::information(parent, QStringLiteral("Waring"), english, QMessageBox::Ok);
        return;
    }
    QMessageBox box(QMessageBox::Warning, QString(), chinese, QMessageBox::NoButton, parent);
    box.setObjectName(QStringLiteral("languageMessageBox"));
    box.addButton(QStringLiteral("确定"), QMessageBox::AcceptRole);
    box.exec();
}
