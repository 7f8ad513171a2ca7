// What the user has written and not sent yet, kept in a file until it is sent. Only the user may
// read that file.

#pragma once

#include <QString>
#include <QVariantMap>

class FeedbackDraft final
{
public:
    // The folder is made when something is written; with an empty one nothing is kept.
    explicit FeedbackDraft(const QString &folder);

    // Texts by the names they were written under. A file that cannot be read is set aside.
    QVariantMap read();
    // Replaces them all; empty texts are left out, and without any the file is removed.
    void write(const QVariantMap &texts);

private:
    QString _path;
    // What the file holds.
    QVariantMap _written;
};
