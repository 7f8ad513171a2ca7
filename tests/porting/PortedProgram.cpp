// A platform made in the steps of docs/porting.md, as far as PORTED_STEPS says: with 0 it is the
// one that offers nothing. Its applications are the folders NAME.app below the home folder, with
// icons of one colour. It types PORTED_KEYS once the panel has been painted, and prints what it is
// asked to launch.

#include "platform/Platform.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QWindow>

#include <cstdio>

extern "C" int ortuRun(int argc, char **argv, bool isKnownToBeAlone);

namespace {

void say(const QString &line)
{
    std::puts(qUtf8Printable(line));
    std::fflush(stdout);
}

QString inHome(const char *folder)
{
    return QDir::homePath() + QLatin1Char('/') + QLatin1String(folder);
}

class Folders final : public SearchPaths
{
    QString applicationSupportFolder(Domain) const override { return inHome("data"); }
    QString configurationFolder() const override { return inHome("config"); }
    QString cacheFolder() const override { return inHome("cache"); }
    QStringList applicationFolders() const override { return { inHome("apps") }; }
};

class NamedFolders final : public Items
{
    ItemFlags flagsOf(const QString &path) const override
    {
        ItemFlags flags = Items::flagsOf(path);
        flags.isApplication = flags.isContainer && path.endsWith(QLatin1String(".app"));
        return flags;
    }
};

class Colours final : public IconProvider
{
    IconSource resolve(const QString &path, int) const override
    {
        return { path + QStringLiteral("/icon") };
    }
    QImage decode(const IconSource &source, int size) const override
    {
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(QColor(QFileInfo(QFileInfo(source.file).path()).baseName()));
        return image;
    }
};

class Printer final : public Launcher
{
    LaunchStatus open(const QString &path, const std::optional<QList<QUrl>> &) override
    {
        say(QStringLiteral("launch ") + QFileInfo(path).fileName());
        return LaunchStatus::Launched;
    }
};

class PortedDesktop final : public Desktop
{
public:
    const SearchPaths &searchPaths() const override
    {
        return from(1, _folders, Desktop::searchPaths());
    }
    Items &items() override { return from(2, _items, Desktop::items()); }
    IconProvider &icons() override { return from(3, _icons, Desktop::icons()); }
    Launcher &launcher() override { return from(4, _launcher, Desktop::launcher()); }

private:
    template <typename Mine, typename Base> Base &from(int step, Mine &mine, Base &base) const
    {
        return _steps < step ? base : mine;
    }
    const int _steps = qEnvironmentVariableIntValue("PORTED_STEPS");
    Folders _folders;
    NamedFolders _items;
    Colours _icons;
    Printer _launcher;
};

// What a user does and sees.
class User final : public QObject
{
public:
    bool eventFilter(QObject *object, QEvent *event) override
    {
        auto *const window = qobject_cast<QWindow *>(object);
        if (window != nullptr && event->type() == QEvent::Expose && window->isExposed()) {
            object->removeEventFilter(this);
            QCoreApplication::instance()->removeEventFilter(this);
            say(QStringLiteral("shown"));
            QMetaObject::invokeMethod(
                window, [window] { type(window); }, Qt::QueuedConnection);
        }
        return false;
    }

private:
    static void type(QWindow *window)
    {
        for (const QChar key : qEnvironmentVariable("PORTED_KEYS")) {
            const int code = key == u'\r' ? int(Qt::Key_Return) : key.toUpper().unicode();
            for (const auto kind : { QEvent::KeyPress, QEvent::KeyRelease }) {
                QKeyEvent event(kind, code, Qt::NoModifier, key);
                QCoreApplication::sendEvent(window, &event);
            }
        }
    }
};

class PortedPlatform final : public Platform
{
    std::unique_ptr<Desktop> makeDesktop() override
    {
        QCoreApplication::instance()->installEventFilter(&_user);
        return std::make_unique<PortedDesktop>();
    }
    User _user;
};

} // namespace

std::unique_ptr<Platform> makePlatform()
{
    return std::make_unique<PortedPlatform>();
}

int main(int argc, char **argv)
{
    return ortuRun(argc, argv, false);
}
