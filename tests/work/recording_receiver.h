#pragma once

#include <QObject>
#include <QStringList>

/// Stands in for the progress dialog: writes down what a worker says.
class RecordingReceiver : public QObject
{
    Q_OBJECT

public:
    QStringList lines;
    QString lastStatus;
    int lastPercent = -2;
    int reports = 0;

    bool ended() const { return !lines.isEmpty(); }

public slots:
    void updateProgress(QString status, int percent, QString)
    {
        ++reports;
        lastStatus = status;
        lastPercent = percent;
    }
    void errorOccurred(QString text) { lines << QStringLiteral("error: ") + text; }
    void succeed(QString text) { lines << QStringLiteral("done: ") + text; }
    void tipsWait(QString text)
    {
        lines << QStringLiteral("tip: ") + text;
        emit tipShown();
    }

signals:
    void tipShown();
};
