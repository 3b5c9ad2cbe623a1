#include "views/message_export_dlg.h"

#include "base/texts.h"
#include "views/fonts.h"
#include "work/message_boxes.h"
#include "work/win_movable.h"

#include <QButtonGroup>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStandardPaths>
#include <QVBoxLayout>

namespace {
constexpr int dialogWidth = 520;

struct FormatRow
{
    MessageFormat format;
    const char *name;
    const char *explanation;
    const char *filter; // of the save dialog; none for a folder
    const char *suffix;
};
constexpr FormatRow formatRows[] = {
    {MessageFormat::Html, "IDS_FORMAT_HTML", "IDS_FORMAT_HTML_HINT", nullptr, ""},
    {MessageFormat::Pdf, "IDS_FORMAT_PDF", "IDS_FORMAT_PDF_HINT", nullptr, ""},
    {MessageFormat::Text, "IDS_FORMAT_TEXT", "IDS_FORMAT_TEXT_HINT", "IDS_FILTER_TEXT_FILES", ".txt"},
    {MessageFormat::Csv, "IDS_FORMAT_CSV", "IDS_FORMAT_CSV_HINT", "IDS_FILTER_CSV_FILES", ".csv"},
    {MessageFormat::Database, "IDS_FORMAT_DATABASE", "IDS_FORMAT_DATABASE_HINT", nullptr, ""},
};

const FormatRow &rowOf(MessageFormat format)
{
    for (const FormatRow &row : formatRows) {
        if (row.format == format)
            return row;
    }
    return formatRows[0];
}

QString withoutKnownSuffix(QString path)
{
    for (const FormatRow &row : formatRows) {
        const QLatin1String suffix(row.suffix);
        if (!suffix.isEmpty() && path.endsWith(suffix, Qt::CaseInsensitive))
            path.chop(suffix.size());
    }
    return path;
}
} // namespace

QString proposedExportName(const QDateTime &now)
{
    return QStringLiteral("mms(%1)").arg(now.toString(QStringLiteral("yyyyMMdd-hhmmss")));
}

MessageExportDlg::MessageExportDlg(const QString &title, QWidget *parent)
    : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint), m_formats(new QButtonGroup(this))
{
    setWindowTitle(title);
    buildWidgets(title);
    new WinMovable(this);
    setFixedWidth(dialogWidth);
    const QDir documents(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    setChoice({MessageFormat::Html, documents.filePath(proposedExportName(QDateTime::currentDateTime()))});
}

QWidget *MessageExportDlg::makeFormats()
{
    auto *box = new QWidget;
    auto *layout = new QVBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    for (const FormatRow &row : formatRows) {
        auto *button = new QRadioButton(textFor(row.name));
        button->setAccessibleDescription(textFor(row.explanation));
        auto *explanation = new QLabel(textFor(row.explanation));
        explanation->setForegroundRole(QPalette::PlaceholderText);
        explanation->setIndent(24);
        m_formats->addButton(button, static_cast<int>(row.format));
        layout->addWidget(button);
        layout->addWidget(explanation);
        layout->addSpacing(4);
    }
    return box;
}

void MessageExportDlg::buildWidgets(const QString &title)
{
    auto *heading = new QLabel(title);
    heading->setFont(titleFont(heading->font()));
    m_targetLabel = new QLabel;
    m_target = new QLineEdit;
    m_target->setObjectName(QStringLiteral("edTarget"));
    m_target->setAccessibleName(textFor("IDS_ACC_EXPORT_TARGET"));
    m_targetLabel->setBuddy(m_target);
    auto *browseButton = new QPushButton(textFor("IDS_BROWSE"));
    browseButton->setAutoDefault(false);
    auto *exportButton = new QPushButton(textFor("IDS_EXPORT"));
    exportButton->setObjectName(QStringLiteral("btnExport"));
    exportButton->setDefault(true);
    auto *cancel = new QPushButton(textFor("IDS_CANCEL"));

    auto *target = new QHBoxLayout;
    target->setSpacing(8);
    target->addWidget(m_target, 1);
    target->addWidget(browseButton);
    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    buttons->addStretch();
    buttons->addWidget(exportButton);
    buttons->addWidget(cancel);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 24, 24, 16);
    layout->setSpacing(8);
    layout->addWidget(heading);
    layout->addSpacing(8);
    layout->addWidget(makeFormats());
    layout->addSpacing(8);
    layout->addWidget(m_targetLabel);
    layout->addLayout(target);
    layout->addSpacing(16);
    layout->addLayout(buttons);

    connect(m_formats, &QButtonGroup::idToggled, this, [this](int, bool on) {
        if (on)
            onFormatChanged();
    });
    connect(browseButton, &QPushButton::clicked, this, &MessageExportDlg::browse);
    connect(exportButton, &QPushButton::clicked, this, &MessageExportDlg::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

MessageFormat MessageExportDlg::format() const
{
    return static_cast<MessageFormat>(m_formats->checkedId());
}

MessageExportChoice MessageExportDlg::choice() const
{
    return {format(), QDir::cleanPath(QDir::fromNativeSeparators(m_target->text().trimmed()))};
}

void MessageExportDlg::setChoice(const MessageExportChoice &choice)
{
    m_target->setText(QDir::toNativeSeparators(choice.target));
    m_formats->button(static_cast<int>(choice.format))->setChecked(true);
}

void MessageExportDlg::onFormatChanged()
{
    const FormatRow &row = rowOf(format());
    m_targetLabel->setText(textFor(row.filter ? "IDS_EXPORT_INTO_FILE" : "IDS_EXPORT_INTO_FOLDER"));
    if (!m_target->text().isEmpty())
        m_target->setText(withoutKnownSuffix(m_target->text()) + QLatin1String(row.suffix));
}

void MessageExportDlg::browse()
{
    const FormatRow &row = rowOf(format());
    QString chosen;
    if (!row.filter) {
        const QString start = QFileInfo(choice().target).path();
        chosen = QFileDialog::getExistingDirectory(this, textFor("IDS_EXPORT_INTO_FOLDER"), start);
    } else {
        chosen =
            QFileDialog::getSaveFileName(this, textFor("IDS_EXPORT_INTO_FILE"), choice().target,
                                         textFor(row.filter), nullptr, QFileDialog::DontConfirmOverwrite);
        if (!chosen.isEmpty() && QFileInfo(chosen).suffix().isEmpty())
            chosen += QLatin1String(row.suffix);
    }
    if (!chosen.isEmpty())
        m_target->setText(QDir::toNativeSeparators(chosen));
}

void MessageExportDlg::accept()
{
    const QString target = choice().target;
    if (m_target->text().trimmed().isEmpty() || QDir::isRelativePath(target)) {
        showWarningBox(textFor("IDS_EXPORT_NEEDS_TARGET"));
        return;
    }
    const bool isFile = rowOf(format()).filter != nullptr;
    if (isFile && QFileInfo(target).isDir()) {
        showWarningBox(textFor("IDS_EXPORT_TARGET_IS_FOLDER"));
        return;
    }
    if (isFile && QFileInfo::exists(target) &&
        !askQuestion(textFor("IDS_CONFIRM_REPLACE_%1").arg(QDir::toNativeSeparators(target))))
        return;
    QDialog::accept();
}
