#include "finding/KeyboardLayouts.h"

#include <algorithm>
#include <array>
#include <optional>

namespace {

// Characters of the same index lie on the same key.
struct Layout
{
    QChar::Script script;
    QStringView characters;
};

constexpr QStringView latin = u"qwertyuiop[]asdfghjkl;'zxcvbnm,./`\\";
constexpr std::array layouts {
    Layout { QChar::Script_Cyrillic, u"йцукенгшщзхъфывапролджэячсмитьбю.ё\\" },
    Layout { QChar::Script_Cyrillic, u"йцукенгшщзхїфівапролджєячсмитьбю.'ґ" },
    Layout { QChar::Script_Greek, u";ςερτυθιοπ[]ασδφγηξκλ΄'ζχψωβνμ,./`\\" },
    Layout { QChar::Script_Hebrew, u"/'קראטוןםפ][שדגכעיחלךף,זסבהנמצתץ.;\\" },
};
static_assert(std::all_of(layouts.begin(), layouts.end(),
    [](const Layout &layout) { return layout.characters.size() == latin.size(); }));

// An accent that a dead key put there is left out.
QChar withoutAccent(QChar character)
{
    return character.decompositionTag() == QChar::Canonical ? character.decomposition().front()
                                                            : character;
}

std::optional<QString> read(const QString &text, QStringView typedBy, QStringView meantBy)
{
    QString meant;
    for (const QChar character : text) {
        qsizetype key = typedBy.indexOf(character);
        if (key < 0) {
            key = typedBy.indexOf(withoutAccent(character));
        }
        if (key < 0 && (character.isLetter() || character.isSurrogate())) {
            return std::nullopt;
        }
        meant += key < 0 ? character : meantBy[key];
    }
    return meant;
}

bool hasLetter(const QString &text)
{
    return std::any_of(text.cbegin(), text.cend(), [](QChar one) { return one.isLetter(); });
}

} // namespace

QList<KeyboardLayouts::Reading> KeyboardLayouts::otherReadings(const QString &text)
{
    QList<Reading> readings;
    const auto add = [&](QChar::Script script, const std::optional<QString> &meant) {
        const bool isNew = meant && *meant != text && hasLetter(*meant)
            && std::none_of(readings.cbegin(), readings.cend(),
                [&](const Reading &other) { return other.text == *meant; });
        if (isNew) {
            readings.append({ *meant, script });
        }
    };
    for (const Layout &layout : layouts) {
        add(layout.script, read(text, latin, layout.characters));
        add(QChar::Script_Latin, read(text, layout.characters, latin));
    }
    return readings;
}
