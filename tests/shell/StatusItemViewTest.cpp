// What presses on the status item do, and how it shows progress.

#include "platform/StatusItem.h"
#include "shell/ShellTest.h"
#include "shell/triggers/OTStatusItemView.h"
#include "support/NotificationCenter.h"

#include <QMenu>
#include <QScreen>

class StatusItemViewTest : public TestCase
{
    Q_OBJECT

    struct FakeStatusItem final : StatusItem
    {
        void show(const QIcon &icon, const QString &, QMenu &) override { icons = { icon }; }
        void setIcon(const QIcon &icon) override { icons.append(icon); }
        QRect place() const override { return rect; }

        QList<QIcon> icons;
        QRect rect;
    };

private Q_SLOTS:
    void init()
    {
        expectNoWarnings();
        _item.rect = {};
        _menu.clear();
        _menu.addAction(u"Quit Ortu"_s);
        _actions = 0;
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
        QVERIFY(isHighlighted() && _view->isMenuPending() && _actions == 0);
        release(true);
        QVERIFY(!isHighlighted() && !_view->isMenuPending() && _actions == 1 && _lastTime == 2);
        press();
        release(false);
        QCOMPARE(_actions, 1);
        press();
        Q_EMIT _item.dragged(false);
        QVERIFY(!isHighlighted() && !_view->isMenuPending());
        Q_EMIT _item.dragged(true);
        release(true);
        QCOMPARE(_actions, 2);
        // Where no presses are reported.
        Q_EMIT _item.activated({ 4, {} });
        QVERIFY(_lastTime == 4 && !_menu.isVisible());
        // A drag from elsewhere acts at once.
        Q_EMIT _item.dragEntered({ 3, {} });
        QVERIFY(_lastTime == 3 && isHighlighted());
    }

    void aLongPress_opensTheMenu()
    {
        press();
        QTRY_VERIFY(_menu.isVisible());
        QVERIFY(!isHighlighted());
        release(true);
        QCOMPARE(_actions, 0);
    }

    void menus_openAtOnce_andBesideTheItem()
    {
        press(Qt::ControlModifier);
        QVERIFY(_menu.isVisible() && !isHighlighted());
        release(true);
        QCOMPARE(_actions, 0);
        _menu.hide();
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        for (int i = 0; i < 16; ++i) {
            _item.rect = { i % 4 * screen.width() / 4, i / 4 * screen.height() / 4, 22, 22 };
            Q_EMIT _item.menuWanted(_item.rect.center());
            QVERIFY(!_menu.geometry().intersects(_item.rect));
            QVERIFY(screen.contains(_menu.geometry()));
            _menu.hide();
        }
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
        QVERIFY(_actions == 0 && _item.icons.size() == 1);
    }

    void progress_isShownSometimes()
    {
        // Too many at a time.
        for (int i = 0; i < 80; ++i) {
            step(i, 100);
        }
        QTRY_COMPARE(_item.icons.size(), 3);
        const QImage picture = OTStatusItemView::progressPicture(79, 100);
        QCOMPARE(
            _item.icons.last().pixmap(16).toImage().convertToFormat(picture.format()), picture);
        // Most of it is filled, and the rest is white.
        QVERIFY(picture.pixelColor(4, 8) != Qt::white && picture.pixelColor(13, 8) == Qt::white);
        step(0, 0);
        QCOMPARE(color(), QColor(Qt::black));
    }

private:
    using Click = OTStatusItemView::Click;

    void makeView(Click click)
    {
        _view.reset();
        _view = std::make_unique<OTStatusItemView>(
            _item, _menu,
            [this](const ActivationStamp &stamp) {
                ++_actions;
                _lastTime = stamp.time;
            },
            click);
    }
    void press(Qt::KeyboardModifiers modifiers = {}) { Q_EMIT _item.pressed({ 1, {} }, modifiers); }
    void release(bool isInside) { Q_EMIT _item.released(isInside, { 2, {} }); }
    // Of a cell in the middle of the glyph.
    QColor color() const { return _item.icons.last().pixmap(22, 22).toImage().pixelColor(11, 11); }
    bool isHighlighted() const { return color() == QColor(Qt::white); }
    void step(int step, int count)
    {
        Q_EMIT NotificationCenter::defaultCenter().N_ShowProgressStep(step, count, u"/apps"_s);
    }

    FakeStatusItem _item;
    QMenu _menu;
    int _actions = 0;
    quint32 _lastTime = 0;
    std::unique_ptr<OTStatusItemView> _view;
};

QTEST_MAIN(StatusItemViewTest)
#include "StatusItemViewTest.moc"
