// The About window.
#pragma once

#include <QDialog>

namespace nivora {

class frmAbout : public QDialog {
    Q_OBJECT

public:
    explicit frmAbout(QWidget* parent = nullptr);
};

}  // namespace nivora
