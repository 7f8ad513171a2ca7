// What happens at each exclusion and each change of the order: dividing the scan result anew and
// sorting every list, with 1,000 and with 10,000 applications.

#include "catalogue/CatalogueFiles.h"
#include "catalogue/OTAppManager.h"
#include "platform/Desktop.h"
#include "support/UserDefaults.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

// A desktop that knows a folder for the catalogue's files and nothing else.
class BareDesktop final : public Desktop, public SearchPaths
{
public:
    QString applicationSupportFolder(Domain) const override { return _folder.path(); }
    const SearchPaths &searchPaths() const override { return *this; }

private:
    QTemporaryDir _folder;
};

// Names in an order that is neither that of the alphabet nor its reverse; many begin alike.
QString path(int number)
{
    const auto scattered = quint32(number) * 2654435761U;
    return QStringLiteral("/usr/share/applications/org.example.%1.desktop").arg(scattered, 0, 36);
}

// The catalogue with so many applications in eight bunches, every tenth excluded.
class Catalogue final
{
public:
    explicit Catalogue(int count)
    {
        OTAppManager::registerDefaults();
        QList<QStringList> bunches(8);
        QStringList excluded;
        for (int i = 0; i < count; ++i) {
            bunches[i % bunches.size()].append(path(i));
            if (i % 10 == 0) {
                excluded.append(path(i));
            }
        }
        CatalogueFiles files(desktop);
        files.writePathArrays(bunches, QStringLiteral("AllApplications.plist"));
        files.writePaths(excluded, QStringLiteral("ExcludedApplications.plist"));
        manager.rescanAllAppsPrioritizingGroup(-1);
    }

    BareDesktop desktop;
    OTAppManager manager { desktop, OTAppManager::Use::Inspection };
};

void rebuildDependentApps(benchmark::State &state)
{
    Catalogue catalogue(int(state.range(0)));
    for (auto _ : state) {
        catalogue.manager.rebuildDependentApps();
    }
    if (catalogue.manager.includedApps1D().size() != state.range(0) * 9 / 10) {
        state.SkipWithError("the catalogue was not filled");
    }
}
BENCHMARK(rebuildDependentApps)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

// From one order to the other and back, so that the lists are never sorted already.
void sortAllArrays(benchmark::State &state)
{
    Catalogue catalogue(int(state.range(0)));
    int order = 0;
    for (auto _ : state) {
        UserDefaults::standard().setObject(QStringLiteral("groupContentsSortOrder"), order);
        order = 1 - order;
    }
}
BENCHMARK(sortAllArrays)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
