// What floats above the icons of the panel: the name of the selected application beside its icon,
// the bubble with what has been typed, a small note of the filter once that has faded, an
// application in large, and a message. It lies over the whole panel and lets the mouse through.
//
// The name grows longer when the selection rests, and it goes where its icon goes: nothing floats
// over a cell that has become empty, or over the text that stands in for the grid. Only the places
// where something changes are repainted, and no timer runs while the view is hidden. Rectangles
// that are handed out are the widget's own.

#pragma once

#include "catalogue/AppList.h"
#include "shell/base/KRViewAnimation.h"
#include "shell/selector/BigIcon.h"
#include "shell/selector/FilterBubble.h"
#include "shell/selector/MessageBubble.h"
#include "shell/selector/PanelNote.h"

#include <QColor>
#include <QImage>
#include <QTimer>
#include <QWidget>

class Desktop;
class OTAppManager;
class OTIconView;

class OTIconOverlayView : public QWidget
{
    Q_OBJECT

public:
    // The grid is to have the same parent, and is to be resized before the overlay. Catalogue and
    // grid must outlive it.
    OTIconOverlayView(OTAppManager &appManager, OTIconView &iconView, QWidget *parent = nullptr);
    ~OTIconOverlayView() override;

    // Registers the preferences that only the overlay reads. To be called once, before anything
    // reads them.
    static void registerDefaults();

    // As it is shown; empty while there is none.
    const QString &label() const { return _label; }
    const QRect &labelRect() const { return _labelRect; }
    const FilterBubble &filterBubble() const { return _filterBubble; }
    double filterStringAlpha() const { return _filterStringAlpha; }
    const PanelNote &note() const { return _note; }
    const MessageBubble &message() const { return _message; }
    // Empty while no application is shown in large; the bubble hides it.
    const QRect &bigIconRect() const { return _bigIcon.rect(); }

    // Shows an application in large until another one is given. Null leaves what the tablet mode
    // shows by itself, which is the selected one.
    void drawBigIconForApp(const AppRef &app);
    // Where the note of the filter has its place.
    void setNotePlace(const QRect &place);
    // Above everything else, until it is replaced by another one or by none.
    void setMessage(const QString &message);
    // The grid has forgotten what was typed.
    void clearFilterString();
    void startFilterStringAnimation();
    void updateColors();
    // A menu lies over the panel, or has begun to close: there is no name beneath it.
    void setIsMenuOpen(bool isOpen);

    // What happens when the time is up, after which the selection has rested and nothing was typed.
    void labelTimerFire();
    void filterStringTimerFire();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void selectedAppDidChange(QObject *view, const AppRef &app, const QRectF &rect);
    void filterStringDidChange(QObject *view, const QString &filterString, double resetInterval);
    void preferenceDidChange(const QString &key);
    void followGrid();
    void startLabelTimer();
    void cancelFilterStringTimer();
    void setFilterString(const QString &filterString);
    void updateNote();
    void offerDidChange();
    void announce(const QString &text);

    QString fullLabel() const;
    QString foundActionTitle() const;
    void drawInfoForApp(const AppRef &app, const QRectF &inRect);
    void drawInfo(QPainter &painter) const;
    void placeBigIcon();
    void loadBigPicture();

    OTIconView &_iconView;
    Desktop &_desktop;
    bool _tabletMode = false;
    qint64 _tabletHandedness = 1;
    QColor _fgColor;
    QColor _bgColor;
    // The latter, as what is read is drawn on.
    QColor _plate;

    AppRef _selectedApp;
    // Its cell, with y growing upwards from the lower edge of the overlay.
    QRectF _selectedAppRect;
    bool _showLongLabel = false;
    // The grid shows how far it has got with looking for applications.
    bool _isScanning = false;
    bool _isMenuOpen = false;
    QTimer _labelTimer { this };
    QString _label;
    QRect _labelRect;

    QString _filterString;
    // Below it, as it is shown.
    QString _actionTitle;
    QTimer _filterStringTimer { this };
    KRViewAnimation _filterStringAnimation { this };
    double _filterStringAlpha = 1;
    FilterBubble _filterBubble;
    QRect _notePlace;
    PanelNote _note;

    // What was asked for, and what is shown.
    AppRef _bigIconWanted;
    AppRef _bigIconApp;
    BigIcon _bigIcon;
    QImage _bigPicture;

    MessageBubble _message;
};
