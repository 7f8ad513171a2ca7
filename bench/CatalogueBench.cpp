// What happens at each exclusion and each change of the order: dividing the scan result anew and
// sorting every list, with 1,000 and with 10,000 applications. And what a change of the favourites
// costs, with 20 and with 200 of them, down to the disk.

#include "catalogue/OTAppManager.h"
#include "catalogue/files/CatalogueFiles.h"
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
        PathBunches bunches(8);
        QStringList excluded;
        for (int i = 0; i < count; ++i) {
            bunches[i % bunches.size()].append(path(i));
            if (i % 10 == 0) {
                excluded.append(path(i));
            }
        }
        CatalogueFiles files(desktop);
        files.writeAllApps(bunches);
        files.store({ { CatalogueFiles::List::ExcludedApps, { excluded }, {} } });
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

void moveFavourite(benchmark::State &state)
{
    BareDesktop desktop;
    OTAppManager manager(desktop);
    for (int i = 0; i < int(state.range(0)); ++i) {
        manager.moveApp(manager.appForPath(path(i)), UserGroup, i / 10, 0);
    }
    for (auto _ : state) {
        manager.moveApp(manager.userApps1D().last(), User1DGroup, 0, 0);
    }
}
BENCHMARK(moveFavourite)->Arg(20)->Arg(200)->Unit(benchmark::kMillisecond);

// Reading all lists of 1,000 applications, as at a start.
void readCatalogue(benchmark::State &state)
{
    Catalogue catalogue(1000);
    {
        OTAppManager manager(catalogue.desktop);
        for (int i = 0; i < 40; ++i) {
            manager.moveApp(manager.appForPath(path(i)), UserGroup, i / 10, 0);
        }
    }
    for (auto _ : state) {
        OTAppManager manager(catalogue.desktop, OTAppManager::Use::Inspection);
        manager.rescanAllAppsPrioritizingGroup(-1);
    }
}
BENCHMARK(readCatalogue)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
