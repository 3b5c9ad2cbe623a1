#pragma once

#include "base/report.h"
#include "personal/scope.h"

#include <QStringList>
#include <QWidget>

class QLabel;
class QToolButton;

/// A line above a view that says what of its source does not stand in it: what is damaged, what was left out.
/// Hidden while there is nothing to say.
class NoticeBar : public QWidget
{
    Q_OBJECT

public:
    explicit NoticeBar(QWidget *parent = nullptr);

    /// Whoever connects to scopeWanted() can read what the rules leave out, so that is offered.
    void offerEverything();
    /// Says what the report says, what is damaged first. The first sentence stands there; when that is not
    /// all, "Details" opens a box with all of them. `shown` is what the view was read with.
    void setReport(const Report &report, Scope shown = Scope::Usual);

signals:
    /// "Show them", or "Hide them" to go back.
    void scopeWanted(Scope scope);

private:
    void showText();

    QLabel *m_sign;
    QLabel *m_text;
    QToolButton *m_everything;
    QToolButton *m_details;
    QStringList m_sentences;
    bool m_isFailure = false;
    bool m_offersEverything = false;
    Scope m_shown = Scope::Usual;
};
