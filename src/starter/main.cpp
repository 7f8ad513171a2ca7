// What `ortu` runs first. The program itself is a module that brings some sixty libraries along;
// where it runs already, a few bytes to the bus are all that is needed.

#include "starter/BusRequest.h"

#include <array>
#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <string_view>
#include <unistd.h>

namespace {

using Run = int (*)(int argc, char **argv, bool isKnownToBeAlone);

// What options ask for that stand alone, and that need no answer but that it is done.
struct Option
{
    std::string_view text;
    const char *action;
};
constexpr std::array options {
    Option { "--toggle", "toggle" },
    Option { "--show", "show" },
    Option { "--hide", "hide" },
    Option { "--preferences", "preferences" },
};

BusRequest::Outcome ask(int argc, char **argv)
{
    if (argc == 1) {
        return BusRequest::ask(nullptr);
    }
    for (const Option &option : options) {
        if (argc == 2 && argv[1] == option.text) {
            return BusRequest::ask(option.action);
        }
    }
    return BusRequest::Outcome::Unknown;
}

// Beside the program in the folder it was built in, and where it is installed.
void *loadProgram()
{
    std::array<char, 4096> path {};
    const ssize_t size = ::readlink("/proc/self/exe", path.data(), path.size() - 1);
    const std::size_t folder =
        std::string_view(path.data(), size < 0 ? 0 : std::size_t(size)).rfind('/') + 1;
    for (const std::string_view place : { ORTU_PROGRAM_BUILT, ORTU_PROGRAM_INSTALLED }) {
        if (folder + place.size() >= path.size()) {
            continue;
        }
        std::memcpy(path.data() + folder, place.data(), place.size());
        path[folder + place.size()] = '\0';
        if (::access(path.data(), F_OK) == 0) {
            return ::dlopen(path.data(), RTLD_LAZY | RTLD_GLOBAL);
        }
    }
    return nullptr;
}

} // namespace

int main(int argc, char **argv)
{
    const BusRequest::Outcome outcome = ask(argc, argv);
    if (outcome == BusRequest::Outcome::Done) {
        return 0;
    }
    if (outcome == BusRequest::Outcome::NoAnswer) {
        std::fputs("ortu: the running Ortu does not answer\n", stderr);
        return 1;
    }
    void *const program = loadProgram();
    const auto run =
        program != nullptr ? reinterpret_cast<Run>(::dlsym(program, "ortuRun")) : nullptr;
    if (run == nullptr) {
        const char *const reason = ::dlerror();
        std::fprintf(stderr, "ortu: cannot load the program: %s\n",
            reason != nullptr ? reason : "the module " ORTU_PROGRAM_BUILT " is missing");
        return 1;
    }
    return run(argc, argv, outcome == BusRequest::Outcome::NoneRuns);
}
