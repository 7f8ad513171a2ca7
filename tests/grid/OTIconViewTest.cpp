#include "grid/OTIconView.h"

#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "catalogue/ScanFolders.h"
#include "grid/GridHost.h"
#include "platform/Desktop.h"
#include "support/Geometry.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"

#include <QDir>
#include <QMutex>
#include <QPaintEvent>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace {

// A desktop of one folder in which every file is an application, that remembers what it was asked
// to launch.
class FolderDesktop : public Desktop, SearchPaths, Items, Launcher
{
public:
    explicit FolderDesktop(const QString &folder)
        : _folder(folder)
    { }

    const SearchPaths &searchPaths() const override { return *this; }
    Items &items() override { return *this; }
    Launcher &launcher() override { return *this; }

    QStringList launched() const
    {
        const QMutexLocker lock(&_mutex);
        return _launched;
    }

private:
    QString applicationSupportFolder(Domain) const override
    {
        return _folder + QStringLiteral("/data");
    }
    QStringList applicationFolders() const override
    {
        return { _folder + QStringLiteral("/apps") };
    }
    ItemFlags flagsOf(const QString &path) const override
    {
        ItemFlags flags = Items::flagsOf(path);
        flags.isApplication = !flags.isContainer;
        return flags;
    }
    LaunchStatus open(const QString &path, const std::optional<QList<QUrl>> &) override
    {
        const QMutexLocker lock(&_mutex);
        _launched.append(Items::nameOf(path));
        return LaunchStatus::Launched;
    }

    QString _folder;
    mutable QMutex _mutex;
    QStringList _launched;
};

class FixedHost : public GridHost
{
public:
    QSizeF maxIconViewSize() const override { return size; }

    QSizeF size { 1000, 400 };
};

QImage plain(QColor color)
{
    QImage image(64, 64, QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    return image;
}

} // namespace

class OTIconViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void theSizeIsAskedForOnlyWhenItChanges();
    void anIconIsDrawnInItsCell();
    void aChangedIconRepaintsItsCellAlone();
    void aClickLaunches_aPressThatMovesAwayDoesNot();
    void aFavouriteThatMovedIsFoundInsteadOfLaunched();
    void aChangedOrientation_leadsToALayoutAndAReadingOrder();
    void anOtherwiseEqualEntryIsFoundInTheGrid();

private:
    void fill(const QStringList &names);
    AppRef app(const QString &name) const;
    QPoint middleOf(const QString &name) const;

    std::unique_ptr<QTemporaryDir> _home;
    std::unique_ptr<UserDefaults> _defaults;
    std::unique_ptr<FolderDesktop> _desktop;
    std::unique_ptr<OTAppManager> _manager;
    std::unique_ptr<OTIconView> _view;
    FixedHost _host;
};

void OTIconViewTest::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
    _home = std::make_unique<QTemporaryDir>();
    QDir(_home->path()).mkdir(QStringLiteral("apps"));
    _defaults = std::make_unique<UserDefaults>();
    UserDefaults::setStandard(_defaults.get());
    _desktop = std::make_unique<FolderDesktop>(_home->path());
    OTAppManager::registerDefaults();
    OTIconView::registerDefaults();
    ScanFolders::registerDefaults(*_defaults, _desktop->searchPaths());
    _host.size = QSizeF(1000, 400);
}

void OTIconViewTest::cleanup()
{
    _view.reset();
    _manager.reset();
    UserDefaults::setStandard(nullptr);
}

void OTIconViewTest::fill(const QStringList &names)
{
    for (const QString &name : names) {
        QFile file(_home->filePath(QStringLiteral("apps/") + name));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    // The desktop has no icons, and a plain look at the lists wants none.
    _manager = std::make_unique<OTAppManager>(*_desktop, OTAppManager::Use::Inspection);
    _manager->rescanAllAppsPrioritizingGroup(IncludedGroup);
    _view = std::make_unique<OTIconView>(*_manager, _host);
    _view->setGroupToShow(Included1DGroup);
    _view->resize(_view->viewSize().toSize());
}

AppRef OTIconViewTest::app(const QString &name) const
{
    return _manager->appForPath(_home->filePath(QStringLiteral("apps/") + name));
}

QPoint OTIconViewTest::middleOf(const QString &name) const
{
    return Geometry::flipped(_view->rectOfApp(app(name)), _view->height()).center().toPoint();
}

void OTIconViewTest::theSizeIsAskedForOnlyWhenItChanges()
{
    QSignalSpy asked(
        &NotificationCenter::defaultCenter(), &NotificationCenter::N_SubviewNeedsResizing);
    fill({ QStringLiteral("a"), QStringLiteral("b") });
    QCOMPARE(asked.size(), 1);
    QCOMPARE(asked[0][0].value<QObject *>(), _view.get());
    // Two cells of 68 points side by side within margins of 12.
    QCOMPARE(_view->viewSize(), QSizeF(160, 92));

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
}

void OTIconViewTest::aChangedIconRepaintsItsCellAlone()
{
    class PaintedRegion : public QObject
    {
    public:
        QRegion region;
        bool eventFilter(QObject *, QEvent *event) override
        {
            if (event->type() == QEvent::Paint) {
                region += static_cast<QPaintEvent *>(event)->region();
            }
            return false;
        }
    } painted;
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

void OTIconViewTest::aClickLaunches_aPressThatMovesAwayDoesNot()
{
    fill({ QStringLiteral("a"), QStringLiteral("b") });
    QTest::mousePress(_view.get(), Qt::LeftButton, {}, middleOf(QStringLiteral("a")));
    QTest::mouseRelease(_view.get(), Qt::LeftButton, {}, middleOf(QStringLiteral("b")));
    QTest::mouseClick(_view.get(), Qt::LeftButton, {}, QPoint(3, 3));
    QTest::mouseClick(_view.get(), Qt::RightButton, {}, middleOf(QStringLiteral("a")));
    QTest::mouseClick(_view.get(), Qt::LeftButton, {}, middleOf(QStringLiteral("b")));

    QTRY_COMPARE(_desktop->launched(), QStringList { QStringLiteral("b") });
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

void OTIconViewTest::anOtherwiseEqualEntryIsFoundInTheGrid()
{
    fill({ QStringLiteral("a"), QStringLiteral("b") });
    const auto twin = std::make_shared<OTApp>(app(QStringLiteral("b"))->path(), *_desktop);

    const Coords coords = _view->coordsOfApp(twin);

    QCOMPARE(coords.row, quint64(0));
    QCOMPARE(coords.col, quint64(1));
    QCOMPARE(_view->appAtCoords(coords), app(QStringLiteral("b")));
    QVERIFY(_view->coordsOfApp(std::make_shared<OTApp>(QStringLiteral("/c"), *_desktop)).isEmpty());
    QVERIFY(_view->coordsOfApp(nullptr).isEmpty());
    QVERIFY(!_view->appAtCoords({}));
}

QTEST_MAIN(OTIconViewTest)

#include "OTIconViewTest.moc"
