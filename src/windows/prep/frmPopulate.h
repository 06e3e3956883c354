// The first period of the daily variables.
#pragma once

#include "widgets/nivora_window.h"

#include <array>

class QLineEdit;

namespace nivora {

/// Asks for the period of the basin's record right after the number of zones was fixed, and creates its rows.
class frmPopulate : public NivoraWindow {
    Q_OBJECT

public:
    explicit frmPopulate(const WindowContext& context, QWidget* parent = nullptr);

private:
    QWidget* make_dates();
    void accept();

    std::array<QLineEdit*, 2> dates_{};
};

}  // namespace nivora
