// The promise about running applications: with 300 windows open, whatever happens to one of them is
// dealt with at once. Needs a display with a window manager.

#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "catalogue/files/ScanFolders.h"
#include "icons/IconLoader.h"
#include "platform/freedesktop/FreedesktopDesktop.h"
#include "support/UserDefaults.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <benchmark/benchmark.h>
#include <cstdio>
#include <ctime>
#include <memory>
#include <vector>

namespace {

constexpr int AppCount = 100;
constexpr int WindowsPerApp = 3;
constexpr int Patience = 1000; // milliseconds

// Windows of one class, shown by another process, which ends with this.
class ShownWindows final
{
public:
    ShownWindows(int count, const QString &className)
    {
        _process.start(QStringLiteral(STRANGE_WINDOWS), { QString::number(count), className });
        _process.waitForStarted();
    }
    ~ShownWindows()
    {
        close();
        _process.waitForFinished();
    }
    void rename(const QString &className) { _process.write(className.toLatin1() + '\n'); }
    void close() { _process.closeWriteChannel(); }

private:
    QProcess _process;
};

QString className(int number)
{
    return QStringLiteral("Strange%1").arg(number);
}

double cpuMilliseconds()
{
    timespec time {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

// Work of the main thread until something is the case; the longest turn of the event loop.
template <typename Condition> double workUntil(Condition isReached, double *longestTurn)
{
    QTimer patience;
    patience.start(Patience);
    const double start = cpuMilliseconds();
    while (!isReached()) {
        const double turnStart = cpuMilliseconds();
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        *longestTurn = qMax(*longestTurn, cpuMilliseconds() - turnStart);
    }
    return cpuMilliseconds() - start;
}

// One desktop with its windows for all measurements.
class Session final
{
public:
    Session()
    {
        OTAppManager::registerDefaults();
        ScanFolders::registerDefaults(UserDefaults::standard(), desktop->searchPaths());
        for (int i = 0; i < AppCount; ++i) {
            windows.push_back(std::make_unique<ShownWindows>(WindowsPerApp, className(i)));
        }
        manager = std::make_unique<OTAppManager>(*desktop, OTAppManager::Use::Preview);
        manager->rescanAllAppsPrioritizingGroup(RunningGroup);
        double longest = 0;
        workUntil([&] { return areRunning(AppCount); }, &longest);
    }

    bool areRunning(qsizetype count) const
    {
        return manager->runningApps().size() == count
            && IconLoader::sharedIconLoader().pendingCount() == 0;
    }

    std::unique_ptr<Desktop> desktop = makeFreedesktopDesktop();
    std::vector<std::unique_ptr<ShownWindows>> windows;
    std::unique_ptr<OTAppManager> manager;
};

std::unique_ptr<Session> session;

void launchAndTerminate(benchmark::State &state)
{
    double longest = 0;
    for (auto _ : state) {
        ShownWindows newcomer(1, className(AppCount));
        double work = workUntil([] { return session->areRunning(AppCount + 1); }, &longest);
        newcomer.close();
        work += workUntil([] { return session->areRunning(AppCount); }, &longest);
        state.SetIterationTime(work / 1e3);
    }
    state.counters["longest_turn_ms"] = longest;
}
BENCHMARK(launchAndTerminate)->Unit(benchmark::kMillisecond)->Iterations(10)->UseManualTime();

void changeOfIdentity(benchmark::State &state)
{
    ShownWindows changing(1, className(AppCount));
    double longest = 0;
    workUntil([] { return session->areRunning(AppCount + 1); }, &longest);
    longest = 0;
    for (auto _ : state) {
        changing.rename(QStringLiteral("Nobody"));
        double work = workUntil([] { return session->areRunning(AppCount); }, &longest);
        changing.rename(className(AppCount));
        work += workUntil([] { return session->areRunning(AppCount + 1); }, &longest);
        state.SetIterationTime(work / 1e3);
    }
    state.counters["longest_turn_ms"] = longest;
    changing.close();
    workUntil([] { return session->areRunning(AppCount); }, &longest);
}
BENCHMARK(changeOfIdentity)->Unit(benchmark::kMillisecond)->Iterations(20)->UseManualTime();

void switchFront(benchmark::State &state)
{
    double longest = 0;
    qsizetype next = 0;
    for (auto _ : state) {
        const AppRef app = session->manager->runningApps()[++next % AppCount];
        app->activate();
        const auto isInFront = [&] {
            const AppRef active = session->manager->activeApp();
            return active && active->path() == app->path();
        };
        state.SetIterationTime(workUntil(isInFront, &longest) / 1e3);
    }
    state.counters["longest_turn_ms"] = longest;
}
BENCHMARK(switchFront)->Unit(benchmark::kMillisecond)->Iterations(50)->UseManualTime();

// From nothing: connecting, reading the entries and the windows.
void lookAround(benchmark::State &state)
{
    for (auto _ : state) {
        const std::unique_ptr<Desktop> desktop = makeFreedesktopDesktop();
        benchmark::DoNotOptimize(desktop->runningApplications().launchedApplications().size());
    }
}
BENCHMARK(lookAround)->Unit(benchmark::kMillisecond);

bool writeEntries(const QDir &home)
{
    home.mkpath(QStringLiteral("applications"));
    for (int i = 0; i <= AppCount; ++i) {
        QFile file(home.filePath(QStringLiteral("applications/strange%1.desktop").arg(i)));
        if (!file.open(QIODevice::WriteOnly)) {
            return false;
        }
        file.write("[Desktop Entry]\nType=Application\nExec=/bin/true\nName=Strange\nIcon=xterm\n"
                   "StartupWMClass="
            + className(i).toLatin1() + '\n');
    }
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    const QTemporaryDir home;
    if (qEnvironmentVariableIsEmpty("DISPLAY") || !writeEntries(QDir(home.path()))) {
        std::fputs("RunningWindowsBench: needs a display and a folder to write to\n", stderr);
        return 1;
    }
    qputenv("XDG_DATA_HOME", QFile::encodeName(home.path()));
    const QGuiApplication application(argc, argv);
    UserDefaults defaults;
    UserDefaults::setStandard(&defaults);
    session = std::make_unique<Session>();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    session.reset();
    UserDefaults::setStandard(nullptr);
    return 0;
}
