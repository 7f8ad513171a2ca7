// Crasher WAY [LIMIT]: crashes in the way named, with a reporter, and with files of at most LIMIT
// bytes.

#include "platform/freedesktop/crash/CrashReporter.h"

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <string>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

// Not known to the compiler.
int *volatile noObject = nullptr;
void (*volatile noFunction)() = nullptr;

struct sigaction former = {};

void passOn(int signal, siginfo_t *info, void *context)
{
    former.sa_sigaction(signal, info, context);
}

} // namespace

extern "C" {

[[gnu::noinline]] void writeToNull()
{
    *noObject = 1;
}

[[gnu::noinline]] void callNull()
{
    noFunction();
    noObject = nullptr;
}

[[gnu::noinline]] int overflowStack(int depth)
{
    volatile char space[256] = {};
    space[depth % 256] = 1;
    return depth < 0 ? 0 : overflowStack(depth + 1) + space[(depth + 1) % 256];
}

// The callers cannot be found afterwards, and looking for them crashes.
[[gnu::noinline]] void smashStack()
{
    void *volatile frame = __builtin_frame_address(0);
    std::memset(frame, 0x40, 64);
    *noObject = 1;
}

[[gnu::noinline]] void readBeyondFile()
{
    struct sigaction ours = {};
    ours.sa_sigaction = passOn;
    ours.sa_flags = SA_SIGINFO;
    ::sigaction(SIGBUS, &ours, &former);
    std::FILE *const file = std::tmpfile();
    const auto *const bytes =
        static_cast<volatile char *>(::mmap(nullptr, 1, PROT_READ, MAP_SHARED, ::fileno(file), 0));
    std::exit(bytes[0]);
}

[[gnu::noinline]] void crashTwice()
{
    std::atomic<int> ready = 0;
    const auto crash = [&ready] {
        for (++ready; ready < 2;) { }
        writeToNull();
    };
    std::thread other(crash);
    crash();
}

[[gnu::noinline]] void crashInChild()
{
    int status = 0;
    if (::fork() == 0) {
        writeToNull();
    }
    ::wait(&status);
    std::raise(WTERMSIG(status) == SIGSEGV ? SIGKILL : SIGTERM);
}
}

int main(int, char **argv)
{
    const rlimit none { 0, 0 };
    ::setrlimit(RLIMIT_CORE, &none);
    CrashReporter::install();
    if (argv[2] != nullptr) {
        const rlimit limit { std::stoul(argv[2]), RLIM_INFINITY };
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    const std::string way = argv[1];
    if (way == "null") {
        writeToNull();
    } else if (way == "call") {
        callNull();
    } else if (way == "overflow") {
        return overflowStack(0);
    } else if (way == "smash") {
        smashStack();
    } else if (way == "file") {
        readBeyondFile();
    } else if (way == "twice") {
        crashTwice();
    } else if (way == "child") {
        crashInChild();
    } else if (way == "thread") {
        std::thread([] { overflowStack(0); }).join();
    } else if (way == "terminate") {
        std::terminate();
    } else if (way == "trap") {
        __builtin_trap();
    }
    return 0;
}
