#include "feedback/FeedbackForm.h"

#include "support/InfoDictionary.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStringList>
#include <QSysInfo>

#include <algorithm>

namespace {

constexpr char16_t LastAscii = 0x7f;

QString programName(const InfoDictionary &info)
{
    for (const QString &key :
        { QStringLiteral("CFBundleExecutable"), QStringLiteral("CFBundleName") }) {
        if (const QString name = info.stringForKey(key); !name.isEmpty()) {
            return name;
        }
    }
    return QFileInfo(QCoreApplication::applicationFilePath()).completeBaseName();
}

QByteArray asciiOf(const QString &text)
{
    QByteArray bytes;
    bytes.reserve(text.size());
    for (const QChar unit : text) {
        // The second half of a character beyond 16 bits.
        if (!unit.isLowSurrogate()) {
            bytes.append(unit.unicode() <= LastAscii ? char(unit.unicode()) : '?');
        }
    }
    return bytes;
}

} // namespace

FeedbackFields FeedbackForm::commonFields(const InfoDictionary &info)
{
    // Asked of the system once; it costs reading a file.
    static const QString systemVersion = QSysInfo::productVersion();
    return { { QStringLiteral("appname"), programName(info) },
        { QStringLiteral("appversion"), info.stringForKey(QStringLiteral("CFBundleVersion")) },
        { QStringLiteral("systemversion"), systemVersion } };
}

FeedbackFields FeedbackForm::supportFields(const QString &question)
{
    return { { QStringLiteral("type"), QStringLiteral("support") },
        { QStringLiteral("message"), question } };
}

FeedbackFields FeedbackForm::featureFields(const QString &feature, const QString &importance)
{
    return { { QStringLiteral("type"), QStringLiteral("feature") },
        { QStringLiteral("message"), feature }, { QStringLiteral("importance"), importance } };
}

FeedbackFields FeedbackForm::bugFields(
    const QString &expectation, const QString &stepsToReproduce, Severity severity)
{
    FeedbackFields fields { { QStringLiteral("type"), QStringLiteral("bug") },
        { QStringLiteral("message"),
            QStringLiteral("What did you expect to happen?\n%1\n\n"
                           "What steps will reproduce the problem?\n%2")
                .arg(expectation, stepsToReproduce) } };
    if (severity == Severity::Critical) {
        fields.insert(QStringLiteral("critical"), QStringLiteral("1"));
    }
    return fields;
}

FeedbackFields FeedbackForm::crashFields(
    const QString &description, const QString &stepsToReproduce)
{
    return { { QStringLiteral("type"), QStringLiteral("bug") },
        { QStringLiteral("message"),
            QStringLiteral("Crash description:\n%1\n\n"
                           "What steps will reproduce the problem?\n%2")
                .arg(description, stepsToReproduce) },
        { QStringLiteral("critical"), QStringLiteral("1") } };
}

QByteArray FeedbackForm::encoded(const FeedbackFields &fields)
{
    QStringList pairs;
    for (auto field = fields.cbegin(); field != fields.cend(); ++field) {
        QString value = field.value();
        value.replace(QLatin1Char('&'), QLatin1String("%26"));
        value.replace(QLatin1Char('='), QLatin1String("%3d"));
        pairs.append(field.key() + QLatin1Char('=') + value);
    }
    return asciiOf(pairs.join(QLatin1Char('&')));
}

bool FeedbackForm::canCarry(const QString &text)
{
    return std::all_of(
        text.cbegin(), text.cend(), [](QChar unit) { return unit.unicode() <= LastAscii; });
}
