#pragma once

#include <QObject>

#include <memory>

class QSocketNotifier;

/// Ends the program in good order when the system, or somebody at a terminal, asks for it: every event loop
/// returns, so that the window closes what it has opened and takes away what it put on the disk. A second
/// request ends the process at once. One at a time, made after the application object.
class EndSignals : public QObject
{
    Q_OBJECT

public:
    EndSignals();
    ~EndSignals() override;

    /// True once the end was asked for, also when no event loop was running yet.
    bool isEnding() const { return m_isEnding; }

private:
    void end();

    bool m_isEnding = false;
    std::unique_ptr<QSocketNotifier> m_notifier;
};
