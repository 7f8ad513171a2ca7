#include "platform/freedesktop/crash/CrashFile.h"

#include "platform/freedesktop/base/FolderReader.h"

#include <QByteArrayList>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qsizetype KeptLogs = 20;

// Ends with a slash; empty when there is none to write to.
std::array<char, PATH_MAX> folderPath {};
// Of the file that is being written.
std::array<char, 64> fileName {};
int folder = -1;
int file = -1;

// Those of the path that are missing, for the user alone as the XDG specification has it.
void makeFolders()
{
    for (std::size_t i = 1; i < folderPath.size() && folderPath[i] != 0; ++i) {
        if (folderPath[i] == '/') {
            folderPath[i] = 0;
            ::mkdir(folderPath.data(), 0700);
            folderPath[i] = '/';
        }
    }
}

int openFolder()
{
    // A slash at the end would have a link followed.
    const std::size_t last = std::strlen(folderPath.data()) - 1;
    folderPath[last] = 0;
    const int opened = ::open(folderPath.data(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    folderPath[last] = '/';
    return opened;
}

} // namespace

void CrashFile::prepare(const QByteArray &libraryFolder)
{
    const QByteArray path = libraryFolder + "/Logs/CrashReporter/";
    if (path.size() < static_cast<qsizetype>(folderPath.size())) {
        std::copy_n(path.constData(), path.size() + 1, folderPath.begin());
    }
}

bool CrashFile::begin(SafeText &text, std::time_t now)
{
    if (folderPath[0] == 0) {
        return false;
    }
    makeFolders();
    folder = openFolder();
    if (folder < 0) {
        return false;
    }
    // Two programs may crash within a second.
    for (int number = 1; number <= 9 && file < 0; ++number) {
        text.clearLine();
        text.add("Ortu_").addDate(now, "-", "");
        if (number > 1) {
            text.add("-").addDecimal(number);
        }
        text.add(".crash");
        std::strncpy(fileName.data(), text.line(), fileName.size() - 1);
        file = ::openat(
            folder, fileName.data(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
        if (file < 0 && errno != EEXIST) {
            break;
        }
    }
    text.beginFile(file);
    return file >= 0;
}

void CrashFile::end(const SafeText &text)
{
    if (!text.hasWritten()) {
        ::unlinkat(folder, fileName.data(), 0);
    }
    ::fsync(file);
    ::close(file);
}

void CrashFile::removeOld()
{
    FolderReader reader(QByteArray(folderPath.data()));
    QByteArrayList names;
    while (const dirent *const entry = reader.next()) {
        const QByteArray name(entry->d_name);
        if (name.startsWith("Ortu_") && name.endsWith(".crash")) {
            names.append(name);
        }
    }
    // Their names tell their age.
    std::sort(names.begin(), names.end());
    for (qsizetype i = 0; i < names.size() - KeptLogs; ++i) {
        ::unlinkat(reader.descriptor(), names[i].constData(), 0);
    }
}
