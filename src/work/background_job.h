#pragma once

#include "work/worker_thread.h"

/// Runs one worker without a dialog and tells by signals how it goes, for views that stay usable meanwhile.
/// Destroying it lets the worker go.
class BackgroundJob : public QObject
{
    Q_OBJECT

public:
    explicit BackgroundJob(std::unique_ptr<WorkerThread> worker, QObject *parent = nullptr);
    ~BackgroundJob() override;

    void start();
    bool isRunning() const { return m_running; }

signals:
    void progressed(const QString &status, int percent, const QString &detail);
    void failed(const QString &text);
    void succeeded(const QString &text);

public slots:
    void updateProgress(QString status, int percent, QString detail);
    void errorOccurred(QString text);
    void succeed(QString text);
    void tipsWait(QString text);

private:
    std::unique_ptr<WorkerThread> m_worker;
    ProgressLink m_link;
    bool m_running = false;
};
