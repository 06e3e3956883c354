#include "session/session.h"

#include <QPrinter>
#include <QtWidgets/QLabel>
