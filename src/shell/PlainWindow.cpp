#include "shell/PlainWindow.h"

#include "grid/OTIconView.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"

#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScreen>

namespace {

// Room for a frame and a glimpse of the desktop round a grid that fills the screen, in points.
constexpr int ScreenMargin = 32;
// What an empty group is shown in.
constexpr QSize EmptySize(360, 160);
// What shows through the colour of the window, since nothing is behind it.
constexpr QRgb Base = qRgb(222, 224, 228);

// An event of one of two equal modifier keys knows nothing of the other.
Qt::KeyboardModifiers heldModifiers(const QKeyEvent &event)
{
    switch (event.key()) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
        return QGuiApplication::queryKeyboardModifiers();
    default:
        return event.modifiers();
    }
}

} // namespace

PlainWindow::PlainWindow(OTAppManager &appManager, std::optional<QSizeF> largestGrid)
    : _largestGrid(largestGrid)
    , _iconView(new OTIconView(appManager, *this, this))
{
    setWindowTitle(QStringLiteral("Ortu"));
    // Painted whole, so that nothing has to be erased first.
    setAttribute(Qt::WA_OpaquePaintEvent);
    // The keyboard is for the grid, input methods included.
    setAttribute(Qt::WA_InputMethodEnabled);
    setFocusPolicy(Qt::StrongFocus);
    connect(&NotificationCenter::defaultCenter(), &NotificationCenter::N_SubviewNeedsResizing, this,
        &PlainWindow::subviewDidResize);
    connect(&UserDefaults::standard(), &UserDefaults::changed, this, [this](const QString &key) {
        if (GridColors::keys().contains(key)) {
            update();
        }
    });
    setFixedSize(EmptySize);
}

QSizeF PlainWindow::maxIconViewSize() const
{
    if (_largestGrid) {
        return *_largestGrid;
    }
    const QScreen *shownOn = screen();
    return shownOn ? QSizeF(shownOn->availableSize()) - QSizeF(ScreenMargin, ScreenMargin)
                   : QSizeF();
}

void PlainWindow::subviewDidResize(QObject *view)
{
    if (view != _iconView) {
        return;
    }
    const QSize size = _iconView->isEmpty() ? EmptySize : _iconView->viewSize().toSize();
    _iconView->resize(size);
    setFixedSize(size);
}

void PlainWindow::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    const GridColors &colors = _iconView->colors();
    painter.fillRect(event->rect(), QColor(Base));
    painter.setOpacity(qreal(colors.winAlpha));
    painter.fillRect(event->rect(), colors.winColor);
    painter.setOpacity(1);
    if (_iconView->isEmpty()) {
        painter.setPen(colors.textColor);
        painter.drawText(rect(), Qt::AlignCenter, tr("No applications"));
    }
}

void PlainWindow::keyPressEvent(QKeyEvent *event)
{
    _iconView->modifierKeysChanged(heldModifiers(*event));
    event->setAccepted(_iconView->keyPressed(*event));
}

void PlainWindow::keyReleaseEvent(QKeyEvent *event)
{
    _iconView->modifierKeysChanged(heldModifiers(*event));
    event->setAccepted(_iconView->handleKeyUp(*event));
}

void PlainWindow::inputMethodEvent(QInputMethodEvent *event)
{
    _iconView->textCommitted(event->commitString());
    event->accept();
}

// Keys that are released elsewhere are not heard of.
void PlainWindow::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::ActivationChange) {
        if (isActiveWindow()) {
            _iconView->ignoreHeldModifiers(QGuiApplication::queryKeyboardModifiers());
        } else {
            _iconView->resignFirstResponder();
        }
    }
    QWidget::changeEvent(event);
}
