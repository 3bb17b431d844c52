#include "platform/chromium/launcher.h"
