#pragma once

#include <QLabel>

/// One line of plain text that shortens itself in the middle when there is no room, with the whole in its
/// tool tip. Names out of a backup may have any length.
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    bool event(QEvent *event) override;

private:
    bool isElided() const;
};
