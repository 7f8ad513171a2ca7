// A panel over a folder of applications, on a desktop that does what the test says and remembers
// what it was asked for.

#pragma once

#include "grid/IconViewFixture.h"
#include "grid/dragging/DropStack.h"
#include "shell/OTController.h"
#include "shell/panel/OTWindow.h"

#include <QMouseEvent>
#include <QPointer>
#include <QScreen>
#include <QTimer>
#include <QWindow>

#include <algorithm>

// What was done, in order, by everything that writes here.
using Journal = QStringList;

struct Noting
{
    explicit Noting(Journal &written)
        : journal(written)
    { }
    Journal &journal;
};

// Gives a window the front as soon as it is asked to, unless told otherwise.
struct ObedientWindows : OwnWindows, Noting
{
    using Noting::Noting;

    void setStanding(QWindow &, TaskBar newTaskBar, Level newLevel) override
    {
        taskBar = newTaskBar;
        level = newLevel;
    }
    void setLevel(QWindow &, Level newLevel) override
    {
        level = newLevel;
        journal.append(level == Level::Raised ? u"raise"_s : u"lower"_s);
    }
    void activate(QWindow &window, const ActivationStamp &stamp) override
    {
        lastTime = stamp.time;
        journal.append(u"front"_s);
        if (isObedient) {
            window.requestActivate();
            bringToFront(&window);
        }
    }
    QWindow *activeWindow() const override
    {
        const auto front = std::find_if(stack.crbegin(), stack.crend(),
            [](const QPointer<QWindow> &window) { return window && window->isVisible(); });
        return front == stack.crend() ? nullptr : *front;
    }
    // Null for a window of another program, which then lies above all of ours.
    void bringToFront(QWindow *window)
    {
        stack = window ? stack << window : QList<QPointer<QWindow>>();
        Q_EMIT activeWindowChanged();
    }

    bool isObedient = true;
    TaskBar taskBar = TaskBar::Listed;
    Level level = Level::Normal;
    quint32 lastTime = 0;
    QList<QPointer<QWindow>> stack;
};

struct SwitchedCompositing : Compositing
{
    bool isActive() const override { return isOn; }
    void setActive(bool isActive)
    {
        isOn = isActive;
        Q_EMIT changed();
    }
    bool isOn = true;
};

struct SwitchedMotion : Motion
{
    bool isReduced() const override { return isStill; }
    bool isStill = true;
};

struct NotedProgress : TaskBarProgress, Noting
{
    using Noting::Noting;
    void show(int step, int count) override { journal += u"%1/%2"_s.arg(step).arg(count); }
    void end() override { journal += u"progress ends"_s; }
};

// Gives the program every key it wants, or tells why not.
struct GrantedHotKey : HotKey
{
    QString registerKey(const HotKeyCombination &) override { return whyNot; }
    QStringList namesOfKey(quint32 code) const override { return names.value(code); }
    QHash<quint32, QStringList> names;
    QString whyNot;
};

struct GrantedTap : ModifierTap
{
    bool setUp() override { return true; }
};

// Shows the item at once where there is a host.
struct HostedItem : StatusItem
{
    void show(const QIcon &, const QString &, QMenu &newMenu) override { menu = &newMenu; }
    void hide() override { menu = nullptr; }
    bool isShown() const override { return menu && hasHost; }

    bool hasHost = true;
    QMenu *menu = nullptr;
};

// Starts the program at login as it is told, or tells why not.
struct GrantedLogin : LoginItems
{
    bool contains(const LoginItem &) const override { return isThere; }
    QString setContained(const LoginItem &, bool isContained) override
    {
        if (isThere == isContained || !whyNot.isEmpty()) {
            return isThere == isContained ? QString() : whyNot;
        }
        ++changes;
        isThere = isContained;
        return {};
    }
    void setWatched(bool isWatchedNow) override { isWatched = isWatchedNow; }
    void changeOutside(bool isThereNow)
    {
        isThere = isThereNow;
        if (isWatched) {
            Q_EMIT changed();
        }
    }
    bool isThere = false;
    bool isWatched = false;
    int changes = 0;
    QString whyNot;
};

