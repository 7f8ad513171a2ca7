// The grid of icons: one group of the catalogue, a cell for each application.
//
// It decides which group is shown and when it is laid out anew; GridLayout does the arithmetic.
// Whenever the grid wants another size it announces N_SubviewNeedsResizing, and its window gives it
// that size. Points and rectangles are in the view's coordinates with y growing upwards; only
// painting and mouse events turn them over.

#pragma once

#include "catalogue/AppArray.h"
#include "grid/AppCommands.h"
#include "grid/AppMenu.h"
#include "grid/GridDrags.h"
#include "grid/StartMarks.h"
#include "grid/drawing/CellPictures.h"
#include "grid/drawing/GatheredRepaint.h"
#include "grid/drawing/GridPainter.h"
#include "grid/drawing/ScanNotice.h"
#include "grid/layout/Coords.h"
#include "grid/layout/GridCells.h"
#include "grid/layout/GridLayout.h"
#include "grid/typing/AppFinder.h"
#include "grid/typing/GridWheel.h"
#include "grid/typing/ModifierKeys.h"
#include "grid/typing/TypeFilter.h"
#include "icons/ColorNames.h"
#include "icons/HueStrip.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QVariant>
#include <QWidget>

#include <optional>

class GridHost;
class OTAppManager;
struct CellLook;

class OTIconView : public QWidget
{
    Q_OBJECT

public:
    // For how long, in milliseconds, icons keep a size before those at that size are loaded, when
    // it follows on another one.
    static constexpr int SizeRest = 150;

    enum class Resizing { WhenChanged, Forced };

    // Catalogue and host must outlive the view. Nothing is shown until setGroupToShow().
    OTIconView(OTAppManager &appManager, GridHost &host, QWidget *parent = nullptr);

    // Registers the preferences that the grid reads. To be called once, before anything reads them.
    static void registerDefaults();

    // The group asked for, and the one shown for it; the latter is -1 while none is shown.
    int groupToShow() const { return _groupToShow; }
    int groupShown() const { return _groupShown; }
    void setGroupToShow(int group);

    // Lays the group out anew. Announces N_SubviewNeedsResizing when forced or when the counts or
    // the size of a cell have changed. A selection that was made by keys goes with its application
    // and is cleared when that is no longer shown; the pointer's is cleared, except where no icon
    // has moved. Either is announced at most once.
    void resizeView(Resizing resizing);
    // Reads the preferences of the layout, then lays out.
    void updateLayout();
    // Forces a number of rows, or of columns where that is 0. The selection does as in
    // resizeView().
    void forceRowColCountForRows(quint64 rows, quint64 orCols);

    // The size of the whole grid; of the view as it is when no application is shown.
    QSizeF viewSize() const { return _layout.viewSize(); }
    // Whether the group shown holds no application.
    bool isEmpty() const { return _cells.isEmpty(); }
    const GridLayout &gridLayout() const { return _layout; }
    QSize sizeHint() const override { return viewSize().toSize(); }

    Coords coordsOfPoint(const QPointF &point) const { return _layout.coordsOfPoint(point); }
    // Found by equality; only row and column are set.
    Coords coordsOfApp(const AppRef &app) const { return _cells.coordsOfApp(app); }
    AppRef appAtCoords(const Coords &coords) const { return _cells.appAtCoords(coords); }
    AppRef appAtPoint(const QPointF &point) const { return appAtCoords(coordsOfPoint(point)); }
    QRectF rectOfCoords(const Coords &coords) const { return _layout.rectOfCoords(coords); }
    QRectF rectOfApp(const AppRef &app) const { return rectOfCoords(coordsOfApp(app)); }
    // The cell in the coordinates of the screen, y downwards.
    QRect onScreen(const Coords &cell) const;

