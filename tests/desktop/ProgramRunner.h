// Runs the real program for a user who exists for the length of a test: a home of its own, and only
// the applications that the test puts there.

#pragma once

#include "TestCase.h"
#include "platform/FileTree.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>

class ProgramRunner
{
public:
    struct Result
    {
        int exitCode = -1;
        QByteArray output;
        QStringList errorLines;

        QJsonDocument json() const { return QJsonDocument::fromJson(output); }
    };

    ProgramRunner()
    {
        set("HOME", _home.path());
        set("XDG_CURRENT_DESKTOP", u"Test"_s);
        for (const char *folder : { "data", "config", "state" }) {
            set("XDG_" + QByteArray(folder).toUpper() + "_HOME", path(QLatin1String(folder)));
        }
        if (!_environment.contains(u"XDG_RUNTIME_DIR"_s)) {
            QDir(_home.path())
                .mkdir(u"run"_s, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
            set("XDG_RUNTIME_DIR", path(u"run"_s));
        }
        QDir(_home.path()).mkdir(u"apps"_s);
    }

    QString path(const QString &name) const { return _home.path(name); }
    void set(const QByteArray &variable, const QString &value)
    {
        _environment.insert(QLatin1String(variable), value);
    }

    void write(const QString &name, const QByteArray &bytes) { _home.add(name, bytes); }
    QByteArray read(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    // A desktop entry among those that are scanned once the preference says so.
    void writeEntry(const QString &name, const QByteArray &lines = {})
    {
        write(u"apps/%1.desktop"_s.arg(name),
            "[Desktop Entry]\nType=Application\nName=" + name.toUtf8() + "\nExec=/bin/true\n"
                + lines);
    }
    void scanOnlyOwnApplications() const
    {
        run({ u"--defaults"_s, u"searchDirectories"_s, uR"([{"path":"~/apps"}])"_s });
        run({ u"--defaults"_s, u"showWelcomeWindow"_s, u"no"_s });
    }

    void start(QProcess &process, const QStringList &arguments) const
    {
        process.setProcessEnvironment(_environment);
        process.start(qEnvironmentVariable("ORTU_PROGRAM"), arguments);
    }
    Result run(const QStringList &arguments, const QString &workingFolder = {}) const
    {
        QProcess process;
        process.setWorkingDirectory(workingFolder);
        start(process, arguments);
        Result result;
        if (process.waitForFinished(120'000) && process.exitStatus() == QProcess::NormalExit) {
            result.exitCode = process.exitCode();
        }
        result.output = process.readAllStandardOutput();
        result.errorLines =
            QString::fromUtf8(process.readAllStandardError()).split(u'\n', Qt::SkipEmptyParts);
        return result;
    }
    // What the running program says of itself.
    QJsonObject status() const { return run({ u"--status"_s, u"--json"_s }).json().object(); }

private:
    FileTree _home;
    QProcessEnvironment _environment = QProcessEnvironment::systemEnvironment();
};
