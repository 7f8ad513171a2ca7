// Runs the real program for a user who exists for the length of a test: a home of its own, and only
// the applications that the test puts there.

#pragma once

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>
#include <QTemporaryDir>

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
        for (const char *folder : { "apps", "data", "config", "state" }) {
            QDir(_home.path()).mkdir(QLatin1String(folder));
        }
        _environment = QProcessEnvironment::systemEnvironment();
        set("HOME", _home.path());
        set("XDG_DATA_HOME", path(QStringLiteral("data")));
        set("XDG_CONFIG_HOME", path(QStringLiteral("config")));
        set("XDG_STATE_HOME", path(QStringLiteral("state")));
        set("XDG_CURRENT_DESKTOP", QStringLiteral("Test"));
        if (!_environment.contains(QStringLiteral("XDG_RUNTIME_DIR"))) {
            QDir(_home.path())
                .mkdir(
                    QStringLiteral("run"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
            set("XDG_RUNTIME_DIR", path(QStringLiteral("run")));
        }
    }

    QString path(const QString &name) const { return _home.filePath(name); }
    void set(const char *variable, const QString &value)
    {
        _environment.insert(QLatin1String(variable), value);
    }
    const QProcessEnvironment &environment() const { return _environment; }

    void write(const QString &name, const QByteArray &bytes) const
    {
        QDir(_home.path()).mkpath(QFileInfo(name).path());
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
            qFatal("cannot write %s", qPrintable(file.fileName()));
        }
    }
    QByteArray read(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    // A desktop entry among those that are scanned once the preference says so.
    void writeEntry(const QString &name, const QByteArray &lines = {}) const
    {
        write(QStringLiteral("apps/%1.desktop").arg(name),
            "[Desktop Entry]\nType=Application\nName=" + name.toUtf8() + "\nExec=/bin/true\n"
                + lines);
    }
    void scanOnlyOwnApplications() const
    {
        run({ QStringLiteral("--defaults"), QStringLiteral("searchDirectories"),
            QStringLiteral(R"([{"path":"~/apps"}])") });
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
        result.errorLines = QString::fromUtf8(process.readAllStandardError())
                                .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        return result;
    }

private:
    QTemporaryDir _home;
    QProcessEnvironment _environment;
};
