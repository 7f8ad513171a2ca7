// A panel over a folder of applications, on a desktop that does what the test says and remembers
// what it was asked for.

#pragma once

#include "grid/DropStack.h"
#include "grid/IconViewFixture.h"
#include "shell/OTController.h"
#include "shell/panel/OTWindow.h"

#include <QMouseEvent>
#include <QPointer>
#include <QScreen>
#include <QSignalSpy>
#include <QTimer>
#include <QWindow>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

// What was done, in order, by everything that writes here.
using Journal = QStringList;

// Gives a window the front as soon as it is asked to, unless told otherwise.
class ObedientWindows : public OwnWindows
{
public:
    explicit ObedientWindows(Journal &journal)
        : _journal(journal)
    { }

    bool isObedient = true;
    TaskBar taskBar = TaskBar::Listed;
    Level level = Level::Normal;
    quint32 lastTime = 0;

    void setStanding(QWindow &, TaskBar newTaskBar, Level newLevel) override
    {
        taskBar = newTaskBar;
        level = newLevel;
    }
    void setLevel(QWindow &, Level newLevel) override
    {
        level = newLevel;
        _journal.append(level == Level::Raised ? u"raise"_s : u"lower"_s);
    }
    void activate(QWindow &window, const ActivationStamp &stamp) override
    {
        lastTime = stamp.time;
        _journal.append(u"front"_s);
        if (isObedient) {
            window.requestActivate();
            bringToFront(&window);
        }
    }
    QWindow *activeWindow() const override
    {
        const auto front = std::find_if(_stack.crbegin(), _stack.crend(),
            [](const QPointer<QWindow> &window) { return window && window->isVisible(); });
        return front == _stack.crend() ? nullptr : *front;
    }
    // Null for a window of another program, which then lies above all of ours.
    void bringToFront(QWindow *window)
    {
        if (window == nullptr) {
            _stack.clear();
        } else {
            _stack.append(window);
        }
        Q_EMIT activeWindowChanged();
    }

private:
    Journal &_journal;
    QList<QPointer<QWindow>> _stack;
};

class SwitchedCompositing : public Compositing
{
public:
    bool isActive() const override { return _isActive; }
    void setActive(bool isActive)
    {
        _isActive = isActive;
        Q_EMIT changed();
    }

private:
    bool _isActive = true;
};

class SwitchedMotion : public Motion
{
public:
    bool isStill = true;
    bool isReduced() const override { return isStill; }
};

class NotedProgress : public TaskBarProgress
{
public:
    explicit NotedProgress(Journal &journal)
        : _journal(journal)
    { }
    void show(int step, int count) override
    {
        _journal.append(u"progress %1/%2"_s.arg(step).arg(count));
    }
    void end() override { _journal.append(u"progress ends"_s); }

private:
    Journal &_journal;
};

// Gives the program every key it wants, and notes down which.
class GrantedHotKey : public HotKey
{
public:
    explicit GrantedHotKey(Journal &journal)
        : _journal(journal)
    { }
    QString registerKey(const HotKeyCombination &combination) override
    {
        _journal.append(u"key "_s + combination.key);
        return whyNot;
    }
    void unregisterKey() override { _journal.append(u"no key"_s); }

    QString whyNot;

private:
    Journal &_journal;
};

// Shows the item at once where there is a host.
class HostedItem : public StatusItem
{
public:
    void show(const QIcon &, const QString &, QMenu &newMenu) override
    {
        _isWanted = true;
        menu = &newMenu;
    }
    void hide() override { _isWanted = false; }
    bool isShown() const override { return _isWanted && hasHost; }

    bool hasHost = true;
    QMenu *menu = nullptr;

private:
    bool _isWanted = false;
};

class SwitchedTap : public ModifierTap
{
public:
    bool setUp() override { return true; }
    void setEnabled(bool isEnabled) override { _isEnabled = isEnabled; }
    bool isEnabled() const override { return _isEnabled; }

private:
    bool _isEnabled = false;
};

class PanelDesktop : public FolderDesktop
{
public:
    using FolderDesktop::FolderDesktop;

    Journal journal;
    ObedientWindows windows { journal };
    SwitchedCompositing blending;
    SwitchedMotion movement;
    NotedProgress progress { journal };
    GrantedHotKey key { journal };
    SwitchedTap tap;
    HostedItem item;
    // Where the program notes things down; nowhere unless given.
    QString library;

