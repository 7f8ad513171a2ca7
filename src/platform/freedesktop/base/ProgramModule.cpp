#include "platform/freedesktop/base/ProgramModule.h"

#include "platform/freedesktop/base/Log.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLibrary>
#include <QStringList>

#include <cstring>

namespace {

// An update replaces the modules below a program that runs. Calling into one of another build could
// crash, as both share C++ classes.
bool isOfThisBuild(QLibrary &module)
{
    using Stamp = const char *(*)();
    const auto stamp = reinterpret_cast<Stamp>(module.resolve("ortuModuleStamp"));
    return stamp != nullptr && std::strcmp(stamp(), ORTU_MODULE_STAMP) == 0;
}

QFunctionPointer resolveIn(const QString &file, const char *function, const char *purpose)
{
    QLibrary module(file);
    if (module.load() && !isOfThisBuild(module)) {
        qCWarning(lcPlatform, "no %s: %s is of another version. Ortu was updated: start it again",
            purpose, qUtf8Printable(file));
        module.unload();
        return nullptr;
    }
    const QFunctionPointer found = module.resolve(function);
    if (found == nullptr) {
        qCWarning(lcPlatform, "no %s: %s", purpose, qUtf8Printable(module.errorString()));
    }
    return found;
}

} // namespace

QFunctionPointer ProgramModule::resolve(
    const QString &module, const char *function, const char *purpose)
{
    const QString program = QCoreApplication::applicationDirPath() + QLatin1Char('/');
    const QString file = QLatin1Char('/') + module + QStringLiteral(".so");
    for (const QString &folder :
        { QStringLiteral(ORTU_MODULES_BUILT), QStringLiteral(ORTU_MODULES_INSTALLED) }) {
        const QString place = program + folder + file;
        if (QFileInfo::exists(place)) {
            return resolveIn(place, function, purpose);
        }
    }
    qCWarning(lcPlatform, "no %s: the module %s is missing", purpose, qUtf8Printable(module));
    return nullptr;
}
