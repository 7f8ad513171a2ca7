#include "shell/base/OTBkgndView.h"

#include "grid/drawing/GridPainter.h"
#include "shell/ShellTest.h"
#include "support/UserDefaults.h"

#include <QPainter>

class OTBkgndViewTest : public TestCase
{
    Q_OBJECT

    static constexpr QRgb Panel = qRgba(0, 0, 0, 217);

    static QImage drawn(
        const BackgroundLook &look, const QRegion &region, qreal ratio = 1, int times = 1)
    {
        QImage image(QSize(200, 100) * ratio, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        for (int i = 0; i < times; ++i) {
            OTBkgndView::drawBackground(painter, QRectF(0, 0, 200, 100), look, region);
        }
        return image;
    }

private Q_SLOTS:
    void init()
    {
        expectNoWarnings();
        _view.reset();
        _defaults = std::make_unique<UserDefaults>();
        UserDefaults::setStandard(_defaults.get());
        GridColors::registerDefaults();
        OTBkgndView::registerDefaults();
        _view = std::make_unique<OTBkgndView>();
        _view->setAttribute(Qt::WA_TranslucentBackground);
        _view->resize(200, 100);
    }
    void cleanup() { UserDefaults::setStandard(nullptr); }

    void onlyWhatIsAskedForIsPainted()
    {
        BackgroundLook look;
        look.drawWindowBorder = true;
        const QImage whole = drawn(look, QRect(0, 0, 200, 100));
        const QRegion region =
            QRegion(0, 0, 20, 40) + QRect(60, 30, 50, 50) + QRect(150, 90, 99, 99);
        const QImage part = drawn(look, region);
        for (int i = 0; i < 200 * 100; ++i) {
            const QPoint point(i % 200, i / 200);
            QCOMPARE(part.pixel(point), region.contains(point) ? whole.pixel(point) : 0U);
        }
        // What was there does not shine through.
        look.drawWindowBorder = false;
        QCOMPARE(drawn(look, region, 1, 3).pixel(80, 50), Panel);
    }

    void theBorderLiesInside()
    {
        BackgroundLook look;
        look.winAlpha = 0.5F;
        look.winColor = Qt::black;
        look.drawWindowBorder = true;
        const QImage image = drawn(look, QRect(0, 0, 200, 100), 1.5);
        // Half white above half black; the red is premultiplied.
        QCOMPARE(image.pixel(150, 2), qRgba(128, 128, 128, 192));
        QCOMPARE(image.pixel(150, 3), qRgba(0, 0, 0, 128));
        QCOMPARE(image.pixel(299, 75), qRgba(128, 128, 128, 192));
        QCOMPARE(image.pixel(296, 75), qRgba(0, 0, 0, 128));
        // It is as wide where it is curved.
        QCOMPARE(image.pixel(15, 15), qRgba(0, 0, 0, 128));
        QVERIFY(qRed(image.pixel(14, 14)) > 60);
    }

    void withoutBlendingItIsOpaque_andCutOut()
    {
        const QImage blended = _view->grab().toImage();
        _view->setIsBlended(false);
        // 15 per cent of a light grey.
        QCOMPARE(seenAt({ 100, 50 }), qRgb(33, 34, 34));
        QCOMPARE(seenAt({ 0, 99 }), qRgb(33, 34, 34));
        set("windowAlpha", 0.0);
        QCOMPARE(seenAt({ 100, 50 }), qRgb(222, 224, 228));
        // What is at least half covered belongs to the window.
        const QRegion mask = OTBkgndView::roundedMask({ 200, 100 });
        QCOMPARE(mask.boundingRect(), QRect(0, 0, 200, 100));
        for (int i = 0; i < 200 * 100; ++i) {
            const QPoint point(i % 200, i / 200);
            const int alpha = qAlpha(blended.pixel(point));
            if (qAbs(alpha - 108) > 60) {
                QCOMPARE(mask.contains(point), alpha > 108);
            }
        }
        QVERIFY(OTBkgndView::roundedMask({}).isEmpty());
    }

    void preferencesAreFollowed()
    {
        set("windowColor", u"#ff0000"_s);
        set("windowAlpha", 1.0);
        QCOMPARE(seenAt({ 100, 1 }), qRgb(255, 0, 0));
        // An edge that hardly differs from the window, on every side.
        for (const auto &[color, edge] : { std::pair("#000000", 36), std::pair("#ffffff", 219) }) {
            set("windowColor", QLatin1String(color));
            QCOMPARE(qRed(seenAt({ 100, 99 })), edge);
            QCOMPARE(qRed(seenAt({ 0, 50 })), edge);
        }
        set("windowColor", u"#ff0000"_s);
        set("drawWindowBorder", true);
        QCOMPARE(seenAt({ 100, 1 }), qRgb(255, 255, 255));
        set("windowBorderColor", u"#00ff0080"_s);
        QCOMPARE(seenAt({ 100, 1 }), qRgb(0, 255, 0));
        QCOMPARE(seenAt({ 100, 2 }), qRgb(255, 0, 0));
        set("windowAlpha", 0.0);
        QCOMPARE(seenAt({ 100, 1 }), 0U);
    }

private:
    QRgb seenAt(const QPoint &point) const { return _view->grab().toImage().pixel(point); }
    void set(const char *key, const QVariant &value)
    {
        _defaults->setObject(QString::fromLatin1(key), value);
    }

    std::unique_ptr<UserDefaults> _defaults;
    std::unique_ptr<OTBkgndView> _view;
};

QTEST_MAIN(OTBkgndViewTest)
#include "OTBkgndViewTest.moc"
