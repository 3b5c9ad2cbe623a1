#pragma once

#include <QStringList>
#include <QWidget>

class QLabel;

/// A line above a view that says what is wrong with what it shows. Hidden while there is nothing to say.
class NoticeBar : public QWidget
{
    Q_OBJECT

public:
    explicit NoticeBar(QWidget *parent = nullptr);

    /// One sentence each; the first stands there, all of them are in the box that "Details" opens.
    void setNotices(const QStringList &notices);

private:
    QLabel *m_text;
    QStringList m_notices;
};
