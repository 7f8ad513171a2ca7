#include "platform/freedesktop/TrayStatusItem.h"

#include "platform/freedesktop/bus/NotifierHost.h"
#include "platform/freedesktop/x11/TrayWindow.h"

#include <QApplication>
#include <QCursor>
#include <QDragEnterEvent>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QWindow>

#include <optional>
#include <utility>

namespace {

// Of what Qt docks into a tray.
constexpr const char *widgetClass = "QSystemTrayIconSys";

// What Qt has decided, when the first item was made.
std::optional<bool> isOnTheBus;

bool isThereADisplay()
{
    const QString platform = QGuiApplication::platformName();
    return qobject_cast<QApplication *>(QCoreApplication::instance())
        && (platform == QLatin1String("xcb") || platform.startsWith(QLatin1String("wayland")));
}

ActivationStamp stampOf(const QMouseEvent &event)
{
    return { quint32(event.timestamp()), {} };
}

} // namespace

TrayStatusItem::TrayStatusItem(QObject *parent)
    : StatusItem(parent)
{ }

TrayStatusItem::~TrayStatusItem() = default;

void TrayStatusItem::show(const QIcon &icon, const QString &toolTip, QMenu &menu)
{
    _icon = icon;
    _toolTip = toolTip;
    _menu = &menu;
    removeItem();
    if (isThereADisplay()) {
        QMetaObject::invokeMethod(this, &TrayStatusItem::lookForHosts, Qt::QueuedConnection);
    }
}

void TrayStatusItem::setIcon(const QIcon &icon)
{
    _icon = icon;
    if (_item) {
        _item->setIcon(icon);
    }
}

void TrayStatusItem::hide()
{
    _menu = nullptr;
    removeItem();
    review();
}

QRect TrayStatusItem::place() const
{
    return _widget ? QRect(_widget->mapToGlobal(QPoint(0, 0)), _widget->size()) : QRect();
}

void TrayStatusItem::lookForHosts()
{
    if (!_notifierHost) {
        _notifierHost = std::make_unique<NotifierHost>();
        connect(_notifierHost.get(), &NotifierHost::stateChanged, this, &TrayStatusItem::review);
    }
    if (!_trayWindow && QGuiApplication::platformName() == QLatin1String("xcb")) {
        _trayWindow = std::make_unique<TrayWindow>();
        connect(_trayWindow.get(), &TrayWindow::trayChanged, this, &TrayStatusItem::review);
        connect(_trayWindow.get(), &TrayWindow::isDockedChanged, this, &TrayStatusItem::review);
    }
    review();
}

bool TrayStatusItem::isThereAHost() const
{
    const NotifierHost::State onTheBus =
        _notifierHost ? _notifierHost->state() : NotifierHost::State::Unknown;
    const bool hasTray = _trayWindow && _trayWindow->tray() != XCB_WINDOW_NONE;
    if (isOnTheBus) {
        return *isOnTheBus ? onTheBus == NotifierHost::State::Present : hasTray;
    }
    return onTheBus == NotifierHost::State::Present
        || (onTheBus == NotifierHost::State::Absent && hasTray);
}

void TrayStatusItem::review()
{
    const bool isThere = _menu && isThereAHost();
    if (isThere && !_item) {
        makeItem();
    }
    const bool isShown = isThere && (*isOnTheBus || isDocked());
    if (isShown != _isShown) {
        _isShown = isShown;
        Q_EMIT isShownChanged(isShown);
    }
}

// The server knows best; where it cannot be asked, Qt knows a little.
bool TrayStatusItem::isDocked() const
{
    return _hasHadWidget ? _trayWindow->isDocked() : _item->geometry().isValid();
}

void TrayStatusItem::makeItem()
{
    if (!isOnTheBus) {
        isOnTheBus = _notifierHost->state() == NotifierHost::State::Present;
    }
    if (!*isOnTheBus) {
        awaitWidget();
    }
    _item = new QSystemTrayIcon(_icon, this);
    _item->setToolTip(_toolTip);
    _item->setContextMenu(_menu);
    connect(_item, &QSystemTrayIcon::activated, this, &TrayStatusItem::handleActivation);
    _item->show();
}

