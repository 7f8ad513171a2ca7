#include "shell/selector/OTIconOverlayView.h"

#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "grid/OTIconView.h"
#include "icons/IconLoader.h"
#include "platform/Desktop.h"
#include "shell/base/OTBkgndView.h"
#include "shell/selector/LabelPlace.h"
#include "support/Contrast.h"
#include "support/Geometry.h"
#include "support/NotificationCenter.h"
#include "support/OneLine.h"
#include "support/Shapes.h"
#include "support/UserDefaults.h"

#include <QAccessible>
#include <QFontMetricsF>
#include <QMarginsF>
#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPointer>

#include <algorithm>
#include <cmath>

namespace {

// Milliseconds.
constexpr int LabelTime = 2000;
// The longest fade of the bubble, in seconds.
constexpr double LongestReset = 3600;
constexpr float LabelAlpha = 0.8F;
constexpr float MessageAlpha = 0.97F;
constexpr float BubbleAlpha = 0.25F;
// How far the round corners of the panel reach in, from a side that is cut square, in points.
const QMarginsF cornerMargins(9, 9, 9, 9);

namespace Key {
const QString tabletMode = QStringLiteral("tabletMode");
const QString tabletHandedness = QStringLiteral("tabletHandedness");
} // namespace Key

QColor withAlpha(QColor color, float alpha)
{
    color.setAlphaF(alpha);
    return color;
}

QString folderOf(const QString &path)
{
    return path.left(std::max<qsizetype>(path.lastIndexOf(QLatin1Char('/')), 1));
}

QString pathWithoutExtension(const QString &path)
{
    const QString folder = path.left(path.lastIndexOf(QLatin1Char('/')) + 1);
    return folder == path ? path : folder + Items::nameOf(path);
}

} // namespace

OTIconOverlayView::OTIconOverlayView(
    OTAppManager &appManager, OTIconView &iconView, QWidget *parent)
    : QWidget(parent)
    , _iconView(iconView)
    , _desktop(appManager.desktop())
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    for (QTimer *timer : { &_labelTimer, &_filterStringTimer }) {
        timer->setSingleShot(true);
    }
    connect(&_labelTimer, &QTimer::timeout, this, &OTIconOverlayView::labelTimerFire);
    connect(&_filterStringTimer, &QTimer::timeout, this, &OTIconOverlayView::filterStringTimerFire);
    for (const auto ended :
        { &KRViewAnimation::animationDidEnd, &KRViewAnimation::animationDidStop }) {
        connect(&_filterStringAnimation, ended, this, &OTIconOverlayView::clearFilterString);
    }

    const NotificationCenter &center = NotificationCenter::defaultCenter();
    connect(&center, &NotificationCenter::N_SelectedAppChanged, this,
        &OTIconOverlayView::selectedAppDidChange);
    connect(&center, &NotificationCenter::N_FilterStringChanged, this,
        &OTIconOverlayView::filterStringDidChange);
    connect(&center, &NotificationCenter::N_ShowProgressStep, this, [this](int, int count) {
        _isScanning = count > 0;
        drawInfoForApp(_selectedApp, _selectedAppRect);
    });
    connect(&center, &NotificationCenter::N_SubviewNeedsResizing, this, [this](QObject *view) {
        if (view == &_iconView) {
            followGrid();
        }
    });
    connect(&_iconView.drags(), &GridDrags::offerChanged, this, &OTIconOverlayView::offerDidChange);
    connect(&_iconView.menu(), &AppMenu::isOpenChanged, this, &OTIconOverlayView::setIsMenuOpen);
    // The grid has laid out its list by then.
    connect(&appManager, &OTAppManager::didChange, this, &OTIconOverlayView::followGrid);
    connect(&UserDefaults::standard(), &UserDefaults::changed, this,
        &OTIconOverlayView::preferenceDidChange);
    preferenceDidChange(Key::tabletMode);
    preferenceDidChange(Key::tabletHandedness);
    updateColors();
}

OTIconOverlayView::~OTIconOverlayView() = default;

void OTIconOverlayView::registerDefaults()
{
    UserDefaults::standard().registerDefaults({
        { Key::tabletMode, false },
        { Key::tabletHandedness, 1 },
    });
}

