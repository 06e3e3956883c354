// The pointer that tells the user to wait.
#pragma once

#include <QApplication>
#include <QCursor>
#include <vector>

namespace nivora {

/// Shows the busy pointer for as long as it lives.
class BusyPointer {
public:
    BusyPointer() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    BusyPointer(const BusyPointer&) = delete;
    BusyPointer& operator=(const BusyPointer&) = delete;
    ~BusyPointer() { QApplication::restoreOverrideCursor(); }
};

/// Shows the normal pointer while the program waits for the user in the middle of its work.
class BusyPause {
public:
    BusyPause() {
        while (const QCursor* pointer = QApplication::overrideCursor()) {
            pointers_.push_back(*pointer);
            QApplication::restoreOverrideCursor();
        }
    }
    BusyPause(const BusyPause&) = delete;
    BusyPause& operator=(const BusyPause&) = delete;
    ~BusyPause() {
        for (auto pointer = pointers_.rbegin(); pointer != pointers_.rend(); ++pointer)
            QApplication::setOverrideCursor(*pointer);
    }

private:
    std::vector<QCursor> pointers_;  ///< the newest first
};

}  // namespace nivora
