#include "grid/GridDrags.h"

#include "catalogue/BunchText.h"
#include "grid/IconViewFixture.h"
#include "grid/dragging/DropStack.h"
#include "grid/layout/GridKeys.h"

#include <QKeyEvent>
#include <QPaintEvent>

using Operation = GridDrags::Operation;

class GridDragsTest : public IconViewFixture
{
    Q_OBJECT

    static QMimeData &files(QMimeData &data, const QStringList &names)
    {
        data.setUrls(QUrl::fromStringList(names));
        return data;
    }
    GridDrags &drags() const { return _view->drags(); }
    // Favourites as in BunchText, a letter each; one more application is no favourite.
    void fillFavourites(const QString &text, int orientation = 2)
    {
        _defaults->setObject(GridKeys::groupOrientation, orientation);
        fill({ u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s, u"x"_s });
        qsizetype bunch = 0;
        for (const QString &letters : text.split(u'|', Qt::SkipEmptyParts)) {
            for (const QChar letter : letters) {
                _manager->moveApp(app(letter), UserGroup, bunch, 100);
            }
            ++bunch;
        }
        showGroup(UserGroup);
    }
    QString favourites() const { return BunchText::text(_manager->userApps()); }
    QString flat() const { return BunchText::text(_manager->userApps1D()); }
    // Where in the view: an icon's letter, "gap 1", "end 0 2" for the margin 2 of the band 0,
    // "cell 1 2" for a cell by its row and column, or "beside" the view.
    QPointF placeOf(const QString &text) const
    {
        const GridLayout &layout = _view->gridLayout();
        const QStringList words = text.split(u' ');
        const auto index = size_t(words.value(1).toInt());
        if (words[0] == u"gap") {
            return layout.bunchSpacingRects()[index].center();
        }
        if (words[0] == u"end") {
            return layout.bandEnd({ .bunch = index, .margin = words[2].toULongLong() }).center();
        }
        if (words[0] == u"cell") {
            return layout.cellAt(index, words[2].toULongLong()).rect.center();
        }
        if (words[0] == u"beside") {
            return { 5000, 40 };
        }
        return _view->rectOfApp(app(text)).center();
    }
    std::unique_ptr<QMimeData> payloadOf(const QString &name) const
    {
        OTDragPayload payload;
        payload.setApp(app(name));
        auto data = std::make_unique<QMimeData>();
        payload.writeTo(*data);
        return data;
    }
    Operation update(const QMimeData &data, const QString &place, Qt::KeyboardModifiers keys = {})
    {
        return drags().draggingUpdated({ data, placeOf(place), keys });
    }
    bool drop(const QMimeData &data, const QString &place)
    {
        update(data, place);
        return drags().performDragOperation({ data, placeOf(place), {} });
    }
    bool press(int key, Qt::KeyboardModifiers modifiers)
    {
        return _view->keyPressed(QKeyEvent(QEvent::KeyPress, key, modifiers));
    }
    // The letters that are lit.
    QString lit() const
    {
        QString letters;
        for (const AppRef &one : _manager->allApps1D()) {
            letters += drags().isDroppable(one) ? one->name() + u' ' : QString();
        }
        return letters.trimmed();
    }

private Q_SLOTS:
    void init()
    {
        setUp();
        DropStack::setSharedDropStack(&_stack);
        _stack.free();
    }
    void cleanup()
    {
        tearDown();
        DropStack::setSharedDropStack(nullptr);
    }

    void aPayload_travels()
    {
        fillFavourites(u"ab|c|"_s);
        const auto data = drags().pasteboardForCoords(_view->coordsOfApp(app(u"c"_s)));
        const auto payload = OTDragPayload::readFrom(*data, *_desktop);
        QVERIFY(payload && *payload->app() == *app(u"c"_s));
        QCOMPARE(payload->group(), quint64(UserGroup));
        QCOMPARE(payload->bunch(), quint64(1));
        QCOMPARE(payload->index(), quint64(0));
        QVERIFY(!drags().pasteboardForCoords({}));
        const QByteArray bytes = payload->encoded();
        for (qsizetype length = 0; length < bytes.size(); ++length) {
            QVERIFY(!OTDragPayload::decoded(bytes.first(length), *_desktop));
        }
        QVERIFY(!OTDragPayload::decoded(bytes + 'x', *_desktop));
    }

