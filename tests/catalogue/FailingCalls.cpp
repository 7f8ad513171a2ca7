// Preloaded into a program, this makes one of its system calls on files below a folder fail, or
// kills the program in its place. FAILING_CALL is "write 3 28 /folder": the third write there fails
// with error 28. Error 0 kills. One line to standard error says when it is done.

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace {

std::string pathOf(int file)
{
    char path[4096];
    const std::string link = "/proc/self/fd/" + std::to_string(file);
    const ssize_t size = ::readlink(link.c_str(), path, sizeof path);
    return { path, size_t(size > 0 ? size : 0) };
}

// Whether this call is the one to fail; errno then has the error.
bool fails(const std::string &call, const std::string &path)
{
    char wanted[16] = "";
    char folder[4096] = "";
    int number = 0;
    int error = 0;
    const char *const order = std::getenv("FAILING_CALL");
    std::sscanf(order ? order : "", "%15s %d %d %4095s", wanted, &error, &number, folder);
    static int count = 0;
    if (call != wanted || path.rfind(folder, 0) != 0 || ++count != number) {
        return false;
    }
    std::fprintf(stderr, "failing call\n");
    if (error == 0) {
        ::kill(::getpid(), SIGKILL);
    }
    errno = error;
    return true;
}

template <typename Function> Function *next(const char *name, Function *)
{
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

// Those that may make a file. Qt's own have another name.
int open(const char *path, int flags, ...)
{
    va_list list;
    va_start(list, flags);
    const mode_t mode = flags & O_CREAT ? va_arg(list, mode_t) : 0;
    va_end(list);
    const bool isFailing = (flags & O_CREAT) != 0 && fails("open", path);
    return isFailing ? -1 : next("open", ::open)(path, flags, mode);
}

ssize_t write(int file, const void *data, size_t size)
{
    return fails("write", pathOf(file)) ? -1 : next("write", ::write)(file, data, size);
}

int fsync(int file)
{
    return fails("fsync", pathOf(file)) ? -1 : next("fsync", ::fsync)(file);
}

// It is closed all the same.
int close(int file)
{
    const bool isFailing = fails("close", pathOf(file));
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

} // extern "C"
