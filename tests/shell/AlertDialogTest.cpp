#include "shell/AlertDialog.h"

#include "shell/ShellTest.h"
#include "support/Alerts.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

namespace {

Alert question(const QString &text = u"Erase?"_s)
{
    return {
        .messageText = text, .buttons = { u"Erase"_s, u"Keep"_s, u"Help"_s }, .safeButton = 1
    };
}

QMessageBox *shownBox()
{
    QMessageBox *shown = nullptr;
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget *widget : widgets) {
        auto *const box = qobject_cast<QMessageBox *>(widget);
        if (box && box->isVisible()) {
            // Never two at once.
            Q_ASSERT(!shown);
            shown = box;
        }
    }
    return shown;
}

// Runs the alert and, as soon as its box is shown, the action.
template <typename Action> int answer(const Alert &alert, QWidget *parent, Action action)
{
    QTimer::singleShot(0, [action] {
        QMessageBox *const box = shownBox();
        QVERIFY(box);
        action(box);
    });
    return AlertDialog::run(alert, parent);
}

void press(QMessageBox *box, const QString &title)
{
    const QList<QAbstractButton *> buttons = box->buttons();
    for (QAbstractButton *button : buttons) {
        if (button->text() == title) {
            return button->click();
        }
    }
    QFAIL("no such button");
}

} // namespace

class AlertDialogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { expectNoWarnings(); }
    void cleanup() { QVERIFY(!shownBox()); }

    void buttons_answerWithTheirIndex()
    {
        QCOMPARE(answer(question(), nullptr, [](QMessageBox *box) { press(box, u"Help"_s); }), 2);
        QCOMPARE(answer(question(), nullptr, [](QMessageBox *box) { press(box, u"Erase"_s); }), 0);
        QCOMPARE(answer({ .messageText = u"Done"_s }, nullptr,
                     [](QMessageBox *box) { press(box, u"OK"_s); }),
            0);
        QCOMPARE(answer(question(), nullptr,
                     [](QMessageBox *box) { QTest::keyClick(box, Qt::Key_Return); }),
            0);
    }

    void escapeAndClosing_giveTheSafeAnswer()
    {
        QCOMPARE(answer(question(), nullptr,
                     [](QMessageBox *box) { QTest::keyClick(box, Qt::Key_Escape); }),
            1);
        QCOMPARE(answer(question(), nullptr, [](QMessageBox *box) { box->close(); }), 1);
        // Of several buttons without roles, a message box closes on none by itself.
        Alert last = question();
        last.safeButton = Alert::LastButton;
        QCOMPARE(answer(last, nullptr, [](QMessageBox *box) { box->close(); }), 2);
    }

    void box_isWhatTheAlertSays()
    {
        Alert alert = question(u"<b>a</b> & b"_s);
        alert.style = Alert::Style::Informational;
        alert.informativeText = u"<i>c</i>"_s;
        QWidget parent;
        answer(alert, &parent, [&parent](QMessageBox *box) {
            QCOMPARE(box->parentWidget(), &parent);
            QCOMPARE(box->windowModality(), Qt::WindowModal);
            QCOMPARE(box->icon(), QMessageBox::Information);
            const QList<QLabel *> labels = box->findChildren<QLabel *>();
            QStringList texts;
            for (const QLabel *label : labels) {
                if (!label->text().isEmpty()) {
                    texts.append(label->text());
                    QCOMPARE(label->textFormat(), Qt::PlainText);
                }
            }
            QCOMPARE(texts, QStringList({ u"<b>a</b> & b"_s, u"<i>c</i>"_s }));
            const QList<QAbstractButton *> buttons = box->buttons();
            QCOMPARE(buttons[0]->text(), u"Erase"_s);
            QVERIFY(buttons[0]->x() < buttons[1]->x() && buttons[1]->x() < buttons[2]->x());
            QVERIFY(static_cast<QPushButton *>(buttons[0])->isDefault());
            box->close();
        });
        answer(question(), nullptr, [](QMessageBox *box) {
            QCOMPARE(box->windowModality(), Qt::ApplicationModal);
            QCOMPARE(box->icon(), QMessageBox::Warning);
            box->close();
        });
    }

    void parentThatGoesAway_givesTheSafeAnswer()
    {
        auto parent = std::make_unique<QWidget>();
        parent->show();
        QCOMPARE(answer(question(), parent.get(), [&parent](QMessageBox *) { parent.reset(); }), 1);
    }

    void severalAlerts_areShownOneAfterTheOther()
    {
        QStringList log;
        auto parent = std::make_unique<QWidget>();
        const auto ask = [&log](const QString &name, QWidget *on) {
            log.append(u"%1=%2"_s.arg(name).arg(AlertDialog::run(question(name), on)));
        };
        const auto next = [&log] {
            QTRY_VERIFY(shownBox());
            log.append(shownBox()->text());
            press(shownBox(), u"Help"_s);
        };
        // The others come up while a is shown; the window that c stands on goes meanwhile.
        const auto soon = [this](auto action) { QTimer::singleShot(0, this, action); };
        soon([&] {
            soon([&] {
                soon([&] {
                    soon([&] {
                        parent.reset();
                        next();
                        next();
                        next();
                    });
                    ask(u"d"_s, nullptr);
                });
                ask(u"c"_s, parent.get());
            });
            ask(u"b"_s, nullptr);
        });
        ask(u"a"_s, nullptr);
        QCOMPARE(log.join(u' '), u"a b d d=2 c=1 b=2 a=2"_s);
    }

    void endOfTheProgram_givesTheSafeAnswer()
    {
        // By closing the windows first, or at once.
        for (const bool isPolite : { true, false }) {
            int given = -1;
            QTimer::singleShot(0, this, [&given, isPolite] {
                given = answer(question(), nullptr, [isPolite](QMessageBox *) {
                    isPolite ? QCoreApplication::quit() : QCoreApplication::exit();
                });
            });
            QCoreApplication::exec();
            QCOMPARE(given, 1);
            // Nothing is left over that the next one would wait for.
            QCOMPARE(
                answer(question(), nullptr, [](QMessageBox *box) { press(box, u"Help"_s); }), 2);
        }
    }
};

QTEST_MAIN(AlertDialogTest)
#include "AlertDialogTest.moc"
