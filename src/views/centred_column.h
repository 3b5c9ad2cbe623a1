#pragma once

class QVBoxLayout;
class QWidget;

/// Gives a page one column in its middle, no wider than is good to read, and its layout to be filled. Wrapped
/// texts in it get the height they need. End it with addStretch(3), which keeps it a little above the middle.
QVBoxLayout *centredColumn(QWidget *page);
