#include "platform/freedesktop/base/Languages.h"

#include <glib.h>

QList<QByteArray> Languages::preferred()
{
    QList<QByteArray> languages;
    for (const char *const *name = g_get_language_names(); *name != nullptr; ++name) {
        const QByteArray language(*name);
        // What is not marked as a translation is what the untranslated form, C, stands for.
        if (!language.contains('.') && language != "C" && language != "POSIX") {
            languages.append(language);
        }
    }
    // GLib puts language and modifier before language and country, the entry standard the other way
    // round.
    for (qsizetype i = 1; i < languages.size(); ++i) {
        const QByteArray &first = languages.at(i - 1);
        const QByteArray &second = languages.at(i);
        if (first.contains('@') && !first.contains('_') && second.contains('_')
            && !second.contains('@')
            && first.left(first.indexOf('@')) == second.left(second.indexOf('_'))) {
            languages.swapItemsAt(i - 1, i);
            ++i;
        }
    }
    return languages;
}
