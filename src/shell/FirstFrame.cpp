#include "shell/FirstFrame.h"

#include "grid/OTIconView.h"
#include "icons/IconLoader.h"
#include "shell/panel/OTWindow.h"

#include <QEvent>

#include <utility>

FirstFrame::FirstFrame(OTWindow &panel)
    : _panel(panel)
{
    _wait.setSingleShot(true);
    connect(&_wait, &QTimer::timeout, this, &FirstFrame::pass);
}

void FirstFrame::await()
{
    if (!_panel.isShown()) {
        _wait.start(0);
        return;
    }
    connect(&_panel, &OTWindow::hidden, this, &FirstFrame::pass);
    // The grid, since the panel itself is not painted where others cover it.
    _panel.iconView().installEventFilter(this);
    _wait.start(LongestWait);
}

bool FirstFrame::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint) {
        _panel.iconView().removeEventFilter(this);
        // Qt sends the frame to the display right after this event.
        QTimer::singleShot(0, this, &FirstFrame::handlePaint);
    }
    return QObject::eventFilter(watched, event);
}

void FirstFrame::handlePaint()
{
    if (_isOver) {
        return;
    }
    const IconLoader &loader = IconLoader::sharedIconLoader();
    if (loader.pendingCount() == 0) {
        pass();
        return;
    }
    connect(&loader, &IconLoader::finished, this, &FirstFrame::pass);
    _wait.start(LongestFilling);
}

void FirstFrame::pass()
{
    if (!std::exchange(_isOver, true)) {
        _wait.stop();
        _panel.iconView().removeEventFilter(this);
        Q_EMIT passed();
    }
}
