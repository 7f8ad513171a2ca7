#include "shell/selector/OTIconOverlayView.h"

#include "shell/PanelFixture.h"
#include "shell/panel/PanelButton.h"

class OTIconOverlayViewTest : public PanelFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void theNameStandsByTheSelectedIcon_andGoesWithIt()
    {
        showPanelOf(6);
        QVERIFY(overlay().labelRect().isEmpty());
        select(u"app2"_s);
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
        _manager->excludeApp(app(u"app0"_s));
        QVERIFY(overlay().labelRect().isEmpty() && timers().isEmpty());
    }

    void whereTheSelectionRests_theNameGrows()
    {
        const auto grown = [this](const std::optional<QString> &kind) {
            cleanup();
            init();
            _desktop->fakeItems.genericName = kind;
            fill({ u"Write.xyz"_s });
            show();
            select(u"Write.xyz"_s);
            const bool isShortAtFirst =
                overlay().label() == u"Write"_s && timers() == QList<int> { 2000 };
            // Wide enough for any path.
            _window->resize(4000, _window->height());
            overlay().labelTimerFire();
            return isShortAtFirst ? overlay().label() : u"failed"_s;
        };
        const QString path = grown(std::nullopt);
        QCOMPARE(path, pathOf(u"Write"_s));
        QCOMPARE(grown(u"100%1"_s), u"Write (100%1)"_s);
        // It does not say, or says it already.
        QCOMPARE(grown(QString()), u"Write"_s);
        QCOMPARE(grown(u"write"_s), u"Write"_s);
    }

    void whatIsFoundByAnAction_goesByItsName()
    {
        _desktop->fakeItems.words[u"app1"_s].hasActions = true;
        _desktop->actions = { { u"p"_s, u"New Private Window"_s } };
        showPanelOf(6);
        set("maximumIconSize", 128);
        set("matchesMoreThanNames", true);
        type(u"app1"_s);
        QCOMPARE(overlay().label(), u"app1"_s);
        QTest::keyClick(_window.get(), Qt::Key_Escape);
        type(u"priv"_s);
        // Once its entry was read.
        QTRY_COMPARE(overlay().label(), u"New Private Window"_s);
        QVERIFY(overlay().filterBubble().caption().startsWith(u"New Priv"));
        QCOMPARE(overlay().filterBubble().text(), u"priv"_s);
        QVERIFY(_window->rect().contains(overlay().filterBubble().rect()));
        overlay().labelTimerFire();
        QCOMPARE(overlay().label(), u"New Private Window (app1)"_s);
        overlay().clearFilterString();
        QVERIFY(overlay().note().text().contains(u"New Pri"));
    }

    void anyNameIsOneLineInThePanel()
    {
        fill(3);
        set("tabletMode", true);
        show();
        for (const QString &name :
            { u"one\ntwo"_s, u"محرر النصوص "_s.repeated(25), QString(300, u'w') }) {
            _desktop->fakeItems.displayNames[pathOf(u"app2"_s)] = name;
            app(u"app2"_s)->renewDisplayName();
            select(u"app1"_s);
            select(u"app2"_s);
            QCOMPARE(overlay().label().contains(u'\u2026'), name.size() > 100);
            QVERIFY(!overlay().label().contains(u'\n'));
            QVERIFY(_window->rect().contains(overlay().labelRect()));
            QVERIFY(overlay().labelRect().width() > overlay().labelRect().height());
            QVERIFY(overlay().bigIconRect().width() <= _window->width());
        }
    }

    void theNameGoesWhereItsIconGoes()
    {
        _desktop->fakeItems.genericName = u"Tool"_s;
        showPanelOf(6);
        // By the keys, so that the selection goes where its icon goes.
        grid().selectCoords({});
        press(Qt::Key_Home);
        QVERIFY(isLabelBeside(u"app0"_s));
        // The bands turn.
        set("groupOrientation", 0);
        QVERIFY(isLabelBelow(u"app0"_s));
        overlay().labelTimerFire();
        QCOMPARE(overlay().label(), u"app0 (Tool)"_s);
        const QRect before = cell(u"app0"_s);
        set("maximumIconSize", 128);
        QVERIFY(cell(u"app0"_s) != before);
        // It has not become short again by that.
        QCOMPARE(overlay().label(), u"app0 (Tool)"_s);
        QVERIFY(_window->rect().contains(overlay().labelRect()));
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
        QVERIFY(with.copy(bubble) != _window->grab().toImage().copy(bubble));
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
        overlay().filterStringTimerFire();
        QVERIFY(overlay().note().rect().isEmpty());
        fade().setCurrentTime(500);
        QVERIFY(overlay().filterBubble().isEmpty() && overlay().filterStringAlpha() == 1);
        // The filter goes on, and its note stands between the buttons.
        QCOMPARE(overlay().note().text(), u"Filter: ap"_s);
        const QRect note = overlay().note().rect();
        QVERIFY(note.left() > _window->closeButton().geometry().right());
        QVERIFY(note.right() < _window->prefsButton().x() && note.bottom() < grid().y());
        // While the bubble is there it says the same.
        type(u"p"_s);
        QVERIFY(overlay().note().rect().isEmpty());
        press(Qt::Key_Escape);
        _dropStack.push(u"/d/one.txt"_s);
        grid().drags().offerDropStack();
        QVERIFY(overlay().note().text().startsWith(u"Open"));
        press(Qt::Key_Escape);
        QVERIFY(overlay().note().rect().isEmpty() && _window->isShown());
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
        // A letter does what it always does.
        type(u"a"_s);
        QCOMPARE(shown(), QString());
        QCOMPARE(grid().filterSubstring(), u"a"_s);
        Q_EMIT center.N_UserMessage(u"second"_s);
        QCoreApplication::processEvents();
        QTest::mouseClick(_window->windowHandle(), Qt::LeftButton, {}, { 40, 5 });
        QCOMPARE(shown(), QString());
        // The icon that it covers is not meant.
        Q_EMIT center.N_UserMessage(u"a message of some length, over the icons"_s);
        QCoreApplication::processEvents();
        const QPoint onIcon = grid().pos() + middleOf(u"app1"_s);
        QVERIFY(overlay().message().rect().contains(onIcon));
        QTest::mouseClick(_window->windowHandle(), Qt::LeftButton, {}, onIcon);
        QVERIFY(shown().isEmpty() && _window->isShown());
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
        QImage red(64, 64, QImage::Format_ARGB32_Premultiplied);
        red.fill(Qt::red);
        app(u"app1"_s)->setIcon(red);
        select(u"app1"_s);
        QVERIFY(overlay().bigIconRect().isEmpty());
        set("tabletMode", true);
        const QRect large = overlay().bigIconRect();
        QVERIFY(std::abs(large.center().x() - _window->rect().center().x()) <= 1);
        QVERIFY(large.contains(_window->rect().center() - QPoint(0, 63)));
        const QPoint onIcon = large.center() - QPoint(0, 32);
        const QPixmap shown = _window->grab();
        QCOMPARE(shown.toImage().pixelColor(onIcon * shown.devicePixelRatio()), QColor(Qt::red));
        grid().selectCoords({});
        QVERIFY(overlay().bigIconRect().isEmpty());
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
        // As in a resize.
        show();
        overlay().hide();
        select(u"app2"_s);
        QCOMPARE(timers(), QList<int>());
        overlay().show();
        QVERIFY(isLabelBeside(u"app2"_s));
    }

private:
    OTIconOverlayView &overlay() const { return _window->overlay(); }

    void select(const QString &name) const { grid().selectCoords(grid().coordsOfApp(app(name))); }
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