    void iconsGoWhereTheyAreDropped_data()
    {
        QTest::addColumn<int>("orientation");
        QTest::addColumn<QString>("moves");
        QTest::addColumn<QString>("favourites");
        // Each move: what, where.
        QTest::newRow("onto icons") << 2 << u"a>d,d>a"_s << u"b|cda|e|"_s;
        QTest::newRow("onto the next and itself") << 2 << u"a>b,a>a"_s << u"ab|cd|e|"_s;
        QTest::newRow("past the last") << 2 << u"a>cell 1 2"_s << u"b|cd|ea|"_s;
        QTest::newRow("into gaps") << 2 << u"a>gap 1,d>gap 0"_s << u"d|b|a|c|e|"_s;
        QTest::newRow("into the outer margin") << 2 << u"a>gap 3"_s << u"b|cd|e|a|"_s;
        QTest::newRow("beside the grid") << 2 << u"a>beside"_s << u"b|cd|e|a|"_s;
        QTest::newRow("front and end of a band") << 2 << u"e>end 0 0,a>end 1 2"_s << u"eb|cda|"_s;
        QTest::newRow("stacked gaps") << 1 << u"a>gap 0,e>gap 2"_s << u"a|b|e|cd|"_s;
        QTest::newRow("stacked ends") << 1 << u"a>end 1 1,e>end 0 3"_s << u"be|cda|"_s;
        QTest::newRow("what is no favourite") << 2 << u"x>c"_s << u"ab|xcd|e|"_s;
    }
    void iconsGoWhereTheyAreDropped()
    {
        QFETCH(int, orientation);
        QFETCH(QString, moves);
        fillFavourites(u"ab|cd|e|"_s, orientation);
        for (const QString &move : moves.split(u',')) {
            const auto data = payloadOf(move.section(u'>', 0, 0));
            QCOMPARE(update(*data, move.section(u'>', 1)), Operation::Move);
            QVERIFY(drags().isMarking());
            QVERIFY(drop(*data, move.section(u'>', 1)));
            QVERIFY(!drags().isOver() && !drags().isDragMoveInProgress());
        }
        QTEST(favourites(), "favourites");
        QCOMPARE(_host.slides, u"on back "_s.repeated(moves.count(u'>')));
    }

    void flatFavourites_moveInTheirOwnOrder()
    {
        fillFavourites(u"ab|cd|"_s, 0);
        QCOMPARE(_view->groupShown(), int(User1DGroup));
        QVERIFY(drop(*payloadOf(u"d"_s), u"b"_s));
        QCOMPARE(flat(), u"adbc"_s);
        QCOMPARE(favourites(), u"ab|cd|"_s);
        QVERIFY(drop(*payloadOf(u"a"_s), u"end 0 2"_s));
        QCOMPARE(flat(), u"dbca"_s);
    }

    void theFirstFavourite_isDroppedAnywhere()
    {
        for (const int orientation : { 0, 2 }) {
            fillFavourites({}, orientation);
            QVERIFY(drop(*payloadOf(u"c"_s), u"beside"_s));
            QCOMPARE(favourites(), u"c|"_s);
        }
    }

    void otherGroups_takeNoIcon()
    {
        fillFavourites(u"ab|"_s);
        const auto data = payloadOf(u"x"_s);
        for (const int group : { IncludedGroup, AllGroup, ExcludedGroup }) {
            showGroup(group);
            QCOMPARE(update(*data, u"a"_s), Operation::None);
            QVERIFY(drags().isDragged(app(u"x"_s)) && !drags().isMarking());
        }
        QVERIFY(!drop(*data, u"a"_s));
        // On to the favourites, as over a button that opens them.
        update(*data, u"a"_s);
        showGroup(UserGroup);
        QCOMPARE(update(*data, u"a"_s), Operation::Move);
        drags().draggingExited();
        QVERIFY(_view->selectedCoords().isEmpty() && !drags().isDragMoveInProgress());
        QCOMPARE(favourites(), u"ab|"_s);
    }

    void whatCannotBeTaken_changesNothing()
    {
        fillFavourites(u"ab|"_s);
        QMimeData garbage, gone, picture, nowhere;
        garbage.setData(OTDragPayload::mimeType(), "garbage");
        OTDragPayload payload;
        payload.setApp(std::make_shared<OTApp>(u"/nowhere/z"_s, *_desktop));
        payload.writeTo(gone);
        picture.setImageData(QImage(4, 4, QImage::Format_RGB32));
        nowhere.setData(u"text/uri-list"_s, "not an address\r\n");
        for (const QMimeData *const data : { &garbage, &gone, &picture, &nowhere }) {
            QCOMPARE(update(*data, u"a"_s), Operation::None);
            QVERIFY(!drop(*data, u"a"_s));
            QVERIFY(!drags().isFileDrop() && _stack.count() == 0);
            drags().draggingExited();
        }
        // Nor while a dialog hangs on the window.
        const auto data = payloadOf(u"a"_s);
        QCOMPARE(update(*data, u"b"_s), Operation::Move);
        _host.hasFocus = false;
        QCOMPARE(update(*data, u"b"_s), Operation::None);
        QVERIFY(!drags().isDragMoveInProgress());
        QCOMPARE(favourites(), u"ab|"_s);
    }

