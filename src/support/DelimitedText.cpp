#include "support/DelimitedText.h"

#include <QStringConverter>
#include <QStringList>
#include <QStringTokenizer>

#include <optional>

namespace {

// At most so many, without looking at the rest of the line.
QStringList fieldsOf(QStringView line, QChar separator, qsizetype count)
{
    QStringList fields;
    for (const QStringView field : qTokenize(line, separator)) {
        if (fields.size() == count) {
            break;
        }
        fields.append(field.toString());
    }
    return fields;
}

QVariantMap recordOf(const QStringList &names, const QStringList &fields)
{
    QVariantMap record;
    for (qsizetype i = 0; i < fields.size(); ++i) {
        if (!fields[i].isEmpty()) {
            record.insert(names[i], fields[i]);
        }
    }
    return record;
}

} // namespace

QString DelimitedText::decoded(const QByteArray &data)
{
    if (const std::optional<QStringConverter::Encoding> declared =
            QStringConverter::encodingForData(data)) {
        return QStringDecoder(*declared, QStringDecoder::Flag::Stateless).decode(data);
    }
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = utf8.decode(data);
    return utf8.hasError() ? QString::fromLatin1(data) : text;
}

QList<QVariantMap> DelimitedText::records(const QString &text, QChar separator)
{
    QList<QVariantMap> records;
    QStringList names;
    qsizetype end = 0;
    for (qsizetype start = 0; start < text.size(); start = end + 1) {
        end = start;
        while (end < text.size() && text[end] != u'\n' && text[end] != u'\r') {
            ++end;
        }
        // Between the two characters of an end of line lies another empty one.
        const QStringView line = QStringView(text).mid(start, end - start);
        if (line.isEmpty() || line.startsWith(u'#')) {
            continue;
        }
        if (names.isEmpty()) {
            names = fieldsOf(line, separator, maximumColumns);
            records.append({ { QStringLiteral("keys"), names } });
            continue;
        }
        const QVariantMap record = recordOf(names, fieldsOf(line, separator, names.size()));
        if (!record.isEmpty()) {
            records.append(record);
        }
    }
    return records;
}
