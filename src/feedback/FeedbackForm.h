// The form that is posted: which fields it has, and how they become bytes.

#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

class InfoDictionary;

// Values by the names of their fields.
using FeedbackFields = QMap<QString, QString>;

namespace FeedbackForm {

inline constexpr char ContentType[] = "application/x-www-form-urlencoded";

// What is sent along with every message: the program, its version, and that of the system.
FeedbackFields commonFields(const InfoDictionary &info);

FeedbackFields supportFields(const QString &question);
FeedbackFields featureFields(const QString &feature, const QString &importance);
enum class Severity { Usual, Critical };
FeedbackFields bugFields(
    const QString &expectation, const QString &stepsToReproduce, Severity severity);
FeedbackFields crashFields(const QString &description, const QString &stepsToReproduce);

// `name=value` pairs joined by `&`. In values `&` becomes `%26` and `=` becomes `%3d`, and nothing
// else is escaped: the service that receives it undoes these two alone. The bytes are ASCII, with
// `?` for every other character.
QByteArray encoded(const FeedbackFields &fields);

// Whether the form can carry this text as it is.
bool canCarry(const QString &text);

} // namespace FeedbackForm
