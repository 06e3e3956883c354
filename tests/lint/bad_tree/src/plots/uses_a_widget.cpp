#include <QtWidgets/QLabel>
#include <qwidget.h>
