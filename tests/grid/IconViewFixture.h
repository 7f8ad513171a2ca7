// A grid over a folder of applications, for tests that look at it and touch it.

#pragma once

#include "TestCase.h"
#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "catalogue/ScanFolders.h"
#include "grid/GridHost.h"
#include "grid/OTIconView.h"
#include "platform/Desktop.h"
#include "support/Geometry.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"

#include <QMutex>
#include <QMutexLocker>
#include <QPaintEvent>

// A desktop of one folder in which every file is an application. It remembers what it was asked to
// do, as "verb name", a launch as the name alone.
class FolderDesktop : public Desktop,
                      SearchPaths,
                      Items,
                      Launcher,
                      RunningApplications,
                      ApplicationControl
{
public:
    explicit FolderDesktop(const QString &folder)
        : _folder(folder)
    { }

    const SearchPaths &searchPaths() const override { return *this; }
    Items &items() override { return *this; }
    Launcher &launcher() override { return *this; }
    RunningApplications &runningApplications() override { return *this; }
    ApplicationControl &applicationControl() override { return *this; }

    QStringList launched() const
    {
        const QMutexLocker lock(&_mutex);
        return _asked;
    }
    void run(const QStringList &paths)
    {
        _running = paths;
        Q_EMIT RunningApplications::launched();
    }
    bool isShown = true;

private:
    QString applicationSupportFolder(Domain) const override { return _folder + u"/data"_s; }
    QStringList applicationFolders() const override { return { _folder + u"/apps"_s }; }
    ItemFlags flagsOf(const QString &path) const override
    {
        ItemFlags flags = Items::flagsOf(path);
        flags.isApplication = !flags.isContainer;
        return flags;
    }
    LaunchStatus open(const QString &path, const std::optional<QList<QUrl>> &) override
    {
        note({}, path);
        return LaunchStatus::Launched;
    }
    bool reveal(const QString &path) override
    {
        note(u"reveal "_s, path);
        return true;
    }
    QStringList launchedApplications() const override { return _running; }
    bool isVisible(const QString &) const override { return isShown; }
    void show(const QString &path) override { note(u"show "_s, path); }
    void hide(const QString &path) override { note(u"hide "_s, path); }
    void quit(const QString &path) override { note(u"quit "_s, path); }
    void note(const QString &verb, const QString &path)
    {
        const QMutexLocker lock(&_mutex);
        _asked.append(verb + Items::nameOf(path));
    }

    QString _folder;
    QStringList _running;
    mutable QMutex _mutex;
    QStringList _asked;
};

class FixedHost : public GridHost
{
public:
    QSizeF maxIconViewSize() const override { return size; }
    void hide() override { ++hideCount; }
    void mousePressed(QMouseEvent *) override { handedOn += u'p'; }
    void mouseReleased(QMouseEvent *) override { handedOn += u'r'; }

    QSizeF size { 1000, 400 };
    int hideCount = 0;
    QString handedOn;
};

// What a widget was asked to paint.
class PaintedRegion : public QObject
{
public:
    QRegion region;
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            region += static_cast<QPaintEvent *>(event)->region();
        }
        return false;
    }
};

class IconViewFixture : public TestCase
{
protected:
    void setUp()
    {
        // A display that is not there remarks on windows that come up.
        QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support )."_s));
        _home = std::make_unique<QTemporaryDir>();
        QDir(_home->path()).mkdir(u"apps"_s);
        _defaults = std::make_unique<UserDefaults>();
        UserDefaults::setStandard(_defaults.get());
        _desktop = std::make_unique<FolderDesktop>(_home->path());
        OTAppManager::registerDefaults();
        OTIconView::registerDefaults();
        ScanFolders::registerDefaults(*_defaults, _desktop->searchPaths());
        _host = {};
    }
    void tearDown()
    {
        _view.reset();
        _manager.reset();
        UserDefaults::setStandard(nullptr);
    }
    void fill(const QStringList &names)
    {
        for (const QString &name : names) {
            QFile file(_home->filePath(u"apps/"_s + name));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        // The desktop has no icons, and a plain look at the lists wants none.
        _manager = std::make_unique<OTAppManager>(*_desktop, OTAppManager::Use::Inspection);
        _manager->rescanAllAppsPrioritizingGroup(IncludedGroup);
        for (const AppRef &app : _manager->allApps1D()) {
            app->refreshNameAndPath();
        }
        _view = std::make_unique<OTIconView>(*_manager, _host);
        showGroup(Included1DGroup);
    }
    void showGroup(int group)
    {
        _view->setGroupToShow(group);
        _view->resize(_view->viewSize().toSize());
    }
    AppRef app(const QString &name) const
    {
        return _manager->appForPath(_home->filePath(u"apps/"_s + name));
    }
    QPoint middleOf(const QString &name) const
    {
        return Geometry::flipped(_view->rectOfApp(app(name)), _view->height()).center().toPoint();
    }

    std::unique_ptr<QTemporaryDir> _home;
    std::unique_ptr<UserDefaults> _defaults;
    std::unique_ptr<FolderDesktop> _desktop;
    std::unique_ptr<OTAppManager> _manager;
    FixedHost _host;
    std::unique_ptr<OTIconView> _view;
};
