#include "shell/panel/WindowAnimation.h"

#include "platform/OwnWindows.h"
#include "shell/ShellTest.h"

#include <QWidget>

class WindowAnimationTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        expectNoWarnings();
        _opacityWhenShown = -1;
        _animation.reset();
        _window = std::make_unique<QWidget>();
        _window->setGeometry(10, 10, 200, 100);
        _animation = std::make_unique<WindowAnimation>(
            *_window, _ownWindows, [] { return true; }, [] { return true; });
        _fadedOut = std::make_unique<QSignalSpy>(_animation.get(), &WindowAnimation::fadedOut);
    }

    void aHiddenWindowAppearsFromNothing()
    {
        show();
        QCOMPARE(_opacityWhenShown, 0.0);
        QVERIFY(_window->isVisible() && _window->windowOpacity() < 0.1);
        setTime(1000);
        QCOMPARE(_window->windowOpacity(), 1.0);
    }

    void aFadeOutHides_andLeavesItTransparent()
    {
        _animation->fadeOutOver(1);
        QVERIFY(!_animation->isFadingOut());
        _window->show();
        _animation->fadeOutOver(1);
        setTime(300);
        QVERIFY(_window->windowOpacity() > 0.5 && _window->isVisible() && _fadedOut->isEmpty());
        setTime(1000);
        QVERIFY(!_animation->isFadingOut() && !_window->isVisible() && _fadedOut->size() == 1);
        QCOMPARE(_window->windowOpacity(), 0.0);
    }

    void aFadeOutIsReplaced_fromWhereItIs()
    {
        _window->show();
        _animation->fadeOutOver(1);
        setTime(750);
        const double opacity = _window->windowOpacity();
        QVERIFY(opacity > 0.3 && opacity < 0.45);
        show();
        QVERIFY(qAbs(_window->windowOpacity() - opacity) < 0.02 && !_animation->isFadingOut());
        setTime(1000);
        QCOMPARE(_window->windowOpacity(), 1.0);
        QVERIFY(_window->isVisible() && _fadedOut->isEmpty() && _opacityWhenShown == -1);
    }

    void itSlidesAndFadesAtATime()
    {
        _window->show();
        _animation->slideFrameToOver({ 110, 10, 200, 100 }, 1, WindowAnimation::Fade::Out);
        QVERIFY(_animation->isSliding() && _animation->isFadingOut());
        setTime(500);
        QCOMPARE(_window->geometry(), QRect(42, 10, 200, 100));
        QVERIFY(_window->windowOpacity() < 0.7);
        // A slide back begins here.
        _animation->slideFrameToOver({ 10, 10, 200, 100 }, 1);
        QCOMPARE(_window->geometry().x(), 42);
        _animation->finishSlide();
        QVERIFY(
            _window->geometry().x() == 10 && !_animation->isSliding() && _animation->isFadingOut());
        setTime(1000);
        QCOMPARE(_fadedOut->size(), 1);
    }

private:
    void show()
    {
        _animation->fadeInOver(1, [this] {
            _opacityWhenShown = _window->windowOpacity();
            _window->show();
        });
    }
    // Of all that is running.
    void setTime(int milliseconds)
    {
        for (auto *const animation : _animation->findChildren<KRViewAnimation *>()) {
            if (animation->isAnimating()) {
                animation->setCurrentTime(milliseconds);
            }
        }
    }

    OwnWindows _ownWindows;
    double _opacityWhenShown = -1;
    std::unique_ptr<QWidget> _window;
    std::unique_ptr<WindowAnimation> _animation;
    std::unique_ptr<QSignalSpy> _fadedOut;
};

QTEST_MAIN(WindowAnimationTest)
#include "WindowAnimationTest.moc"
