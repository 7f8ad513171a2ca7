#include "grid/IconViewFixture.h"
#include "grid/OTIconView.h"

#include <QInputMethodEvent>
#include <QKeyEvent>

class FindingTest : public IconViewFixture
{
    Q_OBJECT

    bool press(int key, const QString &text = {})
    {
        return _view->keyPressed(QKeyEvent(QEvent::KeyPress, key, {}, text));
    }
    void type(const QString &text)
    {
        for (const QChar character : text) {
            press(Qt::Key_unknown, character);
        }
    }
    void compose(const QString &preedit, const QString &commit = {})
    {
        QInputMethodEvent event(preedit, {});
        event.setCommitString(commit);
        QCoreApplication::sendEvent(_view.get(), &event);
    }
    // The lit ones in the order of the grid, the ringed one in brackets.
    QString lit() const
    {
        QStringList names;
        for (const AppRef &app : _view->keyFilteredApps1D()) {
            names.append(app == _view->selectedApp() ? u'[' + app->name() + u']' : app->name());
        }
        return names.join(u' ');
    }
    void fillAndRead(const QStringList &names)
    {
        fill(names);
        QSignalSpy announced(
            &NotificationCenter::defaultCenter(), &NotificationCenter::N_FilterStringChanged);
        _defaults->setObject(u"matchesMoreThanNames"_s, true);
        // What the applications say arrives while a text is there.
        type(u"w"_s);
        const qsizetype before = announced.size();
        QTRY_VERIFY(announced.size() > before);
        press(Qt::Key_Escape);
    }

private Q_SLOTS:
    void init()
    {
        setUp();
        FakeItems &items = _desktop->fakeItems;
        items.words[u"Fire"_s].genericName = u"Web Browser"_s;
        items.words[u"Fire"_s].hasActions = true;
        items.words[u"Nautilus"_s].keywords = QStringList { u"browser"_s, u"folder"_s };
        _desktop->actions = { { u"p"_s, u"New Private Window"_s } };
    }
    void cleanup() { tearDown(); }

    void theBestIsRinged_andReturnStartsIt()
    {
        fillAndRead({ u"Fire"_s, u"Nautilus"_s, u"Writer"_s, u"xBrow"_s });
        type(u"bro"_s);
        QCOMPARE(lit(), u"Fire Nautilus [xBrow]"_s);
        // By the arrow keys from one lit icon to the next.
        press(Qt::Key_Left);
        QCOMPARE(lit(), u"Fire [Nautilus] xBrow"_s);
        type(u"ws"_s);
        QCOMPARE(lit(), u"[Fire] Nautilus"_s);
        press(Qt::Key_Right);
        press(Qt::Key_Return);
        QTRY_COMPARE(launched(), QStringList { u"Nautilus"_s });
        QVERIFY(_view->filterSubstring().isEmpty());
        type(u"web browser"_s);
        // However the pointer lies.
        _view->selectCoords({});
        press(Qt::Key_Enter);
        QTRY_COMPARE(launched().last(), u"Fire"_s);
        QCOMPARE(_host.hideCount, 2);
        // A dimmed one is not started.
        type(u"web"_s);
        type(u"xyz"_s);
        QVERIFY(lit().isEmpty() && _view->selectedCoords().isEmpty());
        press(Qt::Key_Return);
        QCOMPARE(_host.hideCount, 2);
        // By the keys of another layout, of which some are no letters.
        press(Qt::Key_Escape);
        type(u"'קנ"_s);
        QCOMPARE(lit(), u"[Fire]"_s);
        // As it is without.
        _defaults->setObject(u"matchesMoreThanNames"_s, false);
        QVERIFY(lit().isEmpty() && _view->selectedCoords().isEmpty());
        press(Qt::Key_Escape);
        type(u".re"_s);
        QCOMPARE(_view->filterSubstring(), u"re"_s);
        QCOMPARE(lit(), u"Fire"_s);
    }

