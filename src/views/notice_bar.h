#pragma once

#include <QStringList>
#include <QWidget>

class QLabel;
class QToolButton;

/// A line above a view that says what is wrong with what it shows. Hidden while there is nothing to say.
class NoticeBar : public QWidget
{
    Q_OBJECT

public:
    explicit NoticeBar(QWidget *parent = nullptr);

    /// One sentence each. The first stands there; when that is not all, "Details" opens a box with all of them.
    void setNotices(const QStringList &notices);

private:
    QLabel *m_text;
    QToolButton *m_details;
    QStringList m_notices;
};
