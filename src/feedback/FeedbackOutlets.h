// The controls of the feedback window and how they are laid out. What they do is up to
// OFController.

#pragma once

#include <QString>

class QCheckBox;
class QComboBox;
class QDialog;
class QLabel;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;
class QStackedWidget;
class QTabBar;

// The window owns them all.
struct FeedbackOutlets
{
    // The numbers of the tabs, in this order.
    enum Segment { Support, Feature, Bug };
    // What the box below the tabs shows.
    enum View { SupportView, FeatureView, BugView, CrashView };

    QTabBar *tabs = nullptr;
    QStackedWidget *tabView = nullptr;
    QPlainTextEdit *txtQuestion = nullptr;
    QPlainTextEdit *txtFeature = nullptr;
    QComboBox *btnImportance = nullptr;
    QPlainTextEdit *txtWhatHappened = nullptr;
    QPlainTextEdit *txtStepsToReproduce = nullptr;
    QCheckBox *btnIsCritical = nullptr;
    // Its text has a place for the name of the program.
    QLabel *txtCrashTitle = nullptr;
    QPlainTextEdit *txtCrashDescription = nullptr;
    QPlainTextEdit *txtCrashStepsToReproduce = nullptr;
    QCheckBox *btnIncludeMyEmail = nullptr;
    QComboBox *cboEmailAddress = nullptr;
    // What else is sent, and where to; and what will not arrive as it was written.
    QLabel *note = nullptr;
    QPushButton *btnSend = nullptr;
    QPushButton *btnClose = nullptr;
    QProgressBar *piStatus = nullptr;

    static QString bugTitle();
    static QString crashTitle();
};

// Fills an empty window.
FeedbackOutlets layOutFeedback(QDialog &window);
