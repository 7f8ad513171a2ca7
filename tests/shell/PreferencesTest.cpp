#include "shell/OTNSAppSubclass.h"
#include "shell/PanelFixture.h"
#include "shell/preferences/ColorSortingOptions.h"
#include "shell/preferences/ColorWell.h"
#include "shell/preferences/ExclusionWindow.h"
#include "shell/preferences/HotKeyControl.h"
#include "shell/preferences/HotKeyRecorder.h"
#include "shell/preferences/PreferenceControls.h"
#include "shell/preferences/PreferencesWindow.h"
#include "shell/preferences/ScanFolderTable.h"
#include "shell/preferences/SettingsButtons.h"
#include "support/Alerts.h"
#include "support/InfoDictionary.h"
#include "support/Translations.h"

#include <QAccessible>
#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QTabWidget>

class PreferencesTest : public PanelFixture
{
    Q_OBJECT

    void launch()
    {
        fill(4);
        _controller = std::make_unique<OTController>(*_desktop, *_manager, *_window, _info);
        _controller->launch(InstanceRequest());
        // The start is over: what follows the first frame is there as well.
        QTRY_COMPARE(_defaults->integerForKey(u"applicationLaunchCount"_s), 1);
    }
    PreferencesWindow *sheet() const
    {
        auto *const found = _window->findChild<PreferencesWindow *>();
        return found && found->isVisible() ? found : nullptr;
    }

private Q_SLOTS:
    void init()
    {
        setUp();
        _desktop->movement.isStill = true;
    }
    void cleanup()
    {
        _controller.reset();
        tearDown();
    }

    void controlsStore_andFollow()
    {
        PreferenceControls controls;
        const std::unique_ptr<QCheckBox> box(controls.checkBox(u"drawWindowBorder"_s, u"Border"_s));
        box->click();
        QCOMPARE(_defaults->boolForKey(u"drawWindowBorder"_s), true);
        const std::unique_ptr<QComboBox> order(controls.comboBox(
            u"groupContentsSortOrder"_s, { { u"name"_s, 1 }, { u"colour"_s, 2 } }));
        set("groupContentsSortOrder", 2);
        QCOMPARE(order->currentText(), u"colour"_s);
        set("groupContentsSortOrder", 77);
        QCOMPARE(order->currentIndex(), -1);
        const std::unique_ptr<QWidget> opacity(controls.slider(u"windowAlpha"_s,
            { 0, 100, PreferenceControls::Range::Unit::Hundredths }, u"Opacity"_s));
        auto *const slider = opacity->findChild<QSlider *>();
        QCOMPARE(slider->value(), 85);
        slider->setValue(40);
        QCOMPARE(_defaults->doubleForKey(u"windowAlpha"_s), 0.4);
        // What it cannot show stays as it is.
        set("windowAlpha", 3.0);
        QCOMPARE(slider->value(), 100);
        QCOMPARE(_defaults->doubleForKey(u"windowAlpha"_s), 3.0);
        const std::unique_ptr<ColorWell> well(controls.colorWell(u"windowColor"_s, u"Panel"_s));
        Q_EMIT well->colorChosen(QColor(1, 2, 3, 4));
        QCOMPARE(_defaults->stringForKey(u"windowColor"_s), u"#01020304"_s);
        QCOMPARE(well->color(), QColor(1, 2, 3, 4));
        controls.reset();
        QVERIFY(!box->isChecked() && order->currentIndex() == 0 && slider->value() == 85);
        QCOMPARE(well->color(), QColor(Qt::black));
        for (const QString &key : controls.keys()) {
            QVERIFY(!_defaults->hasStoredValue(key));
        }
    }

    void whatIsFixedForThisRun_isGrey()
    {
        _defaults->setObjectForThisRun(u"drawWindowBorder"_s, true);
        PreferenceControls controls;
        const std::unique_ptr<QCheckBox> box(controls.checkBox(u"drawWindowBorder"_s, u"Border"_s));
        QVERIFY(box->isChecked() && !box->isEnabled() && !box->toolTip().isEmpty());
    }

