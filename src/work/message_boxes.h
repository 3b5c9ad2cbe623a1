#pragma once

#include "work/box_picture.h"

#include <QFlags>
#include <QMessageBox>
#include <QString>

enum class BoxButton { Yes = 1, No = 2, Ok = 4, Cancel = 8 };
Q_DECLARE_FLAGS(BoxButtons, BoxButton)
Q_DECLARE_OPERATORS_FOR_FLAGS(BoxButtons)

/// The one message box of the program: titled with the product's name, without a window frame, movable, in
/// the middle of the window that it belongs to. Text is plain unless `format` says otherwise; a plain one
/// that is too long for a box is cut.
class MessageBox : public QMessageBox
{
    Q_OBJECT

public:
    MessageBox(BoxIcon icon, const QString &text, BoxButtons buttons, QWidget *parent,
               Qt::TextFormat format = Qt::PlainText);

    /// Runs the box and gives the button pressed; closing it any other way is No, Cancel or Ok, whichever of
    /// them it has.
    BoxButton ask();

    /// The whole of a text that had to be cut can be unfolded below it.
    void offerWhole(const QString &text);

protected:
    void showEvent(QShowEvent *event) override;

private:
    void addPlainButton(StandardButton standard, const QString &text);
};

/// "Quillbarrow (x64) v3.1.36".
QString applicationTitle();

/// Where people write to when something goes wrong; the only place that names it.
QString supportAddress();

/// Run a box and return when it is closed. They belong to the active window.
void showErrorBox(const QString &text);
void showWarningBox(const QString &text);
void showInformationBox(const QString &text);
/// True only for Yes.
bool askQuestion(const QString &text);
