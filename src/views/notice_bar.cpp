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
} // namespace

NoticeBar::NoticeBar(QWidget *parent) : QWidget(parent), m_text(new QLabel), m_details(new QToolButton)
{
    m_text->setObjectName(QStringLiteral("lbNotice"));
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto *sign = new QLabel;
    QPixmap picture = boxPicture(BoxIcon::Warning, devicePixelRatioF());
    sign->setPixmap(picture.scaled(picture.size() * (signSide / picture.deviceIndependentSize().width()),
                                   Qt::KeepAspectRatio, Qt::SmoothTransformation));
    m_details->setObjectName(QStringLiteral("btnNoticeDetails"));
    m_details->setText(textFor("IDS_DETAILS"));
    m_details->setFocusPolicy(Qt::StrongFocus);
    connect(m_details, &QToolButton::clicked, this,
            [this] { showWarningBox(m_notices.join(QStringLiteral("\n\n"))); });
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(16, 4, 16, 4);
    layout->setSpacing(8);
    layout->addWidget(sign);
    layout->addWidget(m_text, 1);
    layout->addWidget(m_details);
    hide();
}

void NoticeBar::setNotices(const QStringList &notices)
{
    m_notices = notices;
    const QString first = notices.value(0);
    const bool isCut = first.size() > longestSentence;
    m_text->setText(breakable(isCut ? first.left(longestSentence) + QChar(0x2026) : first));
    m_details->setVisible(isCut || notices.size() > 1);
    setVisible(!notices.isEmpty());
}
