#include "resources/resources.h"

void initResources() {}