    const Compositing &compositing() const override { return blending; }
    OwnWindows &ownWindows() override { return windows; }
    const Motion &motion() const override { return movement; }
    TaskBarProgress &taskBarProgress() override { return progress; }
    HotKey &hotKey() override { return key; }
    ModifierTap &modifierTap() override { return tap; }
    StatusItem &statusItem() override { return item; }

    // Another program comes to the front of all.
    void runInFront(const QString &path)
    {
        run({ path });
        _inFront = path;
        Q_EMIT runningApplications().frontSwitched();
    }

private:
    QString libraryFolder(::SearchPaths::Domain) const override { return library; }
    QString activeApplication() const override { return _inFront; }
    bool activate(const QString &path) override
    {
        journal.append(u"activate "_s + QFileInfo(path).fileName());
        return true;
    }

    QString _inFront;
};

class PanelFixture : public QObject
{
protected:
    void setUp()
    {
        // A display that is not there remarks on windows that come up.
        QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support )."_s));
        // Where every test begins with the pointer.
        QCursor::setPos(QGuiApplication::primaryScreen()->geometry().topLeft());
        _home = std::make_unique<QTemporaryDir>();
        QDir(_home->path()).mkdir(u"apps"_s);
        _defaults = std::make_unique<UserDefaults>();
        UserDefaults::setStandard(_defaults.get());
        DropStack::setSharedDropStack(&_dropStack);
        _dropStack.free();
        _desktop = std::make_unique<PanelDesktop>(_home->path());
        OTAppManager::registerDefaults();
        OTIconView::registerDefaults();
        OTController::registerDefaults();
        ScanFolders::registerDefaults(*_defaults, _desktop->searchPaths());
    }
    void tearDown()
    {
        _window.reset();
        _manager.reset();
        _desktop.reset();
        DropStack::setSharedDropStack(nullptr);
        UserDefaults::setStandard(nullptr);
    }
    void set(const char *key, const QVariant &value)
    {
        _defaults->setObject(QLatin1String(key), value);
    }
    QString pathOf(const QString &name) const { return _home->filePath(u"apps/"_s + name); }
    // A catalogue with the given applications, and a panel that is still hidden.
    void fill(const QStringList &names)
    {
        for (const QString &name : names) {
            QFile file(pathOf(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        _manager = std::make_unique<OTAppManager>(*_desktop, OTAppManager::Use::Inspection);
        _manager->rescanAllAppsPrioritizingGroup(IncludedGroup);
        for (const AppRef &app : _manager->allApps1D()) {
            app->refreshNameAndPath();
        }
        _window = std::make_unique<OTWindow>(*_manager, *_desktop);
    }
    void fill(int count)
    {
        QStringList names;
        for (int i = 0; i < count; ++i) {
            names.append(u"app%1"_s.arg(i));
        }
        fill(names);
    }
    // Shown to the end, and with the keyboard.
    void show() const
    {
        _window->show();
        QTRY_VERIFY(_window->windowOpacity() > 0.99);
        QTRY_VERIFY(_window->isActiveWindow());
    }
    // The intervals of the timers of an object that run, in milliseconds.
    static QList<int> activeTimers(const QObject &object)
    {
        QList<int> intervals;
        for (const QTimer *timer : object.findChildren<QTimer *>()) {
            intervals += timer->isActive() ? QList<int> { timer->interval() } : QList<int>();
        }
        return intervals;
    }
    // As the user drags it, by its background.
    void dragPanelTo(const QPoint &topLeft) const
    {
        const QPoint hold(8, _window->height() / 2);
        const QPoint start = _window->pos() + hold;
        const QPoint end = topLeft + hold;
        const auto send = [this, hold](
                              QEvent::Type type, const QPoint &onScreen, Qt::MouseButtons held) {
            QMouseEvent event(type, hold, onScreen, Qt::LeftButton, held, Qt::NoModifier);
            QCoreApplication::sendEvent(_window.get(), &event);
        };
        send(QEvent::MouseButtonPress, start, Qt::LeftButton);
        send(QEvent::MouseMove, end, Qt::LeftButton);
        send(QEvent::MouseButtonRelease, end, Qt::NoButton);
    }
    // Its place among the pixels of the screens, y downwards.
    QRect frame() const { return _window->geometry(); }
    static QRect visibleFrame() { return QGuiApplication::primaryScreen()->availableGeometry(); }
    OTIconView &grid() const { return _window->iconView(); }

    std::unique_ptr<QTemporaryDir> _home;
    std::unique_ptr<UserDefaults> _defaults;
    DropStack _dropStack;
    std::unique_ptr<PanelDesktop> _desktop;
    std::unique_ptr<OTAppManager> _manager;
    std::unique_ptr<OTWindow> _window;
};
