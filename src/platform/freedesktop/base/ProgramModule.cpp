#include "platform/freedesktop/base/ProgramModule.h"

#include "platform/freedesktop/base/Log.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLibrary>
#include <QStringList>

QFunctionPointer ProgramModule::resolve(
    const QString &module, const char *function, const char *purpose)
{
    const QString program = QCoreApplication::applicationDirPath() + QLatin1Char('/');
    const QString file = QLatin1Char('/') + module + QStringLiteral(".so");
    for (const QString &folder :
        { QStringLiteral(ORTU_MODULES_BUILT), QStringLiteral(ORTU_MODULES_INSTALLED) }) {
        const QString place = program + folder + file;
        if (QFileInfo::exists(place)) {
            QLibrary library(place);
            const QFunctionPointer found = library.resolve(function);
            if (found == nullptr) {
                qCWarning(lcPlatform, "no %s: %s", purpose, qUtf8Printable(library.errorString()));
            }
            return found;
        }
    }
    qCWarning(lcPlatform, "no %s: the module %s is missing", purpose, qUtf8Printable(module));
    return nullptr;
}