    // A scan may fill the cells anew without a move of the pointer.
    void aDropCounts_whereItHappens()
    {
        fillFavourites(u"ab|"_s);
        const auto data = payloadOf(u"x"_s);
        const QPointF onA = placeOf(u"a"_s);
        update(*data, u"b"_s);
        _manager->removeAppsFromUserApps({ app(u"b"_s) });
        QVERIFY(drags().performDragOperation({ *data, onA, {} }));
        QCOMPARE(favourites(), u"xa|"_s);
    }

    void filesAreOpened_byWhatTheyAreDroppedOn()
    {
        fill({ u"txt"_s, u"any-txt"_s, u"png"_s });
        _host.isActive = false;
        QMimeData data;
        files(data, { u"file:///d/one.txt"_s, u"file:///d/two.txt"_s });
        QCOMPARE(update(data, u"png"_s), Operation::Generic);
        QCOMPARE(lit(), u"txt"_s);
        update(data, u"png"_s, Qt::ControlModifier);
        QCOMPARE(lit(), u"any-txt txt"_s);
        update(data, u"png"_s);
        QCOMPARE(lit(), u"txt"_s);
        QVERIFY(!drop(data, u"any-txt"_s));
        QCOMPARE(_host.slides, u"front on back last "_s);
        QVERIFY(!drags().isFileDrop() && lit().isEmpty() && _stack.count() == 0);
        QVERIFY(drop(data, u"txt"_s));
        QTRY_COMPARE(launched(), QStringList { u"txt <- file:///d/one.txt file:///d/two.txt"_s });
        QCOMPARE(_host.hideCount, 1);
        // The program was in front all the time.
        _host = {};
        update(data, u"txt"_s);
        drags().draggingExited();
        QCOMPARE(_host.slides, u"on back "_s);
        // Given up, or under a dialog, it leaves nothing behind.
        update(data, u"txt"_s);
        QVERIFY(press(Qt::Key_Escape, {}) && !drags().isFileDrop());
        QCOMPARE(update(data, u"txt"_s), Operation::None);
        drags().draggingExited();
        QCOMPARE(update(data, u"txt"_s), Operation::Generic);
        _host.hasFocus = false;
        QCOMPARE(update(data, u"txt"_s), Operation::None);
        QVERIFY(_stack.count() == 0 && lit().isEmpty());
        QVERIFY(_host.slides.endsWith(u"on back on back "));
    }

    void waitingFiles_areOfferedToAClick()
    {
        fill({ u"txt"_s, u"any-txt"_s, u"png"_s });
        QSignalSpy said(&NotificationCenter::defaultCenter(), &NotificationCenter::N_UserMessage);
        drags().offerDropStack();
        QVERIFY(!drags().isFileDrop() && said.isEmpty());
        const auto offer = [this] {
            _stack.push(QUrl(u"https://a.example/x.png"_s));
            _stack.push(u"/d/one.txt"_s);
            drags().offerDropStack();
        };
        offer();
        QCOMPARE(drags().offerText(), uR"(Open "one.txt" and 1 more with…)"_s);
        QVERIFY(said.isEmpty());
        QCOMPARE(lit(), u"txt"_s);
        // It outlasts another group, and what cannot take them does nothing.
        showGroup(AllGroup);
        for (const QString &name : { u"png"_s, u"any-txt"_s }) {
            QTest::mouseClick(_view.get(), Qt::LeftButton, {}, middleOf(name));
        }
        QCOMPARE(_host.hideCount, 0);
        QCOMPARE(said[0][0].toString(), uR"(png cannot open "one.txt".)"_s);
        QVERIFY(said[1][0].toString().startsWith(u"any-txt is not meant for"));
        QTest::mouseClick(_view.get(), Qt::LeftButton, {}, middleOf(u"txt"_s));
        QTRY_COMPARE(
            launched(), QStringList { u"txt <- https://a.example/x.png file:///d/one.txt"_s });
        QVERIFY(_stack.count() == 0 && !drags().isFileDrop());
        offer();
        QVERIFY(press(Qt::Key_Escape, {}));
        QVERIFY(!press(Qt::Key_Escape, {}));
        offer();
        _view->resignFirstResponder();
        QVERIFY(_stack.count() == 0 && !drags().isFileDrop());
    }