    void itHangsOnThePanel_andGoesWithIt()
    {
        launch();
        press(Qt::Key_Comma, Qt::ControlModifier);
        QVERIFY(sheet() && sheet()->windowModality() == Qt::WindowModal);
        QVERIFY(!_window->iconViewHasUserFocus());
        QVERIFY(sheet()->y() >= _window->y());
        // A choice of colour goes as well.
        auto *const well = sheet()->findChild<ColorWell *>();
        well->click();
        QVERIFY(well->findChild<QColorDialog *>());
        _controller->closePrefs();
        QVERIFY(!sheet() && !well->findChild<QColorDialog *>() && _window->isShown());
        // A hot key that cannot be had is told at once.
        _controller->openPrefs();
        auto *const hotKey = sheet()->findChild<HotKeyControl *>();
        _desktop->key.whyNot = u"another program holds this key"_s;
        expectWarning(u"^no hot key: another program"_s);
        hotKey->findChild<QCheckBox *>()->click();
        QCOMPARE(_defaults->integerForKey(u"hotKeyModifiers"_s), 0);
        const auto *const problem = hotKey->findChild<QLabel *>();
        QVERIFY(problem->text().contains(u"another program"));
        QVERIFY(problem->text().contains(u"ortu --toggle"));
        Q_EMIT _desktop->key.registrationChanged({});
        QVERIFY(!problem->text().contains(u"another program"));
        _controller->closePrefs();
        // Losing the focus closes both.
        _controller->openPrefs();
        QVERIFY(sheet());
        _desktop->windows.bringToFront(nullptr);
        QTRY_VERIFY(!sheet() && !_window->isShown());
        // Unless one was moved aside.
        _controller->openPrefs();
        const auto isMoved = [this] {
            sheet()->move(sheet()->pos() + QPoint(1, 1));
            return sheet()->hasBeenMoved();
        };
        QVERIFY(!sheet()->hasBeenMoved());
        QTRY_VERIFY(isMoved());
        _desktop->windows.bringToFront(nullptr);
        QCoreApplication::processEvents();
        QVERIFY(sheet() && _window->isShown());
        sheet()->findChild<ScanFolderTable *>()->directoryPlusClicked();
        QVERIFY(_window->findChild<QFileDialog *>());
        _controller->hideMainWindow();
        QVERIFY(!_window->findChild<QFileDialog *>());
        // It brings the panel up.
        _controller->openPrefs();
        QVERIFY(sheet() && _window->isShown());
    }

    void aHotKeyIsChosenByPressingIt()
    {
        launch();
        _desktop->key.names = { { 75, { u"FK09"_s } }, { 38, { u"odd"_s, u"AC01"_s } } };
        _controller->openPrefs();
        auto *const recorder = sheet()->findChild<HotKeyRecorder *>();
        sheet()->findChild<QTabWidget *>()->setCurrentIndex(4);
        const auto press = [recorder](int key, Qt::KeyboardModifiers modifiers, quint32 code,
                               const QString &text = {}) {
            recorder->setChecked(true);
            QKeyEvent event(QEvent::KeyPress, key, modifiers, code, 0, 0, text);
            QApplication::sendEvent(recorder, &event);
            return !recorder->isRecording();
        };
        const auto stored = [this] {
            return std::pair(_defaults->integerForKey(u"hotKeyCode"_s),
                _defaults->integerForKey(u"hotKeyModifiers"_s));
        };
        QVERIFY(press(Qt::Key_A, Qt::MetaModifier | Qt::ControlModifier, 38));
        QCOMPARE(stored(), std::pair(0LL, 256 + 4096LL));
        QVERIFY(press(Qt::Key_F9, {}, 75));
        QCOMPARE(stored(), std::pair(101LL, 0LL));
        // No letter by itself, no key that is in no table, no modifier; Escape gives up.
        QVERIFY(!press(Qt::Key_A, Qt::ShiftModifier, 38, u"A"_s));
        QVERIFY(!press(Qt::Key_Launch0, Qt::ControlModifier, 200));
        QVERIFY(!press(Qt::Key_Control, Qt::ControlModifier, 37));
        QVERIFY(press(Qt::Key_Escape, {}, 9));
        QVERIFY(sheet());
        QCOMPARE(stored(), std::pair(101LL, 0LL));
    }

    void settingsGoToAFile_andComeFromOne()
    {
        QList<Alert> alerts;
        const Alerts::PresenterScope presenter([&alerts](const Alert &alert, QWidget *) {
            alerts.append(alert);
            return 0;
        });
        launch();
        _controller->openPrefs();
        auto *const buttons = sheet()->findChild<SettingsButtons *>();
        const QString file = _desktop->tree.path(u"kept.plist"_s);
        const auto choose = [&](qsizetype button) {
            buttons->findChildren<QPushButton *>()[button]->click();
            auto *const dialog = buttons->findChild<QFileDialog *>();
            dialog->selectFile(file);
            Q_EMIT dialog->fileSelected(file);
            dialog->close();
        };
        set("iconPadding", 7);
        choose(0);
        QTRY_VERIFY(QFile::exists(file));
        QVERIFY(alerts.isEmpty());
        set("iconPadding", 3);
        choose(1);
        QTRY_COMPARE(alerts.size(), 1);
        QCOMPARE(_defaults->integerForKey(u"iconPadding"_s), 7);
        QFile::remove(file);
        choose(1);
        QTRY_COMPARE(alerts.size(), 2);
        QCOMPARE(alerts[1].style, Alert::Style::Warning);
        // The dialog goes with the sheet.
        buttons->findChild<QPushButton *>()->click();
        _controller->closePrefs();
        QVERIFY(!buttons->findChild<QFileDialog *>());
    }

