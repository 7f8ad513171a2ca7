#include "shell/preferences/Sheet.h"

#include <QApplication>
#include <QEvent>
#include <QScreen>

#include <algorithm>

Sheet::Sheet(const QString &title, QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(title);
    // Qt gives that of the application only to windows without a parent.
    setWindowIcon(QApplication::windowIcon());
    setWindowModality(Qt::WindowModal);
}

void Sheet::showUnder(const QPoint &middleOfUpperEdge)
{
    adjustSize();
    QRect place(QPoint(middleOfUpperEdge.x() - width() / 2, middleOfUpperEdge.y()), size());
    const QRect available = parentWidget()->screen()->availableGeometry();
    place.moveRight(std::min(place.right(), available.right()));
    place.moveBottom(std::min(place.bottom(), available.bottom()));
    place.moveLeft(std::max(place.left(), available.left()));
    place.moveTop(std::max(place.top(), available.top()));
    move(place.topLeft());
    _place = pos();
    _sinceShown.start();
    show();
}

bool Sheet::event(QEvent *event)
{
    const bool isHandled = QDialog::event(event);
    if (event->type() == QEvent::WindowUnblocked && isVisible()) {
        Q_EMIT uncovered();
    }
    return isHandled;
}

void Sheet::moveEvent(QMoveEvent *event)
{
    if (!_sinceShown.hasExpired(Settling.count())) {
        _place = pos();
    }
    QDialog::moveEvent(event);
}
