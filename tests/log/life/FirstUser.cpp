#include "EarlyUser.h"

static const EarlyUser first("first");
