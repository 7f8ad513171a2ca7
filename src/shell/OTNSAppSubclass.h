// The application object: keys that close windows and cancel what is going on, wherever the focus
// is within the window; and the panel that tells about the program.

#pragma once

#include <QApplication>

#include <optional>

class InfoDictionary;
class OwnWindows;
class QDialog;
class QKeyEvent;

class OTNSAppSubclass : public QApplication
{
    Q_OBJECT

public:
    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) override;

    // Closes the window that has the keyboard, each kind in its way.
    static void performClose();
    // Cancels in it. False when there is nothing that could be cancelled, and the key is free for
    // others.
    static bool handleCancelEvent();

    // Null while it is not shown.
    static QDialog *standardAboutPanel();
    // Shows it, or brings it to the front. It goes away when it is closed.
    static void orderFrontStandardAboutPanel(const InfoDictionary &info, OwnWindows &ownWindows);

private:
    bool routeKey(const QKeyEvent &event) const;

    // When a key came while a menu or a list was open, in milliseconds of the display.
    std::optional<quint64> _popupKeyTime;
};
