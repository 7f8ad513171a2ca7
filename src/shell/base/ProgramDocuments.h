// The documents that come with the program, as PDF files: beside the program in the build folder,
// or where it is installed.

#pragma once

#include <QString>

namespace ProgramDocuments {

// The names of the documents there are.
inline QString userGuide()
{
    return QStringLiteral("Ortu User Guide");
}
inline QString welcome()
{
    return QStringLiteral(QT_TRANSLATE_NOOP("ProgramDocuments", "Welcome to Ortu"));
}

// The path of the document with this name, which has no suffix. Empty where it is missing,
// unreadable or no whole PDF file; the log says so the first time.
QString path(const QString &name);

// For tests: documents are looked for in this folder alone, from now on. Empty for the usual ones.
void setFolder(const QString &folder);

} // namespace ProgramDocuments