class PanelDesktop : public FakeDesktop
{
public:
    Journal journal;
    ObedientWindows windows { journal };
    SwitchedCompositing blending;
    SwitchedMotion movement;
    NotedProgress progress { journal };
    GrantedHotKey key;
    GrantedTap tap;
    HostedItem item;
    GrantedLogin login;
    // Where the program notes things down; nowhere unless given.
    QString library;

    const Compositing &compositing() const override { return blending; }
    OwnWindows &ownWindows() override { return windows; }
    const Motion &motion() const override { return movement; }
    TaskBarProgress &taskBarProgress() override { return progress; }
    HotKey &hotKey() override { return key; }
    ModifierTap &modifierTap() override { return tap; }
    StatusItem &statusItem() override { return item; }
    LoginItems &loginItems() override { return login; }

    // Another program comes to the front of all.
    void runInFront(const QString &path)
    {
        running.launch({ path });
        running.bringToFront(path);
    }

private:
    QString libraryFolder(::SearchPaths::Domain) const override { return library; }
    bool activate(const QString &path) override
    {
        journal.append(u"activate "_s + QFileInfo(path).fileName());
        return true;
    }
};

class PanelFixture : public IconViewFixture
{
protected:
    void setUp()
    {
        IconViewFixture::setUp();
        // Where every test begins with the pointer.
        QCursor::setPos(QGuiApplication::primaryScreen()->geometry().topLeft());
        DropStack::setSharedDropStack(&_dropStack);
        _dropStack.free();
        use(std::make_unique<PanelDesktop>());
        OTController::registerDefaults();
        set("showWelcomeWindow", false);
    }
    void use(std::unique_ptr<PanelDesktop> desktop)
    {
        useFolder(*desktop);
        _desktop = desktop.get();
        IconViewFixture::_desktop = std::move(desktop);
    }
    void tearDown()
    {
        _window.reset();
        IconViewFixture::tearDown();
        DropStack::setSharedDropStack(nullptr);
    }
    void set(const char *key, const QVariant &value)
    {
        _defaults->setObject(QLatin1String(key), value);
    }
    QString pathOf(const QString &name) const { return _desktop->tree.path(u"apps/"_s + name); }
    // A catalogue with the given applications, and a panel that is still hidden.
    void fill(const QStringList &names)
    {
        IconViewFixture::fill(names);
        _view.reset();
        _window = std::make_unique<OTWindow>(*_manager, *_desktop);
    }
    void fill(int count)
    {
        QStringList names;
        while (names.size() < count) {
            names.append(u"app%1"_s.arg(names.size()));
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
    template <typename Apps> void showPanelOf(const Apps &apps)
    {
        fill(apps);
        show();
    }
    void press(int key, Qt::KeyboardModifiers modifiers = {}) const
    {
        QTest::keyClick(_window->windowHandle(), Qt::Key(key), modifiers);
    }
    // As the user drags it, by its background.
    void dragPanelTo(const QPoint &topLeft) const
    {
        const QPoint hold(8, _window->height() / 2);
        const QPoint start = _window->pos() + hold;
        const QPoint end = topLeft + hold;
        const auto send = [&](QEvent::Type type, const QPoint &onScreen, Qt::MouseButtons held) {
            QMouseEvent event(type, hold, onScreen, Qt::LeftButton, held, Qt::NoModifier);
            QCoreApplication::sendEvent(_window.get(), &event);
        };
        send(QEvent::MouseButtonPress, start, Qt::LeftButton);
        send(QEvent::MouseMove, end, Qt::LeftButton);
        send(QEvent::MouseButtonRelease, end, Qt::NoButton);
    }
    OTIconView &grid() const { return _window->iconView(); }
    // Of an application, in the grid; y downwards.
    QRectF cellOf(const QString &name) const
    {
        return Geometry::flipped(grid().rectOfApp(app(name)), grid().height());
    }
    QPoint middleOf(const QString &name) const { return cellOf(name).center().toPoint(); }

    DropStack _dropStack;
    PanelDesktop *_desktop = nullptr;
    std::unique_ptr<OTWindow> _window;
};
