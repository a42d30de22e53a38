#ifndef ADAPTERLIST_H
#define ADAPTERLIST_H

#include <QString>

// The default-adapter list of the WLAN and 4G pages: the automatic choice,
// the wired ports, and the page's own link after them. The list shows
// translated texts, so the handler goes by the text in either language.
namespace AdapterList {

enum Row { AutoRow = 0, Wired0Row = 1, Wired1Row = 2 };
enum Link { Wlan, Mobile };

// Where the page's own link stands in the list, and the index it is known
// by: after the second wired port when the panel has one.
int linkRow(bool secondPort);

struct Choice
{
    int index = -1;             // adapter index for the network page; -1: not an adapter text
    QString interfaceName;      // whose name servers go first; empty for the automatic choice
};

// What choosing `text` on the page of `link` means.
Choice choice(const QString &text, Link link, bool secondPort);

} // namespace AdapterList

#endif // ADAPTERLIST_H
