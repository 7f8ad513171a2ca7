#include "platform/freedesktop/crash/CrashStack.h"

#include "platform/freedesktop/crash/ElfImage.h"
#include "platform/freedesktop/crash/SafeLines.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <ucontext.h>
#include <unistd.h>
#include <unwind.h>

namespace {

// The innermost calls that are written, and the outermost ones.
constexpr int InnermostCalls = 64;
constexpr int OutermostCalls = 32;
// A damaged stack may lead in a circle.
constexpr int MostCalls = 1'000'000;

std::array<char, PATH_MAX> programPath {};

// The two registers from which a walk starts. Null on a processor that we do not know.
struct Registers
{
    unsigned long long *instruction = nullptr;
    unsigned long long *stack = nullptr;

    explicit Registers(void *context)
    {
        [[maybe_unused]] auto &machine = static_cast<ucontext_t *>(context)->uc_mcontext;
#if defined(__x86_64__)
        instruction = reinterpret_cast<unsigned long long *>(&machine.gregs[REG_RIP]);
        stack = reinterpret_cast<unsigned long long *>(&machine.gregs[REG_RSP]);
#elif defined(__aarch64__)
        instruction = &machine.pc;
        stack = &machine.sp;
#endif
    }
};

struct Call
{
    std::uintptr_t address = 0;
    // Otherwise it is the address behind a call, and one byte less is in the call.
    bool isInterrupted = false;

    std::uintptr_t place() const { return isInterrupted ? address : address - 1; }
};

struct Walk
{
    SafeText *text = nullptr;
    bool isInside = false;
    bool startsAtCaller = false;
    int count = 0;
    std::array<Call, OutermostCalls> last {};
};

Walk walk;

void writePlace(SafeText &text, std::uintptr_t place)
{
    if (const ElfImage image = ElfImage::at(place); image.isFound()) {
        text.addForeign(*image.path != 0 ? image.path : programPath.data());
        text.add(" ").addAddress(place - image.base);
    } else {
        text.add("?");
    }
    text.endLine();
}

void writeCall(SafeText &text, int number, const Call &call)
{
    text.add(number < 10 ? "  " : number < 100 ? " " : "").addDecimal(number).add("  ");
    text.addAddress(call.address, 16).add("  ");
    writePlace(text, call.place());
}

// The calls of the handler come first, and then what the signal has interrupted.
_Unwind_Reason_Code noteCall(_Unwind_Context *context, void *)
{
    int isInterrupted = 0;
    const std::uintptr_t address = _Unwind_GetIPInfo(context, &isInterrupted);
    walk.isInside = walk.isInside || isInterrupted != 0;
    // The outermost call returns to nothing.
    if (!walk.isInside || address == 0) {
        return _URC_NO_REASON;
    }
    const Call call { address, isInterrupted != 0 && !(walk.startsAtCaller && walk.count == 0) };
    if (walk.count < InnermostCalls) {
        writeCall(*walk.text, walk.count, call);
    } else {
        walk.last[walk.count % OutermostCalls] = call;
    }
    return ++walk.count < MostCalls ? _URC_NO_REASON : _URC_END_OF_STACK;
}

_Unwind_Reason_Code stopAtOnce(_Unwind_Context *, void *)
{
    return _URC_END_OF_STACK;
}

// The end of the field of a line that begins there: the next blank.
char *fieldEnd(char *field)
{
    return field + std::strcspn(field, " ");
}

std::uintptr_t hexadecimal(const char *text)
{
    std::uintptr_t value = 0;
    for (;; ++text) {
        if (*text >= '0' && *text <= '9') {
            value = value * 16 + static_cast<unsigned>(*text - '0');
        } else if (*text >= 'a' && *text <= 'f') {
            value = value * 16 + static_cast<unsigned>(*text - 'a' + 10);
        } else {
            return value;
        }
    }
}

// One line of /proc/self/maps: START-END MODE OFFSET DEVICE INODE PATH. Passes over what holds no
// code or comes from no file.
void writeMapping(SafeText &text, char *line)
{
    char *const rangeEnd = fieldEnd(line);
    char *const path = std::strchr(line, '/');
    if (std::strlen(rangeEnd) < 6 || rangeEnd[3] != 'x' || path == nullptr) {
        return;
    }
    char *const offset = rangeEnd + 6;
    *rangeEnd = 0;
    *fieldEnd(offset) = 0;
    text.add(line).add("  ").add(offset).add("  ");
    ElfImage image = ElfImage::at(hexadecimal(line));
    if (image.readBuildId()) {
        text.addBytes(image.buildId, image.buildIdLength);
    } else {
        text.add("-");
    }
    text.add("  ").addForeign(path).endLine();
}

} // namespace

void CrashStack::prepare()
{
    [[maybe_unused]] const ssize_t length =
        ::readlink("/proc/self/exe", programPath.data(), programPath.size() - 1);
    _Unwind_Backtrace(stopAtOnce, nullptr);
}

void CrashStack::write(SafeText &text, void *context)
{
    const Registers registers(context);
    walk.text = &text;
#if defined(__x86_64__)
    // A call of an address without code, such as null: nothing can be followed from there. The
    // caller is known all the same, since such a call has done no more than to note where it
    // returns.
    const unsigned long long instruction = *registers.instruction;
    const unsigned long long stack = *registers.stack;
    if (!ElfImage::at(instruction).isFound()) {
        // NOLINTNEXTLINE(performance-no-int-to-ptr): it comes from a register
        const auto caller = *reinterpret_cast<const unsigned long long *>(stack);
        if (ElfImage::at(caller).isFound()) {
            walk.startsAtCaller = true;
            *registers.instruction = caller;
            *registers.stack = stack + sizeof(caller);
        }
    }
#endif
    _Unwind_Backtrace(noteCall, nullptr);
#if defined(__x86_64__)
    *registers.instruction = instruction;
    *registers.stack = stack;
#endif
    finish(text);
}

void CrashStack::finish(SafeText &text)
{
    const int first = std::max(InnermostCalls, walk.count - OutermostCalls);
    if (first > InnermostCalls) {
        text.add("  (").addDecimal(first - InnermostCalls).add(" more)").endLine();
    }
    for (int i = first; i < walk.count; ++i) {
        writeCall(text, i, walk.last[i % OutermostCalls]);
    }
    walk.count = 0;
}

void CrashStack::writeRegisters(SafeText &text, void *context)
{
    const Registers registers(context);
    if (registers.instruction != nullptr) {
        text.add("Instruction: ").addAddress(*registers.instruction, 16).add("  ");
        writePlace(text, *registers.instruction);
        text.add("Stack pointer: ").addAddress(*registers.stack, 16).endLine();
    }
}

void CrashStack::writeProgram(SafeText &text)
{
    text.add("Path: ").addForeign(programPath.data()).endLine();
    // Any address of ours.
    ElfImage image = ElfImage::at(reinterpret_cast<std::uintptr_t>(&stopAtOnce));
    if (image.readBuildId()) {
        text.add("Build ID: ").addBytes(image.buildId, image.buildIdLength).endLine();
    }
}

void CrashStack::writeImages(SafeText &text)
{
    static constinit SafeLines mappings;
    mappings.open("/proc/self/maps");
    while (char *const line = mappings.next()) {
        writeMapping(text, line);
    }
}
