// The promises about looking by colour, with 1,000 icons on the screen in the order by colour: the
// window of hues follows the pointer within a frame and repaints what it lights or dims, the bar
// costs the first frame next to nothing, and a letter of a colour's name is not slower than any
// other.

#include "ShownPanel.h"
#include "ThemedHome.h"
#include "shell/selector/HueBar.h"

#include <QApplication>
#include <QKeyEvent>

#include <benchmark/benchmark.h>
#include <cstdio>

namespace {

constexpr int EntryCount = 1000;

std::unique_ptr<ShownPanel> shown;

// From one end to the other in steps of a few points.
void moveWindow(benchmark::State &state)
{
    HueBar &bar = shown->panel->hueBar();
    qsizetype index = 0;
    for (auto _ : state) {
        index = (index + 17) % bar.strip().count();
        bar.moveTo(index);
        settle();
    }
    bar.leave();
    settle();
}
BENCHMARK(moveWindow)->Unit(benchmark::kMillisecond);

// As the first frame does, or one after another icon: the colours are gathered, sorted and painted.
void gatherAndPaint(benchmark::State &state)
{
    HueBar &bar = shown->panel->hueBar();
    for (auto _ : state) {
        Q_EMIT shown->manager->didChange(QStringLiteral("includedApps1D"));
        bar.repaint();
    }
}
BENCHMARK(gatherAndPaint)->Unit(benchmark::kMillisecond);

void paint(benchmark::State &state)
{
    for (auto _ : state) {
        shown->panel->hueBar().repaint();
    }
}
BENCHMARK(paint)->Unit(benchmark::kMillisecond);

// The last letter of a word that no name has: a colour's, and another one.
void typeWord(benchmark::State &state)
{
    const QString word = state.range(0) != 0 ? QStringLiteral("blue") : QStringLiteral("blux");
    OTIconView &grid = shown->panel->iconView();
    const QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, {});
    for (auto _ : state) {
        state.PauseTiming();
        grid.keyPressed(escape);
        grid.textCommitted(word.chopped(1));
        settle();
        state.ResumeTiming();
        grid.textCommitted(word.right(1));
        settle();
    }
    grid.keyPressed(escape);
    settle();
}
BENCHMARK(typeWord)->ArgName("is_color")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    const ThemedHome home(EntryCount);
    if (!home.isWritten()) {
        std::fputs("HueBarBench: the Papirus theme is not installed\n", stderr);
        return 1;
    }
    const QApplication application(argc, argv);
    UserDefaults defaults;
    UserDefaults::setStandard(&defaults);
    defaults.setObject(QStringLiteral("groupContentsSortOrder"), 2);
    shown = std::make_unique<ShownPanel>(Included1DGroup);
    shown->manager->sortAllArrays();
    settle();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    shown.reset();
    UserDefaults::setStandard(nullptr);
    return 0;
}
