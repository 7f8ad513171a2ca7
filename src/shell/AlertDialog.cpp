#include "shell/AlertDialog.h"

#include "support/Alerts.h"

#include <QApplication>
#include <QEventLoop>
#include <QLabel>
#include <QList>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

namespace {

// An alert from the call that asks to its answer.
class Question final : public QObject
{
public:
    Question(const Alert &alert, QWidget *parent);

    int ask();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void show();
    void makeBox();
    int chosenButton() const;
    void settle(int answer);

    const Alert &_alert;
    QPointer<QWidget> _parent;
    bool _isParentGiven = false;
    // Goes with its parent, or with this.
    QPointer<QMessageBox> _box;
    QList<QPushButton *> _buttons;
    QEventLoop _loop;
    int _answer = 0;
};

// All that have no answer yet. The first one is shown, or is about to be.
QList<Question *> waiting;

Question::Question(const Alert &alert, QWidget *parent)
    : _alert(alert)
    , _parent(parent)
    , _isParentGiven(parent)
    , _answer(alert.safeAnswer())
{
    if (parent != nullptr) {
        parent->installEventFilter(this);
    }
}

// A window that is hidden takes what is asked on it along; one that another program covers, or
// minimizes, does not.
bool Question::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Hide && !event->spontaneous()) {
        if (_box) {
            _box->reject();
        } else {
            settle(_alert.safeAnswer());
        }
    }
    return QObject::eventFilter(watched, event);
}

int Question::ask()
{
    waiting.append(this);
    if (waiting.first() == this) {
        show();
    }
    if (waiting.contains(this)) {
        _loop.exec(QEventLoop::DialogExec);
    }
    // The loop also ends, without an answer, when the program does.
    settle(_alert.safeAnswer());
    delete _box;
    return _answer;
}

void Question::show()
{
    if (_isParentGiven && !_parent) {
        return settle(_alert.safeAnswer());
    }
    makeBox();
    QObject::connect(_box, &QMessageBox::finished, &_loop, [this] { settle(chosenButton()); });
    QObject::connect(_box, &QObject::destroyed, &_loop, [this] { settle(_alert.safeAnswer()); });
    _box->show();
}

void Question::makeBox()
{
    _box = new QMessageBox(_parent);
    _box->setWindowIcon(QApplication::windowIcon());
    _box->setAttribute(Qt::WA_QuitOnClose, false);
    _box->setWindowTitle(QStringLiteral("Ortu"));
    _box->setWindowModality(_parent ? Qt::WindowModal : Qt::ApplicationModal);
    _box->setIcon(
        _alert.style == Alert::Style::Warning ? QMessageBox::Warning : QMessageBox::Information);
    _box->setText(_alert.messageText);
    _box->setInformativeText(_alert.informativeText);
    const QList<QLabel *> labels = _box->findChildren<QLabel *>();
    for (QLabel *label : labels) {
        label->setTextFormat(Qt::PlainText);
    }
    QStringList titles = _alert.buttons;
    if (titles.isEmpty()) {
        titles.append(QCoreApplication::translate("AlertDialog", "OK"));
    }
    for (const QString &title : titles) {
        // Buttons of this one role stand in the order given, whatever the desktop's own is.
        _buttons.append(_box->addButton(title, QMessageBox::ActionRole));
    }
    _box->setDefaultButton(_buttons.first());
    _box->setEscapeButton(_buttons[_alert.safeAnswer()]);
}

int Question::chosenButton() const
{
    const qsizetype index = _buttons.indexOf(static_cast<QPushButton *>(_box->clickedButton()));
    return index < 0 ? _alert.safeAnswer() : int(index);
}

void Question::settle(int answer)
{
    if (!waiting.contains(this)) {
        return;
    }
    const bool isShown = waiting.first() == this;
    waiting.removeOne(this);
    _answer = answer;
    _loop.quit();
    if (isShown && !waiting.isEmpty()) {
        // Not here: a window may be in the middle of going away.
        Question *const next = waiting.first();
        QMetaObject::invokeMethod(
            &next->_loop, [next] { next->show(); }, Qt::QueuedConnection);
    }
}

} // namespace

int AlertDialog::run(const Alert &alert, QWidget *parent)
{
    return Question(alert, parent).ask();
}
