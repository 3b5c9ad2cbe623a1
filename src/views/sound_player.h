#pragma once

#include <QWidget>

#include <memory>

class QAudioOutput;
class QLabel;
class QMediaPlayer;
class QSlider;
class QToolButton;

/// Plays one sound at a time: a button, the position, and a line that says why when it cannot. What can be
/// played depends on the codecs of the machine.
class SoundPlayer : public QWidget
{
    Q_OBJECT

public:
    explicit SoundPlayer(QWidget *parent = nullptr);
    ~SoundPlayer() override;

    /// Stops, and takes what is known of the next sound; `why` it cannot be played, or empty when it can.
    void setSound(int durationSeconds, const QString &why);
    void play(const QString &path);
    void showProblem(const QString &text);
    /// Plays, pauses, or asks for the file.
    void toggle();

signals:
    /// The file of the sound is needed: call play() with it.
    void fileWanted();

private:
    std::unique_ptr<QAudioOutput> m_output;
    std::unique_ptr<QMediaPlayer> m_player; // made with the first sound, since making it takes a moment
    QToolButton *m_button;
    QSlider *m_position;
    QLabel *m_time;
    QLabel *m_problem;
    qint64 m_durationMs = 0;

    void makePlayer();
    void showPlaying(bool isPlaying);
    void showTime();
    bool isPlaying() const;
};