void OTIconOverlayView::preferenceDidChange(const QString &key)
{
    const UserDefaults &defaults = UserDefaults::standard();
    if (key == Key::tabletMode || key == Key::tabletHandedness) {
        _tabletMode = defaults.boolForKey(Key::tabletMode);
        _tabletHandedness = defaults.integerForKey(Key::tabletHandedness);
        drawInfoForApp(_selectedApp, _selectedAppRect);
    } else if (GridColors::keys().contains(key)) {
        updateColors();
    }
}

// They are to be told apart even where the window is not to be seen.
void OTIconOverlayView::updateColors()
{
    const QColor color = _iconView.colors().winColor;
    _bgColor = color;
    _fgColor = contrastingBlackOrWhite(color);
    // Icons lie behind it, and those can have any colour.
    _plate = Backdrop().strengthened(withAlpha(color, LabelAlpha), _fgColor);
    // Its letters are large, and set off from icons by their shadow.
    const Backdrop window = Backdrop().with(withAlpha(color, _iconView.colors().winAlpha));
    _filterBubble.setColors(_fgColor, window.strengthened(withAlpha(color, BubbleAlpha), _fgColor));
    update();
}

void OTIconOverlayView::selectedAppDidChange(QObject *view, const AppRef &app, const QRectF &rect)
{
    if (view != &_iconView) {
        return;
    }
    _showLongLabel = false;
    _labelTimer.stop();
    QRectF onOverlay;
    if (app) {
        onOverlay = Geometry::flipped(rect, _iconView.height());
        onOverlay.translate(_iconView.pos() - pos());
        onOverlay = Geometry::flipped(onOverlay, height());
    }
    drawInfoForApp(app, onOverlay);
    if (oneLine(foundActionTitle()) != _actionTitle) {
        setFilterString(_filterString);
    }
    startLabelTimer();
}

// The grid says which application is selected, but not that its cell has moved, or that another
// application stands there now.
void OTIconOverlayView::followGrid()
{
    const AppRef app = _iconView.appAtCoords(_iconView.selectedCoords());
    const bool isLong = _showLongLabel && app == _selectedApp;
    const int remaining = app == _selectedApp ? _labelTimer.remainingTime() : -1;
    selectedAppDidChange(&_iconView, app, app ? _iconView.rectOfApp(app) : QRectF());
    if (isLong) {
        labelTimerFire();
    } else if (remaining >= 0) {
        _labelTimer.start(remaining);
    }
}

void OTIconOverlayView::setIsMenuOpen(bool isOpen)
{
    _isMenuOpen = isOpen;
    drawInfoForApp(_selectedApp, _selectedAppRect);
}

void OTIconOverlayView::startLabelTimer()
{
    if (_selectedApp && isVisible()) {
        _labelTimer.start(LabelTime);
    }
}

void OTIconOverlayView::labelTimerFire()
{
    _labelTimer.stop();
    _showLongLabel = true;
    drawInfoForApp(_selectedApp, _selectedAppRect);
}

QString OTIconOverlayView::fullLabel() const
{
    const QString name = _selectedApp->displayName();
    // What Return does, and of which application.
    const QString title = _selectedApp == _iconView.appOfReturn() ? foundActionTitle() : QString();
    if (!title.isEmpty()) {
        return _showLongLabel ? tr("%1 (%2)").arg(title, name) : title;
    }
    if (!_showLongLabel) {
        return name;
    }
    const QString &path = _selectedApp->path();
    const std::optional<QString> kind = _desktop.items().genericNameOf(path);
    if (!kind) {
        return pathWithoutExtension(path);
    }
    // Some are called no more than what they are.
    return name.contains(*kind, Qt::CaseInsensitive) ? name : tr("%1 (%2)").arg(name, *kind);
}

// Of what Return starts; empty where that is an application itself.
QString OTIconOverlayView::foundActionTitle() const
{
    const AppRef app = _iconView.appOfReturn();
    const auto action = app ? _iconView.foundAction(app) : std::nullopt;
    return action ? action->title : QString();
}

