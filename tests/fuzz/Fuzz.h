// What the fuzz targets share: each is a function that libFuzzer calls with one input after the
// other, in a program of its own. Log lines are dropped.

#pragma once

#include <QByteArray>
#include <QString>

// To be defined by the target.
void fuzz(const QByteArray &bytes);

// Ends the program, and so keeps the input, when something does not hold that always must.
void require(bool holds);

// A temporary folder whose one file has this name and holds the input of now.
QString folderWith(const QString &name, const QByteArray &bytes);
