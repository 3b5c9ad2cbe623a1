#include "views/local_database_dlg.h"

#include "base/app_folders.h"
#include "base/file_names.h"
#include "base/texts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

QString chooseLocalDatabase(const QString &suggestion, QWidget *parent, bool *update)
{
    QDialog dialog(parent);
    dialog.setWindowTitle(textFor("IDS_PRODUCT_NAME"));
    auto *layout = new QVBoxLayout(&dialog);
    layout->setContentsMargins(24, 24, 24, 24);
    layout->setSpacing(16);
    auto *label = new QLabel(textFor("IDS_CHOOSE_LOCAL_DB"));
    auto *names = new QComboBox;
    names->setObjectName(QStringLiteral("cbDatabases"));
    names->setAccessibleName(textFor("IDS_ROOT_LOCALDB"));
    names->setEditable(true);
    names->setMinimumWidth(320);
    names->addItems(localDatabasesFolder().entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name));
    const int known = names->findText(safeFileName(suggestion));
    if (known >= 0)
        names->setCurrentIndex(known);
    else
        names->setEditText(safeFileName(suggestion));
    label->setBuddy(names);
    auto *newer = new QCheckBox(textFor("IDS_UPDATE_CHANGED_MESSAGES"));
    newer->setObjectName(QStringLiteral("ckUpdate"));
    newer->setToolTip(textFor("IDS_UPDATE_CHANGED_MESSAGES_TIP"));
    newer->setChecked(true);
    newer->setVisible(update != nullptr);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    layout->addWidget(label);
    layout->addWidget(names);
    layout->addWidget(newer);
    layout->addWidget(buttons);
    const auto check = [=](const QString &name) {
        buttons->button(QDialogButtonBox::Ok)->setEnabled(isLocalDatabaseName(safeFileName(name)));
    };
    check(names->currentText());
    QObject::connect(names, &QComboBox::editTextChanged, &dialog, check);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    if (dialog.exec() != QDialog::Accepted)
        return {};
    if (update)
        *update = newer->isChecked();
    return localDatabasesFolder().filePath(safeFileName(names->currentText()));
}