// Where the label was, and where it is now, is drawn anew.
void OTIconOverlayView::drawInfoForApp(const AppRef &app, const QRectF &inRect)
{
    _selectedApp = app;
    _selectedAppRect = inRect;
    QString label;
    QRect rect;
    if (app && !_isScanning && !_isMenuOpen) {
        const QFontMetricsF metrics(font());
        label = metrics.elidedText(oneLine(fullLabel()),
            _showLongLabel ? Qt::ElideMiddle : Qt::ElideRight, width() - metrics.height());
        const LabelPlace place { .viewSize = size(),
            .groupOrientation = _iconView.gridLayout().settings().groupOrientation,
            .tabletMode = _tabletMode,
            .tabletHandedness = _tabletHandedness };
        const QRectF upwards = place.rectFor(
            inRect, { metrics.horizontalAdvance(label) + metrics.height(), metrics.height() + 1 });
        rect = Geometry::flipped(upwards, height()).toRect();
    }
    if (label != _label || rect != _labelRect) {
        // Where ratios are not whole, a pixel at the edge is only partly the label's.
        const qreal ratio = devicePixelRatioF();
        const int beyond = ratio == std::floor(ratio) ? 0 : 1;
        for (const QRect &part : { _labelRect, rect }) {
            if (!part.isEmpty()) {
                update(part.adjusted(-beyond, -beyond, beyond, beyond));
            }
        }
        _label = label;
        _labelRect = rect;
    }
    placeBigIcon();
}

void OTIconOverlayView::drawInfo(QPainter &painter) const
{
    painter.fillPath(capsulePath(_labelRect), _plate);
    painter.setFont(font());
    painter.setPen(_fgColor);
    painter.drawText(_labelRect, Qt::AlignCenter | Qt::TextSingleLine | Qt::TextDontClip, _label);
}

void OTIconOverlayView::filterStringDidChange(
    QObject *view, const QString &filterString, double resetInterval)
{
    if (view != &_iconView) {
        return;
    }
    cancelFilterStringTimer();
    setFilterString(isVisible() ? filterString : QString());
    // The same application may be found by one of its actions now.
    drawInfoForApp(_selectedApp, _selectedAppRect);
    if (!_filterString.isEmpty()) {
        const double seconds = std::clamp(resetInterval, 0.0, LongestReset);
        _filterStringTimer.start(int(std::lround(seconds * 1000)));
    }
}

void OTIconOverlayView::clearFilterString()
{
    cancelFilterStringTimer();
    setFilterString({});
}

// And the fade with it, so that the next bubble is whole.
void OTIconOverlayView::cancelFilterStringTimer()
{
    _filterStringTimer.stop();
    _filterStringAnimation.stop();
    _filterStringAlpha = 1;
}

void OTIconOverlayView::setFilterString(const QString &filterString)
{
    QRegion changed(_filterBubble.rect());
    _filterString = filterString;
    _actionTitle = oneLine(foundActionTitle());
    _filterBubble.setText(oneLine(filterString), size(), _actionTitle);
    changed += _filterBubble.rect();
    if (!changed.isEmpty()) {
        update(changed + _bigIcon.rect());
    }
    updateNote();
}

// While the bubble is there it says the same, and larger.
void OTIconOverlayView::updateNote()
{
    const bool isFilterWanted = _filterBubble.isEmpty() && isVisible();
    const QString filter = isFilterWanted ? oneLine(_iconView.filterSubstring()) : QString();
    QRegion changed(_note.rect());
    if (filter.isEmpty()) {
        _note.setText(oneLine(_iconView.drags().offerText()), Qt::ElideMiddle, font(), _notePlace);
    } else {
        const QString text =
            _actionTitle.isEmpty() ? filter : tr("%1 (%2)").arg(filter, _actionTitle);
        _note.setText(tr("Filter: %1").arg(text), Qt::ElideLeft, font(), _notePlace);
    }
    changed += _note.rect();
    update(changed);
}

void OTIconOverlayView::offerDidChange()
{
    updateNote();
    announce(_iconView.drags().offerText());
}

void OTIconOverlayView::setNotePlace(const QRect &place)
{
    _notePlace = place;
    updateNote();
}

void OTIconOverlayView::setMessage(const QString &message)
{
    const QRect before = _message.rect();
    _message.setText(message, size());
    update(QRegion(before) + _message.rect());
    announce(message);
}

