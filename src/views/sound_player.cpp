#include "views/sound_player.h"

#include "base/texts.h"
#include "views/record_table.h"
#include "work/shown_text.h"

#include <QAudioOutput>
#include <QHBoxLayout>
#include <QLabel>
#include <QMediaPlayer>
#include <QPainter>
#include <QSlider>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>

namespace {
/// Drawn in the colour of the button's text: the pictures of most styles are black, on a dark button too.
QIcon sign(bool isPause, const QPalette &palette)
{
    QIcon icon;
    for (const auto &[mode, group] :
         {std::pair(QIcon::Normal, QPalette::Active), std::pair(QIcon::Disabled, QPalette::Disabled)}) {
        constexpr int side = 64;
        QPixmap picture(side, side);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette.color(group, QPalette::ButtonText));
        if (isPause) {
            painter.drawRect(14, 10, 12, 44);
            painter.drawRect(38, 10, 12, 44);
        } else {
            painter.drawPolygon(QPolygon({{16, 8}, {54, 32}, {16, 56}}));
        }
        painter.end();
        icon.addPixmap(picture, mode);
    }
    return icon;
}
} // namespace

SoundPlayer::SoundPlayer(QWidget *parent)
    : QWidget(parent),
      m_button(new QToolButton),
      m_position(new QSlider(Qt::Horizontal)),
      m_time(new QLabel),
      m_problem(new QLabel)
{
    m_button->setObjectName(QStringLiteral("btnPlay"));
    m_button->setFocusPolicy(Qt::StrongFocus);
    m_position->setObjectName(QStringLiteral("sliderPosition"));
    m_position->setAccessibleName(textFor("IDS_ACC_POSITION"));
    m_time->setObjectName(QStringLiteral("lbTime"));
    m_problem->setObjectName(QStringLiteral("lbCantPlay"));
    m_problem->setTextFormat(Qt::PlainText);
    m_problem->setForegroundRole(QPalette::PlaceholderText);
    m_problem->setWordWrap(true);
    auto *row = new QHBoxLayout;
    row->setSpacing(8);
    row->addWidget(m_button);
    row->addWidget(m_position, 1);
    row->addWidget(m_time);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 8, 16, 12);
    layout->setSpacing(4);
    layout->addLayout(row);
    layout->addWidget(m_problem);
    connect(m_button, &QToolButton::clicked, this, &SoundPlayer::toggle);
    connect(m_position, &QSlider::sliderMoved, this, [this](int position) {
        if (m_player)
            m_player->setPosition(position);
    });
    setSound(0, {});
}

SoundPlayer::~SoundPlayer()
{
    if (m_player)
        disconnect(m_player.get(), nullptr, this, nullptr);
}

void SoundPlayer::makePlayer()
{
    m_output = std::make_unique<QAudioOutput>();
    m_player = std::make_unique<QMediaPlayer>();
    m_player->setAudioOutput(m_output.get());
    connect(m_player.get(), &QMediaPlayer::positionChanged, this, [this](qint64 position) {
        if (!m_position->isSliderDown())
            m_position->setValue(static_cast<int>(position));
        showTime();
    });
    connect(m_player.get(), &QMediaPlayer::durationChanged, this, [this](qint64 duration) {
        if (duration <= 0)
            return;
        m_durationMs = duration;
        m_position->setRange(0, static_cast<int>(duration));
        showTime();
    });
    connect(m_player.get(), &QMediaPlayer::playbackStateChanged, this,
            [this](QMediaPlayer::PlaybackState state) { showPlaying(state == QMediaPlayer::PlayingState); });
    connect(m_player.get(), &QMediaPlayer::errorOccurred, this,
            [this](QMediaPlayer::Error, const QString &reason) {
                qWarning("A sound cannot be played: %s", qUtf8Printable(reason));
                showProblem(textFor("IDS_CANT_PLAY"));
            });
}

bool SoundPlayer::isPlaying() const
{
    return m_player && m_player->playbackState() == QMediaPlayer::PlayingState;
}

void SoundPlayer::setSound(int durationSeconds, const QString &why)
{
    if (m_player)
        m_player->setSource({});
    constexpr qint64 msPerSecond = 1000;
    m_durationMs = durationSeconds * msPerSecond;
    m_position->setRange(0, static_cast<int>(m_durationMs));
    m_position->setValue(0);
    m_position->setEnabled(false);
    m_button->setEnabled(why.isEmpty());
    showPlaying(false);
    if (!why.isEmpty())
        m_button->setToolTip(why);
    m_problem->setText(why);
    m_problem->setVisible(!why.isEmpty());
    showTime();
}

void SoundPlayer::toggle()
{
    if (!m_button->isEnabled())
        return;
    if (isPlaying())
        m_player->pause();
    else if (m_player && !m_player->source().isEmpty())
        m_player->play();
    else
        emit fileWanted();
}

void SoundPlayer::play(const QString &path)
{
    if (!m_player)
        makePlayer();
    m_problem->hide();
    m_position->setEnabled(true);
    m_player->setSource(QUrl::fromLocalFile(path));
    m_player->play();
}

void SoundPlayer::showProblem(const QString &text)
{
    m_problem->setText(breakable(text));
    m_problem->show();
    m_position->setEnabled(false);
    showPlaying(false);
}

void SoundPlayer::showPlaying(bool isPlaying)
{
    m_button->setIcon(sign(isPlaying, palette()));
    const QString text = textFor(isPlaying ? "IDS_PAUSE" : "IDS_PLAY");
    m_button->setToolTip(text);
    m_button->setAccessibleName(text);
}

void SoundPlayer::showTime()
{
    constexpr int msPerSecond = 1000;
    m_time->setText(
        QStringLiteral("%1 / %2").arg(durationText(m_position->value() / msPerSecond),
                                      durationText(static_cast<int>(m_durationMs / msPerSecond))));
}
