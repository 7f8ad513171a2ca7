#include "grid/typing/FilterMatch.h"

#include "catalogue/OTApp.h"

bool matches(const QString &filter, const OTApp &app)
{
    if (filter.size() == 1 && filter.front() <= QLatin1Char('\x7f')) {
        return app.containsLetter(filter.front().toLatin1());
    }
    // A name may have its accents as characters of their own, which no key types.
    return filter.isEmpty()
        || app.displayName()
               .normalized(QString::NormalizationForm_C)
               .contains(filter, Qt::CaseInsensitive);
}
