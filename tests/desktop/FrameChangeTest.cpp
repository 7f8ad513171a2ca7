// What the X server shows of a window that changes its size, while the program does not get round
// to painting.

#include "shell/panel/FrameChange.h"

#include "desktop/Programs.h"
#include "platform/freedesktop/FreedesktopDesktop.h"

#include <QApplication>
#include <QPainter>

class FrameChangeTest : public TestCase
{
    Q_OBJECT

    static constexpr QRect Small { 500, 300, 200, 100 };
    static constexpr QRect Large { 300, 200, 600, 300 };
    static constexpr QRgb SmallColor = qRgb(200, 100, 0);
    static constexpr QRgb LargeColor = qRgb(0, 100, 200);

    // In one colour for each size.
    struct Colored : QWidget
    {
        using QWidget::QWidget;
        void paintEvent(QPaintEvent *) override
        {
            QPainter(this).fillRect(
                rect(), QColor(size() == Large.size() ? LargeColor : SmallColor));
        }
    };

    // Draws nothing itself.
    struct Content : QWidget
    {
        using QWidget::QWidget;
        void resizeEvent(QResizeEvent *) override { colored.resize(size()); }
        Colored colored { this };
    };

    // As another program sees it.
    static QRgb screenAt(const QPoint &point)
    {
        XClient client;
        const auto image = XClient::reply(xcb_get_image_reply(client.connection,
            xcb_get_image(client.connection, XCB_IMAGE_FORMAT_Z_PIXMAP, client.root,
                qint16(point.x()), qint16(point.y()), 1, 1, ~0U),
            nullptr));
        return *reinterpret_cast<QRgb *>(xcb_get_image_data(image.get())) | 0xff000000;
    }

private Q_SLOTS:
    void contentComesWithTheSize()
    {
        const std::unique_ptr<Desktop> desktop = makeFreedesktopDesktop();
        for (const bool isCutOut : { false, true }) {
            QWidget window(nullptr, Qt::Window | Qt::FramelessWindowHint);
            window.setAttribute(Qt::WA_TranslucentBackground);
            Content content(&window);
            FrameChange change(
                window, content, desktop->ownWindows(), [isCutOut](const QSize &size) {
                    return isCutOut ? QRegion(QRect({}, size)) - QRect(0, 0, 9, 9) : QRegion();
                });
            change.setFrame(Small);
            const QRgb behind = screenAt({});
            change.showVeiled();
            change.unveil();
            QTRY_COMPARE(screenAt(Small.center()), SmallColor);
            for (int i = 0; i < 5; ++i) {
                change.setFrame(Large);
                // Without a compositor a cover keeps the screen as it was until then.
                QTRY_VERIFY(window.updatesEnabled());
                QCOMPARE(screenAt(Large.bottomRight()), LargeColor);
                QCOMPARE(screenAt(Large.topLeft()), isCutOut ? behind : LargeColor);
                change.setFrame(Small);
                QTRY_VERIFY(window.updatesEnabled());
                QCOMPARE(screenAt(Small.center()), SmallColor);
                QCOMPARE(screenAt(Large.center() - QPoint(150, 0)), behind);
            }
            change.setFrame(Large);
            change.setFrame(Small);
            QTRY_VERIFY(window.updatesEnabled());
            QCOMPARE(screenAt(Small.center()), SmallColor);
        }
    }
};

QTEST_MAIN(FrameChangeTest)
#include "FrameChangeTest.moc"
