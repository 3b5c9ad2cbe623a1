#include "work/message_boxes.h"

#include "base/texts.h"
#include "work/shown_text.h"
#include "work/win_movable.h"

#include <QApplication>
#include <QLayout>
#include <QPushButton>

namespace {
struct ButtonKind
{
    BoxButton button;
    QMessageBox::StandardButton standard;
    const char *text;
};
// In the order in which a box gets them.
constexpr ButtonKind buttonKinds[] = {
    {BoxButton::Yes, QMessageBox::Yes, "IDS_YES"},
    {BoxButton::No, QMessageBox::No, "IDS_NO"},
    {BoxButton::Ok, QMessageBox::Ok, "IDS_OK"},
    {BoxButton::Cancel, QMessageBox::Cancel, "IDS_CANCEL"},
};

// About what there is room for on a small screen.
constexpr qsizetype longestText = 1600;
constexpr qsizetype mostLines = 24;

bool fits(const QString &text)
{
    return text.size() <= longestText && text.count(QLatin1Char('\n')) < mostLines;
}

QString fitting(const QString &text)
{
    if (fits(text))
        return breakable(text);
    const QString beginning = text.section(QLatin1Char('\n'), 0, mostLines - 1).left(longestText);
    return breakable(beginning) + QChar(0x2026);
}

void show(BoxIcon icon, const QString &text)
{
    MessageBox box(icon, text, BoxButton::Ok, QApplication::activeWindow());
    box.ask();
}
} // namespace

MessageBox::MessageBox(BoxIcon icon, const QString &text, BoxButtons buttons, QWidget *parent,
                       Qt::TextFormat format)
    : QMessageBox(parent)
{
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    setWindowTitle(textFor("IDS_PRODUCT_NAME"));
    setIconPixmap(boxPicture(icon, devicePixelRatioF()));
    setTextFormat(format);
    setText(format == Qt::PlainText ? fitting(text) : text);
    if (format == Qt::PlainText)
        offerWhole(text);
    new WinMovable(this);
    for (const ButtonKind &kind : buttonKinds) {
        if (buttons.testFlag(kind.button))
            addPlainButton(kind.standard, textFor(kind.text));
    }
    // What is asked about cannot be taken back, so a hasty key leaves everything as it is.
    if (buttons.testFlag(BoxButton::No)) {
        setEscapeButton(QMessageBox::No);
        setDefaultButton(QMessageBox::No);
    } else if (!buttons.testFlag(BoxButton::Cancel)) {
        // With another button beside it Qt would take none for the one that Escape presses.
        setEscapeButton(QMessageBox::Ok);
        setDefaultButton(QMessageBox::Ok);
    }
    layout()->setContentsMargins(24, 24, 24, 16);
}

// Some styles put pictures on standard buttons; the words say enough.
void MessageBox::addPlainButton(StandardButton standard, const QString &text)
{
    QPushButton *button = addButton(standard);
    button->setText(text);
    button->setIcon({});
}

void MessageBox::offerWhole(const QString &text)
{
    if (!fits(text))
        setDetailedText(text);
}

void MessageBox::showEvent(QShowEvent *event)
{
    QMessageBox::showEvent(event); // which finds the box its size
    centreOnItsWindow(this);
}

BoxButton MessageBox::ask()
{
    const int pressed = exec();
    for (const ButtonKind &kind : buttonKinds) {
        if (pressed == kind.standard)
            return kind.button;
    }
    if (button(QMessageBox::No))
        return BoxButton::No;
    return button(QMessageBox::Cancel) ? BoxButton::Cancel : BoxButton::Ok;
}

QString applicationTitle()
{
    return textFor("IDS_PRODUCT_NAME") + QStringLiteral(" (x64) v") + QStringLiteral(QB_VERSION);
}

QString supportAddress()
{
    return QStringLiteral("support@quillbarrow.example");
}

void showErrorBox(const QString &text)
{
    const QString escaped = fitting(text).toHtmlEscaped().replace(QLatin1Char('\n'), QStringLiteral("<br/>"));
    MessageBox box(BoxIcon::Critical,
                   QStringLiteral("<nobr><b>") + applicationTitle() +
                       QStringLiteral("</b></nobr><br/><br/>") +
                       textFor("IDS_ERROR_OCCURRED_%1_%2").arg(escaped, supportAddress()),
                   BoxButton::Ok, QApplication::activeWindow(), Qt::RichText);
    box.offerWhole(text);
    box.ask();
    qCritical("%s", qUtf8Printable(text));
}

void showWarningBox(const QString &text)
{
    show(BoxIcon::Warning, text);
}

void showInformationBox(const QString &text)
{
    show(BoxIcon::Information, text);
}

bool askQuestion(const QString &text)
{
    MessageBox box(BoxIcon::Question, text, BoxButton::Yes | BoxButton::No, QApplication::activeWindow());
    return box.ask() == BoxButton::Yes;
}
