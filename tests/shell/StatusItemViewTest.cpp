// What presses on the status item come to, and how it shows progress.

#include "platform/StatusItem.h"
#include "shell/OTStatusItemView.h"
#include "support/NotificationCenter.h"

#include <QIcon>
#include <QMenu>
#include <QRegularExpression>
#include <QScreen>
#include <QTest>

#include <memory>

using namespace Qt::Literals::StringLiterals;

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
    void init();
    void cleanup();
    void aShortPress_performsTheAction();
    void aLongPress_opensTheMenu();
    void aPress_countsWhereItEnds();
    void menus_openAtOnce_andBesideTheItem();
    void aDrag_performsTheActionAtOnce();
    void aPlainItem_opensTheMenuOnly();
    void theProgressPicture_isDrawn_data();
    void theProgressPicture_isDrawn();
    void progress_isShownSometimes();

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

void StatusItemViewTest::init()
{
    // The display that is not there remarks on windows that come up.
    QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support )"_s));
    _item.rect = {};
    _menu.clear();
    _menu.addAction(u"Quit Ortu"_s);
    _actions.clear();
    makeView(Click::PerformsAction);
}

void StatusItemViewTest::cleanup()
{
    _menu.hide();
    _view.reset();
}

void StatusItemViewTest::aShortPress_performsTheAction()
{
    press();
    QVERIFY(isHighlighted());
    QVERIFY(_view->isMenuPending());
    QVERIFY(_actions.isEmpty());
    release(true);
    QCOMPARE(_actions, QList<quint32> { 2 });
    QVERIFY(!isHighlighted());
    QVERIFY(!_view->isMenuPending());
    // Where no presses are reported.
    Q_EMIT _item.activated({ 4, {} });
    QCOMPARE(_actions.last(), 4U);
    QVERIFY(!_menu.isVisible());
}

void StatusItemViewTest::aLongPress_opensTheMenu()
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

void StatusItemViewTest::aPress_countsWhereItEnds()
{
    press();
    release(false);
    QVERIFY(_actions.isEmpty());
    press();
    Q_EMIT _item.dragged(false);
    QVERIFY(!isHighlighted());
    QVERIFY(!_view->isMenuPending());
    Q_EMIT _item.dragged(true);
    QVERIFY(isHighlighted());
    QVERIFY(_view->isMenuPending());
    release(true);
    QCOMPARE(_actions.size(), 1);
}

void StatusItemViewTest::menus_openAtOnce_andBesideTheItem()
{
    press(Qt::ControlModifier);
    QVERIFY(_menu.isVisible());
    QVERIFY(!isHighlighted());
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
        for (int x = 0; x < screen.width(); x += screen.width() / 4) {
            for (int y = 0; y < screen.height(); y += screen.height() / 4) {
                _item.rect = { x, y, 22, 22 };
                Q_EMIT _item.menuWanted(_item.rect.center());
                QVERIFY(!_menu.geometry().intersects(_item.rect));
                QVERIFY(screen.contains(_menu.geometry()));
                _menu.hide();
            }
        }
    }
}

void StatusItemViewTest::aDrag_performsTheActionAtOnce()
{
    Q_EMIT _item.dragEntered({ 3, {} });
    QCOMPARE(_actions, QList<quint32> { 3 });
    QVERIFY(isHighlighted());
    QVERIFY(!_view->isMenuPending());
    Q_EMIT _item.dragged(false);
    QVERIFY(!isHighlighted());
}

void StatusItemViewTest::aPlainItem_opensTheMenuOnly()
{
    makeView(Click::OpensMenu);
    press();
    QVERIFY(_menu.isVisible());
    release(true);
    _menu.hide();
    Q_EMIT _item.activated({});
    QVERIFY(_menu.isVisible());
    _menu.hide();
    Q_EMIT _item.menuWanted({ 50, 60 });
    QVERIFY(_menu.isVisible());
    Q_EMIT _item.dragEntered({});
    step(1, 2);
    QVERIFY(_actions.isEmpty());
    QCOMPARE(_item.icons.size(), 1);
}

// Rows of the picture from its middle: "#" is black, "." white.
void StatusItemViewTest::theProgressPicture_isDrawn_data()
{
    QTest::addColumn<int>("step");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("row");

    QTest::newRow("first") << 0 << 4 << u".#............#."_s;
    QTest::newRow("quarter") << 1 << 4 << u".####.........#."_s;
    QTest::newRow("half") << 500 << 1000 << u".#######......#."_s;
    QTest::newRow("last") << 4 << 4 << u".##############."_s;
    QTest::newRow("beyond") << 9 << 4 << u".##############."_s;
    QTest::newRow("below") << -9 << 4 << u".#............#."_s;
    QTest::newRow("huge") << 1'000'000'000 << 2'000'000'000 << u".#######......#."_s;
    QTest::newRow("nothing to do") << 0 << 0 << QString();
    QTest::newRow("negative") << 1 << -1 << QString();
}

void StatusItemViewTest::theProgressPicture_isDrawn()
{
    QFETCH(int, step);
    QFETCH(int, count);
    QFETCH(QString, row);
    const QImage picture = OTStatusItemView::progressPicture(step, count);
    QString middle;
    for (int x = 0; x < picture.width(); ++x) {
        const QColor color = picture.pixelColor(x, 8);
        middle += color == QColor(Qt::black) ? u'#' : color == QColor(Qt::white) ? u'.' : u'?';
    }
    QCOMPARE(middle, row);
    if (!row.isEmpty()) {
        QCOMPARE(picture.size(), QSize(16, 16));
        QCOMPARE(picture.pixelColor(8, 0), QColor(Qt::white));
        QCOMPARE(picture.pixelColor(8, 1), QColor(Qt::black));
        QCOMPARE(picture.pixelColor(12, 2), picture.pixelColor(12, 8));
        QCOMPARE(picture.pixelColor(8, 14), QColor(Qt::black));
    }
}

void StatusItemViewTest::progress_isShownSometimes()
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
    step(90, 100);
    step(100, 100);
    QVERIFY(shown(100));
    step(0, 0);
    QCOMPARE(colorOf(_item.icons.last()), QColor(Qt::black));
    QCOMPARE(_item.icons.size(), 5);
}

QTEST_MAIN(StatusItemViewTest)
#include "StatusItemViewTest.moc"
