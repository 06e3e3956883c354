# The layers of src/ as data, and the check of a tree against them. Needs nothing but CMake.

# What each folder may include. A folder may always include its own headers.
set(reach_of_base base)
set(reach_of_store store ${reach_of_base})
set(reach_of_engine engine ${reach_of_store})
set(reach_of_prep prep ${reach_of_store})
set(reach_of_reports reports ${reach_of_engine})
set(reach_of_climate climate ${reach_of_reports})
set(reach_of_studies studies ${reach_of_climate})
set(reach_of_search search prep ${reach_of_studies})
set(reach_of_plots plots ${reach_of_climate})
set(reach_of_session session prep ${reach_of_plots})
set(reach_of_paint paint ${reach_of_plots})
set(reach_of_widgets widgets paint ${reach_of_session})
set(reach_of_batch batch search studies ${reach_of_session})
set(reach_of_shell shell ${reach_of_widgets})
set(project_folders base store engine prep reports climate studies search plots session paint widgets batch shell)

# The subsystems that have windows, each in src/windows/<subsystem>. The shell alone may use them.
set(window_folders engine prep climate reports plots)

# The layers that may use Qt Widgets, and those that may use any Qt.
set(widget_layers "^(widgets|shell|windows/.*)$")
set(qt_layers "^(paint|widgets|shell|windows/.*)$")

# The headers of Qt Widgets and of Qt Print Support, which needs it, in lower case.
set(widget_headers
    qabstractbutton qabstractgraphicsshapeitem qabstractitemdelegate qabstractitemview qabstractprintdialog
    qabstractscrollarea qabstractslider qabstractspinbox qaccessiblewidget qapplication qboxlayout qbuttongroup
    qcalendarwidget qcheckbox qcolordialog qcolormap qcolumnview qcombobox qcommandlinkbutton qcommonstyle
    qcompleter qdatawidgetmapper qdateedit qdatetimeedit qdial qdialog qdialogbuttonbox qdockwidget
    qdoublespinbox qdrawutil qerrormessage qfiledialog qfileiconprovider qfocusframe qfontcombobox qfontdialog
    qformlayout qframe qgesture qgestureevent qgesturerecognizer qgraphicsanchor qgraphicsanchorlayout
    qgraphicseffect qgraphicsblureffect qgraphicscolorizeeffect qgraphicsdropshadoweffect
    qgraphicsopacityeffect qgraphicsellipseitem qgraphicsgridlayout qgraphicsitem qgraphicsitemanimation
    qgraphicsitemgroup qgraphicslayout qgraphicslayoutitem qgraphicslinearlayout qgraphicslineitem
    qgraphicsobject qgraphicspathitem qgraphicspixmapitem qgraphicspolygonitem qgraphicsproxywidget
    qgraphicsrectitem qgraphicsrotation qgraphicsscale qgraphicsscene qgraphicssceneevent
    qgraphicssimpletextitem qgraphicstextitem qgraphicstransform qgraphicsview qgraphicswidget qgridlayout
    qgroupbox qhboxlayout qheaderview qinputdialog qitemdelegate qitemeditorfactory qkeysequenceedit qlabel
    qlayout qlayoutitem qlcdnumber qlineedit qlistview qlistwidget qlistwidgetitem qmainwindow qmdiarea
    qmdisubwindow qmenu qmenubar qmessagebox qpagesetupdialog qpangesture qpinchgesture
    qpagesetupdialog qplaintextdocumentlayout qplaintextedit qprintdialog qprinter qprinterinfo qprintengine qprintpreviewdialog qprintpreviewwidget qprogressbar
    qprogressdialog qproxystyle qpushbutton qradiobutton qrhiwidget qrubberband qscrollarea qscrollbar
    qscroller qscrollerproperties qsizegrip qsizepolicy qslider qspaceritem qspinbox qsplashscreen qsplitter
    qsplitterhandle qstackedlayout qstackedwidget qstatusbar qstyle qstyleditemdelegate qstylefactory
    qstyleoption qstylepainter qstyleplugin qswipegesture qsystemtrayicon qtabbar qtableview qtablewidget
    qtablewidgetitem qtableselectionrange qtablewidgetselectionrange qtabwidget qtapandholdgesture qtapgesture
    qtextbrowser qtextedit qtilerules qtimeedit qtoolbar qtoolbox qtoolbutton qtooltip qtreeview qtreewidget
    qtreewidgetitem qtreewidgetitemiterator qtwidgetsdepends qtwidgetsversion qundoview qvboxlayout qwhatsthis
    qwidget qwidgetaction qwidgetitem qwizard qwizardpage)

# A line that runs a statement of SQL or holds the text of one.
set(statement "SQLite::|\"(SELECT|INSERT|UPDATE|DELETE|CREATE|DROP|ALTER|WITH RECURSIVE|BEGIN|SAVEPOINT|PRAGMA) ")

# Names the layer of a path relative to src/: a folder, "windows/<subsystem>", or nothing if there is no such place.
function(layer_of path result)
    set(layer "")
    if(path MATCHES "^windows/([^/]+)/[^/]+$")
        if(CMAKE_MATCH_1 IN_LIST window_folders)
            set(layer "windows/${CMAKE_MATCH_1}")
        endif()
    elseif(path MATCHES "^([^/]+)/[^/]+$" AND CMAKE_MATCH_1 IN_LIST project_folders)
        set(layer "${CMAKE_MATCH_1}")
    endif()
    set(${result} "${layer}" PARENT_SCOPE)
endfunction()

