#include "platform/freedesktop/pinned/PinFiles.h"
#include "platform/freedesktop/pinned/PinLists.h"

#include <QHash>
#include <QSet>
#include <QXmlStreamReader>

namespace {

// What the settings of the panels say of launchers.
class PanelSettings final
{
public:
    // False, with the reason, when the text is damaged.
    bool read(const QByteArray &text, QString *problem);

    // The numbers of the launchers in the order of the panels, and of the file where it tells of no
    // panel.
    QStringList launchers() const;
    QStringList itemsOf(const QString &launcher) const { return _items.value(launcher); }

private:
    void enter(const QXmlStreamReader &xml);
    void takeValue(const QString &value);

    // The names of the properties around the current place, outermost first.
    QStringList _names;
    QStringList _shown;
    QStringList _launchers;
    QHash<QString, QStringList> _items;
};

bool PanelSettings::read(const QByteArray &text, QString *problem)
{
    QXmlStreamReader xml(text);
    while (!xml.atEnd()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        if (token == QXmlStreamReader::StartElement) {
            enter(xml);
        } else if (token == QXmlStreamReader::EndElement && xml.name() == u"property") {
            _names.removeLast();
        }
    }
    *problem = xml.errorString();
    return !xml.hasError();
}

void PanelSettings::enter(const QXmlStreamReader &xml)
{
    const QString value = xml.attributes().value(QStringLiteral("value")).toString();
    if (xml.name() == u"value") {
        takeValue(value);
    } else if (xml.name() == u"property") {
        _names.append(xml.attributes().value(QStringLiteral("name")).toString());
        if (_names.size() == 2 && _names.first() == u"plugins" && value == u"launcher") {
            _launchers.append(_names.last().section(u'-', -1));
        }
    }
}

void PanelSettings::takeValue(const QString &value)
{
    if (_names.size() != 3) {
        return;
    }
    if (_names.first() == u"panels" && _names.last() == u"plugin-ids") {
        _shown.append(value);
    } else if (_names.first() == u"plugins" && _names.last() == u"items") {
        _items[_names.at(1).section(u'-', -1)].append(value);
    }
}

QStringList PanelSettings::launchers() const
{
    if (_shown.isEmpty()) {
        return _launchers;
    }
    QStringList inOrder = _shown;
    inOrder.removeDuplicates();
    const QSet<QString> known(_launchers.begin(), _launchers.end());
    inOrder.removeIf([&known](const QString &number) { return !known.contains(number); });
    return inOrder;
}

// Where the copy in a launcher's folder came from. What the user made in the panel itself came from
// nowhere, and is then known by its file name.
QString sourceOf(const QString &folder, const QString &item)
{
    const bool isInFolder = !item.contains(u'/');
    if (!isInFolder && !item.contains(folder + u'/')) {
        return item;
    }
    const QString name = item.section(u'/', -1);
    const QString source =
        PinFiles::itemValue(folder + u'/' + name, "Desktop Entry", "X-XFCE-Source");
    return source.isEmpty() ? name : source;
}

} // namespace

QStringList PinLists::xfce(const QString &configurationHome)
{
    const QString home = configurationHome + QStringLiteral("/xfce4");
    const QString path = home + QStringLiteral("/xfconf/xfce-perchannel-xml/xfce4-panel.xml");
    const QByteArray text = PinFiles::read(path);
    PanelSettings settings;
    QString problem;
    if (text.isEmpty()) {
        return {};
    }
    if (!settings.read(text, &problem)) {
        PinFiles::sayUnusable(path, problem);
        return {};
    }
    QStringList pins;
    for (const QString &launcher : settings.launchers()) {
        const QString folder = home + QStringLiteral("/panel/launcher-") + launcher;
        for (const QString &item : settings.itemsOf(launcher)) {
            pins.append(sourceOf(folder, item));
            // Too many already.
            if (pins.size() > PinFiles::maximumCount) {
                return pins;
            }
        }
    }
    return pins;
}