    void otherSheets_openAndGoWithThePanel()
    {
        launch();
        _controller->openPrefs();
        sheet()->findChild<QTabWidget *>()->setCurrentIndex(2);
        auto *const hidden = sheet()->findChild<QSpinBox *>();
        const auto isShown = [hidden] { return !hidden->parentWidget()->isHidden(); };
        QVERIFY(!isShown());
        Q_EMIT _desktop->tap.changed(Qt::AltModifier | Qt::ShiftModifier);
        QVERIFY(isShown());
        Q_EMIT _desktop->tap.changed(Qt::ShiftModifier);
        QVERIFY(!isShown());
        _controller->openColorSortingOptions();
        const QPointer<ColorSortingOptions> options = sheet()->findChild<ColorSortingOptions *>();
        options->findChild<QSlider *>()->setValue(120);
        QCOMPARE(_defaults->doubleForKey(u"colorSortWrapHue"_s), 120.0);
        Q_EMIT options->resetWanted();
        QCOMPARE(_defaults->doubleForKey(u"colorSortWrapHue"_s), 0.0);
        // A window manager may focus nothing, or the panel, when a dialog closes.
        ObedientWindows &windows = _desktop->windows;
        windows.isObedient = false;
        options->reject();
        windows.bringToFront(nullptr);
        QCoreApplication::processEvents();
        QVERIFY(sheet());
        windows.isObedient = true;
        windows.bringToFront(_window->windowHandle());
        QVERIFY(windows.activeWindow() == sheet()->windowHandle());
        _controller->openColorSortingOptions();
        _controller->closePrefs();
        QVERIFY(!options->isVisible() && !sheet());

        const QString first = _manager->includedApps1D().first()->path();
        _desktop->fakePinned.pinned = { first };
        for (const bool isDockWanted : { false, true }) {
            _controller->autoExcludeApps();
            auto *const exclusion = _window->findChild<ExclusionWindow *>();
            QVERIFY(exclusion->isVisible());
            exclusion->findChild<QCheckBox *>()->setChecked(isDockWanted);
            exclusion->findChildren<QPushButton *>().constLast()->click();
            QVERIFY(!exclusion->isVisible());
            QCOMPARE(pathsFromApps(_manager->excludedApps1D()),
                isDockWanted ? QStringList(first) : QStringList());
        }
        _controller->autoExcludeApps();
        _controller->hideMainWindow();
        QVERIFY(!_window->findChild<ExclusionWindow *>()->isVisible());
    }

    // Two that share a key would make neither reachable by it.
    void mnemonicsDiffer_andAScreenReaderNamesEveryControl_data()
    {
        QTest::addColumn<QByteArray>("language");
        QTest::newRow("English") << QByteArray("en");
        QTest::newRow("German") << QByteArray("de");
    }
    void mnemonicsDiffer_andAScreenReaderNamesEveryControl()
    {
        QFETCH(QByteArray, language);
        const Translations translations({ language });
        QWidget parent;
        const PreferencesWindow window(
            { [](int, int) {}, [] { return QString(); }, [](quint32) { return QStringList(); } },
            _desktop->items(), PreferenceTabs::UpdateChecks::Offered, &parent);
        const auto *const tabs = window.findChild<QTabWidget *>();
        for (QWidget *control : window.findChildren<QWidget *>()) {
            if (control->focusPolicy() != Qt::NoFocus && !control->focusProxy()) {
                const QAccessibleInterface *const told =
                    QAccessible::queryAccessibleInterface(control);
                QVERIFY2(!told->text(QAccessible::Name).isEmpty() || told->childCount() > 0,
                    control->metaObject()->className());
            }
        }
        for (int i = 0; i < tabs->count(); ++i) {
            QStringList keys;
            const auto add = [&keys](const QString &text) {
                const QString key = QKeySequence::mnemonic(text).toString();
                QVERIFY2(!key.isEmpty() && !keys.contains(key), qPrintable(text));
                keys.append(key);
            };
            for (int tab = 0; tab < tabs->count(); ++tab) {
                add(tabs->tabText(tab));
            }
            for (const auto *button :
                window.findChild<QDialogButtonBox *>()->findChildren<QPushButton *>()
                    + tabs->widget(i)->findChildren<QPushButton *>()) {
                if (button->text() != PreferencesWindow::tr("Close")) {
                    add(button->text());
                }
            }
            for (const QCheckBox *box :
                tabs->widget(i)->findChildren<QCheckBox *>(QString(), Qt::FindDirectChildrenOnly)) {
                add(box->text());
            }
            for (const QLabel *label : tabs->widget(i)->findChildren<QLabel *>()) {
                if (label->buddy()) {
                    add(label->text());
                    QVERIFY(label->buddy()->focusPolicy() != Qt::NoFocus);
                }
            }
        }
    }

private:
    const InfoDictionary _info;
    std::unique_ptr<OTController> _controller;
};

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    OTNSAppSubclass application(argc, argv);
    PreferencesTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "PreferencesTest.moc"
