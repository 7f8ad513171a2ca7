// The tour for those who are new: a window that shows a document, a page at a step, and remembers
// how far the user has come.

#pragma once

#include "shell/welcome/HotKeyPractice.h"

#include <QDialog>

#include <memory>

class PagedDocument;
class PageView;
class QLabel;
class QPushButton;
class TypingChoice;

class OTWelcomeAssistant final : public QDialog
{
    Q_OBJECT

public:
    // The step at which the hot key can be chosen and tried, on the lower end of the page.
    static constexpr int HotKeyStep = 2;
    // The step at which the user chooses by what typing finds, likewise.
    static constexpr int TypingStep = 3;

    OTWelcomeAssistant(std::unique_ptr<PagedDocument> document, const QString &pdfName,
        const HotKeyChoice &hotKey, HotKeyPractice::NameOfKey nameOfKey);
    ~OTWelcomeAssistant() override;

    // Registers its preferences. To be called once, before anything reads them.
    static void registerDefaults();
    // Whether the user has not reached the last step yet.
    static bool isWanted();

    // Shows the window at the step where the user left; after the last one, at the first.
    void present();
    bool isWindowVisible() const { return isVisible(); }

    int curStep() const;
    // Steps are counted from 1; beyond an end counts as that end.
    void showStep(int step);
    void showNextStep();
    void showPreviousStep();

    // To be called when the hot key is pressed. True when the tour has asked for that, so that it
    // is to do nothing else.
    bool takeHotKey();

private:
    void addKeys();
    void updateStepNumberField();
    void placeAtFoot(QWidget *controls) const;

    std::unique_ptr<PagedDocument> _document;
    int _lastStep;
    PageView *_pdfView;
    HotKeyPractice *_practice;
    TypingChoice *_typingChoice;
    QLabel *_stepLabel;
    QPushButton *_prevButton;
    QPushButton *_nextButton;
};
