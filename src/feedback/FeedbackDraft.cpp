#include "feedback/FeedbackDraft.h"

#include "support/files/PropertyList.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

FeedbackDraft::FeedbackDraft(const QString &folder)
    : _path(folder.isEmpty() ? QString() : folder + QStringLiteral("/Feedback Draft.plist"))
{ }

QVariantMap FeedbackDraft::read()
{
    // A program that was killed may have left an empty file, before the first text was in it.
    if (_path.isEmpty() || QFileInfo(_path).size() == 0) {
        return {};
    }
    const PropertyList::Document document = PropertyList::readFile(_path);
    if (document.state == PropertyList::State::Damaged) {
        PropertyList::setAside(_path, document.error);
    }
    _written = document.value.toMap();
    return _written;
}

void FeedbackDraft::write(const QVariantMap &texts)
{
    // No property list can hold them.
    static const QRegularExpression controls(QStringLiteral(R"([\x00-\x08\x0b\x0c\x0e-\x1f])"));
    QVariantMap kept;
    for (auto text = texts.cbegin(); text != texts.cend(); ++text) {
        if (const QString plain = text->toString().remove(controls); !plain.isEmpty()) {
            kept.insert(text.key(), plain);
        }
    }
    if (_path.isEmpty() || kept == _written) {
        return;
    }
    if (kept.isEmpty()) {
        _written = QFile::remove(_path) ? kept : _written;
        return;
    }
    QDir().mkpath(QFileInfo(_path).path());
    // Replacing a file keeps its permissions, so they are set while it is still empty.
    QFile file(_path);
    if (!file.exists() && file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    }
    // What could not be written is tried again the next time.
    _written = PropertyList::writeFile(_path, kept) ? kept : _written;
}
