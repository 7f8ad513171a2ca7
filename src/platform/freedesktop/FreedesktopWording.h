// The words for what is called differently on a freedesktop system: a translation from the
// program's own language into the same language.
//
// "option" and "command" get another name only as keys of the hot key, alone or before a "+": "this
// option" is no key, and what Command does in the grid is done with Ctrl.

#pragma once

#include <QTranslator>

class FreedesktopWording final : public QTranslator
{
public:
    using QTranslator::QTranslator;

    bool isEmpty() const override { return false; }
    // Null for a text that stands as it is.
    QString translate(const char *context, const char *sourceText, const char *disambiguation,
        int n) const override;
};
