#include "shell/welcome/PageView.h"

#include "platform/PageRenderer.h"

#include <QPainter>
#include <QScreen>

namespace {

constexpr qreal PointsInInch = 72;
// Of the screen; the rest is for the buttons, the frame and what lies around the window.
constexpr qreal LargestShare = 0.75;

} // namespace

PageView::PageView(const PagedDocument &document, QWidget *parent)
    : QWidget(parent)
    , _document(document)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFixedSize(sizeHint());
    setAccessibleDescription(_document.text(_page));
}

// A larger font comes with a larger page.
QSize PageView::sizeHint() const
{
    const QSizeF onPaper = _document.pageSize(0) * logicalDpiX() / PointsInInch;
    const QSizeF most = QSizeF(screen()->availableSize()) * LargestShare;
    const bool isTooLarge = onPaper.width() > most.width() || onPaper.height() > most.height();
    return (isTooLarge ? onPaper.scaled(most, Qt::KeepAspectRatio) : onPaper).toSize();
}

void PageView::goToPage(int page)
{
    if (page != _page) {
        _page = page;
        _image = {};
        setAccessibleDescription(_document.text(page));
        update();
        Q_EMIT pageChanged();
    }
}

void PageView::paintEvent(QPaintEvent *)
{
    const QSize pixels = (QSizeF(size()) * devicePixelRatioF()).toSize();
    if (_image.size() != pixels) {
        _image = _document.image(_page, pixels);
    }
    QPainter(this).drawImage(rect(), _image);
}
