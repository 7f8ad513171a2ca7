#include "shell/base/OTBkgndView.h"

#include "grid/drawing/GridPainter.h"
#include "shell/ShellTest.h"
#include "support/UserDefaults.h"

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
        for (int i = 0; i < 100; ++i) {
            const int alpha = qAlpha(blended.pixel(i, i));
            QVERIFY(mask.contains(QPoint(i, i)) == (alpha > 108) || qAbs(alpha - 108) <= 60);
        }
        QVERIFY(mask.contains(QPoint(0, 45)));
    }

    void preferencesAreFollowed()
    {
        // At the upper edge, where the border comes.
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
