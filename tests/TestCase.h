// What every test program begins with.

#pragma once

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::Literals::StringLiterals;

// A warning that a test did not announce fails it. A test with an init() of its own calls this one.
class TestCase : public QObject
{
    Q_OBJECT

protected:
    static void expectWarning(const QString &pattern);
    // Null for a file that cannot be read.
    static QByteArray load(const QString &path);
    static void save(const QString &path, const QByteArray &data);

protected Q_SLOTS:
    void init();
};
