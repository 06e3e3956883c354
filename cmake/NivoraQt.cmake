# Qt for the code that paints pages and pictures, and for the folders that have windows.

find_package(Qt6 6.4 REQUIRED COMPONENTS Gui Svg)

if(NIVORA_WIDGETS)
    find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets PrintSupport)
endif()

# nivora_strict_qt(<target>)
#
# Runs moc where it is needed and disables what we do not use of Qt: texts are never taken as Latin-1, signals are
# never connected by their names, and every connection has a context object.
function(nivora_strict_qt target)
    set_target_properties(${target} PROPERTIES AUTOMOC ON)
    target_compile_definitions(${target} PRIVATE
        QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING
        QT_NO_CONTEXTLESS_CONNECT QT_DISABLE_DEPRECATED_BEFORE=0x060400)
endfunction()

# What links QtGui is compiled as position-independent code, for which precompiled headers of their own are needed.
nivora_headers(nivora_painted_headers LIBRARIES fmt::fmt Qt6::Gui
    HEADERS <algorithm> <array> <cmath> <cstdint> <filesystem> <functional> <map> <optional> <span> <string> <string_view>
        <vector> <fmt/format.h>)
nivora_strict_qt(nivora_painted_headers)
if(NIVORA_WIDGETS)
    nivora_headers(nivora_widget_headers LIBRARIES fmt::fmt Qt6::Widgets
        HEADERS <algorithm> <array> <filesystem> <functional> <map> <optional> <string> <vector> <QApplication> <QBoxLayout>
            <QCheckBox> <QComboBox> <QDialog> <QGridLayout> <QGroupBox> <QHeaderView> <QKeyEvent> <QLabel> <QLineEdit>
            <QMainWindow> <QMenuBar> <QMessageBox> <QPainter> <QPushButton> <QScreen> <QScrollBar> <QStatusBar>
            <QStyledItemDelegate> <QTableView> <QTextEdit> <QTimer>)
    nivora_strict_qt(nivora_widget_headers)
endif()
