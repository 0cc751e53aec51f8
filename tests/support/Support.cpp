// Keeps the header-only helpers compiling on their own.
#include "support/RecordingLogger.h"
#include "support/Status.h"
