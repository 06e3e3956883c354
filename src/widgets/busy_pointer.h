// The pointer that tells the user to wait.
#pragma once

#include <QApplication>

namespace nivora {

/// Shows the busy pointer for as long as it lives.
class BusyPointer {
public:
    BusyPointer() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    BusyPointer(const BusyPointer&) = delete;
    BusyPointer& operator=(const BusyPointer&) = delete;
    ~BusyPointer() { QApplication::restoreOverrideCursor(); }
};

}  // namespace nivora
