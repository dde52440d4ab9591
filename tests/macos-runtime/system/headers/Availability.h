// Of each system's declarations, machines without it need none about versions: see Available.h.
#pragma once

#define API_AVAILABLE(...)
