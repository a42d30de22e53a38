#include "passwordkeytable.h"

namespace {

using Key = PasswordKeyTable::Key;

constexpr auto C = PasswordKeyTable::Character;

// The colon key gives ":" and, with caps, ";": the reverse of a PC keyboard,
// but the way the panel's keyboard has always typed.
const Key Keys[PasswordKeyTable::KeyCount] = {
    {"button_1", C, '1', '!', nullptr, 0},
    {"button_2", C, '2', '@', nullptr, 0},
    {"button_3", C, '3', '#', nullptr, 0},
    {"button_4", C, '4', '$', nullptr, 0},
    {"button_5", C, '5', '%', nullptr, 0},
    {"button_6", C, '6', '^', nullptr, 0},
    {"button_7", C, '7', '&', nullptr, 0},
    {"button_8", C, '8', '*', nullptr, 0},
    {"button_9", C, '9', '(', nullptr, 0},
    {"button_0", C, '0', ')', nullptr, 0},
    {"button_back", PasswordKeyTable::Back, 0, 0, "BACK", 0},

    {"button_clear", PasswordKeyTable::Clear, 0, 0, "Clear", 1},
    {"button_q", C, 'q', 'Q', nullptr, 1},
    {"button_w", C, 'w', 'W', nullptr, 1},
    {"button_e", C, 'e', 'E', nullptr, 1},
    {"button_r", C, 'r', 'R', nullptr, 1},
    {"button_t", C, 't', 'T', nullptr, 1},
    {"button_y", C, 'y', 'Y', nullptr, 1},
    {"button_u", C, 'u', 'U', nullptr, 1},
    {"button_i", C, 'i', 'I', nullptr, 1},
    {"button_o", C, 'o', 'O', nullptr, 1},
    {"button_p", C, 'p', 'P', nullptr, 1},
    {"button_denghao", C, '=', '+', nullptr, 1},

    {"button_caps", PasswordKeyTable::Caps, 0, 0, "Caps", 2},
    {"button_a", C, 'a', 'A', nullptr, 2},
    {"button_s", C, 's', 'S', nullptr, 2},
    {"button_d", C, 'd', 'D', nullptr, 2},
    {"button_f", C, 'f', 'F', nullptr, 2},
    {"button_g", C, 'g', 'G', nullptr, 2},
    {"button_h", C, 'h', 'H', nullptr, 2},
    {"button_j", C, 'j', 'J', nullptr, 2},
    {"button_k", C, 'k', 'K', nullptr, 2},
    {"button_l", C, 'l', 'L', nullptr, 2},
    {"button_youxie", C, '\\', '|', nullptr, 2},
    {"button_zuoxie", C, '/', '?', nullptr, 2},

    {"button_z", C, 'z', 'Z', nullptr, 3},
    {"button_x", C, 'x', 'X', nullptr, 3},
    {"button_c", C, 'c', 'C', nullptr, 3},
    {"button_v", C, 'v', 'V', nullptr, 3},
    {"button_b", C, 'b', 'B', nullptr, 3},
    {"button_n", C, 'n', 'N', nullptr, 3},
    {"button_m", C, 'm', 'M', nullptr, 3},
    {"button_zuoZhongKuohao", C, '[', '{', nullptr, 3},
    {"button_youZhongKuohao", C, ']', '}', nullptr, 3},
    {"button_xiaHuaXian", C, '-', '_', nullptr, 3},
    {"button_maoHao", C, ':', ';', nullptr, 3},
    {"button_dian", C, '.', '>', nullptr, 3},
    {"button_douhao", C, ',', '<', nullptr, 3},

    {"button_kongge", PasswordKeyTable::Space, 0, 0, "", 4},
    {"button_enter", PasswordKeyTable::Enter, 0, 0, "ENTER", 4},
};

} // namespace

const PasswordKeyTable::Key *PasswordKeyTable::keys()
{
    return Keys;
}

const PasswordKeyTable::Key *PasswordKeyTable::find(const QString &name)
{
    for (const Key &key : Keys) {
        if (name == QLatin1String(key.name))
            return &key;
    }
    return nullptr;
}

QString PasswordKeyTable::objectName(const Key &key)
{
    return QStringLiteral("pushButton_%1_keyboard").arg(QLatin1String(key.name));
}

QByteArray PasswordKeyTable::slotSignature(const Key &key)
{
    return QByteArray("on_pushButton_") + key.name + "_keyboard_clicked()";
}

QString PasswordKeyTable::caption(const Key &key, bool caps)
{
    if (key.action == Character)
        return QString(QLatin1Char(caps ? key.on : key.off));
    return QString::fromLatin1(key.caption);
}

QString PasswordKeyTable::typed(const QString &line, const Key &key, bool caps)
{
    switch (key.action) {
    case Character:
        return line + QLatin1Char(caps ? key.on : key.off);
    case Space:
        return line + QLatin1Char(' ');
    case Back:
        return line.left(line.size() - 1);
    case Clear:
        return QString();
    case Caps:
    case Enter:
        break;
    }
    return line;
}
