#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

/// What the right side shows while nothing is selected that has a view: what to do next.
class StartPage : public QWidget
{
    Q_OBJECT

public:
    enum class Offer { LoadOnly, LoadOrSample };

    explicit StartPage(Offer offer, QWidget *parent = nullptr);

    /// A sample is offered where there is no backup at all.
    void setOffer(Offer offer);

signals:
    void loadRequested();
    void sampleRequested();

private:
    QLabel *m_title;
    QLabel *m_text;
    QPushButton *m_sample;
};
