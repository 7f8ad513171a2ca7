// A grid over a folder of applications, for tests that look at it and touch it.

#pragma once

#include "FakeDesktop.h"
#include "TestCase.h"
#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "catalogue/files/ScanFolders.h"
#include "grid/GridHost.h"
#include "grid/OTIconView.h"
#include "support/Geometry.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"

class FixedHost : public GridHost
{
public:
    QSizeF maxIconViewSize() const override { return size; }
    void hide() override { ++hideCount; }
    void mousePressed(QMouseEvent *) override { handedOn += u'p'; }
    void mouseReleased(QMouseEvent *) override { handedOn += u'r'; }

    bool isProgramActive() const override { return isActive; }
    void makeFrontProcess() override { slides += u"front "_s; }
    void reactivateLastApp() override { slides += u"last "_s; }
    void slideOnscreen() override { slides += u"on "_s; }
    void slideBack() override { slides += u"back "_s; }
    bool iconViewHasUserFocus() const override { return hasFocus; }

    bool isActive = true;
    bool hasFocus = true;
    // What was asked of the window and of the program during drags.
    QString slides;
    QSizeF size { 1000, 400 };
    int hideCount = 0;
    QString handedOn;
};

class IconViewFixture : public TestCase
{
protected:
    void setUp()
    {
        // A display that is not there remarks on windows that come up.
        QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support )."_s));
        _defaults = std::make_unique<UserDefaults>();
        UserDefaults::setStandard(_defaults.get());
        _desktop = std::make_unique<FakeDesktop>();
        OTAppManager::registerDefaults();
        OTIconView::registerDefaults();
        useFolder(*_desktop);
        _host = {};
    }
    // In which every file is an application.
    void useFolder(FakeDesktop &desktop) const
    {
        desktop.fakeItems.areFilesApplications = true;
        desktop.folders = { desktop.tree.addFolder(u"apps"_s) };
        ScanFolders::registerDefaults(*_defaults, desktop.searchPaths());
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
            _desktop->tree.add(u"apps/"_s + name, {});
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
        return _manager->appForPath(_desktop->tree.path(u"apps/"_s + name));
    }
    void install(const QString &name)
    {
        _defaults->setObject(u"newApplications"_s, QVariantList { app(name)->path() });
    }
    void run(const QString &name) { _desktop->running.launch({ app(name)->path() }); }
    // What the desktop was asked to do: "verb name", a launch as the name alone.
    QStringList launched() const
    {
        return _desktop->requests.lines().replaceInStrings(_desktop->folders[0] + u'/', QString());
    }
    QPoint middleOf(const QString &name) const
    {
        return Geometry::flipped(_view->rectOfApp(app(name)), _view->height()).center().toPoint();
    }

    std::unique_ptr<UserDefaults> _defaults;
    std::unique_ptr<FakeDesktop> _desktop;
    std::unique_ptr<OTAppManager> _manager;
    FixedHost _host;
    std::unique_ptr<OTIconView> _view;
};
