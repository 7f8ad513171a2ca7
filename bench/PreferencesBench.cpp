// The promises about the preferences: painted within 60 ms of the command, and a slider that is
// dragged over a panel of 300 icons waits for no repaint longer than 16 ms.

#include "ShownPanel.h"
#include "ThemedHome.h"
#include "shell/preferences/PreferencesWindow.h"

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

std::unique_ptr<ShownPanel> shown;

std::unique_ptr<PreferencesWindow> makePreferences()
{
    const HotKeyChoice noHotKey { [](int, int) {}, [] { return QString(); },
        [](quint32) { return QStringList(); } };
    return std::make_unique<PreferencesWindow>(noHotKey, shown->desktop->items(),
        PreferenceTabs::UpdateChecks::Offered, shown->panel.get());
}

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
    auto window = makePreferences();
    for (auto _ : state) {
        if (isFirst) {
            window = makePreferences();
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
    const auto window = makePreferences();
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
    waitForIcons();
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
    shown = std::make_unique<ShownPanel>(All1DGroup);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    shown.reset();
    UserDefaults::setStandard(nullptr);
    return 0;
}
