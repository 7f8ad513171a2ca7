// The status item in a real tray, pressed from outside of this program. Nothing on the session bus
// shows items.

#include "desktop/Pointer.h"
#include "platform/freedesktop/FreedesktopDesktop.h"

#include <QApplication>
#include <QIcon>
#include <QMenu>
#include <QScreen>

Q_DECLARE_METATYPE(ActivationStamp)

class TrayTest : public TestCase
{
    Q_OBJECT

    // As large as an item, and nothing else on the screen has this colour.
    static QIcon plainIcon(const QColor &color)
    {
        QPixmap pixmap(24, 24);
        pixmap.fill(color);
        return pixmap;
    }

    static QPoint placeOf(const QColor &color)
    {
        const QImage screen = QGuiApplication::primaryScreen()->grabWindow(0).toImage();
        for (int i = 0; i < screen.width() * screen.height(); ++i) {
            const QPoint point(i % screen.width(), i / screen.width());
            if (screen.pixelColor(point) == color) {
                return point;
            }
        }
        return {};
    }

private Q_SLOTS:
    void init()
    {
        TestCase::init();
        Pointer::move(Pointer::away);
        _desktop = makeFreedesktopDesktop();
        _item = &_desktop->statusItem();
    }
    void cleanup()
    {
        _desktop.reset();
        _tray.terminate();
        _tray.waitForFinished();
    }

    void presses_areReported()
    {
        showItem();
        QSignalSpy pressed(_item, &StatusItem::pressed);
        QSignalSpy dragged(_item, &StatusItem::dragged);
        QSignalSpy released(_item, &StatusItem::released);
        QSignalSpy menuWanted(_item, &StatusItem::menuWanted);
        QSignalSpy activated(_item, &StatusItem::activated);
        const QPoint inside = place();
        QVERIFY(_item->place().contains(inside));
        Pointer::move(inside);
        Pointer::press();
        QTRY_COMPARE(pressed.count(), 1);
        QVERIFY(pressed.first().first().value<ActivationStamp>().time != 0);
        Pointer::move(Pointer::away);
        QTRY_VERIFY(!dragged.isEmpty() && !dragged.last().first().toBool());
        Pointer::move(inside);
        QTRY_COMPARE(dragged.last().first().toBool(), true);
        Pointer::release();
        QTRY_COMPARE(released.count(), 1);
        QCOMPARE(released.first().first().toBool(), true);
        // Twice quickly is two presses.
        Pointer::use({ u"click"_s, u"--repeat"_s, u"2"_s, u"--delay"_s, u"20"_s, u"1"_s });
        QTRY_COMPARE(released.count(), 3);
        QCOMPARE(pressed.count(), 3);
        Pointer::use({ u"click"_s, u"3"_s });
        QTRY_COMPARE(menuWanted.count(), 1);
        QCOMPARE(menuWanted.first().first().toPoint(), inside);
        QVERIFY(!_menu.isVisible() && activated.isEmpty());
    }

    void aDragOfFilesOntoTheItem_isReportedAndRefused()
    {
        showItem();
        QSignalSpy dragEntered(_item, &StatusItem::dragEntered);
        QSignalSpy dragged(_item, &StatusItem::dragged);
        const QPoint inside = place();
        for (const QStringList &types : { QStringList(u"text/plain"_s), {} }) {
            Pointer::Drag drag(types);
            Pointer::move(inside - QPoint(0, 40));
            Pointer::move(inside);
            QCOMPARE(drag.drop(), QByteArray("refused"));
            Pointer::move(Pointer::away);
        }
        QTRY_COMPARE(dragged.count(), 1);
        QCOMPARE(dragEntered.count(), 1);
        QCOMPARE(dragged.last().first().toBool(), false);
    }

    void aLateOrRestartedTray_takesTheItem_untilItIsHidden()
    {
        QSignalSpy changes(_item, &StatusItem::isShownChanged);
        showItem();
        QCOMPARE(changes.last().first().toBool(), true);
        _tray.terminate();
        QTRY_VERIFY(!_item->isShown());
        QTRY_COMPARE(_tray.state(), QProcess::NotRunning);
        startTray();
        // Not while one of its own events is on its way.
        connect(_item, &StatusItem::pressed, _item, [this] { _item->hide(); });
        Pointer::move(place());
        Pointer::press();
        Pointer::release();
        QTRY_VERIFY(!_item->isShown());
        QTRY_VERIFY(placeOf(Qt::green).isNull());
        _item->show(plainIcon(Qt::blue), u"Ortu"_s, _menu);
        QTRY_VERIFY(!placeOf(Qt::blue).isNull());
    }

private:
    // Before there is a tray.
    void showItem()
    {
        _item->show(plainIcon(Qt::green), u"Ortu"_s, _menu);
        startTray();
    }
    void startTray()
    {
        _tray.setStandardErrorFile(QProcess::nullDevice());
        _tray.start(u"trayer"_s,
            { u"--edge"_s, u"bottom"_s, u"--align"_s, u"right"_s, u"--height"_s, u"24"_s });
        QTRY_VERIFY(_item->isShown());
        QTRY_VERIFY(!placeOf(Qt::green).isNull());
    }
    QPoint place() const { return placeOf(Qt::green) + QPoint(8, 8); }

    QProcess _tray;
    QMenu _menu;
    std::unique_ptr<Desktop> _desktop;
    StatusItem *_item = nullptr;
};

QTEST_MAIN(TrayTest)
#include "TrayTest.moc"
