// LaunchProbe [-c] [-d] [-f KEY] [-o FILE.ppm] {-k KEYS | COMMAND...}: times how a launcher comes
// up, from outside, the same way for every launcher.
//
// Starts the command, or presses the keys that summon a program that runs, and prints one line of
// JSON with milliseconds from then on:
//   mapped    until a window comes up
//   complete  with -c: until the screen looks as it looks from then on; an icon that comes later
//             than the others counts
//   first, settled  with -f: from another key, pressed when all is complete, to the first change
//             on the screen and to the last
// and the process it started. With -d it drops the page cache before it starts the command. Keeps
// in the file what the screen then shows. What was started is ended when standard input ends, so
// that its memory can be looked at before.

#include "../Camera.h"
#include "Desk.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

using std::chrono::milliseconds;
using Time = Clock::time_point;

constexpr std::chrono::seconds Patience(20);

// Without a change for the rest the grid is complete, or the filter done. Pictures take the X
// server's time, which a start needs itself.
struct Pace
{
    milliseconds rest;
    milliseconds interval;
};
constexpr Pace StartPace { milliseconds(1200), milliseconds(8) };
constexpr Pace SummonPace { milliseconds(1200), milliseconds(2) };
constexpr Pace KeyPace { milliseconds(500), milliseconds(2) };

// Each second pixel of each second row is looked at; so few of these are a caret that blinks.
constexpr int Step = 2;
constexpr int MostAlike = 24;
// Of the processor; a program at rest uses less for its timers.
constexpr milliseconds Work(30);

struct Options
{
    bool isComplete = false;
    bool isCold = false;
    std::string summonKeys {};
    std::string filterKey {};
    std::string picture {};
    char **command = nullptr;
};

struct Changes
{
    int count = 0;
    Time first {};
    Time last {};
};

bool complain(const std::string &what)
{
    std::fprintf(stderr, "LaunchProbe: %s\n", what.c_str());
    return false;
}

bool looksAlike(const Camera::Picture &one, const Camera::Picture &other)
{
    int different = 0;
    for (size_t i = 0; i < one.size(); ++i) {
        different += one[i] == other[i] ? 0 : 1;
    }
    return different <= MostAlike;
}

// The processor's time that the process has used; zero when there is none.
milliseconds processorTime(pid_t process)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string text;
    std::getline(file, text);
    // Behind the name, which may hold anything, eleven fields stand before the two that count.
    std::istringstream fields(text.substr(std::min(text.size(), text.rfind(')') + 1)));
    std::string skipped;
    for (int i = 0; i < 11; ++i) {
        fields >> skipped;
    }
    long user = 0;
    long kernel = 0;
    fields >> user >> kernel;
    return milliseconds((user + kernel) * 1000 / sysconf(_SC_CLK_TCK));
}

// Until nothing has changed for the rest, counted from the start or the last change, and the
// process has not worked for as long: on a busy machine a program that loads its icons may not get
// far in that time. Nothing when the screen keeps changing.
std::optional<Changes> watch(Camera &camera, Time start, const Pace &pace, pid_t process)
{
    Camera::Picture before = camera.thinned(Step);
    Changes changes { 0, start, start };
    Time worked = start;
    milliseconds used = processorTime(process);
    Time next = Clock::now();
    while (next - std::max(changes.last, worked) < pace.rest) {
        const Time asked = Clock::now();
        if (asked - start > Patience) {
            complain("the screen keeps changing, or the program working");
            return {};
        }
        camera.take();
        const Time seen = asked + (Clock::now() - asked) / 2;
        Camera::Picture now = camera.thinned(Step);
        if (!looksAlike(now, before)) {
            before = std::move(now);
            changes.first = changes.count++ == 0 ? seen : changes.first;
            changes.last = seen;
        }
        const milliseconds usedNow = processorTime(process);
        if (usedNow - used >= Work) {
            used = usedNow;
            worked = seen;
        }
        next = std::max(next + pace.interval, Clock::now());
        std::this_thread::sleep_until(next);
    }
    return changes;
}

bool dropPageCache()
{
    sync();
    const int file = open("/proc/sys/vm/drop_caches", O_WRONLY | O_CLOEXEC);
    const bool isDropped = file >= 0 && write(file, "3", 1) == 1;
    close(file);
    return isDropped || complain("cannot drop the page cache");
}

