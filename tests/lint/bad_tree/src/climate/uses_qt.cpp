#include <QImage>
#include <QtCore/QString>
#include <qobject.h>
