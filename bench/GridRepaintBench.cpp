// The promises about painting: the pointer going from cell to cell repaints two of them, a drag
// over 1,000 icons what it marks, within 4 ms, and all of 1,000 icons are painted within a frame.

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
#include <QKeyEvent>
#include <QMimeData>
#include <QPaintEvent>

#include <benchmark/benchmark.h>
#include <cstdio>

namespace {

constexpr int EntryCount = 1000;

class LargeHost : public GridHost
{
public:
    QSizeF maxIconViewSize() const override { return { 4000, 4000 }; }
};

// What was asked to be painted, in pixels.
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

class Shown final
{
public:
    Shown()
    {
        OTAppManager::registerDefaults();
        OTIconView::registerDefaults();
        ScanFolders::registerDefaults(UserDefaults::standard(), desktop->searchPaths());
        manager = std::make_unique<OTAppManager>(*desktop, OTAppManager::Use::Preview);
        view = std::make_unique<OTIconView>(*manager, host);
        manager->rescanAllAppsPrioritizingGroup(All1DGroup);
        view->setGroupToShow(All1DGroup);
        view->resize(view->viewSize().toSize());
        view->installEventFilter(&painted);
        view->show();
        do {
            QCoreApplication::processEvents();
        } while (IconLoader::sharedIconLoader().pendingCount() > 0);
        settle();
    }
    static void settle()
    {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }

    LargeHost host;
    PaintedArea painted;
    std::unique_ptr<Desktop> desktop = makeFreedesktopDesktop();
    std::unique_ptr<OTAppManager> manager;
    std::unique_ptr<OTIconView> view;
};

std::unique_ptr<Shown> shown;

void repaintAll(benchmark::State &state)
{
    for (auto _ : state) {
        shown->view->repaint();
    }
    state.counters["icon_width"] = double(shown->view->gridLayout().iconWidth());
}
BENCHMARK(repaintAll)->Unit(benchmark::kMillisecond);

void movePointer(benchmark::State &state)
{
    const QList<Coords> cells = shown->view->occupiedCells();
    qsizetype next = 0;
    shown->painted.area = 0;
    for (auto _ : state) {
        shown->view->selectCoords(cells[++next % cells.size()]);
        Shown::settle();
    }
    const auto cell = double(shown->view->gridLayout().cellWidth());
    state.counters["cells_painted"] = benchmark::Counter(
        double(shown->painted.area) / cell / cell, benchmark::Counter::kAvgIterations);
}
BENCHMARK(movePointer)->Unit(benchmark::kMillisecond);

// From the middle of one place to that of the next: over icons, and for the favourites, which stand
// in bunches of 125, over gaps and the ends of bands too.
void drag(benchmark::State &state, const QMimeData &pasteboard, int group)
{
    OTIconView &view = *shown->view;
    view.setGroupToShow(group);
    view.resize(view.viewSize().toSize());
    Shown::settle();
    const GridLayout &layout = view.gridLayout();
    QList<QPointF> places;
    for (const Coords &cell : view.occupiedCells()) {
        places.append(layout.rectOfCoords(cell).center());
    }
    for (const std::vector<QRectF> &marks : { layout.bunchSpacingRects(), layout.bunchRects() }) {
        for (const QRectF &mark : marks) {
            places.append(mark.center());
            places.append(mark.topLeft() + QPointF(5, 5));
        }
    }
    const auto go = [&](qsizetype step) {
        // Far from one another.
        view.drags().draggingUpdated({ pasteboard, places[step * 37 % places.size()], {} });
        Shown::settle();
    };
    go(0);
    qsizetype step = 0;
    shown->painted.area = 0;
    for (auto _ : state) {
        go(++step);
    }
    const auto cell = double(layout.cellWidth());
    state.counters["cells_painted"] = benchmark::Counter(
        double(shown->painted.area) / cell / cell, benchmark::Counter::kAvgIterations);
    view.drags().draggingExited();
    view.setGroupToShow(All1DGroup);
    view.resize(view.viewSize().toSize());
    Shown::settle();
}

void dragIcon(benchmark::State &state)
{
    if (shown->manager->userApps1D().isEmpty()) {
        const AppList apps = shown->manager->allApps1D();
        for (qsizetype i = 0; i < apps.size(); ++i) {
            shown->manager->moveApp(apps[i], UserGroup, i / 125, apps.size());
        }
    }
    OTDragPayload payload;
    payload.setApp(shown->manager->userApps1D().constFirst());
    QMimeData pasteboard;
    payload.writeTo(pasteboard);
    drag(state, pasteboard, UserGroup);
}
BENCHMARK(dragIcon)->Unit(benchmark::kMillisecond);

void dragFile(benchmark::State &state)
{
    QMimeData pasteboard;
    pasteboard.setUrls({ QUrl(QStringLiteral("file:///etc/hostname")) });
    drag(state, pasteboard, All1DGroup);
}
BENCHMARK(dragFile)->Unit(benchmark::kMillisecond);

// Until the thread has read what the applications can be found by.
void letTypingFindAnything(bool isWanted)
{
    UserDefaults::standard().setObject(QStringLiteral("matchesMoreThanNames"), isWanted);
    QElapsedTimer time;
    for (time.start(); isWanted && time.elapsed() < 3000;) {
        QCoreApplication::processEvents();
    }
}

void typeAndFilter(benchmark::State &state)
{
    letTypingFindAnything(state.range(0) != 0);
    const QKeyEvent letter(QEvent::KeyPress, Qt::Key_E, {}, QStringLiteral("e"));
    const QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, {});
    for (auto _ : state) {
        shown->view->keyPressed(letter);
        Shown::settle();
        state.PauseTiming();
        shown->view->keyPressed(escape);
        Shown::settle();
        state.ResumeTiming();
    }
    letTypingFindAnything(false);
}
BENCHMARK(typeAndFilter)->ArgName("by_anything")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    const ThemedHome home(EntryCount);
    if (!home.isWritten()) {
        std::fputs("GridRepaintBench: the Papirus theme is not installed\n", stderr);
        return 1;
    }
    const QApplication application(argc, argv);
    UserDefaults defaults;
    UserDefaults::setStandard(&defaults);
    shown = std::make_unique<Shown>();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    shown.reset();
    UserDefaults::setStandard(nullptr);
    return 0;
}
