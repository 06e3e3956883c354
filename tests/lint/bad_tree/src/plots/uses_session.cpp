#include "session/session.h"