    // The applications of the shown group, in its order.
    AppList appsShown() const { return _appsShown.apps(); }
    // The cells that hold an application, in the order of the grid's rows.
    QList<Coords> occupiedCells() const { return _cells.occupied(); }
    bool isAppRunning(const AppRef &app) const { return _runningPaths.contains(app); }
    bool isAppExcluded(const AppRef &app) const { return _excludedPaths.contains(app); }
    // Whether it is new, and the preferences ask for a mark.
    bool isAppMarkedNew(const AppRef &app) const;
    // Why the shown group has nothing to show and what can be done about it, for people; empty
    // while it has something, and while applications are looked for.
    QString emptyHint() const;

    // Keys as they come; the view never has the keyboard itself, its window hands them on. True
    // when the key was used. Keys for commands come first, then those that move the selection, then
    // what is typed.
    bool keyPressed(const QKeyEvent &event);
    bool performKeyEquivalent(const QKeyEvent &event);
    bool handleKeyDown(const QKeyEvent &event);
    // Text that comes ready made, from an input method. False when the filter takes nothing of it.
    bool textCommitted(const QString &text);
    // Clears the filter. False when there was none.
    bool handleCancelOperation();

    const QString &filterSubstring() const { return _filter.string(); }
    void resetFilterSubstring() { _filter.reset(); }
    void sendFilterSubstringNotification();
    // A filter that no name matches leaves the icons of the colour that it names, in the order by
    // colour. A window of hues leaves what both leave.
    bool isAppKeyFilteredOut(const AppRef &app) const;
    // The action of a shown application that the filter finds, and that Return performs instead of
    // starting the application.
    std::optional<ApplicationActions::Action> foundAction(const AppRef &app) const;
    // What Return starts while typing finds by more than names, as far as is known: what was
    // selected by keys, or the best. Null otherwise.
    AppRef appOfReturn() const;
    void clearFilter();
    // The applications of the shown group that the filter leaves, in the group's order.
    AppList keyFilteredApps1D() const;
    // Dims the icons whose colours are not in the window, until there is none.
    void setHueWindow(const std::optional<HueWindow> &window);

    const Coords &selectedCoords() const { return _selectedCoords; }
    AppRef selectedApp() const { return appAtCoords(_selectedCoords); }
    // As the pointer does.
    void selectCoords(const Coords &coords);
    // As the arrow keys do: Return launches the application, and the selection goes with it.
    void selectCoordsByKeys(const Coords &coords);
    // As what has selected the present cell.
    void selectKeepingKeys(const Coords &coords)
    {
        _isSelectedByKeys ? selectCoordsByKeys(coords) : selectCoords(coords);
    }
    // Ends whatever the user has begun: drag, modifiers, filter, selection.
    void reset();
    // To be called when the window is no longer the one that is used.
    void resignFirstResponder();

    // The modifiers that are held now; they count only while the window is the active one.
    void modifierKeysChanged(Qt::KeyboardModifiers modifiers);
    // To be called when their releases will not be reported, since another window has the keyboard.
    void forgetModifiers() { takeModifiers({}); }
    // Modifiers that are held for another reason count only after their release.
    void ignoreHeldModifiers(Qt::KeyboardModifiers held) { _heldModifiers.ignore(held); }

    // Follows the pointer; for a window that sees its moves before the view does.
    void myMouseMoved(const QPointF &inView) { selectCoords(coordsOfPoint(inView)); }

    // What is dragged over the view, and files that are offered to its applications.
    GridDrags &drags() { return _drags; }
    bool isCommandHeld() const { return _modifiers.command; }
    // The modifiers that are held during a drag of files.
    void takeModifiersOfDrag(Qt::KeyboardModifiers modifiers)
    {
        takeModifiers(ModifierKeys::of(modifiers));
    }
    // The picture of an application's icon that is shown.
    QImage pictureOf(const AppRef &app) { return _pictures.pictureOf(app); }
    // A drag that began with a press on an icon is over.
    void pressEnded();

    // What can be done to the application in the selected cell, and the menu that offers it.
    AppCommands &commands() { return _commands; }
    AppMenu &menu() { return _menu; }
    // What is being started, and shows that.
    StartMarks &starts() { return _starts; }
    // Opens the menu over a cell, which it selects; nothing where that is empty.
    void openMenuAt(const Coords &coords);

