#include "shell/selector/OTIconOverlayView.h"

#include "shell/PanelFixture.h"
#include "shell/panel/PanelButton.h"
#include "support/Shapes.h"

class OTIconOverlayViewTest : public PanelFixture
{
    Q_OBJECT

    // Applications that are called as the test wants.
    static QColor colorAt(const QImage &picture, const QPoint &point)
    {
        return picture.pixelColor(point * picture.devicePixelRatio());
    }

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void theNameStandsByTheSelectedIcon_andGoesWithIt()
    {
        showPanelOf(6);
        QVERIFY(overlay().labelRect().isEmpty());
        select(u"app2"_s);
        QVERIFY(isLabelBeside(u"app2"_s));
        NotificationCenter &center = NotificationCenter::defaultCenter();
        Q_EMIT center.N_SelectedAppChanged(_window.get(), app(u"app3"_s), QRectF(0, 0, 9, 9));
        QVERIFY(isLabelBeside(u"app2"_s));
        // The panel is larger than the grid, and so there is room for it by the last icon too.
        set("groupOrientation", 0);
        select(u"app5"_s);
        QVERIFY(isLabelBelow(u"app5"_s));
        set("tabletMode", true);
        QVERIFY(overlay().labelRect().bottom() < cell(u"app5"_s).top());
        grid().selectCoords({});
        QVERIFY(overlay().labelRect().isEmpty() && timers().isEmpty());
        select(u"app0"_s);
        grid().openMenuAt(grid().selectedCoords());
        QVERIFY(overlay().labelRect().isEmpty());
        QApplication::activePopupWidget()->close();
        QCOMPARE(overlay().label(), u"app0"_s);
        // Text stands in for the icons.
        Q_EMIT center.N_ShowProgressStep(1, 3, u"/somewhere"_s);
        QVERIFY(overlay().labelRect().isEmpty());
        Q_EMIT center.N_ShowProgressStep(0, 0, {});
        QCOMPARE(overlay().label(), u"app0"_s);
        _manager->excludeApp(app(u"app0"_s));
        QVERIFY(overlay().labelRect().isEmpty() && timers().isEmpty());
    }

    void whereTheSelectionRests_theNameGrows()
    {
        const auto grown = [this](const std::optional<QString> &kind) {
            cleanup();
            init();
            _desktop->fakeItems.genericName = kind;
            fill({ u"Paint.xyz"_s, u"Write.xyz"_s });
            show();
            const auto isShort = [this](const QString &name) {
                select(name + u".xyz"_s);
                return overlay().label() == name && timers() == QList<int> { 2000 };
            };
            const bool isShortAtFirst = isShort(u"Write"_s);
            // Wide enough for any path.
            _window->resize(4000, _window->height());
            overlay().labelTimerFire();
            const QString label = overlay().label();
            const bool isAtRest = timers().isEmpty();
            return isShortAtFirst && isAtRest && isShort(u"Paint"_s) ? label : u"failed"_s;
        };
        const QString path = grown(std::nullopt);
        QCOMPARE(path, pathOf(u"Write"_s));
        QCOMPARE(grown(u"Text Editor"_s), u"Write (Text Editor)"_s);
        QCOMPARE(grown(u"100%1"_s), u"Write (100%1)"_s);
        // It does not say, or says it already.
        QCOMPARE(grown(QString()), u"Write"_s);
        QCOMPARE(grown(u"write"_s), u"Write"_s);
    }

    void anyNameIsOneLineInThePanel()
    {
        _desktop->fakeItems.genericName = QString();
        fill(3);
        set("tabletMode", true);
        show();
        for (const QString &name : { u"محرر النصوص"_s, u"👩‍🚀 🎨"_s, u"one\ntwo"_s,
                 u"محرر النصوص "_s.repeated(25), u"🎨"_s.repeated(300), QString(300, u'w') }) {
            _desktop->fakeItems.displayNames[pathOf(u"app2"_s)] = name;
            app(u"app2"_s)->forgetDisplayName();
            for (const bool isLong : { false, true }) {
                select(u"app1"_s);
                select(u"app2"_s);
                if (isLong) {
                    overlay().labelTimerFire();
                }
                QCOMPARE(overlay().label().contains(u'\u2026'), name.size() > 100);
                QVERIFY(!overlay().label().contains(u'\n'));
                QVERIFY(_window->rect().contains(overlay().labelRect()));
                QVERIFY(overlay().labelRect().width() > overlay().labelRect().height());
                QVERIFY(overlay().bigIconRect().width() <= _window->width());
            }
        }
        // However much is left of a folder that is cut off.
        for (int width = 200; width < 260; ++width) {
            const BigIcon icon(u"app"_s, QString(300, u'w'), { width, 200 });
            QVERIFY(icon.rect().width() <= width);
        }
    }

