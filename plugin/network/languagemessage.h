#ifndef LANGUAGEMESSAGE_H
#define LANGUAGEMESSAGE_H

#include <QString>

class QWidget;

// The message boxes of the WLAN and VPN pages. They follow the language the
// host application keeps in its register (0: Chinese), not the plug-in's
// catalogue, so both texts are given: in English an information box titled
// "Waring", in Chinese a warning box with no title and a "确定" button.
namespace LanguageMessage {

bool chineseSelected();

// Shows the box of the host's language and waits for it to be closed.
void warn(QWidget *parent, const QString &english, const QString &chinese);

} // namespace LanguageMessage

#endif // LANGUAGEMESSAGE_H
