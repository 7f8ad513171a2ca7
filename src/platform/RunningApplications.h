// The applications that run, named by the paths of their bundles.
//
// The base class is a desktop that cannot tell: nothing runs, nothing is in front, nothing is ever
// announced.

#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

class RunningApplications : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // In the order in which they were launched, each once.
    virtual QStringList launchedApplications() const { return {}; }
    // Empty when none is in front.
    virtual QString activeApplication() const { return {}; }
    // What applications the catalogue has found: also those elsewhere than where the desktop keeps
    // them count as running from then on.
    virtual void setApplications(const QStringList &) { }
    // The path of this program itself, if the desktop knows it as an application.
    virtual QString ownApplication() const { return {}; }

Q_SIGNALS:
    void launched();
    void terminated();
    void frontSwitched();
    // A start of the application has come to its end, or one more window of it to the screen: it
    // need not be new among those that run, nor known to the catalogue.
    void startEnded(const QString &bundlePath);
    // An application that was asked to quit asks the user back. Its question was brought to the
    // front, where a window of ours had been.
    void questionAsked();
};