    void theNameGoesWhereItsIconGoes()
    {
        _desktop->fakeItems.genericName = u"Tool"_s;
        showPanelOf(6);
        selectByKeys(u"app2"_s);
        QVERIFY(isLabelBeside(u"app2"_s));
        // The bands turn.
        set("groupOrientation", 0);
        QVERIFY(isLabelBelow(u"app2"_s));
        overlay().labelTimerFire();
        QCOMPARE(overlay().label(), u"app2 (Tool)"_s);
        const QRect before = cell(u"app2"_s);
        set("iconSpacing", 16);
        QVERIFY(cell(u"app2"_s) != before);
        // It has not become short again by that.
        QCOMPARE(overlay().label(), u"app2 (Tool)"_s);
        QVERIFY(_window->rect().contains(overlay().labelRect()));
        selectByKeys(u"app1"_s);
        QVERIFY(isLabelBelow(u"app1"_s));
        // Nor does the rest begin anew.
        for (QTimer *timer : overlay().findChildren<QTimer *>()) {
            if (timer->isActive()) {
                timer->start(500);
            }
        }
        set("maximumIconSize", 128);
        QCOMPARE(timers().size(), 1);
        QVERIFY(timers().constFirst() < 1000 && isLabelBelow(u"app1"_s));
    }

    void whatIsTypedStandsInTheMiddle()
    {
        showPanelOf(6);
        type(u"a"_s);
        QCOMPARE(overlay().filterBubble().text(), u"a"_s);
        QCOMPARE(timers(), QList<int> { 1000 });
        const QRect bubble = overlay().filterBubble().rect();
        QVERIFY(bubble.height() > 72 + 2 * 20);
        QVERIFY((bubble.center() - _window->rect().center()).manhattanLength() <= 2);
        const QImage with = _window->grab().toImage();
        grid().setGroupToShow(AllGroup);
        QVERIFY(overlay().filterBubble().isEmpty() && timers().isEmpty());
        const QImage without = _window->grab().toImage();
        QVERIFY(with.copy(bubble) != without.copy(bubble));
        // What does not fit loses its beginning.
        type(u"abcdefghijklmnopqrstuvwxyz"_s);
        const QString shown = overlay().filterBubble().text();
        QVERIFY(shown.startsWith(u'\u2026') && shown.endsWith(u'z'));
        QVERIFY(_window->rect().contains(overlay().filterBubble().rect()));
    }

    void theBubbleFades()
    {
        _desktop->movement.isStill = false;
        showPanelOf(6);
        type(u"a"_s);
        overlay().filterStringTimerFire();
        QCOMPARE(fade().duration(), 500);
        fade().setCurrentTime(250);
        QVERIFY(std::abs(overlay().filterStringAlpha() - 0.5) < 0.05);
        // The next key makes it whole again.
        type(u"p"_s);
        QVERIFY(!fade().isAnimating() && overlay().filterStringAlpha() == 1);
        QCOMPARE(overlay().filterBubble().text(), u"ap"_s);
        QCOMPARE(timers(), QList<int> { 1000 });
        overlay().filterStringTimerFire();
        QVERIFY(overlay().filterNote().rect().isEmpty());
        fade().setCurrentTime(500);
        QVERIFY(overlay().filterBubble().isEmpty() && overlay().filterStringAlpha() == 1);
        // The filter goes on, and its note stands between the buttons.
        QCOMPARE(overlay().filterNote().text(), u"Filter: ap"_s);
        const QRect note = overlay().filterNote().rect();
        QVERIFY(note.left() > _window->closeButton().geometry().right());
        QVERIFY(note.right() < _window->prefsButton().x() && note.bottom() < grid().y());
        press(Qt::Key_Escape);
        QVERIFY(overlay().filterNote().rect().isEmpty());
        // Without movement it is gone at once.
        _desktop->movement.isStill = true;
        type(u"p"_s);
        overlay().filterStringTimerFire();
        QVERIFY(!fade().isAnimating() && overlay().filterBubble().isEmpty());
    }

