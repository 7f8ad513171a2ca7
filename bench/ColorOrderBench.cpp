// The promises about the order by colour, with 1,000 applications on the screen: after a change of
// a preference they are judged and sorted again at once, and while they are measured again the main
// thread stays free.

#include "ThemedHome.h"
#include "catalogue/OTAppManager.h"
#include "catalogue/files/ScanFolders.h"
#include "grid/GridHost.h"
#include "grid/OTIconView.h"
#include "icons/IconLoader.h"
#include "platform/freedesktop/FreedesktopDesktop.h"
#include "support/UserDefaults.h"

#include <QApplication>
#include <QElapsedTimer>

#include <benchmark/benchmark.h>

namespace {

constexpr int EntryCount = 1000;

class LargeHost : public GridHost
{
public:
    QSizeF maxIconViewSize() const override { return { 1888, 1008 }; }
};

double milliseconds(const QElapsedTimer &timer)
{
    return double(timer.nsecsElapsed()) / 1e6;
}

// The longest turn of the event loop until no icon is on its way.
double longestTurn()
{
    double longest = 0;
    QElapsedTimer turn;
    do {
        turn.start();
        QCoreApplication::processEvents();
        longest = qMax(longest, milliseconds(turn));
    } while (IconLoader::sharedIconLoader().pendingCount() > 0);
    return longest;
}

class Shown final
{
public:
    Shown()
    {
        OTAppManager::registerDefaults();
        OTIconView::registerDefaults();
        ScanFolders::registerDefaults(UserDefaults::standard(), desktop->searchPaths());
        set("groupContentsSortOrder", 2);
        manager = std::make_unique<OTAppManager>(*desktop, OTAppManager::Use::Preview);
        view = std::make_unique<OTIconView>(*manager, host);
        manager->rescanAllAppsPrioritizingGroup(All1DGroup);
        view->setGroupToShow(All1DGroup);
        view->resize(view->viewSize().toSize());
        view->show();
        longestTurn();
    }

    static void set(const char *key, const QVariant &value)
    {
        UserDefaults::standard().setObject(QString::fromLatin1(key), value);
    }

    LargeHost host;
    std::unique_ptr<Desktop> desktop = makeFreedesktopDesktop();
    std::unique_ptr<OTAppManager> manager;
    std::unique_ptr<OTIconView> view;
};

void judgeAgain(benchmark::State &state)
{
    Shown shown;
    double wrapHue = 0;
    double sorting = 0;
    for (auto _ : state) {
        wrapHue = 180 - wrapHue;
        Shown::set("colorSortWrapHue", wrapHue);
        QElapsedTimer sort;
        sort.start();
        shown.manager->sortAllArrays();
        sorting = qMax(sorting, milliseconds(sort));
    }
    state.counters["longest_sort_ms"] = sorting;
}
BENCHMARK(judgeAgain)->Unit(benchmark::kMillisecond)->UseRealTime();

void measureAgain(benchmark::State &state)
{
    const Shown shown;
    double minSaturation = 0.14;
    double longest = 0;
    for (auto _ : state) {
        minSaturation = 0.34 - minSaturation;
        QElapsedTimer asking;
        asking.start();
        Shown::set("colorSortMinSaturation", minSaturation);
        longest = qMax(longest, milliseconds(asking));
        longest = qMax(longest, longestTurn());
    }
    state.counters["longest_turn_ms"] = longest;
}
BENCHMARK(measureAgain)->Unit(benchmark::kMillisecond)->Iterations(10)->UseRealTime();

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const ThemedHome home(EntryCount);
    if (!home.isWritten()) {
        return 1;
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
