#include "support/Translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>

Translations::Translations(const QList<QByteArray> &languages)
{
    for (const QByteArray &language : languages) {
        if (language == "en" || language.startsWith("en_")) {
            return;
        }
        const QString name = QString::fromLatin1(language);
        // Qt tries the language without the country as well.
        if (_own.load(QStringLiteral("ortu_") + name, QStringLiteral(":/translations"))) {
            if (_qt.load(QStringLiteral("qtbase_") + name,
                    QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
                QCoreApplication::installTranslator(&_qt);
            }
            QCoreApplication::installTranslator(&_own);
            return;
        }
    }
}

QString Translations::ofReason(const QString &reason)
{
    return QCoreApplication::translate("Reason", reason.toUtf8().constData());
}
