#include "platform/freedesktop/base/ShortcutSettings.h"

#include <QCoreApplication>

#include <array>

namespace {

struct Advice
{
    // As XDG_CURRENT_DESKTOP has it; compositors write theirs in one case or another.
    const char *desktop;
    const char *sentence;
};

constexpr std::array advices {
    Advice { "GNOME",
        QT_TRANSLATE_NOOP("ShortcutSettings",
            "In GNOME, add a shortcut with the command \"ortu --toggle\" under Settings > Keyboard "
            "> View and Customize Shortcuts > Custom Shortcuts.") },
    Advice { "KDE",
        QT_TRANSLATE_NOOP("ShortcutSettings",
            "In Plasma, choose \"Add Command\" under System Settings > Shortcuts and enter "
            "\"ortu --toggle\".") },
    Advice { "XFCE",
        QT_TRANSLATE_NOOP("ShortcutSettings",
            "In Xfce, add the command \"ortu --toggle\" under Settings > Keyboard > Application "
            "Shortcuts.") },
    Advice { "sway",
        QT_TRANSLATE_NOOP("ShortcutSettings",
            "In Sway, add the line \"bindsym Ctrl+Tab exec ortu --toggle\" to "
            "~/.config/sway/config.") },
    Advice { "Hyprland",
        QT_TRANSLATE_NOOP("ShortcutSettings",
            "In Hyprland, add the line \"bind = CTRL, Tab, exec, ortu --toggle\" to "
            "~/.config/hypr/hyprland.conf.") },
};

} // namespace

QString shortcutAdvice(const QStringList &desktops)
{
    for (const QString &desktop : desktops) {
        for (const Advice &advice : advices) {
            if (desktop.compare(QLatin1String(advice.desktop), Qt::CaseInsensitive) == 0) {
                return QCoreApplication::translate("ShortcutSettings", advice.sentence);
            }
        }
    }
    return QCoreApplication::translate("ShortcutSettings",
        "Bind the command \"ortu --toggle\" to a key in the keyboard settings of your desktop.");
}
