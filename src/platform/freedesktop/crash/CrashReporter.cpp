#include "platform/freedesktop/crash/CrashReporter.h"

#include "platform/freedesktop/base/FreedesktopPaths.h"
#include "platform/freedesktop/crash/CrashFile.h"
#include "platform/freedesktop/crash/CrashStack.h"
#include "platform/freedesktop/crash/SafeLines.h"
#include "platform/freedesktop/crash/SignalNames.h"

#include <QFile>

#include <atomic>
#include <csignal>
#include <cstring>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace {

constexpr std::array<int, 7> Handled { SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT, SIGSYS, SIGTRAP };

// Seconds. A disk that does not answer holds up the end of the program for no longer; SIGALRM ends
// it then.
constexpr unsigned MaxWriting = 10;
// Of another thread that crashes meanwhile.
constexpr int MaxWaiting = 5;

// Enough for the unwinder and for whatever a processor keeps of its registers.
alignas(16) std::array<char, 131'072> handlerStack;

constinit SafeText text;
pid_t ownProcess = 0;
std::time_t startTime = 0;

enum class Stage { Nothing, Walk, Rest };

// Of the thread that writes the log.
std::atomic<pid_t> writer = 0;
volatile std::sig_atomic_t firstSignal = 0;
volatile Stage stage = Stage::Nothing;

static_assert(std::atomic<pid_t>::is_always_lock_free);

void setDefaultAction(int signal)
{
    struct sigaction usual = {};
    usual.sa_handler = SIG_DFL;
    ::sigaction(signal, &usual, nullptr);
}

void setBlocked(int signal, bool isBlocked)
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, signal);
    ::pthread_sigmask(isBlocked ? SIG_BLOCK : SIG_UNBLOCK, &set, nullptr);
}

// The signal comes again, as it was, when the handler returns: a core dump then shows the place of
// the crash and not the handler.
void endOnReturn(int signal, siginfo_t *info)
{
    setDefaultAction(signal);
    setBlocked(signal, true);
    if (::syscall(SYS_rt_tgsigqueueinfo, ::getpid(), ::gettid(), signal, info) != 0) {
        ::syscall(SYS_tgkill, ::getpid(), ::gettid(), signal);
    }
}

[[noreturn]] void endAtOnce(int signal)
{
    setDefaultAction(signal);
    setBlocked(signal, false);
    ::syscall(SYS_tgkill, ::getpid(), ::gettid(), signal);
    ::_exit(128 + signal);
}

// Values of os-release may stand in quotation marks.
void writeValue(char *value)
{
    const std::size_t length = std::strlen(value);
    const bool isQuoted = length >= 2 && value[0] == '"' && value[length - 1] == '"';
    if (isQuoted) {
        value[length - 1] = 0;
    }
    text.add(" ").addForeign(isQuoted ? value + 1 : value);
}

void writeSystem()
{
    text.add("System:");
    static constinit SafeLines lines;
    lines.open("/etc/os-release");
    while (char *const line = lines.next()) {
        for (const char *const key : { "NAME=", "VERSION_ID=" }) {
            if (std::strncmp(line, key, std::strlen(key)) == 0) {
                writeValue(line + std::strlen(key));
            }
        }
    }
    // A plain system call.
    utsname kernel = {};
    if (::uname(&kernel) == 0) {
        text.add(", ").addForeign(kernel.sysname).add(" ").addForeign(kernel.release);
        text.add(" ").addForeign(kernel.machine);
    }
    text.endLine();
}

void writeSignal(int signal, const siginfo_t &info)
{
    text.add("Signal: ").addDecimal(signal).add(" (").add(SignalNames::name(signal));
    text.add("), code ").addDecimal(info.si_code);
    text.add(" (").add(SignalNames::codeName(signal, info.si_code)).add(")");
    const bool isSent = info.si_code <= 0;
    if (isSent) {
        text.add(", sent by process ").addDecimal(info.si_pid);
    }
    text.endLine();
    if (!isSent) {
        text.add("Fault address: ");
        text.addAddress(reinterpret_cast<std::uintptr_t>(info.si_addr), 16).endLine();
    }
}

