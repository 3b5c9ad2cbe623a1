#pragma once

#include <QTextBrowser>

/// Shows rich text out of a backup: it fetches nothing, follows nothing and runs nothing. Pictures that the
/// text carries within itself are shown.
class SafeTextBrowser : public QTextBrowser
{
    Q_OBJECT

public:
    explicit SafeTextBrowser(QWidget *parent = nullptr);

protected:
    QVariant loadResource(int type, const QUrl &name) override;
};
