#include "EarlyUser.h"

static const EarlyUser last("last");
