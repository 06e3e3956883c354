// The import of a table from a CSV file.
#pragma once

#include "prep/table_load.h"
#include "session/table_files.h"
#include "widgets/nivora_window.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPushButton;

namespace nivora {

class GridView;
class ImportColumnsModel;
class TextTableModel;

/// Asks for a file, shows how it is read, and loads it wholly or not at all.
class frmTableImport : public NivoraWindow {
    Q_OBJECT

public:
    explicit frmTableImport(const WindowContext& context, QWidget* parent = nullptr);

    /// Shows a file as if it were chosen.
    void show_file(const std::filesystem::path& file);
    /// Whether a file was loaded since the window was opened.
    [[nodiscard]] bool loaded() const { return loaded_; }

private:
    QWidget* make_file_row();
    QWidget* make_form();
    QWidget* make_buttons();
    template <typename Widget>
    Widget* add_row(QFormLayout& form, const char* caption, Widget* widget, const char* name, int line);
    void choose_file();
    void form_changed();
    void add_undo();
    void reverse(std::optional<int> (ImportColumnsModel::*act)());
    void show_sample();
    [[nodiscard]] bool is_wide() const;
    [[nodiscard]] std::string table() const;
    [[nodiscard]] TableLoad wanted() const;
    std::optional<LoadResult> check();
    void load_file();
    [[nodiscard]] std::optional<LoadResult> run(bool keep);
    void tell(const QString& text);
    void show_result(const LoadResult& result, bool kept);

    std::filesystem::path file_;
    std::vector<ChosenTable> tables_;
    QLabel* file_name_;
    QComboBox* table_;
    QComboBox* form_;
    QComboBox* field_;
    QComboBox* zone_;
    QComboBox* separator_;
    QComboBox* decimal_;
    QComboBox* dates_;
    QLineEdit* missing_;
    QCheckBox* any_order_;
    ImportColumnsModel* columns_;
    GridView* grid_;
    QLabel* told_;
    TextTableModel* refusals_;
    GridView* refused_;
    QPushButton* check_ = nullptr;
    QPushButton* import_ = nullptr;
    bool loaded_ = false;
};

}  // namespace nivora
