#pragma once

class QHeaderView;
class QSplitter;

// Where the user has put the borders of a kind of view: kept while the program runs, for every view of that
// kind. Each restores what is known and remembers every change from then on. `kind` names the view.

void rememberColumns(QHeaderView *header, const char *kind);
void rememberSplitter(QSplitter *splitter, const char *kind);