// To screen readers.
void OTIconOverlayView::announce(const QString &text)
{
    if (text == accessibleName()) {
        return;
    }
    setAccessibleName(text);
    if (!text.isEmpty() && QAccessible::isActive()) {
        QAccessibleEvent alert(this, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}

void OTIconOverlayView::filterStringTimerFire()
{
    _filterStringTimer.stop();
    startFilterStringAnimation();
}

void OTIconOverlayView::startFilterStringAnimation()
{
    AnimatedView bubble;
    bubble.context = this;
    bubble.alpha = [this] { return _filterStringAlpha; };
    bubble.setAlpha = [this](double alpha) {
        _filterStringAlpha = alpha;
        update(_filterBubble.rect());
    };
    _filterStringAnimation.setViewAnimations({ { .view = bubble,
        .startFrame = std::nullopt,
        .endFrame = std::nullopt,
        .fade = ViewAnimation::Fade::Out } });
    constexpr double fadeTime = 0.5;
    _filterStringAnimation.setSeconds(_desktop.motion().isReduced() ? 0 : fadeTime);
    _filterStringAnimation.startAnimation();
}

void OTIconOverlayView::drawBigIconForApp(const AppRef &app)
{
    _bigIconWanted = app;
    placeBigIcon();
}

void OTIconOverlayView::placeBigIcon()
{
    AppRef app = _bigIconWanted;
    if (!app && _tabletMode && !_isScanning) {
        app = _selectedApp;
    }
    const QRect before = _bigIcon.rect();
    const bool isAnother = app != _bigIconApp;
    _bigIconApp = app;
    _bigIcon = app ? BigIcon(oneLine(app->displayName()), oneLine(folderOf(app->path())), size())
                   : BigIcon();
    if (isAnother) {
        loadBigPicture();
    }
    if (isAnother || _bigIcon.rect() != before) {
        update(QRegion(before) + _bigIcon.rect());
    }
}

// The grid's icon, and in its place a sharper one as soon as that has been loaded.
void OTIconOverlayView::loadBigPicture()
{
    _bigPicture = _bigIconApp ? _bigIconApp->icon() : QImage();
    const int edge = int(std::ceil(BigIcon::Width * devicePixelRatioF()));
    if (!_bigIconApp || _bigPicture.width() >= edge) {
        return;
    }
    const auto take = [view = QPointer(this), app = _bigIconApp](const LoadedIcon &loaded) {
        if (view && view->_bigIconApp == app && !loaded.image.isNull()) {
            view->_bigPicture = loaded.image;
            view->update(view->_bigIcon.rect());
        }
    };
    IconLoader::sharedIconLoader().addOperation(
        { _bigIconApp->path(), edge, take }, _desktop.icons());
}

void OTIconOverlayView::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const QRegion &region = event->region();
    // In a small panel what is drawn in its middle reaches the round corners.
    const QRectF middle =
        QRectF(_filterBubble.rect()) | QRectF(_bigIcon.rect()) | QRectF(_message.rect());
    if (!QRectF(rect()).marginsRemoved(cornerMargins).contains(middle)) {
        painter.setClipPath(roundedRectanglePath(rect(), OTBkgndView::CornerRadius));
    }
    if (_filterBubble.isEmpty() && region.intersects(_bigIcon.rect())) {
        _bigIcon.draw(painter, _bigPicture, _fgColor, _plate);
    }
    if (region.intersects(_labelRect)) {
        drawInfo(painter);
    }
    if (region.intersects(_filterBubble.rect())) {
        _filterBubble.draw(painter, _filterStringAlpha);
    }
    if (region.intersects(_note.rect())) {
        painter.setFont(font());
        _note.draw(painter, _fgColor, _plate);
    }
    if (region.intersects(_message.rect())) {
        // Nothing of what it covers is to be read through it.
        _message.draw(
            painter, _fgColor, withAlpha(_bgColor, std::max(_plate.alphaF(), MessageAlpha)));
    }
}

void OTIconOverlayView::resizeEvent(QResizeEvent *)
{
    followGrid();
    setFilterString(_filterString);
    setMessage(_message.text());
}

void OTIconOverlayView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    followGrid();
    updateNote();
}

void OTIconOverlayView::hideEvent(QHideEvent *event)
{
    _labelTimer.stop();
    clearFilterString();
    QWidget::hideEvent(event);
}

void OTIconOverlayView::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange) {
        drawInfoForApp(_selectedApp, _selectedAppRect);
    }
    QWidget::changeEvent(event);
}
