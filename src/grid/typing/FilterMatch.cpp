#include "grid/typing/FilterMatch.h"

#include "catalogue/OTApp.h"

bool matches(const QString &filter, const OTApp &app)
{
    if (filter.size() == 1 && filter.front() <= QLatin1Char('\x7f')) {
        return app.containsLetter(filter.front().toLatin1());
    }
    return filter.isEmpty() || app.displayName().contains(filter, Qt::CaseInsensitive);
}
