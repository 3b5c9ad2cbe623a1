#pragma once

#include <QWidget>

/// What the right side shows while nothing is selected that has a view: what to do next.
class StartPage : public QWidget
{
    Q_OBJECT

public:
    enum class Offer { LoadOnly, LoadOrSample };

    explicit StartPage(Offer offer, QWidget *parent = nullptr);

signals:
    void loadRequested();
    void sampleRequested();
};