// Not at once: we may have been called by one of its events.
void TrayStatusItem::removeItem()
{
    if (!_item) {
        return;
    }
    qApp->removeEventFilter(this);
    if (_widget) {
        _widget->removeEventFilter(this);
        if (_widget->windowHandle()) {
            _widget->windowHandle()->removeEventFilter(this);
        }
        _widget->disconnect(this);
        _widget = nullptr;
        _trayWindow->follow(XCB_WINDOW_NONE);
    }
    _item->disconnect(this);
    _item->setContextMenu(nullptr);
    std::exchange(_item, nullptr)->deleteLater();
    _isPressed = false;
}

// Qt tells of clicks only. But what it docks is a widget like any other, which it makes
// once it has heard of a tray, and again when there is another.
void TrayStatusItem::awaitWidget()
{
    qApp->installEventFilter(this);
}

// Its window may be another one each time.
void TrayStatusItem::takeWidget(QWidget *widget)
{
    if (widget != _widget) {
        qApp->removeEventFilter(this);
        _widget = widget;
        _hasHadWidget = true;
        _widget->setAcceptDrops(true);
        _widget->installEventFilter(this);
        connect(_widget, &QObject::destroyed, this, [this] {
            // The release will not be told any more.
            if (std::exchange(_isPressed, false)) {
                Q_EMIT released(false, {});
            }
            awaitWidget();
        });
    }
    if (_widget->windowHandle()) {
        _widget->windowHandle()->installEventFilter(this);
    }
    _trayWindow->follow(xcb_window_t(_widget->internalWinId()));
}

// The second click of a double click is a click.
void TrayStatusItem::handleActivation(QSystemTrayIcon::ActivationReason reason)
{
    if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick) {
        Q_EMIT activated({});
    } else if (reason == QSystemTrayIcon::Context && *isOnTheBus) {
        // By a host that does not open menus itself.
        Q_EMIT menuWanted(QCursor::pos());
    }
}

bool TrayStatusItem::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::WinIdChange && watched->inherits(widgetClass)
        && (!_widget || watched == _widget)) {
        takeWidget(static_cast<QWidget *>(watched));
        return false;
    }
    if (watched == _widget) {
        return handleWidgetEvent(*event);
    }
    return _widget && watched == _widget->windowHandle() && handleWindowEvent(*event);
}

bool TrayStatusItem::handleWidgetEvent(QEvent &event)
{
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
        return handleMouse(static_cast<QMouseEvent &>(event));
    case QEvent::ContextMenu:
        return true;
    default:
        return false;
    }
}

// A widget that takes nothing is not told when the drag leaves it; its window is.
bool TrayStatusItem::handleWindowEvent(QEvent &event)
{
    switch (event.type()) {
    case QEvent::DragEnter:
        event.ignore();
        _isDragNoticed = static_cast<QDragEnterEvent &>(event).mimeData()->hasUrls();
        if (_isDragNoticed) {
            Q_EMIT dragEntered({});
        }
        return true;
    case QEvent::DragMove:
        event.ignore();
        return true;
    case QEvent::DragLeave:
        if (std::exchange(_isDragNoticed, false)) {
            Q_EMIT dragged(false);
        }
        return true;
    default:
        return false;
    }
}

// Middle clicks have no meaning.
bool TrayStatusItem::handleMouse(QMouseEvent &event)
{
    const bool isInside = _widget->rect().contains(event.position().toPoint());
    const bool isPress =
        event.type() == QEvent::MouseButtonPress || event.type() == QEvent::MouseButtonDblClick;
    if (event.type() == QEvent::MouseMove) {
        if (_isPressed) {
            Q_EMIT dragged(isInside);
        }
    } else if (event.button() == Qt::LeftButton && isPress) {
        _isPressed = true;
        Q_EMIT pressed(stampOf(event), event.modifiers());
    } else if (event.button() == Qt::LeftButton && std::exchange(_isPressed, false)) {
        Q_EMIT released(isInside, stampOf(event));
    } else if (event.button() == Qt::RightButton && isPress) {
        Q_EMIT menuWanted(event.globalPosition().toPoint());
    }
    return true;
}
