#include "shell/base/OTBkgndView.h"

#include "grid/drawing/GridPainter.h"
#include "shell/ShellTest.h"
#include "support/UserDefaults.h"

#include <QPainter>

class OTBkgndViewTest : public TestCase
{
    Q_OBJECT

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

    void theBorderLiesInside()
    {
        BackgroundLook look;
        look.winAlpha = 0.5F;
        look.winColor = Qt::black;
        look.drawWindowBorder = true;
        QImage image(300, 150, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(1.5);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        OTBkgndView::drawBackground(painter, QRectF(0, 0, 200, 100), look, QRect(0, 0, 200, 100));
        // Half white above half black; the red is premultiplied.
        QCOMPARE(image.pixel(150, 2), qRgba(128, 128, 128, 192));
        QCOMPARE(image.pixel(150, 3), qRgba(0, 0, 0, 128));
        QCOMPARE(image.pixel(299, 75), qRgba(128, 128, 128, 192));
        QCOMPARE(image.pixel(296, 75), qRgba(0, 0, 0, 128));
    }

    void withoutBlendingItIsOpaque_andCutOut()
    {
        const QImage blended = _view->grab().toImage();
        _view->setIsBlended(false);
        // 15 per cent of a light grey.
        QCOMPARE(seenAt({ 100, 50 }), qRgb(33, 34, 34));
        QCOMPARE(seenAt({ 0, 99 }), qRgb(33, 34, 34));
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
    }

    void preferencesAreFollowed()
    {
        set("windowColor", u"#ff0000"_s);
        set("windowAlpha", 1.0);
        QCOMPARE(seenAt({ 100, 1 }), qRgb(255, 0, 0));
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
