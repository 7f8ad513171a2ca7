// Where the user chooses the hot key and presses it for the first time, to see that it arrives.

#pragma once

#include "shell/preferences/HotKeyControl.h"

#include <QWidget>

class QLabel;

class HotKeyPractice final : public QWidget
{
    Q_OBJECT

public:
    // The name of the chosen key, for people; empty for none.
    using NameOfKey = std::function<QString()>;

    HotKeyPractice(const HotKeyChoice &hotKey, NameOfKey nameOfKey, QWidget *parent = nullptr);

    // Asks for the key again.
    void begin();
    // The hot key was pressed.
    void tellArrival();

private:
    NameOfKey _nameOfKey;
    QLabel *_request;
};
