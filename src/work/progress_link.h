#pragma once

#include <QObject>
#include <QPointer>

#include <atomic>
#include <memory>

/// All that a worker knows of whoever watches it. `receiver` has the slots
/// updateProgress(QString,int,QString), errorOccurred(QString), succeed(QString) and tipsWait(QString), which
/// are called by name. The flags are shared, so that a worker which outlives its watcher can still read them.
struct ProgressLink
{
    QPointer<QObject> receiver;
    std::shared_ptr<std::atomic<bool>> cancelled = std::make_shared<std::atomic<bool>>(false);
    /// Set while a worker waits for a tip to be read; the receiver's tipsWait clears it.
    std::shared_ptr<std::atomic<bool>> tipPending = std::make_shared<std::atomic<bool>>(false);
    /// Set by a job that is done but met damage, or something that it could not hand over: its success is
    /// told as a warning.
    std::shared_ptr<std::atomic<bool>> withFailures = std::make_shared<std::atomic<bool>>(false);
};
