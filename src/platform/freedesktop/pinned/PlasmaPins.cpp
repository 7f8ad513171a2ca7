#include "platform/freedesktop/base/KeyFile.h"
#include "platform/freedesktop/pinned/PinFiles.h"
#include "platform/freedesktop/pinned/PinLists.h"

#include <QXmlStreamReader>

#include <map>
#include <optional>
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

struct Applet
{
    // The group of the file that it begins with.
    std::string group;
    std::string plugin;
    // None before the user changes those that it has of itself.
    std::optional<QStringList> launchers;

    // Those that come with Plasma.
    bool hasStandardLaunchers() const
    {
        return plugin == "org.kde.plasma.icontasks" || plugin == "org.kde.plasma.taskmanager";
    }
    // An applet whose kind is not told is one of a distribution's layout.
    bool hasOwnLaunchers() const
    {
        return launchers && (plugin.empty() || plugin.find("task") != std::string::npos);
    }
};

// In the order in which the file first mentions them.
class Applets final
{
public:
    explicit Applets(const QByteArray &text)
    {
        for (KeyFileReader file({ text.constData(), size_t(text.size()) }); file.readNext();) {
            if (file.line() == KeyFileReader::Line::Pair) {
                take(file);
            }
        }
    }

    const std::vector<Applet> &all() const { return _applets; }

private:
    void take(const KeyFileReader &file)
    {
        constexpr std::string_view settings = "][Configuration][General";
        const std::string_view group = file.group();
        const std::string_view key = plainKey(file.key());
        if (key == "plugin") {
            at(group).plugin = file.value();
        } else if (key == "launchers" && group.ends_with(settings)) {
            at(group.substr(0, group.size() - settings.size())).launchers =
                itemsOf(unescaped(file.value()));
        }
    }

    Applet &at(std::string_view group)
    {
        const auto known = _places.find(group);
        if (known != _places.end()) {
            return _applets[known->second];
        }
        _places.emplace(group, _applets.size());
        _applets.push_back({ std::string(group), {}, {} });
        return _applets.back();
    }

    std::vector<Applet> _applets;
    std::map<std::string, size_t, std::less<>> _places;
};

// The launchers that a task manager of Plasma's has of itself: the default in the description of
// its settings.
QStringList standardLaunchers(const QStringList &dataFolders)
{
    for (const QString &folder : dataFolders) {
        QXmlStreamReader xml(PinFiles::read(folder
            + QStringLiteral(
                "/plasma/plasmoids/org.kde.plasma.taskmanager/contents/config/main.xml")));
        bool isInEntry = false;
        while (!xml.atEnd()) {
            xml.readNext();
            if (xml.isStartElement() && xml.name() == u"entry") {
                isInEntry = xml.attributes().value(QStringLiteral("name")) == u"launchers";
            } else if (xml.isStartElement() && xml.name() == u"default" && isInEntry) {
                return itemsOf(xml.readElementText().trimmed());
            }
        }
    }
    return {};
}

} // namespace

QStringList PinLists::plasma(const QString &configurationHome, const QStringList &dataFolders)
{
    const Applets applets(PinFiles::read(
        configurationHome + QStringLiteral("/plasma-org.kde.plasma.desktop-appletsrc")));
    const QStringList standard = standardLaunchers(dataFolders);
    QStringList pins;
    for (const Applet &applet : applets.all()) {
        QStringList names;
        if (applet.hasOwnLaunchers()) {
            names = *applet.launchers;
        } else if (applet.hasStandardLaunchers()) {
            names = standard;
        }
        for (const QString &name : std::as_const(names)) {
            pins.append(withoutActivities(name));
        }
    }
    return pins;
}
