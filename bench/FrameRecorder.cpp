// FrameRecorder [-b] [-r RATE] [-o FOLDER] COUNT COMMAND...: looks for pictures on the screen that
// belong neither before a change nor after it.
//
// Runs the commands in turn, COUNT times in all, and meanwhile takes RATE pictures a second of the
// whole screen, each in one request, so that none is torn by the recorder itself. The pictures
// before and after a change are those that last. Every other one is wrong; it is counted, told with
// what is wrong with it, and kept as a PNG in the folder. A pixel of it is strange when it is not
// between what it was and what it becomes, in each of its colours: a fade has none, and with -b a
// picture without any is right.

#include "Camera.h"

#include <QDir>
#include <QImage>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using Picture = Camera::Picture;

// A change is over when nothing has changed for so long.
constexpr std::chrono::milliseconds Rest(700);
// A command that changes nothing within this time never will.
constexpr std::chrono::seconds Patience(10);
// Of a colour of a pixel, for what is rounded differently.
constexpr int Tolerance = 3;
// Different pictures of one change that are kept.
constexpr size_t MostKept = 60;

[[noreturn]] void fail(const char *what)
{
    std::fprintf(stderr, "FrameRecorder: %s\n", what);
    std::exit(2);
}

// What was seen for a while.
struct Look
{
    Picture picture;
    Clock::duration since {};
    int frames = 0;
};

struct Difference
{
    // Pixels that are neither as before nor as after, and those of them that are strange.
    int others = 0;
    int strange = 0;
    QRect bounds {};
};

bool isBetween(quint32 color, quint32 before, quint32 after)
{
    for (int shift = 0; shift < 24; shift += 8) {
        const auto part = [shift](quint32 pixel) { return int(pixel >> shift & 0xff); };
        const auto [low, high] = std::minmax({ part(before), part(after) });
        if (part(color) < low - Tolerance || part(color) > high + Tolerance) {
            return false;
        }
    }
    return true;
}

Difference difference(
    const Picture &picture, const Picture &before, const Picture &after, const QSize &size)
{
    Difference difference;
    for (size_t i = 0; i < picture.size(); ++i) {
        const quint32 color = picture[i];
        const quint32 old = before[i];
        const quint32 next = after[i];
        if (color == old || color == next) {
            continue;
        }
        ++difference.others;
        if (!isBetween(color, old, next)) {
            ++difference.strange;
            difference.bounds |= QRect(int(i) % size.width(), int(i) / size.width(), 1, 1);
        }
    }
    return difference;
}

class Recorder final
{
public:
    enum class Blends { Wrong, Right };

    Recorder(int rate, const QString &folder, Blends blends)
        : _blends(blends)
        , _interval(std::chrono::microseconds(1000000 / rate))
        , _folder(folder)
    {
        waitForRest();
    }

    // Adds to the counts.
    void record(const std::string &command)
    {
        ++_changes;
        waitForRest();
        std::vector<Look> looks { Look { _camera.picture() } };
        // At another time between two pictures for each change.
        std::this_thread::sleep_for(_interval * (_changes * 7 % 10) / 10);
        const Clock::time_point start = Clock::now();
        if (std::system((command + " &").c_str()) != 0) {
            fail("cannot run a command");
        }
        Clock::time_point changed = start;
        while (Clock::now() - changed < (looks.size() > 1 ? Clock::duration(Rest) : Patience)) {
            nextFrame();
            if (_camera.differsFrom(looks.back().picture)) {
                changed = Clock::now();
                looks.push_back({ _camera.picture(), changed - start });
            }
            ++looks.back().frames;
        }
        judge(looks);
    }

    void report() const
    {
        std::printf("%d changes, %d with wrong frames; %d wrong frames of %d while changing\n",
            _changes, _wrongChanges, _wrong, _seen);
    }

private:
    QSize size() const { return { _camera.width(), _camera.height() }; }

    void nextFrame()
    {
        _next = std::max(_next + _interval, Clock::now());
        std::this_thread::sleep_until(_next);
        _camera.take();
    }

    void waitForRest()
    {
        Picture last;
        Clock::time_point changed = Clock::now();
        while (Clock::now() - changed < Rest) {
            nextFrame();
            if (_camera.differsFrom(last)) {
                last = _camera.picture();
                changed = Clock::now();
            }
        }
    }

    void judge(const std::vector<Look> &looks)
    {
        if (looks.size() < 2) {
            std::printf("%d: nothing changed\n", _changes);
            return;
        }
        const Picture &before = looks.front().picture;
        const Picture &after = looks.back().picture;
        bool isWrong = false;
        for (size_t i = 1; i + 1 < looks.size(); ++i) {
            const Look &look = looks[i];
            _seen += look.frames;
            if (look.picture == before || look.picture == after) {
                continue;
            }
            const Difference found = difference(look.picture, before, after, size());
            if (_blends == Blends::Right && found.strange == 0) {
                continue;
            }
            isWrong = true;
            _wrong += look.frames;
            std::printf(
                "%d: %.1f ms after, %d frames: %d other pixels, %d strange in %dx%d+%d+%d\n",
                _changes, std::chrono::duration<double, std::milli>(look.since).count(),
                look.frames, found.others, found.strange, found.bounds.width(),
                found.bounds.height(), found.bounds.x(), found.bounds.y());
            keep(look.picture, i);
        }
        _wrongChanges += isWrong ? 1 : 0;
        if (isWrong) {
            keep(before, 0);
            keep(after, looks.size() - 1);
        }
        std::fflush(stdout);
    }

    void keep(const Picture &picture, size_t number) const
    {
        if (_folder.isEmpty() || number > MostKept) {
            return;
        }
        const QImage image(reinterpret_cast<const uchar *>(picture.data()), _camera.width(),
            _camera.height(), QImage::Format_RGB32);
        image.save(QStringLiteral("%1/%2-%3.png")
                       .arg(_folder)
                       .arg(_changes, 3, 10, QLatin1Char('0'))
                       .arg(number, 3, 10, QLatin1Char('0')));
    }

    Camera _camera;
    Blends _blends;
    Clock::duration _interval;
    Clock::time_point _next {};
    QString _folder;
    int _changes = 0;
    int _wrongChanges = 0;
    int _wrong = 0;
    int _seen = 0;
};

} // namespace

int main(int argc, char *argv[])
{
    int rate = 100;
    auto blends = Recorder::Blends::Wrong;
    QString folder;
    for (int option = 0; (option = getopt(argc, argv, "+br:o:")) != -1;) {
        switch (option) {
        case 'b':
            blends = Recorder::Blends::Right;
            break;
        case 'r':
            rate = std::atoi(optarg);
            break;
        case 'o':
            folder = QString::fromLocal8Bit(optarg);
            break;
        default:
            return 2;
        }
    }
    const int count = optind < argc ? std::atoi(argv[optind]) : 0;
    const int commands = argc - optind - 1;
    if (rate < 1 || count < 1 || commands < 1) {
        fail("usage: FrameRecorder [-b] [-r RATE] [-o FOLDER] COUNT COMMAND...");
    }
    if (!folder.isEmpty() && !QDir().mkpath(folder)) {
        fail("cannot make the folder");
    }
    Recorder recorder(rate, folder, blends);
    for (int i = 0; i < count; ++i) {
        recorder.record(argv[optind + 1 + i % commands]);
    }
    recorder.report();
    return 0;
}
