#include <QMessageBox>
