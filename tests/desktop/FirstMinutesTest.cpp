// A user's first minutes with the installed program, by keys and mouse alone: each function goes on
// where the one before it left the program and its files.

#include "desktop/GridPointer.h"

#include <QImage>

class FirstMinutesTest : public TestCase
{
    Q_OBJECT

    // By name they stand in another order than by colour.
    static inline const QList<std::pair<QString, QColor>> applications { { u"Atlas"_s,
                                                                             QColor(30, 60, 220) },
        { u"Bravo"_s, QColor(20, 160, 40) }, { u"Cello"_s, QColor(220, 20, 20) },
        { u"Delta"_s, QColor(240, 220, 20) }, { u"Echo"_s, QColor(150, 150, 150) } };

    // As the window manager lists them.
    static bool isThere(const QString &title)
    {
        return outputOf(u"wmctrl"_s, { u"-l"_s }).contains(title);
    }
    static bool isTourShown() { return isThere(u"Welcome to Ortu"_s); }
    static bool isInFront(const QString &title)
    {
        return xdotool(u"getactivewindow getwindowname"_s) == title;
    }
    static qsizetype menuCount()
    {
        return xdotool(u"search --onlyvisible --class ^ortu$"_s).split(u'\n').size() - 1;
    }
    static void keys(const QString &names) { xdotool(u"key "_s + names); }
    static void click(int button, const QPoint &place)
    {
        xdotool(u"mousemove %1 %2 click %3"_s.arg(place.x()).arg(place.y()).arg(button));
    }

private Q_SLOTS:
    void initTestCase()
    {
        _runner.set("XDG_DATA_DIRS", _runner.path(u"system"_s));
        for (const auto &[name, color] : applications) {
            QImage icon(64, 64, QImage::Format_RGB32);
            icon.fill(color);
            const QString file = _runner.path(name + u".png"_s);
            QVERIFY(icon.save(file));
            // Started, it leaves a file behind.
            _runner.write(u"data/applications/%1.desktop"_s.arg(name),
                u"[Desktop Entry]\nType=Application\nName=%1\nIcon=%2\nExec=touch %3\n"_s
                    .arg(name, file, _runner.path(u"started-"_s + name))
                    .toUtf8());
        }
        Pointer::move({ 1270, 400 });
        _tray.setStandardErrorFile(QProcess::nullDevice());
        _tray.start(u"trayer"_s, { u"--edge"_s, u"bottom"_s, u"--height"_s, u"24"_s });
        QTRY_VERIFY_WITH_TIMEOUT(!windowsOf(u"panel"_s).isEmpty(), patience);
    }
    void init()
    {
        TestCase::init();
        if (_isBroken) {
            QSKIP("what goes before it failed");
        }
    }
    void cleanup() { _isBroken = _isBroken || QTest::currentTestFailed(); }
    void cleanupTestCase()
    {
        for (QProcess *const process : { &_ortu, &_tray }) {
            process->terminate();
            process->waitForFinished();
        }
    }

    void theTourComes_andTheHotKeyIsTriedInIt()
    {
        _runner.start(_ortu, { u"--set"_s, u"com.apple.springing.delay=0.05"_s });
        QTRY_VERIFY_WITH_TIMEOUT(isTourShown() && isPanelShown(), patience);
        QTRY_VERIFY(isInFront(u"Welcome to Ortu"_s));
        keys(u"Right"_s);
        QTRY_COMPARE(value(u"lastShownWelcomeStep"_s), 2);
        // Here it only arrives; elsewhere the tour goes and comes with the panel.
        keys(u"ctrl+Tab Right"_s);
        QTRY_COMPARE(value(u"lastShownWelcomeStep"_s), 3);
        QVERIFY(isTourShown() && isPanelShown());
        keys(u"ctrl+Tab"_s);
        QTRY_VERIFY(!isTourShown() && !isPanelShown());
        keys(u"ctrl+Tab"_s);
        QTRY_VERIFY(isInFront(u"Welcome to Ortu"_s) && isPanelShown());
        keys(u"Next Next Next Return"_s);
        QTRY_VERIFY(!isTourShown());
        QTRY_COMPARE(value(u"showWelcomeWindow"_s), false);
        QTRY_VERIFY(isActive());
    }

