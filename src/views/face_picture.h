#pragma once

#include <QImage>
#include <QPixmap>

class QByteArray;
struct _MsgChat;

/// A square picture out of the bytes of an image file; null when they are none, or one of an absurd size.
QImage readSquare(const QByteArray &bytes, int side);

/// What stands for a conversation in a list: the picture of the one who takes part, else the first letter of
/// the name or the number of people, on a disc.
QPixmap facePicture(const _MsgChat &chat, int side, qreal ratio);
