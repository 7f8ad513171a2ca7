// The status item of a freedesktop system: on the session bus where a program shows such items, in
// the display's tray otherwise.
//
// The first of the two that appears is the one for the life of the process, since Qt
// decides once; it is not asked before, however long that takes, and never while the answer could
// be slow. An item whose host goes comes back with the next one. A host on the bus tells only that
// the item was chosen; a tray lets us feel every press. For those Qt has no signal, so the widget
// that it docks is found among the widgets of the program by the name of its class; where a version
// of Qt calls that otherwise, the item tells what one on the bus tells.

#pragma once

#include "platform/StatusItem.h"

#include <QIcon>
#include <QPointer>
#include <QSystemTrayIcon>
#include <QWidget>

#include <memory>

class NotifierHost;
class TrayWindow;
class QMouseEvent;

class TrayStatusItem final : public StatusItem
{
    Q_OBJECT

public:
    explicit TrayStatusItem(QObject *parent = nullptr);
    ~TrayStatusItem() override;

    // Takes effect in the next turn of the event loop; so does hide().
    void show(const QIcon &icon, const QString &toolTip, QMenu &menu) override;
    void setIcon(const QIcon &icon) override;
    void hide() override;
    bool isShown() const override { return _isShown; }
    QRect place() const override;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void lookForHosts();
    void review();
    bool isThereAHost() const;
    bool isDocked() const;
    void makeItem();
    void removeItem();
    void awaitWidget();
    void takeWidget(QWidget *widget);
    void handleActivation(QSystemTrayIcon::ActivationReason reason);
    bool handleWidgetEvent(QEvent &event);
    bool handleWindowEvent(QEvent &event);
    bool handleMouse(QMouseEvent &event);

    QIcon _icon;
    QString _toolTip;
    // Null while hidden.
    QMenu *_menu = nullptr;

    std::unique_ptr<NotifierHost> _notifierHost;
    std::unique_ptr<TrayWindow> _trayWindow;
    QSystemTrayIcon *_item = nullptr;
    // What Qt docks into a tray.
    QPointer<QWidget> _widget;
    bool _hasHadWidget = false;
    bool _isShown = false;
    bool _isPressed = false;
    bool _isDragNoticed = false;
};
