#pragma once

#include <QTextBrowser>

/// Shows rich text out of a backup: it fetches nothing, follows nothing and runs nothing. Pictures that the
/// text carries within itself are shown.
class SafeTextBrowser : public QTextBrowser
{
    Q_OBJECT

public:
    explicit SafeTextBrowser(QWidget *parent = nullptr);

    /// Shows a text, and of its pictures as many as are reasonable.
    void showHtml(const QString &html);

protected:
    QVariant loadResource(int type, const QUrl &name) override;

private:
    qsizetype m_pictureBytes = 0; // decoded, of the text that is shown
};
