// The program's texts in the user's language: the catalogues of resources/translations, which the
// build embeds, and Qt's own for dialogs and menus, where they are installed.
//
// The texts of the sources are English. These stay so in every language: log lines, what the
// command line prints and says of its failures, the keys of JSON, and what feedback sends, for
// scripts and developers read them. Reasons that the system or Qt gives are in its language.

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QTranslator>

class Translations final
{
public:
    // Installs the catalogue of the first of these locales, the best one first, that has one, for
    // as long as this object lives. English needs none: it ends the search, and no file is looked
    // for. The application must exist; Qt asks these before the translators installed so far.
    explicit Translations(const QList<QByteArray> &languages);

    // For people, a reason that the log gives in English: one marked with
    // QT_TRANSLATE_NOOP("Reason", …) in the user's language, any other, such as the system's, as it
    // is.
    static QString ofReason(const QString &reason);

private:
    QTranslator _qt;
    QTranslator _own;
};
