// The promises about the preferences: painted within 60 ms of the command, and a slider that is
// dragged over a panel of 300 icons waits for no repaint longer than 16 ms.

#include "ThemedHome.h"
#include "catalogue/OTAppManager.h"
#include "catalogue/files/ScanFolders.h"
#include "grid/OTIconView.h"
#include "icons/IconLoader.h"
#include "platform/freedesktop/FreedesktopDesktop.h"
#include "shell/OTController.h"
#include "shell/panel/OTWindow.h"
#include "shell/preferences/PreferencesWindow.h"
#include "support/UserDefaults.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QSlider>
#include <QTabWidget>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <ctime>

namespace {

constexpr int EntryCount = 300;
constexpr QSizeF LargestGrid(1248, 768);

void settle()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

class ShownPanel final
{
public:
    ShownPanel()
    {
        OTAppManager::registerDefaults();
        OTIconView::registerDefaults();
        OTController::registerDefaults();
        ScanFolders::registerDefaults(UserDefaults::standard(), desktop->searchPaths());
        manager = std::make_unique<OTAppManager>(*desktop, OTAppManager::Use::Preview);
        manager->rescanAllAppsPrioritizingGroup(All1DGroup);
        panel = std::make_unique<OTWindow>(*manager, *desktop, LargestGrid);
        panel->iconView().setGroupToShow(All1DGroup);
        panel->show({});
        waitForIcons();
    }
    std::unique_ptr<PreferencesWindow> makePreferences() const
    {
        const HotKeyChoice noHotKey { [](int, int) {}, [] { return QString(); },
            [](quint32) { return QStringList(); } };
        return std::make_unique<PreferencesWindow>(noHotKey, desktop->items(), panel.get());
    }
    static void waitForIcons()
    {
        do {
            QCoreApplication::processEvents();
        } while (IconLoader::sharedIconLoader().pendingCount() > 0);
        settle();
    }

    std::unique_ptr<Desktop> desktop = makeFreedesktopDesktop();
    std::unique_ptr<OTAppManager> manager;
    std::unique_ptr<OTWindow> panel;
};

std::unique_ptr<ShownPanel> shown;

// What this thread has worked, in nanoseconds: what else the machine does makes it no longer.
qint64 workTime()
{
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return time.tv_sec * 1000000000LL + time.tv_nsec;
}

// The first time the window is made, later it is shown again.
void open(benchmark::State &state)
{
    const bool isFirst = state.range(0) != 0;
    auto window = shown->makePreferences();
    for (auto _ : state) {
        if (isFirst) {
            window = shown->makePreferences();
        }
        window->showUnder(shown->panel->sheetPosition());
        settle();
        state.PauseTiming();
        window->hide();
        settle();
        state.ResumeTiming();
    }
}
BENCHMARK(open)->ArgName("first")->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond);

// Back and forth over the whole slider, a step at a time.
void drag(benchmark::State &state)
{
    const QString names[] = { QStringLiteral("Largest icon"),
        QStringLiteral("Opacity of the panel") };
    const auto window = shown->makePreferences();
    window->showUnder(shown->panel->sheetPosition());
    window->findChild<QTabWidget *>()->setCurrentIndex(1);
    settle();
    const QList<QSlider *> sliders = window->findChildren<QSlider *>();
    QSlider *const slider = *std::find_if(sliders.begin(), sliders.end(),
        [&](const QSlider *one) { return one->accessibleName() == names[state.range(0)]; });
    int step = 1;
    qint64 longest = 0;
    qint64 longestAtWork = 0;
    QElapsedTimer timer;
    for (auto _ : state) {
        timer.start();
        const qint64 begun = workTime();
        if (slider->value() == slider->maximum() || slider->value() == slider->minimum()) {
            step = slider->value() == slider->maximum() ? -1 : 1;
        }
        slider->setValue(slider->value() + step);
        settle();
        longest = std::max(longest, timer.nsecsElapsed());
        longestAtWork = std::max(longestAtWork, workTime() - begun);
    }
    state.counters["longest_ms"] = double(longest) / 1e6;
    state.counters["longest_cpu_ms"] = double(longestAtWork) / 1e6;
    UserDefaults::standard().removeObject(QStringLiteral("maximumIconSize"));
    UserDefaults::standard().removeObject(QStringLiteral("windowAlpha"));
    ShownPanel::waitForIcons();
}
BENCHMARK(drag)
    ->ArgName("icon_size_or_opacity")
    ->Arg(0)
    ->Arg(1)
    ->Iterations(400)
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    const ThemedHome home(EntryCount);
    if (!home.isWritten()) {
        std::fputs("PreferencesBench: the Papirus theme is not installed\n", stderr);
        return 1;
    }
    const QApplication application(argc, argv);
    UserDefaults defaults;
    UserDefaults::setStandard(&defaults);
    shown = std::make_unique<ShownPanel>();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    shown.reset();
    UserDefaults::setStandard(nullptr);
    return 0;
}
