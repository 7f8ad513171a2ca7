#include "shell/AlertDialog.h"

#include "shell/ShellTest.h"
#include "support/Alerts.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

class AlertDialogTest : public TestCase
{
    Q_OBJECT

    static Alert question(const QString &text = u"Erase?"_s)
    {
        return {
            .messageText = text, .buttons = { u"Erase"_s, u"Keep"_s, u"Help"_s }, .safeButton = 1
        };
    }

    static QMessageBox *shownBox()
    {
        QMessageBox *shown = nullptr;
        for (QWidget *widget : QApplication::topLevelWidgets()) {
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
    template <typename Action>
    static int answer(const Alert &alert, Action action, QWidget *parent = nullptr)
    {
        QTimer::singleShot(0, [action] {
            QMessageBox *const box = shownBox();
            QVERIFY(box);
            action(box);
        });
        return AlertDialog::run(alert, parent);
    }

    // The button with this index.
    static auto press(int index)
    {
        return [index](QMessageBox *box) { box->buttons().at(index)->click(); };
    }

private Q_SLOTS:
    void init() { expectNoWarnings(); }
    void cleanup() { QVERIFY(!shownBox()); }

    void buttons_answerWithTheirIndex()
    {
        QCOMPARE(answer(question(), press(2)), 2);
        QCOMPARE(answer({ .messageText = u"Done"_s }, press(0)), 0);
        QCOMPARE(
            answer(question(), [](QMessageBox *box) { QTest::keyClick(box, Qt::Key_Return); }), 0);
    }

    void escapeAndClosing_giveTheSafeAnswer()
    {
        QCOMPARE(
            answer(question(), [](QMessageBox *box) { QTest::keyClick(box, Qt::Key_Escape); }), 1);
        QCOMPARE(answer(question(), [](QMessageBox *box) { box->close(); }), 1);
        auto parent = std::make_unique<QWidget>();
        parent->show();
        QCOMPARE(answer(
                     question(), [&parent](QMessageBox *) { parent->hide(); }, parent.get()),
            1);
        parent->show();
        QCOMPARE(answer(
                     question(), [&parent](QMessageBox *) { parent.reset(); }, parent.get()),
            1);
        // Of several buttons without roles, a message box closes on none by itself.
        Alert last = question();
        last.safeButton = Alert::LastButton;
        QCOMPARE(answer(last, [](QMessageBox *box) { box->close(); }), 2);
    }

    void box_isWhatTheAlertSays()
    {
        Alert alert = question(u"<b>a</b> & b"_s);
        alert.informativeText = u"<i>c</i>"_s;
        QWidget parent;
        const auto check = [&parent](QMessageBox *box) {
            QCOMPARE(box->parentWidget(), &parent);
            QCOMPARE(box->icon(), QMessageBox::Warning);
            QStringList texts;
            for (const QLabel *label : box->findChildren<QLabel *>()) {
                texts.append(label->text());
                QVERIFY(label->text().isEmpty() || label->textFormat() == Qt::PlainText);
            }
            texts.removeAll(QString());
            QCOMPARE(texts, QStringList({ u"<b>a</b> & b"_s, u"<i>c</i>"_s }));
            const QList<QAbstractButton *> buttons = box->buttons();
            QCOMPARE(buttons[0]->text(), u"Erase"_s);
            QVERIFY(buttons[0]->x() < buttons[1]->x() && buttons[1]->x() < buttons[2]->x());
            box->close();
        };
        answer(alert, check, &parent);
    }

    void severalAlerts_areShownOneAfterTheOther()
    {
        QStringList log;
        const auto ask = [&log](const QString &name) {
            log.append(u"%1=%2"_s.arg(name).arg(AlertDialog::run(question(name), nullptr)));
        };
        const auto next = [&log] {
            QTRY_VERIFY(shownBox());
            log.append(shownBox()->text());
            press(2)(shownBox());
        };
        // The other one comes up while a is shown.
        QTimer::singleShot(0, this, [&] {
            QTimer::singleShot(0, this, [&] {
                next();
                next();
            });
            ask(u"b"_s);
        });
        ask(u"a"_s);
        QCOMPARE(log.join(u' '), u"a b b=2 a=2"_s);
    }

    void endOfTheProgram_givesTheSafeAnswer()
    {
        int given = -1;
        QTimer::singleShot(0, this, [&given] {
            given = answer(question(), [](QMessageBox *) { QCoreApplication::quit(); });
        });
        QCoreApplication::exec();
        QCOMPARE(given, 1);
        // Nothing is left over that the next one would wait for.
        QCOMPARE(answer(question(), press(2)), 2);
    }
};

QTEST_MAIN(AlertDialogTest)
#include "AlertDialogTest.moc"
