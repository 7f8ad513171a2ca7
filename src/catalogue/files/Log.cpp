#include "catalogue/files/Log.h"

Q_LOGGING_CATEGORY(lcCatalogue, "ortu.catalogue", QtInfoMsg)
