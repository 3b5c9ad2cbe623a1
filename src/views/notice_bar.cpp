#include "views/notice_bar.h"

#include "base/texts.h"
#include "work/elided_label.h"
#include "work/message_boxes.h"

#include <QHBoxLayout>
#include <QToolButton>

namespace {
constexpr int signSide = 16;
}

NoticeBar::NoticeBar(QWidget *parent) : QWidget(parent), m_text(new ElidedLabel)
{
    m_text->setObjectName(QStringLiteral("lbNotice"));
    auto *sign = new QLabel;
    QPixmap picture = boxPicture(BoxIcon::Warning, devicePixelRatioF());
    sign->setPixmap(picture.scaled(picture.size() * (signSide / picture.deviceIndependentSize().width()),
                                   Qt::KeepAspectRatio, Qt::SmoothTransformation));
    auto *details = new QToolButton;
    details->setObjectName(QStringLiteral("btnNoticeDetails"));
    details->setText(textFor("IDS_DETAILS"));
    details->setFocusPolicy(Qt::StrongFocus);
    connect(details, &QToolButton::clicked, this,
            [this] { showWarningBox(m_notices.join(QStringLiteral("\n\n"))); });
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(16, 4, 16, 4);
    layout->setSpacing(8);
    layout->addWidget(sign);
    layout->addWidget(m_text, 1);
    layout->addWidget(details);
    hide();
}

void NoticeBar::setNotices(const QStringList &notices)
{
    m_notices = notices;
    m_text->setText(notices.value(0));
    setVisible(!notices.isEmpty());
}
