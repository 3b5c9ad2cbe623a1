#include "app/start_page.h"

#include "base/texts.h"
#include "views/centred_column.h"
#include "views/fonts.h"

#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

StartPage::StartPage(Offer offer, QWidget *parent) : QWidget(parent)
{
    const bool nothingFound = offer == Offer::LoadOrSample;
    auto *picture = new QLabel;
    picture->setPixmap(QPixmap(QStringLiteral(":/res/bk_big.png")));
    auto *title = new QLabel(textFor(nothingFound ? "IDS_NO_BACKUP_FOUND" : "IDS_START_TITLE"));
    title->setAlignment(Qt::AlignHCenter);
    title->setWordWrap(true);
    title->setFont(titleFont(title->font()));
    auto *text = new QLabel(textFor(nothingFound ? "IDS_NO_BACKUP_FOUND_HINT" : "IDS_START_HINT"));
    text->setWordWrap(true);
    text->setAlignment(Qt::AlignHCenter);
    auto *load =
        new QPushButton(QIcon(QStringLiteral(":/res/load_itunes.png")), textFor("IDS_MI_LOAD_BACKUP"));
    load->setObjectName(QStringLiteral("btnStartLoad"));
    auto *sample = new QPushButton(textFor("IDS_MAKE_SAMPLE"));
    sample->setObjectName(QStringLiteral("btnStartSample"));
    sample->setVisible(nothingFound);

    auto *layout = centredColumn(this);
    layout->addWidget(picture, 0, Qt::AlignHCenter);
    layout->addSpacing(8);
    layout->addWidget(title);
    layout->addWidget(text);
    layout->addSpacing(8);
    layout->addWidget(load, 0, Qt::AlignHCenter);
    layout->addWidget(sample, 0, Qt::AlignHCenter);
    layout->addStretch(3);
    connect(load, &QPushButton::clicked, this, &StartPage::loadRequested);
    connect(sample, &QPushButton::clicked, this, &StartPage::sampleRequested);
}
