#include "catalogue/files/SettingsDocument.h"
#include "fuzz/Fuzz.h"
#include "support/UserDefaults.h"
#include "support/files/PropertyList.h"

using namespace Qt::StringLiterals;

void fuzz(const QByteArray &bytes)
{
    static UserDefaults defaults;
    defaults.registerDefaults({ { u"text"_s, QString() }, { u"number"_s, 1LL }, { u"share"_s, 0.5 },
        { u"isOn"_s, true }, { u"list"_s, QVariantList() }, { u"color"_s, u"#ffffff"_s } });
    const auto read = [](const QVariant &value, QList<SettingsDocument::LeftOut> *leftOut) {
        QString error;
        auto document = SettingsDocument::fromPropertyList(value, defaults, &error, leftOut);
        require(document.has_value() == error.isEmpty());
        return document;
    };
    QList<SettingsDocument::LeftOut> leftOut;
    const auto document = read(PropertyList::fromData(bytes).value_or(QVariant()), &leftOut);
    if (!document) {
        return;
    }
    // What was taken can be exported, and is then all of use.
    const QByteArray xml = PropertyList::toXml(document->propertyList());
    leftOut.clear();
    const auto again = read(PropertyList::fromData(xml).value_or(QVariant()), &leftOut);
    require(again && leftOut.isEmpty() && PropertyList::toXml(again->propertyList()) == xml);
    const auto keys = [](const auto &part) { return part.value_or(QVariantMap()).keys(); };
    require(keys(again->colorCorrections) == keys(document->colorCorrections)
        && keys(again->preferences) == keys(document->preferences));
}
