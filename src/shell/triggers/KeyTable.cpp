#include "shell/triggers/KeyTable.h"

#include "shell/base/Log.h"
#include "support/DelimitedText.h"

#include <QFile>

#include <algorithm>
#include <array>

namespace {

// Far more than there are keys.
constexpr qint64 largestTable = 1LL * 1024 * 1024;

// The titles of the table that have another name in other languages, for the catalogues of
// translations alone.
[[maybe_unused]] constexpr std::array translatedTitles { QT_TRANSLATE_NOOP("KeyTable", "Space"),
    QT_TRANSLATE_NOOP("KeyTable", "Tab"), QT_TRANSLATE_NOOP("KeyTable", "Return"),
    QT_TRANSLATE_NOOP("KeyTable", "Delete"), QT_TRANSLATE_NOOP("KeyTable", "Forward Delete"),
    QT_TRANSLATE_NOOP("KeyTable", "Escape"), QT_TRANSLATE_NOOP("KeyTable", "Home"),
    QT_TRANSLATE_NOOP("KeyTable", "End"), QT_TRANSLATE_NOOP("KeyTable", "Page Up"),
    QT_TRANSLATE_NOOP("KeyTable", "Page Down"), QT_TRANSLATE_NOOP("KeyTable", "Help"),
    QT_TRANSLATE_NOOP("KeyTable", "Left Arrow"), QT_TRANSLATE_NOOP("KeyTable", "Right Arrow"),
    QT_TRANSLATE_NOOP("KeyTable", "Up Arrow"), QT_TRANSLATE_NOOP("KeyTable", "Down Arrow"),
    QT_TRANSLATE_NOOP("KeyTable", "Keypad 0"), QT_TRANSLATE_NOOP("KeyTable", "Keypad 1"),
    QT_TRANSLATE_NOOP("KeyTable", "Keypad 2"), QT_TRANSLATE_NOOP("KeyTable", "Keypad 3"),
    QT_TRANSLATE_NOOP("KeyTable", "Keypad 4"), QT_TRANSLATE_NOOP("KeyTable", "Keypad 5"),
    QT_TRANSLATE_NOOP("KeyTable", "Keypad 6"), QT_TRANSLATE_NOOP("KeyTable", "Keypad 7"),
    QT_TRANSLATE_NOOP("KeyTable", "Keypad 8"), QT_TRANSLATE_NOOP("KeyTable", "Keypad 9"),
    QT_TRANSLATE_NOOP("KeyTable", "Keypad ."), QT_TRANSLATE_NOOP("KeyTable", "Keypad *"),
    QT_TRANSLATE_NOOP("KeyTable", "Keypad +"), QT_TRANSLATE_NOOP("KeyTable", "Keypad /"),
    QT_TRANSLATE_NOOP("KeyTable", "Keypad -"), QT_TRANSLATE_NOOP("KeyTable", "Keypad ="),
    QT_TRANSLATE_NOOP("KeyTable", "Keypad Clear"), QT_TRANSLATE_NOOP("KeyTable", "Keypad Enter") };

QString translated(const QString &title)
{
    return QCoreApplication::translate("KeyTable", title.toUtf8().constData());
}

} // namespace

KeyTable::KeyTable(const QString &path)
{
    QFile file(path);
    QString problem;
    if (!file.open(QIODevice::ReadOnly)) {
        problem = file.errorString();
    } else {
        const QString text = DelimitedText::decoded(file.read(largestTable));
        for (const QVariantMap &record : DelimitedText::records(text)) {
            bool isNumber = false;
            const int tag = record.value(QStringLiteral("tag")).toString().toInt(&isNumber);
            if (isNumber) {
                _keys.append({ record.value(QStringLiteral("title")).toString(), tag,
                    record.value(QStringLiteral("key")).toString() });
            }
        }
        if (_keys.isEmpty()) {
            problem = QStringLiteral("it names no key");
        }
    }
    if (!problem.isEmpty()) {
        qCWarning(lcShell, "cannot use the key table %s: %s", qUtf8Printable(path),
            qUtf8Printable(problem));
    }
}

QList<KeyTable::Key> KeyTable::keys() const
{
    QList<Key> titled = _keys;
    titled.removeIf([](const Key &key) { return key.title.isEmpty(); });
    for (Key &key : titled) {
        key.title = translated(key.title);
    }
    return titled;
}

QString KeyTable::hotKeyString(int hotKeyCode, int hotKeyModifiers) const
{
    const Key *const key = keyOf(hotKeyCode);
    if (key == nullptr || key->title.isEmpty()) {
        return tr("missing resource");
    }
    const QString title = translated(key->title);
    return hotKeyCode < 0 ? title : modifierString(hotKeyModifiers) + title;
}

QString KeyTable::modifierString(int hotKeyModifiers)
{
    QString prefix;
    const auto add = [&](Modifier modifier, const QString &part, char16_t sign) {
        if ((hotKeyModifiers & modifier) != 0) {
            prefix += part.arg(QChar(sign));
        }
    };
    add(Control, tr("%1 control + "), u'\u2303');
    add(Option, tr("%1 option + "), u'\u2325');
    add(Command, tr("%1 command + "), u'\u2318');
    add(Shift, tr("%1 shift + "), u'\u21E7');
    return prefix;
}

std::optional<int> KeyTable::codeOf(const QStringList &names) const
{
    const auto found = std::find_if(_keys.begin(), _keys.end(), [&names](const Key &key) {
        return !key.title.isEmpty() && key.tag >= 0 && names.contains(key.place);
    });
    return found == _keys.end() ? std::nullopt : std::optional(found->tag);
}

bool KeyTable::isTaken(int hotKeyCode, int hotKeyModifiers) const
{
    const Key *const key = keyOf(hotKeyCode);
    const bool isBare = (hotKeyModifiers & (Control | Option | Command)) == 0;
    return isBare && key != nullptr && hotKeyCode >= 0
        && !key->place.startsWith(QLatin1String("FK"));
}

std::optional<HotKeyCombination> KeyTable::combination(int hotKeyCode, int hotKeyModifiers) const
{
    const Key *const key = keyOf(hotKeyCode);
    if (hotKeyCode < 0 || key == nullptr || key->place.isEmpty()) {
        return std::nullopt;
    }
    return HotKeyCombination { .key = key->place,
        .control = (hotKeyModifiers & Control) != 0,
        .option = (hotKeyModifiers & Option) != 0,
        .command = (hotKeyModifiers & Command) != 0,
        .shift = (hotKeyModifiers & Shift) != 0 };
}

// The first one counts.
const KeyTable::Key *KeyTable::keyOf(int tag) const
{
    const auto found =
        std::find_if(_keys.begin(), _keys.end(), [tag](const Key &key) { return key.tag == tag; });
    return found == _keys.end() ? nullptr : &*found;
}
