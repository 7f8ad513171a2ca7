#include "platform/freedesktop/bus/PortalTrigger.h"

#include "platform/HotKey.h"

#include <QHash>
#include <QStringList>

#include <array>
#include <utility>

namespace {

struct Row
{
    // Of the names of its places: the first is "AE01" in the row "AE".
    const char *row;
    const char *symbols;
};

constexpr std::array rows {
    Row { "AE", "1 2 3 4 5 6 7 8 9 0 minus equal" },
    Row { "AD", "q w e r t y u i o p bracketleft bracketright" },
    Row { "AC", "a s d f g h j k l semicolon apostrophe" },
    Row { "AB", "z x c v b n m comma period slash" },
    Row { "FK", "F1 F2 F3 F4 F5 F6 F7 F8 F9 F10 F11 F12 F13 F14 F15 F16 F17 F18 F19 F20" },
};

struct Key
{
    const char *place;
    const char *symbol;
};

constexpr std::array others {
    Key { "TLDE", "grave" },
    Key { "BKSL", "backslash" },
    Key { "SPCE", "space" },
    Key { "TAB", "Tab" },
    Key { "RTRN", "Return" },
    Key { "BKSP", "BackSpace" },
    Key { "DELE", "Delete" },
    Key { "ESC", "Escape" },
    Key { "HOME", "Home" },
    Key { "END", "End" },
    Key { "PGUP", "Page_Up" },
    Key { "PGDN", "Page_Down" },
    Key { "INS", "Insert" },
    Key { "LEFT", "Left" },
    Key { "RGHT", "Right" },
    Key { "UP", "Up" },
    Key { "DOWN", "Down" },
    Key { "KPDL", "KP_Decimal" },
    Key { "KPMU", "KP_Multiply" },
    Key { "KPAD", "KP_Add" },
    Key { "KPDV", "KP_Divide" },
    Key { "KPSU", "KP_Subtract" },
    Key { "KPEQ", "KP_Equal" },
    Key { "KPEN", "KP_Enter" },
    Key { "NMLK", "Num_Lock" },
};

QHash<QString, QString> allSymbols()
{
    QHash<QString, QString> symbols;
    for (const Row &row : rows) {
        const QStringList names = QString::fromLatin1(row.symbols).split(u' ');
        for (qsizetype i = 0; i < names.size(); ++i) {
            const QString place = QStringLiteral("%1%2").arg(QLatin1String(row.row));
            symbols.insert(place.arg(i + 1, 2, 10, QLatin1Char('0')), names[i]);
        }
    }
    for (const auto &[place, symbol] : others) {
        symbols.insert(QLatin1String(place), QLatin1String(symbol));
    }
    for (int digit = 0; digit <= 9; ++digit) {
        symbols.insert(QStringLiteral("KP%1").arg(digit), QStringLiteral("KP_%1").arg(digit));
    }
    return symbols;
}

} // namespace

QString portalTrigger(const HotKeyCombination &combination)
{
    static const QHash<QString, QString> symbols = allSymbols();
    const QString symbol = symbols.value(combination.key);
    if (symbol.isEmpty()) {
        return {};
    }
    QString text;
    for (const auto &[isHeld, modifier] :
        { std::pair(combination.control, "CTRL+"), { combination.option, "ALT+" },
            { combination.shift, "SHIFT+" }, { combination.command, "LOGO+" } }) {
        text += QLatin1String(isHeld ? modifier : "");
    }
    return text + symbol;
}
