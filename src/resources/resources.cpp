#include "resources/resources.h"

#include <QtGlobal>

void initResources()
{
    Q_INIT_RESOURCE(resources);
    Q_INIT_RESOURCE(sql);
    Q_INIT_RESOURCE(texts);
}
