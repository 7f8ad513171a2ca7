#include "shell/selector/HueBar.h"

#include "shell/PanelFixture.h"
#include "shell/selector/OTStatsControl.h"

#include <QAccessible>

class HueBarTest : public PanelFixture
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        setUp();
        set("groupContentsSortOrder", 2);
        set("maximumIconSize", 128);
    }
    void cleanup() { tearDown(); }

    void thePointer_dimsWhatLooksOther_untilItIsElsewhere()
    {
        showColors();
        QCOMPARE(bar().strip().count(), 7);
        // A panel that opens below the pointer was not pointed at.
        enterAt(0.5);
        moveTo(0.5);
        QCOMPARE(lit(), u"abcdefgh"_s);
        moveTo(0.01);
        QCOMPARE(lit(), u"a"_s);
        moveTo(0.5);
        QCOMPARE(lit(), u"cd"_s);
        moveTo(0.99);
        QCOMPARE(lit(), u"g"_s);
        leave();
        QCOMPARE(lit(), u"abcdefgh"_s);
        // What is typed is for the whole grid.
        moveTo(0.01);
        press(Qt::Key_H);
        QCOMPARE(lit(), u"h"_s);
        moveTo(0.01);
        grid().setGroupToShow(AllGroup);
        QCOMPARE(lit(), u"abcdefgh"_s);
    }

    void keys_walkFromColourToColour_andIntoTheGrid()
    {
        showColors();
        grid().selectCoordsByKeys(grid().coordsOfApp(app(u"e"_s)));
        press(Qt::Key_F6);
        QCOMPARE(lit(), u"e"_s);
        QCOMPARE(bar().colorName(), u"light grey"_s);
        for (const auto &[key, expected] : QList<std::pair<Qt::Key, QString>> {
                 { Qt::Key_Left, u"cd"_s }, { Qt::Key_Left, u"b"_s }, { Qt::Key_Left, u"a"_s },
                 { Qt::Key_Left, u"a"_s }, { Qt::Key_End, u"g"_s }, { Qt::Key_Right, u"g"_s },
                 { Qt::Key_Home, u"a"_s }, { Qt::Key_Right, u"b"_s } }) {
            press(key);
            QCOMPARE(lit(), expected);
        }
        press(Qt::Key_Up);
        QCOMPARE(lit(), u"abcdefgh"_s);
        QCOMPARE(grid().selectedApp(), app(u"b"_s));
        press(Qt::Key_F6);
        press(Qt::Key_Escape);
        QVERIFY(_window->isShown() && lit() == u"abcdefgh");
        press(Qt::Key_F6);
        press(Qt::Key_Tab);
        QVERIFY(!bar().hasKeys() && grid().groupShown() == RunningGroup);
    }

    void itIsThere_inTheOrderByColour_whereThereIsRoom()
    {
        showColors();
        const QSize panel = _window->size();
        QVERIFY(bar().isVisible());
        QVERIFY(bar().geometry().left() > _window->statsControl().geometry().right());
        moveTo(0.01);
        set("showHueBar", false);
        QVERIFY(bar().isHidden() && _window->size() == panel && lit() == u"abcdefgh");
        set("showHueBar", true);
        set("groupContentsSortOrder", 1);
        QVERIFY(bar().isHidden());
        press(Qt::Key_F6);
        QVERIFY(!bar().hasKeys());
        set("groupContentsSortOrder", 2);
        QVERIFY(bar().isVisible());
        set("maximumIconSize", 16);
        QTRY_VERIFY(bar().isHidden());
    }

    void colours_areTyped_whereNoNameMatches()
    {
        showColors();
        const auto typed = [this](const QString &text) {
            grid().handleCancelOperation();
            for (const QChar letter : text) {
                press(letter.toUpper().unicode());
            }
            return lit();
        };
        QCOMPARE(typed(u"blue"_s), u"cd"_s);
        QCOMPARE(typed(u"gre"_s), u"bef"_s);
        QCOMPARE(typed(u"gray"_s), u"ef"_s);
        QCOMPARE(typed(u"bl"_s), QString());
        QCOMPARE(typed(u"black"_s), u"g"_s);
        _desktop->fakeItems.displayNames.insert(pathOf(u"h"_s), u"Bluefish"_s);
        app(u"h"_s)->renewDisplayName();
        QCOMPARE(typed(u"blue"_s), u"h"_s);
        set("groupContentsSortOrder", 1);
        QCOMPARE(typed(u"gre"_s), QString());
    }

    void aScreenReader_hearsTheColour()
    {
        showColors();
        QAccessibleInterface *const slider = QAccessible::queryAccessibleInterface(&bar());
        QCOMPARE(slider->role(), QAccessible::Slider);
        QCOMPARE(slider->text(QAccessible::Name), u"Colours"_s);
        slider->valueInterface()->setCurrentValue(3);
        QCOMPARE(slider->text(QAccessible::Value), u"blue"_s);
        QCOMPARE(lit(), u"cd"_s);
        slider->valueInterface()->setCurrentValue(0);
        QVERIFY(slider->text(QAccessible::Value).isEmpty() && lit() == u"abcdefgh");
    }

private:
    // Red, green, two blues, three greys, and one without an icon.
    void showColors()
    {
        fill({ u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s, u"f"_s, u"g"_s, u"h"_s });
        const QStringList colors { u"#ff0000"_s, u"#00ff00"_s, u"#3584e4"_s, u"#4060f0"_s,
            u"#c0c0c0"_s, u"#606060"_s, u"#202020"_s };
        for (qsizetype i = 0; i < colors.size(); ++i) {
            QImage icon(16, 16, QImage::Format_ARGB32_Premultiplied);
            icon.fill(QColor(colors[i]));
            const AppRef one = app(QChar(u'a' + int(i)));
            one->setIcon(icon);
            one->setColorSortParameters(OTAppManager::iconParameters());
        }
        show();
    }
    HueBar &bar() const { return _window->hueBar(); }
    QString lit() const
    {
        QString names;
        for (const AppRef &app : grid().keyFilteredApps1D()) {
            names += app->name();
        }
        std::sort(names.begin(), names.end());
        return names;
    }
    QPointF at(double place) const { return { 6 + (bar().width() - 12) * place, 9 }; }
    void enterAt(double place) const
    {
        QEnterEvent event(at(place), at(place), bar().mapToGlobal(at(place)));
        QCoreApplication::sendEvent(&bar(), &event);
    }
    void moveTo(double place) const
    {
        QMouseEvent event(QEvent::MouseMove, at(place), bar().mapToGlobal(at(place)), Qt::NoButton,
            Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&bar(), &event);
    }
    void leave() const
    {
        QEvent event(QEvent::Leave);
        QCoreApplication::sendEvent(&bar(), &event);
    }
};

QTEST_MAIN(HueBarTest)
#include "HueBarTest.moc"
