// Where the user chooses by what typing finds applications.

#pragma once

#include <QWidget>

class QRadioButton;

class TypingChoice final : public QWidget
{
    Q_OBJECT

public:
    explicit TypingChoice(QWidget *parent = nullptr);

private:
    void takePreference();

    QRadioButton *_byName;
    QRadioButton *_byAnything;
};