    void keysMoveFavourites_data()
    {
        QTest::addColumn<int>("orientation");
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("favourites");
        // From c of "ab|cd|e", side by side in columns of two.
        QTest::newRow("down") << 2 << u"D"_s << u"ab|dc|e|"_s;
        QTest::newRow("down at the end") << 2 << u"DDD"_s << u"ab|dc|e|"_s;
        QTest::newRow("up and back") << 2 << u"DU"_s << u"ab|cd|e|"_s;
        QTest::newRow("left") << 2 << u"L"_s << u"cab|d|e|"_s;
        QTest::newRow("to a new one") << 2 << u"LL"_s << u"c|ab|d|e|"_s;
        QTest::newRow("no farther") << 2 << u"LLLL"_s << u"c|ab|d|e|"_s;
        QTest::newRow("right") << 2 << u"R"_s << u"ab|d|ce|"_s;
        QTest::newRow("right to a new one") << 2 << u"RRR"_s << u"ab|d|e|c|"_s;
        QTest::newRow("stacked") << 1 << u"U"_s << u"cab|d|e|"_s;
        QTest::newRow("stacked, in its line") << 1 << u"R"_s << u"ab|dc|e|"_s;
        QTest::newRow("stacked, to a new one") << 1 << u"DDD"_s << u"ab|d|e|c|"_s;
        QTest::newRow("flat") << 0 << u"LR"_s << u"abcde"_s;
        QTest::newRow("flat, past the end") << 0 << u"LD"_s << u"abdec"_s;
    }
    void keysMoveFavourites()
    {
        QFETCH(int, orientation);
        QFETCH(QString, keys);
        fillFavourites(u"ab|cd|e|"_s, orientation);
        _view->selectCoords(_view->coordsOfApp(app(u"c"_s)));
        for (const QChar key : keys) {
            const int keyCode = key == u'L' ? Qt::Key_Left
                : key == u'R'               ? Qt::Key_Right
                : key == u'U'               ? Qt::Key_Up
                                            : Qt::Key_Down;
            QVERIFY(press(keyCode, Qt::ShiftModifier));
            QCOMPARE(_view->selectedApp()->name(), u"c"_s);
        }
        QTEST(orientation == 0 ? flat() : favourites(), "favourites");
        // All of it can be taken back.
        while (_manager->canUndo() && favourites() != u"ab|cd|e|"_s) {
            press(Qt::Key_Z, Qt::ControlModifier);
        }
        QCOMPARE(favourites(), u"ab|cd|e|"_s);
    }

    void changesAreTakenBack_andTheirIconIsSelected()
    {
        fillFavourites(u"ab|c|"_s);
        QSignalSpy said(&NotificationCenter::defaultCenter(), &NotificationCenter::N_UserMessage);
        drop(*payloadOf(u"a"_s), u"gap 2"_s);
        QVERIFY(press(Qt::Key_Z, Qt::ControlModifier));
        QCOMPARE(favourites(), u"ab|c|"_s);
        QCOMPARE(_view->selectedApp()->name(), u"a"_s);
        QVERIFY(press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier));
        QCOMPARE(favourites(), u"b|c|a|"_s);
        QVERIFY(said.isEmpty());
        // What cannot be seen here is said.
        _manager->excludeApp(app(u"x"_s));
        press(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(said.size(), 1);
        QVERIFY(_manager->excludedApps1D().isEmpty());
    }

    void aDragPaints_onlyWhatChanges()
    {
        fillFavourites(u"ab|cd|e|"_s);
        _view->show();
        const auto data = payloadOf(u"x"_s);
        update(*data, u"a"_s);
        QCoreApplication::processEvents();
        PaintedRegion painted;
        _view->installEventFilter(&painted);
        const auto paintedBy = [&](const QString &place) {
            painted.region = {};
            update(*data, place);
            QCoreApplication::processEvents();
            return painted.region;
        };
        const auto onWidget = [this](const QRectF &rect) {
            return QRegion(Geometry::flipped(rect, _view->height()).toAlignedRect());
        };
        const GridLayout &layout = _view->gridLayout();
        const QRegion cellA = onWidget(_view->rectOfApp(app(u"a"_s)));
        const QRegion gap = onWidget(layout.bunchSpacingRects()[1]);
        QCOMPARE(paintedBy(u"gap 1"_s), cellA + gap);
        QCOMPARE(paintedBy(u"c"_s), gap + onWidget(_view->rectOfApp(app(u"c"_s))));
        QVERIFY(paintedBy(u"c"_s).isEmpty());
        const QRegion end = onWidget(layout.bandEnd({ .bunch = 0, .margin = 0 }));
        paintedBy(u"a"_s);
        QCOMPARE(paintedBy(u"end 0 0"_s), cellA + end);
    }

private:
    struct PaintedRegion : QObject
    {
        QRegion region;
        bool eventFilter(QObject *, QEvent *event) override
        {
            if (event->type() == QEvent::Paint) {
                region += static_cast<QPaintEvent *>(event)->region();
            }
            return false;
        }
    };

    DropStack _stack;
};

QTEST_MAIN(GridDragsTest)
#include "GridDragsTest.moc"