    void aMessageStandsUntilTheNextKeyOrClick()
    {
        NotificationCenter &center = NotificationCenter::defaultCenter();
        const auto shown = [this] { return overlay().message().text(); };
        fill(2);
        Q_EMIT center.N_UserMessage(u"It could not be done at all, for reasons that are long."_s);
        QCOMPARE(shown(), QString());
        show();
        QVERIFY(shown().startsWith(u"It could not"));
        QVERIFY(_window->rect().contains(overlay().message().rect()));
        QCOMPARE(overlay().accessibleName(), shown());
        QCoreApplication::processEvents();
        // Modifiers alone do not end it, and a letter does what it always does.
        QTest::keyPress(_window->windowHandle(), Qt::Key_Shift);
        QVERIFY(!shown().isEmpty());
        QTest::keyRelease(_window->windowHandle(), Qt::Key_Shift);
        type(u"a"_s);
        QCOMPARE(shown(), QString());
        QCOMPARE(grid().filterSubstring(), u"a"_s);
        // The key that it answers leaves it.
        const QMetaObject::Connection answer =
            connect(&center, &NotificationCenter::N_FilterStringChanged, this,
                [&center] { Q_EMIT center.N_UserMessage(u"second"_s); });
        type(u"p"_s);
        disconnect(answer);
        QCOMPARE(shown(), u"second"_s);
        QCoreApplication::processEvents();
        QTest::mouseClick(_window->windowHandle(), Qt::LeftButton, {}, { 40, 5 });
        QCOMPARE(shown(), QString());
        // Seen and left alone, it does not come back.
        Q_EMIT center.N_UserMessage(u"third"_s);
        _window->hide();
        QTRY_VERIFY(!_window->isVisible());
        show();
        QCOMPARE(shown(), QString());
    }

    void aTabletShowsTheSelectionInLarge()
    {
        showPanelOf(6);
        select(u"app1"_s);
        QVERIFY(overlay().bigIconRect().isEmpty());
        set("tabletMode", true);
        const QRect large = overlay().bigIconRect();
        QVERIFY(std::abs(large.center().x() - _window->rect().center().x()) <= 1);
        QVERIFY(large.contains(_window->rect().center() - QPoint(0, 63)));
        const QPoint onIcon = large.center() - QPoint(0, 32);
        const QImage with = _window->grab().toImage();
        type(u"a"_s);
        // The bubble would lie on it.
        QCOMPARE(overlay().bigIconRect(), large);
        const QPoint onPlate = large.topLeft() + QPoint(24, 4);
        QVERIFY(colorAt(_window->grab().toImage(), onPlate) != colorAt(with, onPlate));
        overlay().clearFilterString();
        grid().selectCoords({});
        QVERIFY(overlay().bigIconRect().isEmpty());
        set("tabletMode", false);
        overlay().drawBigIconForApp(app(u"app3"_s));
        QVERIFY(overlay().labelRect().isEmpty());
        QImage red(64, 64, QImage::Format_ARGB32_Premultiplied);
        red.fill(Qt::red);
        app(u"app3"_s)->setIcon(red);
        overlay().drawBigIconForApp(nullptr);
        overlay().drawBigIconForApp(app(u"app3"_s));
        QCOMPARE(colorAt(_window->grab().toImage(), onIcon), QColor(Qt::red));
    }

    void onlyWhatChangesIsRepainted()
    {
        _desktop->movement.isStill = false;
        showPanelOf(6);
        select(u"app0"_s);
        QCoreApplication::processEvents();
        PaintedRegion painted;
        overlay().installEventFilter(&painted);
        const QRect label = overlay().labelRect();
        const QRegion before = QRegion(cell(u"app0"_s)) + label;
        select(u"app5"_s);
        QTRY_VERIFY(painted.region.intersects(overlay().labelRect()));
        QCOMPARE(painted.region - before - cell(u"app5"_s) - overlay().labelRect(), QRegion());
        QCOMPARE(QRegion(label) - painted.region, QRegion());
        type(u"a"_s);
        QTRY_VERIFY(painted.region.intersects(overlay().filterBubble().rect()));
        overlay().filterStringTimerFire();
        QCoreApplication::processEvents();
        painted.region = {};
        fade().setCurrentTime(400);
        QTRY_VERIFY(!painted.region.isEmpty());
        QCOMPARE(painted.region - overlay().filterBubble().rect(), QRegion());
    }

