#include "shell/base/KRViewAnimation.h"

#include "shell/ShellTest.h"

#include <utility>

namespace {

using Fade = ViewAnimation::Fade;

constexpr QRect Start(-51, -20, 101, 33);
constexpr QRect End(-40, 17, 101, 33);

// Something that can be moved and faded.
class Picture : public QObject
{
public:
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

} // namespace

class KRViewAnimationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // A picture that slides and one that fades out, over a second and evenly.
    void init()
    {
        expectNoWarnings();
        _slid = std::make_unique<Picture>();
        _faded = std::make_unique<Picture>();
        _animation = std::make_unique<KRViewAnimation>();
        _animation->setAnimationCurve(QEasingCurve::Linear);
        _animation->setSeconds(1);
        _animation->setViewAnimations({ { .view = _slid->view(), .endFrame = End },
            { .view = _faded->view(), .fade = Fade::Out } });
        _ends = std::make_unique<QSignalSpy>(_animation.get(), &KRViewAnimation::animationDidEnd);
        _stops = std::make_unique<QSignalSpy>(_animation.get(), &KRViewAnimation::animationDidStop);
    }

    void theCurvesAreThoseOfTheirNames()
    {
        const auto values = [](const QEasingCurve &curve) {
            return u"%1 %2 %3"_s.arg(curve.valueForProgress(0.25), 0, 'f', 3)
                .arg(curve.valueForProgress(0.5), 0, 'f', 3)
                .arg(curve.valueForProgress(0.75), 0, 'f', 3);
        };
        QCOMPARE(values(KRViewAnimation::easeInOut()), u"0.129 0.500 0.871"_s);
        QCOMPARE(values(KRViewAnimation::easeIn()), u"0.093 0.315 0.622"_s);
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
        QCOMPARE(_faded->alpha, 0.01);
        QVERIFY(_ends->isEmpty() && !_faded->isHidden);
        _animation->setCurrentTime(1000);
        QCOMPARE(_slid->frame, End);
        QCOMPARE(_faded->alpha, 0.0);
        QVERIFY(_faded->isHidden && !_slid->isHidden);
        QVERIFY(_faded->frame == Start && _slid->alpha == 1);
        QVERIFY(_ends->size() == 1 && _stops->isEmpty() && !_animation->isAnimating());
    }

    void aReversedFadeDoesNotJump()
    {
        _animation->startAnimation();
        _animation->setCurrentTime(600);
        _animation->setViewAnimations({ { .view = _faded->view(), .fade = Fade::In } });
        _animation->startAnimation();
        QCOMPARE(_faded->alpha, 0.4 + 0.6 * 0.016);
        _animation->setCurrentTime(1000);
        QVERIFY(_faded->alpha == 1 && !_faded->isHidden && _ends->size() == 1 && _stops->isEmpty());
    }

    void stoppedWithItsEnd_orWhereItIs()
    {
        _animation->stopAnimation();
        QCOMPARE(_slid->frame, Start);
        _animation->startAnimation();
        _animation->setCurrentTime(500);
        _animation->stop();
        QVERIFY(_faded->alpha == 0.5 && !_faded->isHidden && _stops->isEmpty());
        _animation->startAnimation();
        _animation->stopAnimation();
        QCOMPARE(_slid->frame, End);
        QVERIFY(_faded->alpha == 0 && _faded->isHidden);
        _animation->stopAnimation();
        QVERIFY(_stops->size() == 1 && _ends->isEmpty() && !_animation->isAnimating());
    }

    void withoutDuration_everythingHappensAtOnce()
    {
        for (const double seconds : { 0.0, -1.0, qQNaN() }) {
            init();
            _animation->setSeconds(seconds);
            _animation->startAnimation();
            QVERIFY(_slid->frame == End && _faded->alpha == 0 && _faded->isHidden);
            QVERIFY(_ends->size() == 1 && !_animation->isAnimating());
        }
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
        QCOMPARE(_ends->size(), 1);
    }

    void aStepMayStopIt()
    {
        _animation->startAnimation();
        _slid->onStep = [this] { _animation->stopAnimation(); };
        _animation->setCurrentTime(500);
        // The step that was interrupted does not bring anything back.
        QVERIFY(_slid->frame == End && _faded->alpha == 0 && _faded->isHidden);
        QVERIFY(_stops->size() == 1 && _ends->isEmpty());
    }

private:
    std::unique_ptr<Picture> _slid;
    std::unique_ptr<Picture> _faded;
    std::unique_ptr<KRViewAnimation> _animation;
    std::unique_ptr<QSignalSpy> _ends;
    std::unique_ptr<QSignalSpy> _stops;
};

QTEST_GUILESS_MAIN(KRViewAnimationTest)
#include "KRViewAnimationTest.moc"