// In a session of its own, which is ended as a whole.
pid_t start(char **command)
{
    const pid_t child = fork();
    if (child == 0) {
        setsid();
        const int nothing = open("/dev/null", O_RDWR);
        for (const int stream : { STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO }) {
            dup2(nothing, stream);
        }
        execvp(command[0], command);
        _exit(127);
    }
    return child;
}

void end(pid_t child)
{
    for (const int signal : { SIGTERM, SIGKILL }) {
        kill(-child, signal);
        for (int tries = 0; tries < 200; ++tries) {
            if (waitpid(child, nullptr, WNOHANG) == child) {
                return;
            }
            std::this_thread::sleep_for(milliseconds(10));
        }
    }
}

bool keep(const Camera &camera, const std::string &path)
{
    std::FILE *const file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) {
        return complain("cannot write " + path);
    }
    std::fprintf(file, "P6 %d %d 255\n", camera.width(), camera.height());
    for (const uint32_t pixel : camera.picture()) {
        for (const int shift : { 16, 8, 0 }) {
            std::fputc(int(pixel >> shift & 0xff), file);
        }
    }
    return std::fclose(file) == 0 || complain("cannot write " + path);
}

void print(const char *name, Clock::duration time)
{
    std::printf("\"%s\": %.2f, ", name, std::chrono::duration<double, std::milli>(time).count());
}

// What it prints is milliseconds. The camera holds a picture from before the start.
bool measure(const Options &options, Desk &desk, Camera &camera, Time started, pid_t child)
{
    const std::optional<Time> mapped = desk.awaitWindow(started + Patience);
    if (!mapped) {
        return complain("no window came up");
    }
    print("mapped", *mapped - started);
    if (!options.isComplete && options.filterKey.empty()) {
        return true;
    }
    const std::optional<Changes> shown =
        watch(camera, *mapped, options.summonKeys.empty() ? StartPace : SummonPace, child);
    if (!shown) {
        return false;
    }
    print("complete", shown->last - started);
    if (!options.filterKey.empty()) {
        const auto keys = desk.keys(options.filterKey);
        const Time pressed = Clock::now();
        desk.press(keys);
        const std::optional<Changes> filtered = watch(camera, pressed, KeyPace, child);
        if (!filtered || filtered->count == 0) {
            return complain("the key did not filter");
        }
        print("first", filtered->first - pressed);
        print("settled", filtered->last - pressed);
    }
    return options.picture.empty() || keep(camera, options.picture);
}

Options optionsOf(int argc, char **argv)
{
    Options options;
    for (int option = 0; (option = getopt(argc, argv, "+cdf:k:o:")) != -1;) {
        switch (option) {
        case 'c':
            options.isComplete = true;
            break;
        case 'd':
            options.isCold = true;
            break;
        case 'f':
            options.filterKey = optarg;
            break;
        case 'k':
            options.summonKeys = optarg;
            break;
        case 'o':
            options.picture = optarg;
            break;
        default:
            std::exit(2);
        }
    }
    options.command = argv + optind;
    if (options.summonKeys.empty() == (optind == argc)) {
        complain("usage: LaunchProbe [-c] [-d] [-f KEY] [-o FILE.ppm] {-k KEYS | COMMAND...}");
        std::exit(2);
    }
    return options;
}

} // namespace

int main(int argc, char *argv[])
{
    const Options options = optionsOf(argc, argv);
    Desk desk;
    Camera camera;
    const auto keys = desk.keys(options.summonKeys);
    if (options.isCold && !dropPageCache()) {
        return 1;
    }
    const Time started = Clock::now();
    pid_t child = 0;
    if (options.summonKeys.empty()) {
        child = start(options.command);
    } else {
        desk.press(keys);
    }
    std::printf("{");
    const bool isMeasured = measure(options, desk, camera, started, child);
    std::printf("\"process\": %d}\n", int(child));
    std::fflush(stdout);
    while (isMeasured && std::getchar() != EOF) { }
    if (child > 0) {
        end(child);
    }
    return isMeasured ? 0 : 1;
}
