#pragma once

#include <QByteArray>

/// The picture of the first card in a vCard file that has one: the bytes of a JPEG, PNG or GIF file. Versions
/// 2.1 (ENCODING=BASE64), 3.0 (ENCODING=b) and 4.0 (a "data:" address). Empty when there is none.
QByteArray vCardPhoto(const QByteArray &vCard);