    void hidden_nothingIsShownAndNoTimerRuns()
    {
        showPanelOf(6);
        select(u"app1"_s);
        type(u"a"_s);
        QCOMPARE(timers().size(), 2);
        _window->hide();
        QTRY_VERIFY(!_window->isVisible());
        QCOMPARE(timers(), QList<int>());
        QVERIFY(overlay().labelRect().isEmpty() && overlay().filterBubble().isEmpty());
        Q_EMIT NotificationCenter::defaultCenter().N_FilterStringChanged(&grid(), u"x"_s, 1);
        select(u"app2"_s);
        QVERIFY(timers().isEmpty() && overlay().filterBubble().isEmpty());
        // As in a resize.
        show();
        overlay().hide();
        select(u"app2"_s);
        QCOMPARE(timers(), QList<int>());
        overlay().show();
        QVERIFY(isLabelBeside(u"app2"_s));
        QCOMPARE(timers(), QList<int> { 2000 });
    }

    void colorsFollowTheWindow()
    {
        fill(6);
        set("windowAlpha", 0);
        show();
        select(u"app0"_s);
        // It reaches beyond the icons.
        type(u"a"_s);
        const QRect bubble = overlay().filterBubble().rect();
        const QPoint inBubble(bubble.center().x(), bubble.top() + 3);
        // In the round end of the capsule, where no letter is.
        const QPoint inLabel(overlay().labelRect().left() + 4, overlay().labelRect().center().y());
        for (const char *color : { "#ffffff00", "#102080ff" }) {
            set("windowColor", QLatin1String(color));
            const QColor wanted = colorFromText(QLatin1String(color));
            const QImage picture = _window->grab().toImage();
            const QColor plate = colorAt(picture, inLabel);
            QVERIFY(std::abs(plate.alpha() - 204) <= 3);
            QVERIFY(std::abs(plate.blue() - wanted.blue()) <= 3);
            QVERIFY(std::abs(colorAt(picture, inBubble).blue() - wanted.blue()) <= 3);
            // The letters stand out.
            int farthest = 0;
            for (int x = 0; x < overlay().labelRect().width(); ++x) {
                const QColor there = colorAt(picture, inLabel + QPoint(x, 0));
                farthest = std::max(farthest, std::abs(there.green() - wanted.green()));
            }
            QVERIFY(farthest > 150);
        }
    }

private:
    OTIconOverlayView &overlay() const { return _window->overlay(); }

    void select(const QString &name) const { grid().selectCoords(grid().coordsOfApp(app(name))); }
    // So that the selection goes where its icon goes.
    void selectByKeys(const QString &name) const
    {
        const AppRef wanted = app(name);
        grid().selectCoords({});
        while (grid().appAtCoords(grid().selectedCoords()) != wanted) {
            grid().keyPressed({ QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier });
        }
    }
    void type(const QString &text) const
    {
        for (const QChar letter : text) {
            press(letter.toUpper().unicode());
        }
    }
    // Of an application, in the panel.
    QRect cell(const QString &name) const
    {
        return cellOf(name).toAlignedRect().translated(grid().pos());
    }
    bool isLabelBeside(const QString &name) const
    {
        const QRect label = overlay().labelRect();
        return overlay().label() == name && label.left() == cell(name).right() + 1 + 4
            && std::abs(label.center().y() - cell(name).center().y()) <= 1;
    }
    bool isLabelBelow(const QString &name) const
    {
        const QRect label = overlay().labelRect();
        return overlay().label() == name && label.top() == cell(name).bottom() + 1 + 4
            && std::abs(label.center().x() - cell(name).center().x()) <= 1;
    }
    // The intervals of the overlay's timers that run, in milliseconds.
    QList<int> timers() const
    {
        QList<int> intervals;
        for (const QTimer *timer : overlay().findChildren<QTimer *>()) {
            intervals += timer->isActive() ? QList<int> { timer->interval() } : QList<int>();
        }
        return intervals;
    }
    KRViewAnimation &fade() const { return *overlay().findChild<KRViewAnimation *>(); }
};

QTEST_MAIN(OTIconOverlayViewTest)
#include "OTIconOverlayViewTest.moc"
