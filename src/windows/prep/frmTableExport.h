// The export of a table into a CSV file.
#pragma once

#include "session/table_files.h"
#include "widgets/nivora_window.h"

#include <vector>

class QCheckBox;
class QComboBox;
class QLabel;

namespace nivora {

/// Asks which table is written, and where.
class frmTableExport : public NivoraWindow {
    Q_OBJECT

public:
    explicit frmTableExport(const WindowContext& context, QWidget* parent = nullptr);

private:
    void write();

    std::vector<ChosenTable> tables_;
    QComboBox* table_;
    QCheckBox* units_;
    QLabel* told_;
};

}  // namespace nivora