    // As fast as keys can come.
    void whatIsNotReadYet_isWaitedFor()
    {
        fill({ u"Fire"_s, u"Writer"_s });
        _defaults->setObject(u"matchesMoreThanNames"_s, true);
        type(u"browser"_s);
        QVERIFY(lit().isEmpty());
        press(Qt::Key_Return);
        QTRY_COMPARE(launched(), QStringList { u"Fire"_s });
    }

    void anActionIsFound_andPerformed()
    {
        fillAndRead({ u"Fire"_s, u"Private Eye"_s, u"Writer"_s });
        type(u"private"_s);
        QCOMPARE(lit(), u"Fire [Private Eye]"_s);
        QVERIFY(!_view->foundAction(app(u"Private Eye"_s)));
        type(u" win"_s);
        QCOMPARE(lit(), u"[Fire]"_s);
        QCOMPARE(_view->foundAction(app(u"Fire"_s))->title, u"New Private Window"_s);
        press(Qt::Key_Return);
        QTRY_COMPARE(launched(), QStringList { u"p Fire"_s });
        QVERIFY(!_view->foundAction(app(u"Fire"_s)));
    }

    void useIsRemembered_whereThatIsWanted()
    {
        fillAndRead({ u"Tab"_s, u"Tar"_s });
        _manager = std::make_unique<OTAppManager>(*_desktop);
        _view.reset();
        _manager->rescanAllAppsPrioritizingGroup(IncludedGroup);
        const QString file = _desktop->tree.path(u"user/Ortu/Use.plist"_s);
        QSignalSpy used(&NotificationCenter::defaultCenter(), &NotificationCenter::N_AppWasUsed);
        for (const auto &[remembers, best] :
            { std::pair(false, u"Tab"_s), std::pair(true, u"Tar"_s) }) {
            _defaults->setObject(u"remembersUse"_s, remembers);
            _view = std::make_unique<OTIconView>(*_manager, _host);
            showGroup(Included1DGroup);
            used.clear();
            _view->commands().launchApp(app(u"Tar"_s));
            QTRY_COMPARE(used.size(), 1);
            type(u"ta"_s);
            QCOMPARE(_view->selectedApp()->name(), best);
            _view.reset();
            QCOMPARE(QFile::exists(file), remembers);
        }
        _view = std::make_unique<OTIconView>(*_manager, _host);
        Q_EMIT NotificationCenter::defaultCenter().N_ForgetUses();
        QVERIFY(!QFile::exists(file));
    }

    void whatIsComposed_filtersOnceItIsCommitted_data()
    {
        QTest::addColumn<bool>("matchesMore");
        QTest::newRow("by name") << false;
        QTest::newRow("by anything") << true;
    }
    void whatIsComposed_filtersOnceItIsCommitted()
    {
        QFETCH(bool, matchesMore);
        fill({ u"ダウンロード"_s, u"テレビ"_s });
        _defaults->setObject(u"matchesMoreThanNames"_s, matchesMore);
        QSignalSpy announced(
            &NotificationCenter::defaultCenter(), &NotificationCenter::N_FilterStringChanged);
        compose(u"だ"_s);
        compose(u"だう"_s);
        QCOMPARE(announced.last().value(1).toString(), u"だう"_s);
        QCOMPARE(_view->keyFilteredApps1D().size(), 2);
        // These end the composition and nothing else.
        QVERIFY(press(Qt::Key_Return) && press(Qt::Key_Enter));
        compose({}, u"ダウ"_s);
        QCOMPARE(_view->filterSubstring(), u"ダウ"_s);
        QCOMPARE(_view->keyFilteredApps1D(), AppList { app(u"ダウンロード"_s) });
        compose(u"ん"_s);
        QCOMPARE(announced.last().value(1).toString(), u"ダウん"_s);
        compose({});
        QCOMPARE(announced.last().value(1).toString(), u"ダウ"_s);
        QCOMPARE(_host.hideCount, 0);
        press(Qt::Key_Return);
        QTRY_COMPARE(launched(), QStringList { u"ダウンロード"_s });
        // Of a dead key comes the letter alone.
        compose({}, u"é"_s);
        QCOMPARE(_view->filterSubstring(), u"é"_s);
    }
};

QTEST_MAIN(FindingTest)

#include "FindingTest.moc"
