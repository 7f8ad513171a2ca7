#include "shell/welcome/OTWelcomeAssistant.h"

#include "shell/OTNSAppSubclass.h"
#include "shell/PanelFixture.h"

#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

namespace {

constexpr int PageCount = 4;

struct BlankPages final : PagedDocument
{
    int pageCount() const override { return PageCount; }
    QSizeF pageSize(int) const override { return { 480, 320 }; }
    QString text(int page) const override { return u"page %1"_s.arg(page); }
    QImage image(int, const QSize &size) const override
    {
        return QImage(size, QImage::Format_ARGB32_Premultiplied);
    }
};

} // namespace

class OTWelcomeAssistantTest : public PanelFixture
{
    Q_OBJECT

    OTWelcomeAssistant *open()
    {
        _assistant.reset();
        const HotKeyChoice noHotKey { [](int, int) {}, [] { return QString(); },
            [](quint32) { return QStringList(); } };
        _assistant = std::make_unique<OTWelcomeAssistant>(
            std::make_unique<BlankPages>(), u"Tour"_s, noHotKey, [] { return u"Tab"_s; });
        _assistant->present();
        _assistant->activateWindow();
        if (!QTest::qWaitForWindowActive(_assistant.get())) {
            qWarning("the assistant is not active");
        }
        return _assistant.get();
    }
    int lastShown() const { return int(_defaults->integerForKey(u"lastShownWelcomeStep"_s)); }

private Q_SLOTS:
    void init()
    {
        setUp();
        set("showWelcomeWindow", true);
    }
    void cleanup()
    {
        _assistant.reset();
        tearDown();
    }

    void itGoesOnWhereTheUserLeft()
    {
        QCOMPARE(open()->curStep(), 1);
        QTest::keyClick(_assistant.get(), Qt::Key_Right);
        QTest::keyClick(_assistant.get(), Qt::Key_PageDown);
        QCOMPARE(lastShown(), 3);
        QTest::keyClick(_assistant.get(), Qt::Key_Left);
        QCOMPARE(open()->curStep(), 2);
        _assistant->showStep(77);
        QCOMPARE(_assistant->curStep(), PageCount);
        // Reached in another way than by going on, the end does not count.
        QVERIFY(OTWelcomeAssistant::isWanted());
        _assistant->showStep(3);
        _assistant->showNextStep();
        QVERIFY(!OTWelcomeAssistant::isWanted() && _assistant->isWindowVisible());
        QTest::keyClick(_assistant.get(), Qt::Key_Return);
        QVERIFY(!_assistant->isWindowVisible());
        QCOMPARE(open()->curStep(), 1);
        _defaults->setObject(u"lastShownWelcomeStep"_s, 99);
        _defaults->setObject(u"showWelcomeWindow"_s, true);
        QCOMPARE(open()->curStep(), PageCount);
    }

    void theHotKeyIsTried_atItsStepAlone()
    {
        QVERIFY(!open()->takeHotKey());
        _assistant->showStep(OTWelcomeAssistant::HotKeyStep);
        auto *const practice = _assistant->findChild<HotKeyPractice *>();
        auto *const request = practice->findChild<QLabel *>(QString(), Qt::FindDirectChildrenOnly);
        QVERIFY(practice->isVisible() && request->text().contains(u"Tab"));
        const QString asked = request->text();
        QVERIFY(_assistant->takeHotKey() && request->text() != asked);
        // Another key is asked for anew.
        _defaults->setObject(u"hotKeyCode"_s, 49);
        QCOMPARE(request->text(), asked);
        _assistant->close();
        QVERIFY(!_assistant->takeHotKey());
    }

    void typingIsAskedFor_atItsStepAlone()
    {
        open();
        const auto button = [this](int index) {
            return _assistant->findChildren<QRadioButton *>()[index];
        };
        QVERIFY(!button(0)->isVisible());
        _assistant->showStep(OTWelcomeAssistant::TypingStep);
        QVERIFY(button(0)->isVisible() && button(0)->isChecked());
        for (const bool isByAnything : { true, false }) {
            button(int(isByAnything))->click();
            QCOMPARE(_defaults->boolForKey(u"matchesMoreThanNames"_s), isByAnything);
        }
        set("matchesMoreThanNames", true);
        QVERIFY(button(1)->isChecked());
    }

private:
    std::unique_ptr<OTWelcomeAssistant> _assistant;
};

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    OTNSAppSubclass application(argc, argv);
    OTWelcomeAssistantTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "OTWelcomeAssistantTest.moc"
