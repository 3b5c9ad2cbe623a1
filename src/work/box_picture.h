#pragma once

#include <QPixmap>

enum class BoxIcon { Information, Warning, Critical, Question };

/// A round sign for a message box, drawn for the given screen factor.
QPixmap boxPicture(BoxIcon icon, qreal devicePixelRatio);
