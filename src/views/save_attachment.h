#pragma once

class QString;
class QWidget;

/// Saves the file of an attachment where the user says, and tells in a box how it went.
void saveAttachment(const QString &path, QWidget *parent);
/// The box that a file is not there.
void tellMissing(const QString &path);
