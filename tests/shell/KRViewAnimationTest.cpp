#include "shell/base/KRViewAnimation.h"

#include "TestCase.h"

#include <utility>

class KRViewAnimationTest : public TestCase
{
    Q_OBJECT

    using Fade = ViewAnimation::Fade;

    static constexpr QRect Start { -51, -20, 101, 33 };
    static constexpr QRect End { -40, 17, 101, 33 };

    // Something that can be moved and faded.
    struct Picture : QObject
    {
        QRect frame = Start;
        double alpha = 1;
        bool isHidden = false;
        int flushed = 0;
        std::function<void()> onStep = [] {};

        AnimatedView view()
        {
            AnimatedView view;
            view.context = this;
            view.frame = [this] { return frame; };
            view.setFrame = [this](const QRect &to) {
                frame = to;
                onStep();
            };
            view.alpha = [this] { return alpha; };
            view.setAlpha = [this](double to) { alpha = to; };
            view.hide = [this] { isHidden = true; };
            view.flush = [this] { ++flushed; };
            return view;
        }
    };

private Q_SLOTS:
    // A picture that slides and one that fades out, over a second and evenly.
    void init()
    {
        TestCase::init();
        _slid = std::make_unique<Picture>();
        _faded = std::make_unique<Picture>();
        _animation = std::make_unique<KRViewAnimation>();
        _animation->setAnimationCurve(QEasingCurve::Linear);
        _animation->setSeconds(1);
        _animation->setViewAnimations({ { .view = _slid->view(), .endFrame = End },
            { .view = _faded->view(), .fade = Fade::Out } });
        _ends = _stops = 0;
        connect(_animation.get(), &KRViewAnimation::animationDidEnd, this, [this] { ++_ends; });
        connect(_animation.get(), &KRViewAnimation::animationDidStop, this, [this] { ++_stops; });
    }

    void viewsGoToTheirEnds_theFirstStepAtOnce()
    {
        _animation->startAnimation();
        QCOMPARE(_slid->frame.y(), -19);
        QCOMPARE(_faded->alpha, 1 - 0.016);
        QVERIFY(_slid->flushed > 0);
        for (int time = 20; time < 1000; time += 10) {
            _animation->setCurrentTime(time);
            // Nothing trembles on the way.
            QCOMPARE(_slid->frame.size(), End.size());
        }
        QVERIFY(_ends == 0 && !_faded->isHidden);
        _animation->setCurrentTime(1000);
        QVERIFY(isAtEnd() && !_slid->isHidden && _faded->frame == Start && _slid->alpha == 1);
        QVERIFY(_ends == 1 && _stops == 0 && !_animation->isAnimating());
    }

    void stoppedWithItsEnd_orWhereItIs()
    {
        _animation->stopAnimation();
        QCOMPARE(_slid->frame, Start);
        _animation->startAnimation();
        _animation->setCurrentTime(500);
        _animation->stop();
        QVERIFY(_faded->alpha == 0.5 && !_faded->isHidden && _stops == 0);
        _animation->startAnimation();
        _animation->stopAnimation();
        _animation->stopAnimation();
        QVERIFY(isAtEnd() && _stops == 1 && _ends == 0 && !_animation->isAnimating());
    }

    void withoutDuration_everythingHappensAtOnce()
    {
        _animation->setSeconds(qQNaN());
        _animation->startAnimation();
        QVERIFY(isAtEnd() && _ends == 1 && !_animation->isAnimating());
    }

    void aViewThatGoesAway_isLeftOut()
    {
        // Even between two of the things that are done to it.
        _slid->onStep = [this] { std::exchange(_slid, nullptr).reset(); };
        _animation->startAnimation();
        QVERIFY(!_slid);
        _animation->setCurrentTime(500);
        QCOMPARE(_faded->alpha, 0.5);
        _faded.reset();
        _animation->setCurrentTime(1000);
        QCOMPARE(_ends, 1);
    }

    void aStepMayStopIt()
    {
        _animation->startAnimation();
        _slid->onStep = [this] { _animation->stopAnimation(); };
        _animation->setCurrentTime(500);
        // The step that was interrupted does not bring anything back.
        QVERIFY(isAtEnd() && _stops == 1 && _ends == 0);
    }

private:
    bool isAtEnd() const { return _slid->frame == End && _faded->alpha == 0 && _faded->isHidden; }

    std::unique_ptr<Picture> _slid;
    std::unique_ptr<Picture> _faded;
    std::unique_ptr<KRViewAnimation> _animation;
    int _ends = 0;
    int _stops = 0;
};

QTEST_GUILESS_MAIN(KRViewAnimationTest)
#include "KRViewAnimationTest.moc"
