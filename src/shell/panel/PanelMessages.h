// What the program has to say to its user: one sentence on the panel, where what is typed stands
// otherwise, which goes with the next key or click. A click on the sentence itself does no more.
//
// What comes up while the panel is hidden waits for it to be shown. Of several sentences the last
// one counts.

#pragma once

#include <QObject>
#include <QString>

class OTWindow;

class PanelMessages final : public QObject
{
    Q_OBJECT

public:
    // Shows what N_UserMessage announces. The window must outlive it.
    explicit PanelMessages(OTWindow &window);

protected:
    // Of the application: keys and clicks, wherever they go.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void take(const QString &message);
    void show();
    void dismiss();
    bool isOnMessage(const QPoint &onScreen) const;

    OTWindow &_window;
    QString _waiting;
};
