#include "shell/preferences/ColorWell.h"

#include <QColorDialog>
#include <QEvent>
#include <QPainter>

namespace {

// Parts of the height of a line: the swatch is as high as a line of text and this much wider.
constexpr int Width = 3;
constexpr int SquareEdge = 4;

// Squares that show how much of them a colour lets through.
void drawSquares(QPainter &painter, const QRect &place)
{
    painter.fillRect(place, Qt::white);
    for (int y = 0; y < place.height(); y += SquareEdge) {
        for (int x = y / SquareEdge % 2 * SquareEdge; x < place.width(); x += 2 * SquareEdge) {
            painter.fillRect(QRect(x, y, SquareEdge, SquareEdge) & place, Qt::lightGray);
        }
    }
}

} // namespace

ColorWell::ColorWell(const QString &title, QWidget *parent)
    : QToolButton(parent)
    , _title(title)
{
    setAccessibleName(title);
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QToolButton::clicked, this, &ColorWell::openChooser);
    updateSwatch();
}

void ColorWell::setColor(const QColor &color)
{
    _color = color;
    updateSwatch();
    if (_chooser && _chooser->currentColor() != color) {
        const QSignalBlocker blocker(_chooser);
        _chooser->setCurrentColor(color);
    }
}

void ColorWell::closeChooser()
{
    delete _chooser;
}

void ColorWell::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::EnabledChange) {
        updateSwatch();
    }
    QToolButton::changeEvent(event);
}

void ColorWell::openChooser()
{
    if (!_chooser) {
        _chooser = new QColorDialog(_color, this);
        _chooser->setAttribute(Qt::WA_DeleteOnClose);
        _chooser->setWindowTitle(_title);
        _chooser->setOption(QColorDialog::ShowAlphaChannel);
        // That of a desktop is no window of ours, and may choose a colour of its own as it opens.
        _chooser->setOption(QColorDialog::DontUseNativeDialog);
        connect(_chooser, &QColorDialog::currentColorChanged, this, &ColorWell::choose);
        const QColor before = _color;
        connect(_chooser, &QColorDialog::rejected, this, [this, before] { choose(before); });
        _chooser->open();
    }
    _chooser->raise();
}

void ColorWell::choose(const QColor &color)
{
    if (color != _color) {
        setColor(color);
        Q_EMIT colorChosen(color);
    }
}

void ColorWell::updateSwatch()
{
    const int height = fontMetrics().height();
    const QSize size(Width * height, height);
    QPixmap swatch(size * devicePixelRatioF());
    swatch.setDevicePixelRatio(devicePixelRatioF());
    QPainter painter(&swatch);
    drawSquares(painter, QRect(QPoint(0, 0), size));
    painter.fillRect(QRect(QPoint(0, 0), size), _color);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(0, 0, size.width() - 1, size.height() - 1);
    painter.end();
    setIconSize(size);
    setIcon(swatch);
    setAccessibleDescription(_color.name(QColor::HexArgb));
}
