#pragma once

#include "base/progress.h"

#include <QImage>

/// The first picture of a QuickTime or MPEG-4 file, at most `side` pixels wide and high, made by the program
/// "ffmpeg". Null when the machine has none or it cannot. Takes a few seconds at most; throws Cancelled.
QImage firstFrameOf(const QString &path, int side, Progress &progress);