    void aTypedName_launches()
    {
        keys(u"d e l"_s);
        QTRY_COMPARE(_runner.status()[u"filter"_s].toString(), u"del"_s);
        keys(u"Return"_s);
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(_runner.path(u"started-Delta"_s)), patience);
        QTRY_VERIFY(!isPanelShown());
        QVERIFY(!QFile::exists(_runner.path(u"started-Atlas"_s)));
    }

    void aDragThatRestsOnTheSelector_goesOnInTheFavourites()
    {
        keys(u"ctrl+Tab"_s);
        QTRY_VERIFY(isActive());
        // A tour that was closed stays away.
        QVERIFY(!isTourShown());
        _grid.dragToFavourites(u"Cello"_s, 1, u"middle"_s);
        QTRY_COMPARE(_grid.namesIn(8), u"Cello|"_s);
        showGroup(1);
        _grid.dragToFavourites(u"Atlas"_s, 1, u"Cello"_s);
        QTRY_COMPARE(_grid.namesIn(8), u"AtlasCello|"_s);
        // And back again, by key.
        keys(u"ctrl+z"_s);
        QTRY_COMPARE(_grid.namesIn(8), u"Cello|"_s);
        keys(u"ctrl+shift+z"_s);
        QTRY_COMPARE(_grid.namesIn(8), u"AtlasCello|"_s);
    }

    void shiftAndClick_exclude()
    {
        showGroup(1);
        _grid.pointAt(u"Echo"_s, 1);
        Pointer::use({ u"keydown"_s, u"shift"_s, u"click"_s, u"1"_s, u"keyup"_s, u"shift"_s });
        QTRY_COMPARE(_grid.namesIn(4), u"Echo|"_s);
        QVERIFY(isPanelShown() && !QFile::exists(_runner.path(u"started-Echo"_s)));
    }

    void preferences_byKeysAlone()
    {
        keys(u"ctrl+comma"_s);
        QTRY_VERIFY(isInFront(u"Preferences of Ortu"_s));
        keys(u"alt+u alt+i Down"_s);
        QTRY_COMPARE(value(u"groupContentsSortOrder"_s), 2);
        const auto before = menuCount();
        keys(u"alt+Down"_s);
        QTRY_COMPARE(menuCount(), before + 1);
        // First the list, then the window.
        keys(u"Escape"_s);
        QTRY_COMPARE(menuCount(), before);
        QVERIFY(isInFront(u"Preferences of Ortu"_s));
        keys(u"Escape"_s);
        QTRY_VERIFY(isInFront(u"Ortu"_s));
        expectColors();
    }

    void theStatusItem_hidesAndShows()
    {
        // The only one in the tray, at its start.
        const QPoint item = frameOf(windowsOf(u"panel"_s).value(0)).topLeft() + QPoint(12, 12);
        click(1, item);
        QTRY_VERIFY(!isPanelShown());
        click(1, item);
        QTRY_VERIFY(isActive());
        Pointer::move({ 1270, 400 });
    }

    void theMenuIsThere_andQuits()
    {
        const QRect panel = frameOf(GridPointer::panel());
        const QPoint betweenIcons(18 + 3, 30 + 3);
        const QPoint onMargin(panel.width() / 2, 8);
        for (const QPoint &place : { onMargin, betweenIcons }) {
            const auto before = menuCount();
            click(3, panel.topLeft() + place);
            QTRY_COMPARE(menuCount(), before + 1);
            keys(u"Escape"_s);
            QTRY_COMPARE(menuCount(), before);
            QVERIFY(isActive());
        }
        click(1, panel.topRight() + QPoint(-22, 18));
        QTRY_VERIFY(menuCount() > 1);
        keys(u"Up Return"_s);
        QTRY_COMPARE(_ortu.state(), QProcess::NotRunning);
        QVERIFY(_ortu.exitStatus() == QProcess::NormalExit && _ortu.exitCode() == 0);
        QCOMPARE(_runner.run({ u"--hide"_s }).exitCode, 1);
    }

    void theNextStart_findsAllAsItWasLeft_andWhatCameMeanwhile()
    {
        _runner.write(u"data/applications/Fresh.desktop"_s,
            "[Desktop Entry]\nType=Application\nName=Fresh\nExec=true\nIcon="
                + _runner.path(u"Echo.png"_s).toUtf8() + "\n");
        _runner.start(_ortu, {});
        QTRY_VERIFY_WITH_TIMEOUT(isActive(), patience);
        QVERIFY(!isTourShown());
        QCOMPARE(_grid.namesIn(8) + _grid.namesIn(4), u"AtlasCello|Echo|"_s);
        showGroup(8);
        QCOMPARE(selectedBy({ u"Up Home"_s, u"Down End"_s }), u"Atlas Cello"_s);
        showGroup(1);
        keys(u"f r"_s);
        QTRY_COMPARE_WITH_TIMEOUT(selectedBy({ u"Home"_s }), u"Fresh"_s, patience);
        keys(u"Escape"_s);
        QVERIFY(QFile::remove(_runner.path(u"data/applications/Fresh.desktop"_s)));
        expectColors();
        keys(u"ctrl+Tab"_s);
        QTRY_VERIFY(!isPanelShown());
        QCOMPARE(_ortu.readAllStandardError(), QByteArray());
    }

private:
    bool isPanelShown() const { return _runner.status()[u"visible"_s].toBool(); }
    bool isActive() const { return _runner.status()[u"active"_s].toBool(); }
    QString selected() const { return GridPointer::nameOf(_runner.status()[u"selected"_s]); }
    QJsonValue value(const QString &key) const
    {
        return _runner.run({ u"--defaults"_s, key, u"--json"_s }).json()[key][u"value"_s];
    }
    void showGroup(int group)
    {
        const auto isShown = [&] { return _runner.status()[u"group"_s].toInt() == group; };
        for (int i = 0; i < 9 && !isShown(); ++i) {
            keys(u"Tab"_s);
        }
        QVERIFY(isShown());
    }
    // What each key selects.
    QString selectedBy(const QStringList &names) const
    {
        QStringList found;
        for (const QString &name : names) {
            keys(name);
            found.append(selected());
        }
        return found.join(u' ');
    }
    // Two lines of two, in the order of their colours.
    void expectColors() const
    {
        QTRY_COMPARE(selectedBy({ u"Up Home"_s, u"Right"_s, u"Down"_s, u"Left"_s }),
            u"Cello Delta Atlas Bravo"_s);
    }

    ProgramRunner _runner;
    const GridPointer _grid { _runner };
    QProcess _ortu;
    QProcess _tray;
    bool _isBroken = false;
};

QTEST_GUILESS_MAIN(FirstMinutesTest)
#include "FirstMinutesTest.moc"
