// Lists of applications as text and back, so that a table row stays a row: one letter an
// application, a bar after each bunch. "ab|c|" is a bunch of two and one of one.

#pragma once

#include "TestCase.h"
#include "catalogue/AppList.h"
#include "catalogue/OTApp.h"
#include "platform/Desktop.h"

namespace BunchText {

inline AppRef app(QChar letter, Desktop &desktop)
{
    return std::make_shared<OTApp>(u"/apps/"_s + letter, desktop);
}

inline AppList apps(const QString &text, Desktop &desktop)
{
    AppList list;
    for (const QChar letter : text) {
        list.append(app(letter, desktop));
    }
    return list;
}

inline BunchList bunches(const QString &text, Desktop &desktop)
{
    BunchList list;
    const QStringList parts = text.split(u'|');
    for (const QString &part : parts.mid(0, parts.size() - 1)) {
        list.append(apps(part, desktop));
    }
    return list;
}

inline QString text(const AppList &apps)
{
    QString text;
    for (const AppRef &app : apps) {
        text += app->name();
    }
    return text;
}

inline QString text(const BunchList &bunches)
{
    QString all;
    for (const AppList &bunch : bunches) {
        all += text(bunch) + u'|';
    }
    return all;
}

} // namespace BunchText
