#include "platform/freedesktop/crash/SignalNames.h"

#include <array>
#include <csignal>

namespace {

struct CodeName
{
    // 0 for every signal.
    int signal;
    int code;
    const char *name;
};

constexpr auto CodeNames = std::to_array<CodeName>({
    { 0, SI_USER, "SI_USER" },
    { 0, SI_TKILL, "SI_TKILL" },
    { 0, SI_QUEUE, "SI_QUEUE" },
    { 0, SI_KERNEL, "SI_KERNEL" },
    { SIGSEGV, SEGV_MAPERR, "SEGV_MAPERR" },
    { SIGSEGV, SEGV_ACCERR, "SEGV_ACCERR" },
    { SIGBUS, BUS_ADRALN, "BUS_ADRALN" },
    { SIGBUS, BUS_ADRERR, "BUS_ADRERR" },
    { SIGBUS, BUS_OBJERR, "BUS_OBJERR" },
    { SIGILL, ILL_ILLOPC, "ILL_ILLOPC" },
    { SIGILL, ILL_ILLOPN, "ILL_ILLOPN" },
    { SIGILL, ILL_PRVOPC, "ILL_PRVOPC" },
    { SIGFPE, FPE_INTDIV, "FPE_INTDIV" },
    { SIGFPE, FPE_INTOVF, "FPE_INTOVF" },
    { SIGFPE, FPE_FLTDIV, "FPE_FLTDIV" },
    { SIGFPE, FPE_FLTINV, "FPE_FLTINV" },
    { SIGTRAP, TRAP_BRKPT, "TRAP_BRKPT" },
    { SIGTRAP, TRAP_TRACE, "TRAP_TRACE" },
});

} // namespace

const char *SignalNames::name(int signal)
{
    switch (signal) {
    case SIGSEGV:
        return "SIGSEGV";
    case SIGBUS:
        return "SIGBUS";
    case SIGILL:
        return "SIGILL";
    case SIGFPE:
        return "SIGFPE";
    case SIGABRT:
        return "SIGABRT";
    case SIGSYS:
        return "SIGSYS";
    case SIGTRAP:
        return "SIGTRAP";
    default:
        return "?";
    }
}

const char *SignalNames::codeName(int signal, int code)
{
    for (const CodeName &known : CodeNames) {
        if ((known.signal == 0 || known.signal == signal) && known.code == code) {
            return known.name;
        }
    }
    return "?";
}
