#include "fuzz/Fuzz.h"
#include "support/files/PropertyList.h"

void fuzz(const QByteArray &bytes)
{
    QString error;
    const std::optional<QVariant> value = PropertyList::fromData(bytes, &error);
    require(value.has_value() == error.isEmpty());
    // What can be written can be read again.
    const QByteArray xml = PropertyList::toXml(value.value_or(QVariant()));
    require(xml.isEmpty() || PropertyList::fromData(xml));
}
