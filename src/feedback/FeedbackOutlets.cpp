#include "feedback/FeedbackOutlets.h"

#include "feedback/OFUtilities.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QTabBar>
#include <QTextOption>
#include <QVBoxLayout>

namespace {

// Of a box to write in, in letters and lines of it: what it asks for, and what large fonts leave it
// on a small screen.
constexpr QSize UsualBox { 64, 5 };
constexpr QSize SmallestBox { 20, 2 };

class TextBox final : public QPlainTextEdit
{
public:
    TextBox()
    {
        // To break within words Qt reads each to its end, once for every line: a megabyte without
        // a space takes a minute.
        setWordWrapMode(QTextOption::WordWrap);
        setTabChangesFocus(true);
    }

    QSize sizeHint() const override { return sizeOf(UsualBox); }
    QSize minimumSizeHint() const override { return sizeOf(SmallestBox); }

private:
    QSize sizeOf(const QSize &letters) const
    {
        const QFontMetrics metrics(font());
        return { metrics.averageCharWidth() * letters.width(),
            metrics.lineSpacing() * letters.height() };
    }
};

// A page of the box below the tabs, from top to bottom.
class Page final
{
public:
    Page()
        : _page(new QWidget)
        , _layout(new QVBoxLayout(_page))
    { }

    QWidget *widget() const { return _page; }

    QLabel *addTitle(const QString &text)
    {
        auto *const title = new QLabel(text);
        title->setWordWrap(true);
        QFont font = title->font();
        font.setBold(true);
        title->setFont(font);
        _layout->addWidget(title);
        return title;
    }

    // `share` is its part of the height that is left over.
    QPlainTextEdit *addBox(const QString &label, int share)
    {
        auto *const box = new TextBox;
        addLabeled(label, box, share);
        return box;
    }

    // The data of each item is its title in English, which is what is sent.
    QComboBox *addChoice(const QString &label, std::initializer_list<const char *> titles)
    {
        auto *const choice = new QComboBox;
        for (const char *const title : titles) {
            choice->addItem(OFUtilities::tr(title), QString::fromLatin1(title));
        }
        auto *const row = new QHBoxLayout;
        row->addWidget(labelOf(label, choice));
        row->addWidget(choice, 1);
        _layout->addLayout(row);
        return choice;
    }

    QCheckBox *addCheck(const QString &text)
    {
        auto *const check = new QCheckBox(text);
        _layout->addWidget(check);
        return check;
    }

private:
    static QLabel *labelOf(const QString &text, QWidget *control)
    {
        auto *const label = new QLabel(text);
        label->setBuddy(control);
        return label;
    }

    void addLabeled(const QString &label, QWidget *control, int share)
    {
        QLabel *const title = labelOf(label, control);
        title->setWordWrap(true);
        _layout->addWidget(title);
        _layout->addWidget(control, share);
    }

