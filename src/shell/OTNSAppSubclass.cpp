#include "shell/OTNSAppSubclass.h"

#include "grid/OTIconView.h"
#include "platform/OwnWindows.h"
#include "shell/panel/OTWindow.h"
#include "support/InfoDictionary.h"

#include <QDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QPointer>
#include <QVBoxLayout>
#include <QWindow>

namespace {

constexpr int aboutIconSize = 96;

QPointer<QDialog> aboutPanel;

QLabel *addLine(QVBoxLayout &lines, const QString &text)
{
    auto *const label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignCenter);
    lines.addWidget(label);
    return label;
}

QDialog *makeAboutPanel(const InfoDictionary &info)
{
    auto *const panel = new QDialog;
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setAttribute(Qt::WA_QuitOnClose, false);
    panel->setWindowTitle(OTNSAppSubclass::tr("About Ortu"));
    auto *const lines = new QVBoxLayout(panel);
    lines->setContentsMargins(48, 24, 48, 24);
    lines->setSizeConstraint(QLayout::SetFixedSize);
    addLine(*lines, {})->setPixmap(QApplication::windowIcon().pixmap(aboutIconSize));
    QLabel *const name = addLine(*lines, info.stringForKey(QStringLiteral("CFBundleName")));
    QFont large = name->font();
    large.setPointSizeF(large.pointSizeF() * 1.6);
    large.setBold(true);
    name->setFont(large);
    addLine(*lines,
        OTNSAppSubclass::tr("Version %1")
            .arg(info.stringForKey(QStringLiteral("CFBundleShortVersionString"))));
    lines->addSpacing(8);
    addLine(*lines, info.stringForKey(QStringLiteral("NSHumanReadableCopyright")));
    return panel;
}

} // namespace

// A window hears of a key first, and before anything in it does. Menus and the like have the
// keyboard to themselves.
bool OTNSAppSubclass::notify(QObject *receiver, QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride && activePopupWidget()) {
        _popupKeyTime = static_cast<QKeyEvent *>(event)->timestamp();
    }
    if (event->type() == QEvent::KeyPress && receiver->isWindowType() && !activePopupWidget()
        && routeKey(*static_cast<QKeyEvent *>(event))) {
        event->accept();
        return true;
    }
    return QApplication::notify(receiver, event);
}

bool OTNSAppSubclass::routeKey(const QKeyEvent &event) const
{
    // A hot key is being chosen.
    if (QWidget::keyboardGrabber()) {
        return false;
    }
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    if (event.key() == Qt::Key_W && modifiers == Qt::ControlModifier) {
        performClose();
        return true;
    }
    const bool isCancel = (event.key() == Qt::Key_Escape && modifiers == Qt::NoModifier)
        || (event.key() == Qt::Key_Period && modifiers == Qt::ControlModifier);
    // A list that drops down goes with the question whether the key is a shortcut, before the key.
    const bool isUsed = event.timestamp() == _popupKeyTime;
    return isCancel && (isUsed || handleCancelEvent());
}

void OTNSAppSubclass::performClose()
{
    QWidget *const window = activeWindow();
    if (auto *const panel = qobject_cast<OTWindow *>(window)) {
        panel->performClose();
    } else if (auto *const dialog = qobject_cast<QDialog *>(window)) {
        dialog->reject();
    } else if (window) {
        window->close();
    }
}

bool OTNSAppSubclass::handleCancelEvent()
{
    // What is dragged is given up first.
    if (QGuiApplication::mouseButtons() != Qt::NoButton) {
        return false;
    }
    QWidget *const window = activeWindow();
    if (auto *const panel = qobject_cast<OTWindow *>(window)) {
        // Qt gives up the drag.
        if (panel->iconView().drags().isOwnDrag()) {
            return false;
        }
        panel->cancelOperation();
    } else if (auto *const dialog = qobject_cast<QDialog *>(window)) {
        dialog->reject();
    } else {
        return false;
    }
    return true;
}

QDialog *OTNSAppSubclass::standardAboutPanel()
{
    // One that has been closed may not be gone yet.
    return aboutPanel && aboutPanel->isVisible() ? aboutPanel.data() : nullptr;
}

void OTNSAppSubclass::orderFrontStandardAboutPanel(
    const InfoDictionary &info, OwnWindows &ownWindows)
{
    if (!standardAboutPanel()) {
        aboutPanel = makeAboutPanel(info);
    }
    aboutPanel->show();
    ownWindows.activate(*aboutPanel->windowHandle(), {});
}
