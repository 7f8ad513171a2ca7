// What presses on the status item come to, and how it shows progress.

#include "platform/StatusItem.h"
#include "shell/ShellTest.h"
#include "shell/triggers/OTStatusItemView.h"
#include "support/NotificationCenter.h"

#include <QIcon>
#include <QMenu>
#include <QScreen>

namespace {

class FakeStatusItem final : public StatusItem
{
public:
    void show(const QIcon &icon, const QString &, QMenu &) override { icons = { icon }; }
    void setIcon(const QIcon &icon) override { icons.append(icon); }
    QRect place() const override { return rect; }

    QImage picture() const
    {
        return icons.last().pixmap(16).toImage().convertToFormat(
            QImage::Format_ARGB32_Premultiplied);
    }

    QList<QIcon> icons;
    QRect rect;
};

// Of a cell in the middle of the glyph.
QColor colorOf(const QIcon &icon)
{
    return icon.pixmap(22, 22).toImage().pixelColor(11, 11);
}

} // namespace

class StatusItemViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        expectNoWarnings();
        _item.rect = {};
        _menu.clear();
        _menu.addAction(u"Quit Ortu"_s);
        _actions.clear();
        makeView(Click::PerformsAction);
    }
    void cleanup()
    {
        _menu.hide();
        _view.reset();
    }

    void aPress_countsWhereItEnds()
    {
        press();
        QVERIFY(isHighlighted() && _view->isMenuPending() && _actions.isEmpty());
        release(true);
        QCOMPARE(_actions, QList<quint32> { 2 });
        QVERIFY(!isHighlighted() && !_view->isMenuPending());
        press();
        release(false);
        QCOMPARE(_actions.size(), 1);
        press();
        Q_EMIT _item.dragged(false);
        QVERIFY(!isHighlighted() && !_view->isMenuPending());
        Q_EMIT _item.dragged(true);
        QVERIFY(isHighlighted() && _view->isMenuPending());
        release(true);
        QCOMPARE(_actions.size(), 2);
        // Where no presses are reported.
        Q_EMIT _item.activated({ 4, {} });
        QCOMPARE(_actions.last(), 4U);
        QVERIFY(!_menu.isVisible());
    }

    void aLongPress_opensTheMenu()
    {
        press();
        QTRY_VERIFY(_menu.isVisible());
        QVERIFY(!isHighlighted());
        // The pointer still moves and rises.
        Q_EMIT _item.dragged(true);
        QVERIFY(!_view->isMenuPending());
        release(true);
        QVERIFY(_actions.isEmpty());
    }

    void menus_openAtOnce_andBesideTheItem()
    {
        press(Qt::ControlModifier);
        QVERIFY(_menu.isVisible() && !isHighlighted());
        release(true);
        QVERIFY(_actions.isEmpty());
        _menu.hide();
        Q_EMIT _item.menuWanted({ 50, 60 });
        QCOMPARE(_menu.pos(), QPoint(50, 60));
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        for (int tall = 0; tall < 40; tall += 39) {
            for (int i = 0; i < tall; ++i) {
                _menu.addAction(u"more"_s);
            }
            for (int i = 0; i < 16; ++i) {
                _item.rect = { i % 4 * screen.width() / 4, i / 4 * screen.height() / 4, 22, 22 };
                Q_EMIT _item.menuWanted(_item.rect.center());
                QVERIFY(!_menu.geometry().intersects(_item.rect));
                QVERIFY(screen.contains(_menu.geometry()));
                _menu.hide();
            }
        }
    }

    void aDrag_performsTheActionAtOnce()
    {
        Q_EMIT _item.dragEntered({ 3, {} });
        QCOMPARE(_actions, QList<quint32> { 3 });
        QVERIFY(isHighlighted() && !_view->isMenuPending());
        Q_EMIT _item.dragged(false);
        QVERIFY(!isHighlighted());
    }

    void aPlainItem_opensTheMenuOnly()
    {
        makeView(Click::OpensMenu);
        press();
        QVERIFY(_menu.isVisible());
        release(true);
        _menu.hide();
        Q_EMIT _item.activated({});
        QVERIFY(_menu.isVisible());
        Q_EMIT _item.dragEntered({});
        step(1, 2);
        QVERIFY(_actions.isEmpty() && _item.icons.size() == 1);
    }

    // Rows of the picture from its middle: "#" is black, "." white.
    void theProgressPicture_isDrawn()
    {
        const auto row = [](int step, int count) {
            const QImage picture = OTStatusItemView::progressPicture(step, count);
            QString middle;
            for (int x = 0; x < picture.width(); ++x) {
                const QColor color = picture.pixelColor(x, 8);
                middle += color == Qt::black ? u'#' : color == Qt::white ? u'.' : u'?';
            }
            return middle;
        };
        QCOMPARE(row(0, 4), u".#............#."_s);
        QCOMPARE(row(1, 4), u".####.........#."_s);
        QCOMPARE(row(1'000'000'000, 2'000'000'000), u".#######......#."_s);
        QCOMPARE(row(4, 4), u".##############."_s);
        QCOMPARE(row(9, 4), row(4, 4));
        QCOMPARE(row(-9, 4), row(0, 4));
        QVERIFY(row(0, 0).isEmpty() && row(1, -1).isEmpty());
        const QImage picture = OTStatusItemView::progressPicture(1, 4);
        QCOMPARE(picture.size(), QSize(16, 16));
        QCOMPARE(picture.pixelColor(8, 0), QColor(Qt::white));
        QCOMPARE(picture.pixelColor(8, 1), QColor(Qt::black));
        QCOMPARE(picture.pixelColor(8, 14), QColor(Qt::black));
    }

    void progress_isShownSometimes()
    {
        const auto shown = [this](int step) {
            return _item.picture() == OTStatusItemView::progressPicture(step, 100);
        };
        step(0, 100);
        QVERIFY(shown(0));
        // Too many at a time.
        for (int i = 1; i < 80; ++i) {
            step(i, 100);
        }
        QVERIFY(shown(0));
        QTRY_VERIFY(shown(79));
        QCOMPARE(_item.icons.size(), 3);
        // Pressed, it shows progress all the same.
        press();
        QVERIFY(shown(79));
        release(true);
        step(100, 100);
        QVERIFY(shown(100));
        step(0, 0);
        QCOMPARE(colorOf(_item.icons.last()), QColor(Qt::black));
    }

private:
    using Click = OTStatusItemView::Click;

    void makeView(Click click)
    {
        _view.reset();
        _view = std::make_unique<OTStatusItemView>(
            _item, _menu, [this](const ActivationStamp &stamp) { _actions.append(stamp.time); },
            click);
    }
    void press(Qt::KeyboardModifiers modifiers = {}) { Q_EMIT _item.pressed({ 1, {} }, modifiers); }
    void release(bool isInside) { Q_EMIT _item.released(isInside, { 2, {} }); }
    bool isHighlighted() const { return colorOf(_item.icons.last()) == QColor(Qt::white); }
    void step(int step, int count)
    {
        Q_EMIT NotificationCenter::defaultCenter().N_ShowProgressStep(step, count, u"/apps"_s);
    }

    FakeStatusItem _item;
    QMenu _menu;
    QList<quint32> _actions;
    std::unique_ptr<OTStatusItemView> _view;
};

QTEST_MAIN(StatusItemViewTest)
#include "StatusItemViewTest.moc"
