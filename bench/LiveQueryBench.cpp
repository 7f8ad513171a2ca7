// What was saved is compared at the start with 2,000 entries on the disk within 40 ms, on another
// thread, of which the main thread notices nothing. And 20,000 events in the folders, which are
// 10,000 entries that come, keep no turn of the event loop longer than 8 ms.

#include "catalogue/OTAppManager.h"
#include "catalogue/files/ScanFolders.h"
#include "icons/IconLoader.h"
#include "platform/freedesktop/FreedesktopDesktop.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>

namespace {

constexpr int EntryCount = 2000;
constexpr int ComingCount = 10000;

// A home of its own with so many entries.
class Home final
{
public:
    Home()
    {
        QDir(_folder.path()).mkpath(QStringLiteral("applications"));
        qputenv("XDG_DATA_HOME", QFile::encodeName(_folder.path()));
        qputenv("XDG_DATA_DIRS", "/nowhere");
        add(0, EntryCount);
    }

    void add(int first, int count) const
    {
        for (int i = first; i < first + count; ++i) {
            QFile file(path(i));
            const QByteArray text = "[Desktop Entry]\nType=Application\nExec=/bin/true\nName=Entry "
                + QByteArray::number(i) + '\n';
            if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size()) {
                qFatal("cannot write %s", qPrintable(file.fileName()));
            }
        }
    }
    void remove(int first, int count) const
    {
        for (int i = first; i < first + count; ++i) {
            QFile::remove(path(i));
        }
    }

private:
    QString path(int number) const
    {
        return _folder.filePath(QStringLiteral("applications/entry%1.desktop").arg(number));
    }

    QTemporaryDir _folder;
};

// The program as it is once its panel has been drawn.
class Started final
{
public:
    Started()
    {
        NotificationCenter::setDefaultCenter(&_center);
        UserDefaults::setStandard(&_defaults);
        OTAppManager::registerDefaults();
        ScanFolders::registerDefaults(_defaults, _desktop->searchPaths());
        _manager = std::make_unique<OTAppManager>(*_desktop);
        _manager->rescanAllAppsPrioritizingGroup(-1);
        while (IconLoader::sharedIconLoader().pendingCount() > 0) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }
    ~Started()
    {
        _manager.reset();
        UserDefaults::setStandard(nullptr);
        NotificationCenter::setDefaultCenter(nullptr);
    }
    Q_DISABLE_COPY_MOVE(Started)

    void finishLaunching() { Q_EMIT _center.applicationDidFinishLaunching(); }
    LiveQuery &query() { return _desktop->liveQuery(); }

private:
    NotificationCenter _center;
    UserDefaults _defaults;
    std::unique_ptr<Desktop> _desktop = makeFreedesktopDesktop();
    std::unique_ptr<OTAppManager> _manager;
};

// The time until the one entry that is not saved is told, and that of the main thread.
void compareAtStart(benchmark::State &state)
{
    const Home home;
    // Saves what is there.
    std::make_unique<Started>();
    home.add(EntryCount, 1);
    double mainThread = 0;
    for (auto _ : state) {
        Started program;
        bool isTold = false;
        QObject::connect(&program.query(), &LiveQuery::didUpdate, qApp,
            [&](const LiveQuery::Update &update) { isTold = update.added.size() == 1; });
        QElapsedTimer time;
        time.start();
        program.finishLaunching();
        mainThread = std::max(mainThread, double(time.nsecsElapsed()) / 1e6);
        while (!isTold) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        state.SetIterationTime(double(time.nsecsElapsed()) / 1e9);
    }
    state.counters["mainThreadMs"] = mainThread;
}
BENCHMARK(compareAtStart)->UseManualTime()->Unit(benchmark::kMillisecond);

// The longest turn of the main thread while all of them come.
void takeManyEvents(benchmark::State &state)
{
    const Home home;
    for (auto _ : state) {
        Started program;
        qsizetype told = 0;
        QObject::connect(&program.query(), &LiveQuery::didUpdate, qApp,
            [&](const LiveQuery::Update &update) { told += update.added.size(); });
        program.finishLaunching();
        home.add(EntryCount, ComingCount);
        QElapsedTimer all;
        all.start();
        qint64 longest = 0;
        while (told < ComingCount) {
            QElapsedTimer turn;
            turn.start();
            QCoreApplication::processEvents();
            longest = std::max(longest, turn.nsecsElapsed());
        }
        state.SetIterationTime(double(longest) / 1e9);
        state.counters["untilAllToldMs"] = double(all.elapsed());
        home.remove(EntryCount, ComingCount);
    }
}
BENCHMARK(takeManyEvents)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    // That the entries have no icons.
    QLoggingCategory::setFilterRules(QStringLiteral("ortu.icons.warning=false"));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