    // Text in place of the grid while a long scan goes on; a count below 1 ends it.
    void showProgressStep(int step, int count, const QString &label);
    void updateColors();
    const GridColors &colors() const { return _colors; }
    void setNeedsDisplayForApp(const AppRef &app) { setNeedsDisplayForCoords(coordsOfApp(app)); }

Q_SIGNALS:
    // Another list is shown than before.
    void groupShownChanged(int group);
    // The pointer was pressed on the icon of a cell, at a point of the view, and has moved away
    // from there. A drag that is run for it takes the release of the button; without one a release
    // on the same icon is a click.
    void dragWanted(const Coords &start, const QPointF &pressedAt);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *) override { _layout.setFrameSize(size()); }
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    // Of an input method; the window hands them on like keys.
    void inputMethodEvent(QInputMethodEvent *event) override;

private:
    // What lay where before a layout pass.
    struct Arrangement
    {
        GridLayout layout;
        GridCells cells;
        AppRef selected;
    };

    // What is held down.
    struct Press
    {
        // Of the left button, in the view.
        std::optional<QPointF> mouseDownPoint;
        AppRef app;
        bool isDragWanted = false;
        // The press has opened a menu and lasts as long as that.
        bool isMenu = false;
    };

    void preferenceDidChange(
        const QString &key, const QVariant &oldValue, const QVariant &newValue);
    void maximumIconSizeDidChange();
    void loadIconsAtSize();
    void listDidChange(const QString &key);
    void appIconDidChange(const AppRef &app);
    void newApplicationsDidChange(const QStringList &paths);

    int mappedGroup(int group) const;
    Arrangement arrangement() const { return { _layout, _cells, selectedApp() }; }
    void refillCells(const Arrangement &before);
    void takeModifiers(const ModifierKeys &modifiers);
    void resetInput();

    CellLook lookOf(quint64 row, quint64 column, const AppRef &app) const;
    void drawCells(GridPainter &painter, const QRegion &region);
    void setNeedsDisplayForCoords(const Coords &coords);

    qint64 now() const { return _clock.elapsed(); }
    void filterChanged();
    void findingDidChange();
    void selectBest();
    AppRef appForReturn() const;
    bool isFound(const AppRef &app) const;
    void findColorsOfFilter();
    bool moveSelection(int key);
    bool moveFavourite(const QKeyEvent &event);
    bool changeLineCount(int by);
    void menuIsOpenDidChange(bool isOpen);
    void selectUnderPointer();
    void updateCursor();

    QRect onWidget(const QRectF &rect) const;
    QRect paintedRect(const QRectF &cell) const;
    QPointF inView(const QPointF &onWidget) const;

    OTAppManager &_appManager;
    GridHost &_host;
    GridLayout _layout;
    int _groupToShow = 1;
    int _groupShown = -1;
    AppArray _appsShown;
    GridCells _cells;
    PathSet _excludedPaths;
    PathSet _runningPaths;

    GridColors _colors;
    CellPictures _pictures;
    GatheredRepaint _iconRepaint;
    // Runs while the size of the icons has changed a moment ago.
    QTimer _sizeRest;
    bool _areIconsDue = false;
    ScanNotice _scanNotice;

    QElapsedTimer _clock;
    TypeFilter _filter;
    // Works out results when they are asked for.
    mutable AppFinder _finder;
    // That which suits the filter best, selected for that.
    AppRef _bestApp;
    // What an input method composes and has not committed.
    QString _preedit;
    bool _doesPreeditGoOn = false;
    // That the filter names, where no name matches it.
    QList<ColorNames::Name> _filterColors;
    std::optional<HueWindow> _hueWindow;
    GridWheel _wheel;
    ModifierKeys _modifiers;
    HeldModifiers _heldModifiers;
    Coords _selectedCoords;
    // The selection was moved by keys, not by the pointer.
    bool _isSelectedByKeys = false;
    Press _press;
    // What the middle button was pressed on.
    AppRef _middlePressed;

    StartMarks _starts;
    AppCommands _commands;
    AppMenu _menu;
    GridDrags _drags;
};