# Whether a file of one layer may include a header of another.
function(may_include from to result)
    set(allowed FALSE)
    if(from STREQUAL "shell" AND to MATCHES "^windows/")
        set(allowed TRUE)
    elseif(from MATCHES "^windows/")
        if(to STREQUAL from OR to IN_LIST reach_of_widgets)
            set(allowed TRUE)
        endif()
    elseif(to IN_LIST reach_of_${from})
        set(allowed TRUE)
    endif()
    set(${result} ${allowed} PARENT_SCOPE)
endfunction()

# The fault of one include line of a file in `layer`, or nothing.
function(fault_of_include layer line result)
    set(${result} "" PARENT_SCOPE)
    if(NOT line MATCHES "^[ \t]*#[ \t]*include[ \t]*([\"<])([^\">]+)[\">]")
        set(${result} "an include that cannot be read: ${line}" PARENT_SCOPE)
        return()
    endif()
    set(quote "${CMAKE_MATCH_1}")
    set(header "${CMAKE_MATCH_2}")
    string(REGEX REPLACE "/.*" "" first "${header}")

    if(quote STREQUAL "<" AND NOT (header MATCHES "/" AND (first IN_LIST project_folders OR first STREQUAL "windows")))
        cmake_path(GET header FILENAME name)
        string(TOLOWER "${name}" name)
        string(REGEX REPLACE "\\.h$" "" name "${name}")
        if(layer MATCHES "${widget_layers}")
            return()
        endif()
        if(first MATCHES "^Qt(Widgets|PrintSupport)$" OR name IN_LIST widget_headers)
            set(${result} "<${header}> is Qt Widgets, which only widgets, windows and the shell may use"
                PARENT_SCOPE)
        elseif(NOT layer MATCHES "${qt_layers}" AND header MATCHES "^(Q[A-Z]|Qt[A-Z][A-Za-z]*/|q[a-z]+\\.h$)")
            set(${result} "<${header}> is Qt, which ${layer} does without" PARENT_SCOPE)
        endif()
        return()
    endif()
    if(quote STREQUAL "<")
        set(${result} "<${header}> is our own and belongs in quotes" PARENT_SCOPE)
        return()
    endif()

    layer_of("${header}" target)
    if(NOT target)
        set(${result} "\"${header}\" names no folder of src" PARENT_SCOPE)
        return()
    endif()
    may_include("${layer}" "${target}" allowed)
    if(NOT allowed)
        set(${result} "\"${header}\" is out of reach of ${layer}" PARENT_SCOPE)
    endif()
endfunction()

# The fault of a file's name or place, or nothing. A window's file has the window's name.
function(fault_of_name path layer result)
    set(${result} "" PARENT_SCOPE)
    cmake_path(GET path FILENAME name)
    if(NOT layer)
        set(${result} "lies in no folder that is built" PARENT_SCOPE)
    elseif(name MATCHES "^[a-z][a-z0-9_]*(\\.[a-z0-9]+)+$" AND NOT name MATCHES "^frm")
        return()
    elseif(layer MATCHES "${widget_layers}" AND name MATCHES "^(frm)?[A-Z][A-Za-z0-9]*(\\.[a-z0-9]+)+$")
        return()
    else()
        set(${result} "is neither a snake_case name nor a window's" PARENT_SCOPE)
    endif()
endfunction()

# Checks every file of <tree>/src, also for statements of SQL above the store, and that the build ignores no source of
# <tree>/tests. Sets `findings` to lines "<path>: <fault>" in the order of the paths,
# and `checked` to the number of checked files of src.
macro(check_layers tree)
    set(findings "")
    set(checked 0)
    file(GLOB_RECURSE paths RELATIVE "${tree}/src" "${tree}/src/*")
    list(SORT paths)
    foreach(path IN LISTS paths)
        if(path MATCHES "(^|/)CMakeLists\\.txt$")
            continue()
        endif()
        math(EXPR checked "${checked} + 1")
        layer_of("${path}" layer)
        fault_of_name("${path}" "${layer}" fault)
        if(fault)
            list(APPEND findings "src/${path}: ${fault}")
        endif()
        if(NOT layer OR NOT path MATCHES "\\.(h|cpp)$")
            continue()
        endif()
        file(STRINGS "${tree}/src/${path}" lines REGEX "^[ \t]*#[ \t]*include[^a-z_]" ENCODING UTF-8)
        foreach(line IN LISTS lines)
            fault_of_include("${layer}" "${line}" fault)
            if(fault)
                list(APPEND findings "src/${path}: ${fault}")
            endif()
        endforeach()
        file(STRINGS "${tree}/src/${path}" lines REGEX "${statement}" ENCODING UTF-8)
        if(lines AND NOT layer STREQUAL "store")
            list(APPEND findings "src/${path}: has a statement of SQL, which belongs in store")
        endif()
    endforeach()

    file(GLOB_RECURSE paths RELATIVE "${tree}/tests" "${tree}/tests/*.cpp")
    list(SORT paths)
    foreach(path IN LISTS paths)
        # The tests of the real program and those on a display have sources that are no tests; the main function of all
        # window tests lies beside their folders.
        layer_of("${path}" layer)
        if(path MATCHES "^lint/|^support/[^/]+$|^(accessibility|program|screen)/[^/]+$|^windows/[^/]+$")
            continue()
        endif()
        # The golden files are a program of their own, beside those of the folders of src.
        if(path MATCHES "^golden/[^/]+$")
            set(layer golden)
        endif()
        if(NOT (layer AND path MATCHES "_test\\.cpp$"))
            list(APPEND findings "tests/${path}: is not tests/<folder>/<file>_test.cpp and would never be built")
        endif()
    endforeach()
endmacro()
