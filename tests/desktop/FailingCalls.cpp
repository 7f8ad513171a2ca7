// Preloaded into a program, this makes system calls that change files below a folder fail, or kills
// the program in their place. FAILING_CALL is "write 3 28 /folder": the third write there fails
// with error 28. Error 0 kills, and the call "any" is each one of them. The number 0 has every such
// call fail for as long as there is a file FAILING_WHILE. One line to standard error names a call
// that fails by its number.

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::string pathOf(int file)
{
    char path[4096];
    const std::string link = "/proc/self/fd/" + std::to_string(file);
    const ssize_t size = ::readlink(link.c_str(), path, sizeof path);
    return { path, size_t(size > 0 ? size : 0) };
}

bool isFaultThere()
{
    const char *const file = std::getenv("FAILING_WHILE");
    return file && ::access(file, F_OK) == 0;
}

// Whether this call is the one to fail; errno then has the error.
bool fails(std::string_view call, const std::string &path)
{
    char wanted[16] = "";
    char folder[4096] = "";
    int number = 0;
    int error = 0;
    const char *const order = std::getenv("FAILING_CALL");
    std::sscanf(order ? order : "", "%15s %d %d %4095s", wanted, &number, &error, folder);
    static std::atomic<int> count = 0;
    if ((call != wanted && std::string_view(wanted) != "any") || path.rfind(folder, 0) != 0
        || (number == 0 ? !isFaultThere() : ++count != number)) {
        return false;
    }
    if (number != 0) {
        std::fprintf(stderr, "failing call %s %s\n", call.data(), path.c_str());
    }
    if (error == 0) {
        ::kill(::getpid(), SIGKILL);
    }
    errno = error;
    return true;
}

// A call that would not make a file changes none.
bool openFails(const char *path, int flags)
{
    return (flags & O_CREAT) != 0 && fails("open", path);
}

template <typename Function> Function *next(const char *name, Function *)
{
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

int open(const char *path, int flags, ...)
{
    va_list list;
    va_start(list, flags);
    const mode_t mode = flags & O_CREAT ? va_arg(list, mode_t) : 0;
    va_end(list);
    return openFails(path, flags) ? -1 : next("open", ::open)(path, flags, mode);
}

// Qt's own files.
int open64(const char *path, int flags, ...)
{
    va_list list;
    va_start(list, flags);
    const mode_t mode = flags & O_CREAT ? va_arg(list, mode_t) : 0;
    va_end(list);
    return openFails(path, flags) ? -1 : next("open64", ::open64)(path, flags, mode);
}

ssize_t write(int file, const void *data, size_t size)
{
    return fails("write", pathOf(file)) ? -1 : next("write", ::write)(file, data, size);
}

int fsync(int file)
{
    return fails("fsync", pathOf(file)) ? -1 : next("fsync", ::fsync)(file);
}

// It is closed all the same. One that was only read changes nothing.
int close(int file)
{
    const int flags = ::fcntl(file, F_GETFL);
    const bool isFailing =
        flags >= 0 && (flags & O_ACCMODE) != O_RDONLY && fails("close", pathOf(file));
    const int error = errno;
    const int result = next("close", ::close)(file);
    errno = isFailing ? error : errno;
    return isFailing ? -1 : result;
}

int link(const char *from, const char *to) noexcept
{
    return fails("link", from) ? -1 : next("link", ::link)(from, to);
}

int rename(const char *from, const char *to) noexcept
{
    return fails("rename", from) ? -1 : next("rename", ::rename)(from, to);
}

int unlink(const char *path) noexcept
{
    return fails("unlink", path) ? -1 : next("unlink", ::unlink)(path);
}

int mkdir(const char *path, mode_t mode) noexcept
{
    return fails("mkdir", path) ? -1 : next("mkdir", ::mkdir)(path, mode);
}

} // extern "C"
