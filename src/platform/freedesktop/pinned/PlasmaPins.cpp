#include "platform/freedesktop/base/KeyFile.h"
#include "platform/freedesktop/pinned/PinFiles.h"
#include "platform/freedesktop/pinned/PinLists.h"

#include <map>
#include <string>
#include <vector>

namespace {

// A value as it was before it was written to the file.
QString unescaped(std::string_view value)
{
    QByteArray text;
    for (size_t i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            text.append(value[i]);
            continue;
        }
        ++i;
        switch (value[i]) {
        case 'n':
            text.append('\n');
            break;
        case 's':
            text.append(' ');
            break;
        case 't':
            text.append('\t');
            break;
        case 'r':
            text.append('\r');
            break;
        case '\\':
            text.append('\\');
            break;
        default:
            text.append('\\').append(value[i]);
        }
    }
    return QString::fromUtf8(text);
}

// The items between commas; a backslash takes the meaning from the character behind it.
QStringList itemsOf(const QString &list)
{
    QStringList items { QString() };
    for (qsizetype i = 0; i < list.size(); ++i) {
        if (list[i] == u',') {
            items.append(QString());
        } else {
            i += list[i] == u'\\' && i + 1 < list.size() ? 1 : 0;
            items.last().append(list[i]);
        }
    }
    return items;
}

// A launcher that is not for all activities begins with a line that says for which.
QString withoutActivities(const QString &launcher)
{
    return launcher.startsWith(u'[') ? launcher.section(u'\n', 1) : launcher;
}

// Marks like "[$i]" follow a key.
std::string_view plainKey(std::string_view key)
{
    return key.substr(0, key.find('['));
}

struct Launchers
{
    std::string applet;
    QStringList names;
};

constexpr std::string_view settingsOfApplet = "][Configuration][General";

} // namespace

QStringList PinLists::plasma(const QString &configurationHome)
{
    const QByteArray text = PinFiles::read(
        configurationHome + QStringLiteral("/plasma-org.kde.plasma.desktop-appletsrc"));
    std::map<std::string, std::string, std::less<>> plugins;
    std::vector<Launchers> lists;
    for (KeyFileReader file({ text.constData(), size_t(text.size()) }); file.readNext();) {
        const std::string_view group = file.group();
        const std::string_view key = plainKey(file.key());
        if (file.line() != KeyFileReader::Line::Pair) {
            continue;
        }
        if (key == "plugin") {
            plugins[std::string(group)] = file.value();
        } else if (key == "launchers" && group.ends_with(settingsOfApplet)) {
            const std::string_view applet = group.substr(0, group.size() - settingsOfApplet.size());
            lists.push_back({ std::string(applet), itemsOf(unescaped(file.value())) });
        }
    }
    QStringList pins;
    for (const Launchers &list : lists) {
        // Among others icontasks and taskmanager, of Plasma itself. An applet whose kind is not
        // told is one that comes with a distribution's layout.
        const auto plugin = plugins.find(list.applet);
        if (plugin != plugins.end() && plugin->second.find("task") == std::string::npos) {
            continue;
        }
        for (const QString &name : list.names) {
            pins.append(withoutActivities(name));
        }
    }
    return pins;
}
