#include "app/start_page.h"

#include "base/texts.h"
#include "views/centred_column.h"
#include "views/fonts.h"

#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

StartPage::StartPage(Offer offer, QWidget *parent)
    : QWidget(parent), m_title(new QLabel), m_text(new QLabel), m_sample(new QPushButton)
{
    auto *picture = new QLabel;
    picture->setPixmap(QPixmap(QStringLiteral(":/res/bk_big.png")));
    m_title->setObjectName(QStringLiteral("lbStartTitle"));
    m_title->setAlignment(Qt::AlignHCenter);
    m_title->setWordWrap(true);
    m_title->setFont(titleFont(m_title->font()));
    m_text->setWordWrap(true);
    m_text->setAlignment(Qt::AlignHCenter);
    auto *load =
        new QPushButton(QIcon(QStringLiteral(":/res/load_itunes.png")), textFor("IDS_MI_LOAD_BACKUP"));
    load->setObjectName(QStringLiteral("btnStartLoad"));
    m_sample->setText(textFor("IDS_MAKE_SAMPLE"));
    m_sample->setObjectName(QStringLiteral("btnStartSample"));

    auto *layout = centredColumn(this);
    layout->addWidget(picture, 0, Qt::AlignHCenter);
    layout->addSpacing(8);
    layout->addWidget(m_title);
    layout->addWidget(m_text);
    layout->addSpacing(8);
    layout->addWidget(load, 0, Qt::AlignHCenter);
    layout->addWidget(m_sample, 0, Qt::AlignHCenter);
    layout->addStretch(3);
    connect(load, &QPushButton::clicked, this, &StartPage::loadRequested);
    connect(m_sample, &QPushButton::clicked, this, &StartPage::sampleRequested);
    setOffer(offer);
}

void StartPage::setOffer(Offer offer)
{
    const bool nothingFound = offer == Offer::LoadOrSample;
    m_title->setText(textFor(nothingFound ? "IDS_NO_BACKUP_FOUND" : "IDS_START_TITLE"));
    m_text->setText(textFor(nothingFound ? "IDS_NO_BACKUP_FOUND_HINT" : "IDS_START_HINT"));
    m_sample->setVisible(nothingFound);
}
