#include "grid/OTIconView.h"

#include "grid/IconViewFixture.h"

#include <QPaintEvent>
#include <QSignalSpy>

namespace {

QImage plain(QColor color)
{
    QImage image(64, 64, QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    return image;
}

} // namespace

class OTIconViewTest : public IconViewFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }
    void theSizeIsAskedForOnlyWhenItChanges();
    void anIconIsDrawnInItsCell();
    void aChangedIconRepaintsItsCellAlone();
    void aFavouriteThatMovedIsFoundInsteadOfLaunched();
    void aChangedOrientation_leadsToALayoutAndAReadingOrder();
};

void OTIconViewTest::theSizeIsAskedForOnlyWhenItChanges()
{
    QSignalSpy asked(
        &NotificationCenter::defaultCenter(), &NotificationCenter::N_SubviewNeedsResizing);
    fill({ QStringLiteral("a"), QStringLiteral("b") });
    QCOMPARE(asked.size(), 1);
    QCOMPARE(asked[0][0].value<QObject *>(), _view.get());
    // Two cells of 68 points side by side within margins of 12.
    QCOMPARE(_view->viewSize(), QSizeF(160, 92));

    // Another entry with the same path is the same application.
    const auto twin = std::make_shared<OTApp>(app(QStringLiteral("b"))->path(), *_desktop);
    QCOMPARE(_view->coordsOfApp(twin), (Coords { 0, 1 }));
    QCOMPARE(_view->appAtCoords({ 0, 1 }), app(QStringLiteral("b")));
    QVERIFY(_view->coordsOfApp(nullptr).isEmpty() && !_view->appAtCoords({}));

    _view->resizeView(OTIconView::Resizing::WhenChanged);
    QCOMPARE(asked.size(), 1);
    _view->updateLayout();
    QCOMPARE(asked.size(), 2);
    _manager->excludeApp(app(QStringLiteral("a")));
    QCOMPARE(asked.size(), 3);
    QCOMPARE(_view->viewSize(), QSizeF(92, 92));
    _manager->excludeApp(app(QStringLiteral("b")));
    QVERIFY(_view->isEmpty());
    QVERIFY(_view->coordsOfPoint({ 40, 40 }).isEmpty());
}

void OTIconViewTest::anIconIsDrawnInItsCell()
{
    fill({ QStringLiteral("a"), QStringLiteral("b") });
    app(QStringLiteral("a"))->setIcon(plain(Qt::red));
    app(QStringLiteral("b"))->setIcon(plain(Qt::blue).scaled(32, 32));

    const QImage shown = _view->grab().toImage();

    // Margin 12, padding 2: icons fill 14 to 77 and 82 to 145, whatever size they were loaded in.
    QCOMPARE(shown.pixelColor(14, 14), QColor(Qt::red));
    QCOMPARE(shown.pixelColor(77, 77), QColor(Qt::red));
    QVERIFY(shown.pixelColor(78, 77) != QColor(Qt::red));
    QCOMPARE(shown.pixelColor(82, 14), QColor(Qt::blue));
    QCOMPARE(shown.pixelColor(145, 77), QColor(Qt::blue));

    // Behind what runs there is something, and nothing in a cell that is empty.
    const QColor behind = shown.pixelColor(13, 40);
    _desktop->run({ app(QStringLiteral("a"))->path() });
    _view->forceRowColCountForRows(3, 0);
    _view->resize(_view->viewSize().toSize());
    const QImage forced = _view->grab().toImage();
    QCOMPARE(forced.pixelColor(13, 40), QColor(Qt::red));
    QCOMPARE(forced.pixelColor(13, 40 + 2 * 68), behind);
}

void OTIconViewTest::aChangedIconRepaintsItsCellAlone()
{
    PaintedRegion painted;
    fill({ QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c") });
    _view->show();
    QVERIFY(QTest::qWaitForWindowExposed(_view.get()));
    QCoreApplication::processEvents();
    _view->installEventFilter(&painted);

    app(QStringLiteral("b"))->setIcon(plain(Qt::red));

    QTRY_VERIFY(!painted.region.isEmpty());
    QCOMPARE(painted.region.boundingRect(),
        Geometry::flipped(_view->rectOfApp(app(QStringLiteral("b"))), _view->height()).toRect());
}

void OTIconViewTest::aFavouriteThatMovedIsFoundInsteadOfLaunched()
{
    fill({ QStringLiteral("a") });
    const AppRef lost = _manager->appForPath(_home->filePath(QStringLiteral("elsewhere/a")));
    _manager->moveApp(lost, UserGroup, 0, 0);
    _view->setGroupToShow(UserGroup);
    _view->resize(_view->viewSize().toSize());
    const QRectF rect = _view->rectOfApp(lost);
    QVERIFY(!rect.isEmpty());

    QTest::mouseClick(_view.get(), Qt::LeftButton, {},
        Geometry::flipped(rect, _view->height()).center().toPoint());

    QCOMPARE(_manager->userApps1D(), AppList { app(QStringLiteral("a")) });
    QVERIFY(!_view->coordsOfApp(app(QStringLiteral("a"))).isEmpty());
    QTest::mouseClick(_view.get(), Qt::LeftButton, {}, middleOf(QStringLiteral("a")));
    QTRY_COMPARE(_desktop->launched(), QStringList { QStringLiteral("a") });
}

void OTIconViewTest::aChangedOrientation_leadsToALayoutAndAReadingOrder()
{
    const QString orientation = QStringLiteral("groupOrientation");
    const QString readingOrder = QStringLiteral("iconReadingOrder");
    fill({ QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c") });
    _view->setGroupToShow(IncludedGroup);
    QSignalSpy asked(
        &NotificationCenter::defaultCenter(), &NotificationCenter::N_SubviewNeedsResizing);

    _defaults->setObject(orientation, 1);
    QCOMPARE(_defaults->integerForKey(readingOrder), 2);
    QCOMPARE(asked.size(), 1);
    QCOMPARE(_view->groupShown(), int(IncludedGroup));
    // The reading order stays the same here, and the layout must follow all the same.
    _defaults->setObject(orientation, 0);
    QCOMPARE(asked.size(), 2);
    QCOMPARE(_view->groupShown(), int(Included1DGroup));
    _defaults->setObject(orientation, 2);
    QCOMPARE(_defaults->integerForKey(readingOrder), 1);
    QCOMPARE(_view->groupShown(), int(IncludedGroup));
    _defaults->setObject(orientation, 7);
    QCOMPARE(asked.size(), 3);
}

QTEST_MAIN(OTIconViewTest)
#include "OTIconViewTest.moc"
