#include "views/date_range_edit.h"

#include "base/apple_time.h"
#include "base/texts.h"

#include <QCheckBox>
#include <QDateEdit>
#include <QHBoxLayout>
#include <QLabel>

namespace {
QDateEdit *dateEdit(const char *name)
{
    auto *edit = new QDateEdit;
    edit->setCalendarPopup(true);
    edit->setAccessibleName(textFor(name));
    edit->setEnabled(false);
    return edit;
}

std::int64_t appleOf(const QDateTime &time)
{
    return appleFromUnix(time.toSecsSinceEpoch());
}

QDate dayOf(std::int64_t appleSeconds)
{
    return QDateTime::fromSecsSinceEpoch(unixFromApple(appleSeconds)).date();
}
} // namespace

DateRangeEdit::DateRangeEdit(QWidget *parent)
    : QWidget(parent),
      m_only(new QCheckBox(textFor("IDS_ONLY_FROM"))),
      m_from(dateEdit("IDS_ACC_FIRST_DAY")),
      m_to(dateEdit("IDS_ACC_LAST_DAY"))
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    layout->addWidget(m_only);
    layout->addWidget(m_from);
    layout->addWidget(new QLabel(textFor("IDS_RANGE_TO")));
    layout->addWidget(m_to);

    connect(m_only, &QCheckBox::toggled, this, [this](bool on) {
        m_from->setEnabled(on);
        m_to->setEnabled(on);
        emit rangeChanged();
    });
    for (QDateEdit *edit : {m_from, m_to})
        connect(edit, &QDateEdit::dateChanged, this, [this] {
            if (m_only->isChecked())
                emit rangeChanged();
        });
}

void DateRangeEdit::setBounds(const DateRange &bounds)
{
    if (m_only->isChecked())
        return;
    m_from->setDate(dayOf(bounds.from));
    m_to->setDate(dayOf(bounds.to));
}

void DateRangeEdit::setRange(const QDate &from, const QDate &to)
{
    m_from->setDate(from);
    m_to->setDate(to);
    m_only->setChecked(true);
}

DateRange DateRangeEdit::range() const
{
    if (!m_only->isChecked())
        return {};
    return {appleOf(m_from->date().startOfDay()), appleOf(m_to->date().endOfDay())};
}
