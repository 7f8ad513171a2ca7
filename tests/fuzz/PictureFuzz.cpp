#include "fuzz/Fuzz.h"
#include "platform/freedesktop/pictures/IconDecoder.h"

#include <QGuiApplication>

// SVG above all: drawing one needs fonts, and so an application.
void fuzz(const QByteArray &bytes)
{
    static int argc = 0;
    static const QGuiApplication application(argc, nullptr);
    QString problem;
    const QString file = folderWith(QStringLiteral("icon"), bytes) + QStringLiteral("/icon");
    const QImage icon = tryDecodeIcon(file, 48, 0, &problem);
    require(icon.isNull() ? !problem.isEmpty() : icon.size() == QSize(48, 48));
}
