#include "views/bk_desc_form.h"

#include "base/shell.h"
#include "base/texts.h"
#include "views/notice_bar.h"
#include "work/shown_text.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPixmap>
#include <QVBoxLayout>

namespace {
QLabel *valueLabel(const QString &text)
{
    auto *label = new QLabel(breakable(text));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return label;
}

void addRow(QGridLayout *grid, const char *caption, QLabel *value)
{
    const int row = grid->rowCount();
    auto *label = new QLabel(textFor(caption));
    label->setTextFormat(Qt::RichText);
    label->setBuddy(value);
    grid->addWidget(label, row, 0, Qt::AlignLeft | Qt::AlignTop);
    grid->addWidget(value, row, 1);
}
} // namespace

QString shortBackupName(const QString &displayName)
{
    constexpr qsizetype shownCharacters = 40;
    return displayName.size() > shownCharacters ? displayName.left(shownCharacters) + QStringLiteral("...")
                                                : displayName;
}

BKDescForm::BKDescForm(const BackupInfo &backup, QWidget *parent) : QWidget(parent), m_notices(new NoticeBar)
{
    auto *name = new QLabel(shortBackupName(backup.displayName));
    name->setObjectName(QStringLiteral("lbBKName"));
    name->setStyleSheet(QStringLiteral("font-size:28px; font-style:italic; "));
    name->setTextFormat(Qt::PlainText);
    name->setWordWrap(true);
    name->setToolTip(toolTipOf(backup.displayName));
    auto *picture = new QLabel;
    picture->setPixmap(QPixmap(QStringLiteral(":/res/bk_big.png")));
    picture->setAccessibleName(textFor("IDS_ROOT_BK"));
    auto *path =
        new QLabel(QStringLiteral("<a href=\"%1\">%2</a>")
                       .arg(backup.folder.toHtmlEscaped(), breakable(backup.folder).toHtmlEscaped()));
    path->setObjectName(QStringLiteral("lbPath"));
    path->setTextFormat(Qt::RichText);
    path->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    path->setWordWrap(true);
    connect(path, &QLabel::linkActivated, this, &BKDescForm::openBackupFolder);

    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(16);
    grid->setVerticalSpacing(8);
    grid->setColumnStretch(1, 1);
    addRow(grid, "IDS_BK_DEVICE", valueLabel(backup.productType));
    addRow(grid, "IDS_BK_IOS_VERSION", valueLabel(backup.productVersion));
    addRow(grid, "IDS_BK_SERIAL", valueLabel(backup.serialNumber));
    addRow(grid, "IDS_BK_DEVICE_ID", valueLabel(backup.deviceId));
    addRow(grid, "IDS_BK_DATE",
           valueLabel(QLocale::system().toString(backup.backupDate.toLocalTime(), QLocale::ShortFormat)));
    addRow(grid, "IDS_BK_STATUS",
           valueLabel(textFor(backup.encrypted ? "IDS_BK_ENCRYPTED" : "IDS_BK_NORMAL")));
    addRow(grid, "IDS_BK_PATH", path);

    auto *facts = new QHBoxLayout;
    facts->setSpacing(24);
    facts->addWidget(picture, 0, Qt::AlignTop);
    facts->addLayout(grid, 1);
    auto *words = new QVBoxLayout;
    words->setContentsMargins(24, 24, 24, 24);
    words->setSpacing(24);
    words->addWidget(name);
    words->addLayout(facts);
    words->addStretch();
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_notices);
    layout->addLayout(words, 1);
}

void BKDescForm::setReport(const Report &report)
{
    m_notices->setReport(report);
}

void BKDescForm::openBackupFolder(QString folder)
{
    openFolderInShell(folder);
}