void writeHead(std::time_t now, int signal, const siginfo_t &info, void *context)
{
    text.add("Program: Ortu").endLine();
    text.add("Version: " ORTU_VERSION ", with Qt ").add(qVersion()).endLine();
    CrashStack::writeProgram(text);
    text.add("Date: ").addDate(now, " ", ":").add(" +0000").endLine();
    writeSignal(signal, info);
    CrashStack::writeRegisters(text, context);
    std::array<char, 17> name {};
    ::prctl(PR_GET_NAME, name.data());
    text.add("Thread: ").addDecimal(::gettid()).add(" (").addForeign(name.data());
    text.add(::gettid() == ownProcess ? "), the main thread" : ")").endLine();
    text.add("Process: ").addDecimal(ownProcess).add(", running for ").addDecimal(now - startTime);
    text.add(" s").endLine();
    writeSystem();
}

void writeRest()
{
    stage = Stage::Rest;
    text.endLine();
    text.add("Code in memory (from-to, offset in the file, build ID, file):").endLine();
    CrashStack::writeImages(text);
    text.add("End of the log").endLine();
    CrashFile::end(text);
}

// A crash while the log is written, by the thread that writes it.
[[noreturn]] void handleAnother(int signal)
{
    if (stage == Stage::Walk) {
        stage = Stage::Rest;
        text.clearLine();
        CrashStack::finish(text);
        text.add("  (").add(SignalNames::name(signal));
        text.add(": the stack cannot be followed any further)").endLine();
        writeRest();
    }
    endAtOnce(firstSignal);
}

void waitForWriter()
{
    for (int i = 0; i < MaxWaiting * 20; ++i) {
        constexpr timespec pause { 0, 50'000'000 };
        ::nanosleep(&pause, nullptr);
    }
}

void writeLog(int signal, siginfo_t &info, void *context)
{
    firstSignal = signal;
    // Past the limit for the size of files, this one would end the program instead.
    struct sigaction ignored = {};
    ignored.sa_handler = SIG_IGN;
    ::sigaction(SIGXFSZ, &ignored, nullptr);
    setDefaultAction(SIGALRM);
    setBlocked(SIGALRM, false);
    ::alarm(MaxWriting);

    timespec now = {};
    ::clock_gettime(CLOCK_REALTIME, &now);
    if (!CrashFile::begin(text, now.tv_sec)) {
        return;
    }
    writeHead(now.tv_sec, signal, info, context);
    text.endLine();
    text.add("Stack, innermost call first (for each file: addr2line -Cfie FILE ADDRESS):")
        .endLine();
    stage = Stage::Walk;
    CrashStack::write(text, context);
    writeRest();
}

void handle(int signal, siginfo_t *info, void *context)
{
    pid_t present = 0;
    // A child on its way to another program is not this one.
    if (::getpid() != ownProcess) {
        endOnReturn(signal, info);
    } else if (writer.compare_exchange_strong(present, ::gettid())) {
        writeLog(signal, *info, context);
        endOnReturn(signal, info);
    } else if (present == ::gettid()) {
        handleAnother(signal);
    } else {
        // The other thread ends the program meanwhile.
        waitForWriter();
        endAtOnce(signal);
    }
}

} // namespace

void CrashReporter::install()
{
#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
    return;
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return;
#endif
    ownProcess = ::getpid();
    startTime = std::time(nullptr);
    CrashFile::prepare(QFile::encodeName(FreedesktopPaths::userLibraryFolder()));
    CrashStack::prepare();

    stack_t stack = {};
    stack.ss_sp = handlerStack.data();
    stack.ss_size = handlerStack.size();
    ::sigaltstack(&stack, nullptr);
    for (const int signal : Handled) {
        struct sigaction wanted = {};
        wanted.sa_sigaction = handle;
        // Not deferred: a second crash comes to the handler as well.
        wanted.sa_flags = SA_ONSTACK | SA_SIGINFO | SA_NODEFER;
        struct sigaction former = {};
        if (::sigaction(signal, nullptr, &former) == 0 && (former.sa_flags & SA_SIGINFO) == 0
            && former.sa_handler == SIG_DFL) {
            ::sigaction(signal, &wanted, nullptr);
        }
    }
}

void CrashReporter::removeOldLogs()
{
    CrashFile::removeOld();
}
