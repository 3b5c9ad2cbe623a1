#pragma once

class QString;
class QWidget;

/// What a click on an attachment does with its file: pictures, sounds and films are opened by the desktop,
/// anything else is saved where the user says. A file that is not there is told in a box.
void openAttachment(const QString &path, QWidget *parent);
/// The box that a file is not there.
void tellMissing(const QString &path);
