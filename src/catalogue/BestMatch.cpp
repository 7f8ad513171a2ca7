#include "catalogue/BestMatch.h"

#include "catalogue/OTApp.h"

namespace {

int sharedTrailingComponents(const QStringList &one, const QStringList &other)
{
    const qsizetype shorter = qMin(one.size(), other.size());
    int shared = 0;
    while (shared < shorter && one[one.size() - 1 - shared] == other[other.size() - 1 - shared]) {
        ++shared;
    }
    return shared;
}

QStringList components(const AppRef &app)
{
    return app->path().split(QLatin1Char('/'), Qt::SkipEmptyParts);
}

} // namespace

AppRef bestMatchForApp(const AppRef &app, const AppArray &inArray)
{
    if (!app) {
        return nullptr;
    }
    AppList namesakes = inArray.apps();
    namesakes.removeIf([name = app->name()](const AppRef &other) { return other->name() != name; });
    if (namesakes.size() == 1) {
        return namesakes.first();
    }
    AppRef best;
    int mostShared = 0;
    const QStringList lost = components(app);
    for (const AppRef &candidate : std::as_const(namesakes)) {
        const int shared = sharedTrailingComponents(lost, components(candidate));
        if (shared > mostShared) {
            mostShared = shared;
            best = candidate;
        }
    }
    return best;
}
