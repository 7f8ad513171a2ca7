// The promises about what floats above the icons: a typed key is on the screen hardly later than it
// would be without the bubble, the pointer's way from icon to icon repaints two cells and two
// names, and a step of the fade repaints the bubble alone.

#include "ShownPanel.h"
#include "ThemedHome.h"
#include "shell/selector/OTIconOverlayView.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPaintEvent>

#include <benchmark/benchmark.h>
#include <cstdio>

namespace {

constexpr int EntryCount = 200;

// What was asked to be painted of a widget, in pixels.
class PaintedArea : public QObject
{
public:
    qint64 area = 0;
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            for (const QRect &rect : static_cast<QPaintEvent *>(event)->region()) {
                area += qint64(rect.width()) * rect.height();
            }
        }
        return false;
    }
};

struct WatchedPanel final : ShownPanel
{
    WatchedPanel()
        : ShownPanel(IncludedGroup)
    {
        panel->overlay().installEventFilter(&painted);
    }
    PaintedArea painted;
};

std::unique_ptr<WatchedPanel> shown;

// Of the whole panel, since the grid is drawn anew.
void typeKey(benchmark::State &state)
{
    shown->panel->overlay().setVisible(state.range(0) != 0);
    const QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, {});
    int count = 0;
    for (auto _ : state) {
        const auto letter = QChar(u'a' + count % 26);
        const QKeyEvent key(QEvent::KeyPress, Qt::Key_A + count % 26, {}, QString(letter));
        shown->panel->iconView().keyPressed(key);
        settle();
        if (++count % 8 == 0) {
            state.PauseTiming();
            shown->panel->iconView().keyPressed(escape);
            settle();
            state.ResumeTiming();
        }
    }
    shown->panel->iconView().keyPressed(escape);
    shown->panel->overlay().show();
    settle();
}
BENCHMARK(typeKey)->ArgName("with_overlay")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void movePointer(benchmark::State &state)
{
    shown->panel->overlay().setVisible(state.range(0) != 0);
    OTIconView &grid = shown->panel->iconView();
    const QList<Coords> cells = grid.occupiedCells();
    qsizetype next = 0;
    settle();
    shown->painted.area = 0;
    for (auto _ : state) {
        grid.selectCoords(cells[++next % cells.size()]);
        settle();
    }
    const auto cell = double(grid.gridLayout().cellWidth());
    state.counters["cells_painted"] = benchmark::Counter(
        double(shown->painted.area) / cell / cell, benchmark::Counter::kAvgIterations);
    grid.selectCoords({});
    shown->panel->overlay().show();
    settle();
}
BENCHMARK(movePointer)->ArgName("with_overlay")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void fadeStep(benchmark::State &state)
{
    OTIconView &grid = shown->panel->iconView();
    OTIconOverlayView &overlay = shown->panel->overlay();
    grid.keyPressed(QKeyEvent(QEvent::KeyPress, Qt::Key_G, {}, QStringLiteral("g")));
    overlay.startFilterStringAnimation();
    auto *const fade = overlay.findChild<KRViewAnimation *>();
    fade->pause();
    settle();
    shown->painted.area = 0;
    int time = 0;
    for (auto _ : state) {
        time = (time + 17) % 400;
        fade->setCurrentTime(time);
        settle();
    }
    const QSize bubble = overlay.filterBubble().rect().size();
    state.counters["bubbles_painted"] =
        benchmark::Counter(double(shown->painted.area) / bubble.width() / bubble.height(),
            benchmark::Counter::kAvgIterations);
    overlay.clearFilterString();
}
BENCHMARK(fadeStep)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    const ThemedHome home(EntryCount);
    if (!home.isWritten()) {
        std::fputs("OverlayBench: the Papirus theme is not installed\n", stderr);
        return 1;
    }
    const QApplication application(argc, argv);
    UserDefaults defaults;
    UserDefaults::setStandard(&defaults);
    shown = std::make_unique<WatchedPanel>();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    shown.reset();
    UserDefaults::setStandard(nullptr);
    return 0;
}
