#include "views/notice_bar.h"

#include "base/texts.h"
#include "work/message_boxes.h"
#include "work/shown_text.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

namespace {
constexpr int signSide = 16;
constexpr qsizetype longestSentence = 300;

QToolButton *makeButton(const char *name)
{
    auto *button = new QToolButton;
    button->setObjectName(QLatin1String(name));
    button->setFocusPolicy(Qt::StrongFocus);
    return button;
}
} // namespace

NoticeBar::NoticeBar(QWidget *parent)
    : QWidget(parent),
      m_sign(new QLabel),
      m_text(new QLabel),
      m_everything(makeButton("btnNoticeEverything")),
      m_details(makeButton("btnNoticeDetails"))
{
    m_text->setObjectName(QStringLiteral("lbNotice"));
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_details->setText(textFor("IDS_DETAILS"));
    connect(m_details, &QToolButton::clicked, this, [this] {
        const QString all = m_sentences.join(QStringLiteral("\n\n"));
        m_isFailure ? showWarningBox(all) : showInformationBox(all);
    });
    connect(m_everything, &QToolButton::clicked, this,
            [this] { emit scopeWanted(m_shown == Scope::Usual ? Scope::Everything : Scope::Usual); });
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(16, 4, 16, 4);
    layout->setSpacing(8);
    layout->addWidget(m_sign);
    layout->addWidget(m_text, 1);
    layout->addWidget(m_everything);
    layout->addWidget(m_details);
    hide();
}

void NoticeBar::offerEverything()
{
    m_offersEverything = true;
}

void NoticeBar::setReport(const Report &report, Scope shown)
{
    m_shown = shown;
    m_isFailure = report.isFailure();
    m_sentences = sentencesOf(report);
    const bool isAllShown = shown == Scope::Everything;
    if (isAllShown)
        m_sentences << textFor("IDS_EVERYTHING_IS_SHOWN");
    m_everything->setText(textFor(isAllShown ? "IDS_HIDE_THEM" : "IDS_SHOW_THEM"));
    m_everything->setVisible(m_offersEverything && (isAllShown || report.count(IssueKind::Hidden) > 0));
    showText();
}

void NoticeBar::showText()
{
    QPixmap picture = boxPicture(m_isFailure ? BoxIcon::Warning : BoxIcon::Information, devicePixelRatioF());
    m_sign->setPixmap(picture.scaled(picture.size() * (signSide / picture.deviceIndependentSize().width()),
                                     Qt::KeepAspectRatio, Qt::SmoothTransformation));
    const QString first = m_sentences.value(0);
    const bool isCut = first.size() > longestSentence;
    m_text->setText(breakable(isCut ? first.left(longestSentence) + QChar(0x2026) : first));
    m_details->setVisible(isCut || m_sentences.size() > 1);
    setVisible(!m_sentences.isEmpty());
}