    QWidget *_page;
    QVBoxLayout *_layout;
};

QWidget *makeSupportPage(FeedbackOutlets &outlets)
{
    Page page;
    outlets.txtQuestion = page.addBox(OFUtilities::tr("What is your &question?"), 1);
    return page.widget();
}

QWidget *makeFeaturePage(FeedbackOutlets &outlets)
{
    Page page;
    outlets.txtFeature = page.addBox(OFUtilities::tr("What is &missing, and what for?"), 1);
    outlets.btnImportance = page.addChoice(OFUtilities::tr("How &important is it to you?"),
        { QT_TRANSLATE_NOOP("OpenFeedback", "Nice to have"),
            QT_TRANSLATE_NOOP("OpenFeedback", "Important"),
            QT_TRANSLATE_NOOP("OpenFeedback", "I cannot do without it") });
    return page.widget();
}

QWidget *makeBugPage(FeedbackOutlets &outlets)
{
    Page page;
    outlets.txtWhatHappened =
        page.addBox(OFUtilities::tr("&What did you expect to happen, and what happened?"), 1);
    outlets.txtStepsToReproduce =
        page.addBox(OFUtilities::tr("What steps will &reproduce the problem?"), 1);
    outlets.btnIsCritical = page.addCheck(OFUtilities::tr("&I cannot work because of this"));
    return page.widget();
}

QWidget *makeCrashPage(FeedbackOutlets &outlets)
{
    Page page;
    outlets.txtCrashTitle = page.addTitle(
        OFUtilities::tr("%1 quit unexpectedly. Please describe what you did just before."));
    outlets.txtCrashDescription = page.addBox(OFUtilities::tr("&What happened?"), 2);
    outlets.txtCrashStepsToReproduce =
        page.addBox(OFUtilities::tr("What steps will &reproduce the problem?"), 1);
    return page.widget();
}

QLayout *makeEmailRow(FeedbackOutlets &outlets)
{
    outlets.btnIncludeMyEmail = new QCheckBox(OFUtilities::tr("Include my &e-mail address:"));
    outlets.cboEmailAddress = new QComboBox;
    outlets.cboEmailAddress->setEditable(true);
    outlets.cboEmailAddress->setInsertPolicy(QComboBox::NoInsert);
    outlets.cboEmailAddress->setEnabled(false);
    outlets.cboEmailAddress->setAccessibleName(OFUtilities::tr("E-mail address"));
    outlets.cboEmailAddress->lineEdit()->setPlaceholderText(OFUtilities::tr("For an answer"));
    auto *const row = new QHBoxLayout;
    row->addWidget(outlets.btnIncludeMyEmail);
    row->addWidget(outlets.cboEmailAddress, 1);
    return row;
}

QLayout *makeButtonRow(FeedbackOutlets &outlets)
{
    outlets.piStatus = new QProgressBar;
    // Without an end, so that the style shows that something goes on.
    outlets.piStatus->setRange(0, 0);
    outlets.piStatus->setTextVisible(false);
    outlets.piStatus->setAccessibleName(OFUtilities::tr("Sending"));
    QSizePolicy policy = outlets.piStatus->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    outlets.piStatus->setSizePolicy(policy);
    outlets.piStatus->hide();
    outlets.btnClose = new QPushButton(OFUtilities::tr("&Close"));
    outlets.btnClose->setAutoDefault(false);
    outlets.btnSend = new QPushButton(OFUtilities::tr("&Send"));
    outlets.btnSend->setDefault(true);
    auto *const row = new QHBoxLayout;
    row->addWidget(outlets.piStatus, 1);
    row->addStretch(1);
    row->addWidget(outlets.btnClose);
    row->addWidget(outlets.btnSend);
    return row;
}

} // namespace

QString FeedbackOutlets::bugTitle()
{
    return OFUtilities::tr("&Bug Report");
}

QString FeedbackOutlets::crashTitle()
{
    return OFUtilities::tr("Crash Report");
}

// The order of making is the order of the Tab key.
FeedbackOutlets layOutFeedback(QDialog &window)
{
    FeedbackOutlets outlets;
    auto *const all = new QVBoxLayout(&window);
    outlets.tabs = new QTabBar;
    outlets.tabs->addTab(OFUtilities::tr("S&upport Question"));
    outlets.tabs->addTab(OFUtilities::tr("&Feature Request"));
    outlets.tabs->addTab(FeedbackOutlets::bugTitle());
    outlets.tabs->setAccessibleName(OFUtilities::tr("Kind of feedback"));
    outlets.tabs->setExpanding(true);
    all->addWidget(outlets.tabs);
    outlets.tabView = new QStackedWidget;
    outlets.tabView->addWidget(makeSupportPage(outlets));
    outlets.tabView->addWidget(makeFeaturePage(outlets));
    outlets.tabView->addWidget(makeBugPage(outlets));
    outlets.tabView->addWidget(makeCrashPage(outlets));
    all->addWidget(outlets.tabView, 1);
    all->addLayout(makeEmailRow(outlets));
    outlets.note = new QLabel;
    outlets.note->setWordWrap(true);
    all->addWidget(outlets.note);
    all->addLayout(makeButtonRow(outlets));
    return outlets;
}
